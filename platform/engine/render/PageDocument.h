#pragma once

#include "engine/render/PageFont.h"
#include "engine/render/Page.h"
#include "engine/render/PageStore.h"

#include <QHash>
#include <QImage>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace kordel::engine {

// The kind of section a band showing printed; the numbers are the layout's
// section types.
enum class BandKind : std::uint8_t {
  ReportHeader = 0,
  ReportFooter = 1,
  PageHeader = 2,
  PageFooter = 3,
  GroupHeader = 4,
  GroupFooter = 5,
  Detail = 6,
};

// One showing of a section: its kind, and how deep in sub reports it
// stands (0 for the report's own sections, 1 for those of a sub report in
// them, and so on).
struct BandShowing {
  BandKind kind = BandKind::Detail;
  std::uint8_t depth = 0;
  // Printed again what was printed before: a group header repeated at
  // the top of a page.
  bool repeat = false;
};

// Where and how a page shows the number of pages of its run.
struct PageCountText {
  Box box;
  int font = 0;
  QRgb color = kBlack;
  TextAlign align = TextAlign::Left;
  QString format; // the text itself once resolved
};

// Adds the texts of the page counts to a page, in order.
void addPageCounts(Page &page, const std::vector<PageCountText> &counts);

// A control that printed values: its name and its output format.
struct ControlSource {
  QString name;
  QString format;
};

class PageDocument;

// Work an export does while the run makes the pages, so that the export
// that follows the run has less left to do: handed each page as the run
// adds it, on the run's thread, before the page may leave memory.
class PagesAhead {
public:
  virtual ~PagesAhead() = default;
  virtual void pageAdded(const PageDocument &document, const Page &page) = 0;
};

// The pages of one report run with the tables they share: fonts and
// images. Equal fonts and equal images are kept once; pages refer to them
// by index. Pages are appended as the run finishes them.
class PageDocument {
public:
  // The report's name, which exports give their files as title.
  void setTitle(const QString &title) { title_ = title; }
  const QString &title() const { return title_; }

  // The index of the font, adding it when it is new. Raises 6 beyond
  // 65536 distinct fonts.
  int internFont(const PageFont &font);
  int fontCount() const { return int(fonts_.size()); }
  // Raises 9 for an index out of range.
  const PageFont &font(int index) const;

  // The index of the image, adding it when neither the same image nor an
  // equal one is present. Raises 5 for a null image.
  int internImage(const QImage &image);
  int imageCount() const { return int(images_.size()); }
  // Raises 9 for an index out of range.
  const QImage &image(int index) const;

  // Whether the run keeps, beside the printed texts, the values they show
  // and where they came from (band showings, controls), which exports that
  // hold data rather than the printed look need. On at first; a run for
  // the printer or the preview alone turns it off, so that its pages cost
  // no more than they show.
  void setKeepsValues(bool keeps) { keepsValues_ = keeps; }
  bool keepsValues() const { return keepsValues_; }

  // The band showings of the run, numbered in the order they began. A
  // showing that begins while another is open (a sub report's band inside
  // its section) stands one deeper. Raises 6 beyond 2^32 showings.
  std::uint32_t beginBand(BandKind kind, bool repeat = false);
  void endBand();
  std::uint32_t bandCount() const { return std::uint32_t(bands_.size()); }
  // Raises 9 for an index out of range.
  const BandShowing &band(std::uint32_t index) const;

  // The index of a control by its name and format, added when new.
  std::uint32_t internControl(const QString &name, const QString &format);
  std::uint32_t controlCount() const { return std::uint32_t(controls_.size()); }
  // Raises 9 for an index out of range.
  const ControlSource &control(std::uint32_t index) const;

  // Adds a finished page. Raises 5 for a page without a size and 9 for a
  // page that refers to a font, image, band or control the tables lack; the document
  // stays as it was. Pages beyond a few megabytes leave memory for a
  // temporary file (PageStore); raises 7 when it cannot be written.
  void append(Page page);
  int pageCount() const { return pages_.count(); }
  // Called after each page that append adds, for a window that shows the
  // pages while they are made; it may raise to stop the run that adds
  // them. None by default.
  void setPageListener(std::function<void()> listener) { pageListener_ = std::move(listener); }
  // The work done ahead for an export; none by default. Dropped by clear.
  void setPagesAhead(std::shared_ptr<PagesAhead> ahead) { pagesAhead_ = std::move(ahead); }
  const std::shared_ptr<PagesAhead> &pagesAhead() const { return pagesAhead_; }
  // A page, counting from 0, with the page counts resolved so far; raises
  // 9 for an index out of range. A page that left memory is read back.
  Page page(int index) const;

  // A text on a page that shows the number of pages, known only when the
  // run has placed its last page: its format waits until then. Counts are
  // added in the order of their pages; raises 9 for a page not added yet.
  void addPageCount(int page, PageCountText text);
  // Gives the counts added so far their texts, from their formats.
  void resolvePageCounts(const std::function<QString(const QString &format)> &textFor);
  // The page's counts resolved so far, in the order added: what page()
  // adds to the page as it was appended.
  std::vector<PageCountText> resolvedPageCounts(int index) const;

  // Drops the pages and the tables; the title stays.
  void clear();

  // The memory the document holds, in bytes: pages, fonts and image pixels.
  std::size_t approximateBytes() const;

private:
  void checkReferences(const Page &page) const;

  struct PendingPageCount {
    int page = 0;
    bool resolved = false;
    PageCountText text;
  };

  QString title_;
  PageStore pages_;
  std::function<void()> pageListener_;
  std::shared_ptr<PagesAhead> pagesAhead_;
  std::vector<PendingPageCount> pageCounts_;
  std::vector<PageFont> fonts_;
  QHash<PageFont, int> fontIndex_;
  std::vector<QImage> images_;
  QHash<qint64, int> imageByKey_;
  QMultiHash<size_t, int> imageByContent_;
  bool keepsValues_ = true;
  std::vector<BandShowing> bands_;
  std::uint8_t openBands_ = 0;
  std::vector<ControlSource> controls_;
  QHash<QString, std::uint32_t> controlIndex_; // by name and format
};

} // namespace kordel::engine
