#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

#include <optional>

namespace kordel::engine {

enum class PrintOrientation { Portrait, Landscape };

// How a document goes to a printer.
struct PrintSettings {
  // The print queue, "queue" or "queue/instance", or the built-in PDF
  // printer's name; empty for the default printer.
  QString queue;
  // The job's name in the queue: the report's document name.
  QString jobName;
  int copies = 1;
  // Empty: landscape when the first printed page is wider than high.
  std::optional<PrintOrientation> orientation;
  // A bin number as printerPaperBins gives them; 0 for the printer's own
  // choice.
  int paperBin = 0;
};

// Prints the pages of a document to a print queue without asking anyone:
// the pages become a PDF file in the temporary folder, which goes to the
// queue as one job and is removed afterwards. The built-in PDF printer
// writes the job into the documents folder instead (BuiltInPdfPrinter.h),
// one file whatever the copies.
//
// Errors: 5 for an unknown queue or a job the print system refuses (naming
// the queue and the print system's reason), for fewer than one copy and
// for a document without pages; 9 for a page range outside the document
// or a paper bin the printer lacks; 70 when the temporary file cannot be
// written.
class PagePrinter {
public:
  explicit PagePrinter(PrintSettings settings) : settings_(std::move(settings)) {}

  const PrintSettings &settings() const { return settings_; }

  // All pages; returns the print system's job id (the built-in printer
  // numbers its jobs in the process from 1).
  int printDocument(const PageDocument &document) const;
  // The pages from firstPage to lastPage, both included, counted from 0.
  int printPages(const PageDocument &document, int firstPage, int lastPage) const;

private:
  int printToPdfFile(const PageDocument &document, int firstPage, int lastPage, const QString &jobName) const;

  PrintSettings settings_;
};

} // namespace kordel::engine
