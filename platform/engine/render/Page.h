#pragma once

#include <QByteArray>
#include <QColor>
#include <QRectF>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace kordel::engine {

// Page coordinates and sizes: twips, 1440 to the inch, 20 to the point.
using Twips = std::int32_t;
constexpr Twips kTwipsPerInch = 1440;
constexpr Twips kTwipsPerPoint = 20;

constexpr QRgb kBlack = 0xff000000;

// A rectangle on the page: top left corner and size.
struct Box {
  Twips x = 0;
  Twips y = 0;
  Twips width = 0;
  Twips height = 0;

  QRectF toRectF() const { return QRectF(x, y, width, height); }
  friend bool operator==(const Box &, const Box &) = default;
};

enum class TextAlign : std::uint8_t { Left, Center, Right };
enum class LineStyle : std::uint8_t { Solid, Dash, Dot };

// How a line or a border is drawn. Width 0 is a hairline: the thinnest
// line the device shows.
struct Stroke {
  QRgb color = kBlack;
  Twips width = 0;
  LineStyle style = LineStyle::Solid;

  friend bool operator==(const Stroke &, const Stroke &) = default;
};

// One line of text in its box. The top of the box is the top of the line;
// the alignment places the text between the box's left and right edges.
// The text itself lives in the page's string pool: read it with
// Page::text(run).
class TextRun {
public:
  Box box;
  QRgb color = kBlack;
  std::uint16_t font = 0; // index into the document's font table
  TextAlign align = TextAlign::Left;

private:
  friend class Page;
  std::uint32_t textOffset_ = 0;
  std::uint32_t textLength_ = 0;
};

struct LineItem {
  Twips x1 = 0;
  Twips y1 = 0;
  Twips x2 = 0;
  Twips y2 = 0;
  Stroke stroke;
};

// A rectangle, filled and bordered as far as it has a fill and a border;
// a corner radius above 0 rounds its corners.
struct RectItem {
  Box box;
  std::optional<QRgb> fill;
  std::optional<Stroke> border;
  Twips cornerRadius = 0;
};

// An ellipse inscribed in its box.
struct EllipseItem {
  Box box;
  std::optional<QRgb> fill;
  std::optional<Stroke> border;
};

// An image of the document's image table, stretched to its box.
struct ImageItem {
  Box box;
  std::int32_t image = 0;
};

using PageItem = std::variant<TextRun, LineItem, RectItem, EllipseItem, ImageItem>;

// What a printed value was before it was formatted, for exports that keep
// values rather than their printed look.
enum class ValueKind : std::uint8_t { Text, Number, Currency, Date, Boolean };

// Where a printed value came from and what it was: the band showing and
// the control (indices into the document's tables) and, for all kinds but
// text, the value as a number (a date as its day count from 1899-12-30, a
// truth value as 1 or 0).
struct ValueSource {
  std::uint32_t band = 0;
  std::uint32_t control = 0;
  ValueKind kind = ValueKind::Text;
  double number = 0;
};

// A value that a label or field printed: the runs it printed as (their
// texts lie one after another in the page's pool) and where it came from.
// A value printed other than whole (wrapped over several lines, or cut
// where its box ends) keeps its whole text beside; exports that are not
// bound to the printed look take that.
class PrintedValue {
public:
  ValueSource source() const { return {band_, control_, kind_, number_}; }
  // Whether one run shows the whole text.
  bool printedWhole() const { return wholeLength_ == 0; }

private:
  friend class Page;
  double number_ = 0;
  std::uint32_t band_ = 0;
  std::uint32_t control_ = 0;
  std::uint32_t runsBegin_ = 0;   // where its first run's text begins in the pool
  std::uint32_t runsEnd_ = 0;     // where its last run's text ends, and the whole text begins
  std::uint32_t wholeLength_ = 0; // 0 when the runs show the whole text
  ValueKind kind_ = ValueKind::Text;
};

// The display list of one finished page: its size and the items in painting
// order. Items are small fixed-size values; the texts of all runs share one
// string, so a page of a few hundred runs takes a few tens of kilobytes.
class Page {
public:
  Page() = default;
  Page(Twips width, Twips height) : width_(width), height_(height) {}

  Twips width() const { return width_; }
  Twips height() const { return height_; }
  void setSize(Twips width, Twips height);

  void addText(const Box &box, const QString &text, int font, QRgb color = kBlack, TextAlign align = TextAlign::Left);
  void addLine(const LineItem &line) { items_.emplace_back(line); }
  void addRect(const RectItem &rect) { items_.emplace_back(rect); }
  void addEllipse(const EllipseItem &ellipse) { items_.emplace_back(ellipse); }
  void addImage(const Box &box, int image) { items_.emplace_back(ImageItem{box, image}); }

  // Marks the runs added since textMark() as printing a value: where it
  // came from, and its text before wrapping and cutting, kept when the
  // runs show less of it than all or in several lines. Nothing is marked
  // when no run was added.
  std::uint32_t textMark() const { return std::uint32_t(textPool_.size()); }
  void markValue(std::uint32_t mark, const ValueSource &source, const QString &whole);
  // The value a run printed; nullptr for a run of no value (a page number).
  const PrintedValue *valueOf(const TextRun &run) const;
  // The value a run printed other than whole (wrapped or cut); nullptr
  // for a run that printed its value whole or printed none.
  const PrintedValue *partialValueOf(const TextRun &run) const {
    const PrintedValue *value = valueOf(run);
    return value && !value->printedWhole() ? value : nullptr;
  }
  // Whether the run is the first of its value's runs.
  bool beginsValue(const TextRun &run, const PrintedValue &value) const { return run.textOffset_ == value.runsBegin_; }
  // The whole text of the value.
  QString text(const PrintedValue &value) const;
  // The values in the order printed.
  const std::vector<PrintedValue> &values() const { return values_; }
  // Copies another page's items, moved by dx and dy, with their values.
  void addPage(const Page &other, Twips dx, Twips dy);

  const std::vector<PageItem> &items() const { return items_; }
  int itemCount() const { return int(items_.size()); }
  bool isEmpty() const { return items_.empty(); }
  // The text of a run of this page.
  QString text(const TextRun &run) const;

  // Gives back the room kept for items and text still to come.
  void squeeze();
  // The page in a compact binary form, for this process to read back with
  // fromBytes: a page that left memory for a while.
  void appendBytes(QByteArray &out) const;
  // Raises 5 for bytes that do not hold a page.
  static Page fromBytes(const char *data, qsizetype size);
  // The memory the page holds, in bytes, counting what its containers
  // have reserved.
  std::size_t approximateBytes() const;

private:
  Twips width_ = 0;
  Twips height_ = 0;
  std::vector<PageItem> items_;
  QString textPool_;
  std::vector<PrintedValue> values_; // by where their runs begin
};

} // namespace kordel::engine
