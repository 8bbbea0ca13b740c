#pragma once

#include "engine/render/PageDocument.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace kordel::engine {
class ExportFile;
class GlyphCoverage;
} // namespace kordel::engine

namespace kordel::engine::pdf {

class PdfDocumentWriter;

// A PDF export written while the run makes the pages, for a run whose
// pages are known to go to a PDF file next: each page the run adds is
// handed to a thread of its own, which writes the page's content into a
// temporary file and looks for characters no font has, while the run goes
// on with the next page. The export then only adds what waited for the
// end of the run (the page counts, the fonts, the page tree) and copies
// the file to its place.
//
// The run hands over copies of its pages with the fonts and images it
// added since the page before, in order; the writing thread keeps its own
// tables of them, with the document's indexes. The writing thread takes
// them a few at a time, and at most a few dozen wait between the two
// threads: a run faster than the writing waits for it, so that the pages
// on their way cost little memory. A failure on the writing
// thread (a full disk) ends the writing ahead, and the export goes the
// usual road, which meets the failure again and reports it.
class PdfPrewriter : public PagesAhead {
public:
  PdfPrewriter();
  ~PdfPrewriter() override;
  PdfPrewriter(const PdfPrewriter &) = delete;
  PdfPrewriter &operator=(const PdfPrewriter &) = delete;

  void pageAdded(const PageDocument &document, const Page &page) override;

  // Writes the export of every page of the document into the file: waits
  // for the pages still on their way, then adds the rest. False, with
  // nothing written, when the pages written ahead are not all the
  // document's (a failure on the way, an export already made of them): the
  // caller then writes the export itself. Raises as the usual export does
  // when the file refuses a write.
  bool exportTo(const PageDocument &document, ExportFile &target, const QString &title, const QString &creator);

private:
  struct Handover {
    Page page;
    std::vector<PageFont> fonts;
    std::vector<QImage> images;
  };

  void writeAhead();
  void take(const Handover &handover);

  // The run's side.
  int pagesHanded_ = 0;
  int fontsHanded_ = 0;
  int imagesHanded_ = 0;
  bool used_ = false;

  // Between the two.
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Handover> waiting_;
  bool ending_ = false;
  bool runWaits_ = false; // the run waits for room among the waiting pages
  std::atomic<bool> failed_ = false;
  std::thread thread_;

  // Made by the run's thread with the first page, used by the writing
  // thread, and by the export once that thread has ended.
  PageDocument tables_;
  std::unique_ptr<ExportFile> file_;
  std::unique_ptr<PdfDocumentWriter> writer_;
  std::unique_ptr<GlyphCoverage> coverage_;
};

} // namespace kordel::engine::pdf
