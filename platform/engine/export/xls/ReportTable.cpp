#include "engine/export/xls/ReportTable.h"

#include "engine/export/xls/NumberFormatCode.h"
#include "engine/export/xls/SheetLayout.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace kordel::engine::xls {

namespace {

// The outline levels a spreadsheet has.
constexpr int kMostOutlineLevels = 7;
// A first page header taller than this many rows is no heading to keep in
// view.
constexpr int kMostFrozenRows = 20;
// Room a cell leaves around its text, in twips.
constexpr Twips kCellPadding = 120;
constexpr Twips kNarrowestColumn = 600;
// About sixty characters of a 10-point font; longer texts wrap.
constexpr Twips kWidestColumn = 7600;
// Dates a spreadsheet shows: from 1900-03-01 (before it, its day numbers
// differ from ours) to the last day of 9999; below one day, times alone.
constexpr double kFirstDay = 61;
constexpr double kPastLastDay = 2958466;

// The width a line of text takes in a font, estimated from its characters:
// wide East Asian characters count twice.
Twips estimatedWidth(QStringView line, const PageFont &font, bool bold) {
  double units = 0;
  for (const QChar c : line)
    units += c.unicode() >= 0x1100 && !c.isSurrogate() ? 2 : 1;
  return Twips(std::ceil(units * font.pointSize * kTwipsPerPoint * 0.6 * (bold || font.bold ? 1.1 : 1.0)));
}

Twips lineHeight(const PageFont &font) { return Twips(std::ceil(font.pointSize * kTwipsPerPoint * 1.3)); }

Twips widestLine(const SheetCell &cell, const PageFont &font) {
  Twips widest = 0;
  for (const QStringView line : QStringView(cell.text).split(QLatin1Char('\n')))
    widest = std::max(widest, estimatedWidth(line, font, cell.bold));
  return widest;
}

// The lines a cell takes in a column of the width.
int linesIn(const SheetCell &cell, const PageFont &font, Twips width) {
  const Twips room = std::max<Twips>(1, width - kCellPadding);
  int lines = 0;
  for (const QStringView line : QStringView(cell.text).split(QLatin1Char('\n')))
    lines += cell.wrap ? std::max(1, int(std::ceil(double(estimatedWidth(line, font, cell.bold)) / room))) : 1;
  return std::max(1, lines);
}

void typeCell(SheetCell &cell, const ValueSource &source, const QString &format) {
  if (source.kind == ValueKind::Text)
    return;
  const CellFormatChoice choice = cellFormatFor(source.kind, format);
  if (choice.asText)
    return;
  if (source.kind == ValueKind::Boolean) {
    cell.kind = SheetCell::Kind::Boolean;
    cell.number = source.number;
    return;
  }
  QString code = choice.code;
  if (source.kind == ValueKind::Date) {
    const double day = source.number;
    const bool timeOnly = day >= 0 && day < 1;
    if (!timeOnly && (day < kFirstDay || day >= kPastLastDay))
      return; // no day the spreadsheet has: the printed date stays
    if (code.isEmpty())
      code = timeOnly                 ? QStringLiteral("hh:mm:ss")
             : day == std::floor(day) ? QStringLiteral("yyyy-mm-dd")
                                      : QStringLiteral("yyyy-mm-dd hh:mm:ss");
  }
  if (!std::isfinite(source.number))
    return;
  cell.kind = SheetCell::Kind::Number;
  cell.number = source.number;
  cell.numberFormat = code;
}

class ReportTable : public SheetContent {
public:
  explicit ReportTable(const PageDocument &document);
  bool hasValues() const { return !edges_.empty(); }

  int rowCount() const override { return rows_; }
  const std::vector<Twips> &columnWidths() const override { return widths_; }
  int frozenRows() const override { return frozen_; }
  int deepestOutlineLevel() const override { return deepestLevel_; }
  void forEachRow(const std::function<void(const SheetRow &row)> &visit) const override;

private:
  // Calls visit(row, isHeading) for each row in order, its cells by
  // column, neither wrapped nor measured.
  template <class Visit> void walk(Visit visit) const;
  // Whether the band's values go into the table.
  bool kept(std::uint32_t band, std::optional<std::uint32_t> &heading) const;

  const PageDocument &document_;
  std::vector<Twips> edges_;
  std::vector<Twips> widths_;
  int rows_ = 0;
  int frozen_ = 0;
  int deepestLevel_ = 0;
};

bool ReportTable::kept(std::uint32_t band, std::optional<std::uint32_t> &heading) const {
  const BandShowing &showing = document_.band(band);
  if (showing.kind == BandKind::PageFooter || showing.repeat)
    return false;
  if (showing.kind != BandKind::PageHeader)
    return true;
  if (!heading)
    heading = band;
  return *heading == band;
}

template <class Visit> void ReportTable::walk(Visit visit) const {
  std::optional<std::uint32_t> heading;
  SheetRow row;
  bool rowIsHeading = false;
  int rowPage = -1;
  std::uint32_t rowBand = 0;
  Twips rowBottom = 0;
  const auto flush = [&] {
    if (row.cells.empty())
      return;
    // Values that landed in one column are joined, left to right.
    std::stable_sort(row.cells.begin(), row.cells.end(),
                     [](const SheetCell &a, const SheetCell &b) { return a.column < b.column; });
    std::vector<SheetCell> merged;
    for (SheetCell &cell : row.cells) {
      if (!merged.empty() && merged.back().column == cell.column) {
        SheetCell &into = merged.back();
        into.text += QLatin1Char(' ') + cell.text;
        into.kind = SheetCell::Kind::Text;
        continue;
      }
      merged.push_back(std::move(cell));
    }
    row.cells = std::move(merged);
    visit(row, rowIsHeading);
    row.cells.clear();
  };

  for (int index = 0; index < document_.pageCount(); ++index) {
    const Page page = document_.page(index);
    for (const PageItem &item : page.items()) {
      const auto *run = std::get_if<TextRun>(&item);
      if (!run)
        continue;
      const PrintedValue *value = page.valueOf(*run);
      if (!value || !page.beginsValue(*run, *value))
        continue;
      const ValueSource &source = value->source();
      if (!kept(source.band, heading))
        continue;
      QString text = page.text(*value);
      if (text.trimmed().isEmpty())
        continue;
      if (rowPage != index || rowBand != source.band || run->box.y >= rowBottom) {
        flush();
        const BandShowing &showing = document_.band(source.band);
        rowPage = index;
        rowBand = source.band;
        rowBottom = run->box.y + std::max<Twips>(1, run->box.height);
        rowIsHeading = showing.kind == BandKind::PageHeader;
        row.outlineLevel = std::min<int>(showing.depth, kMostOutlineLevels);
        row.height = 0;
      }
      SheetCell cell;
      cell.column = int(std::upper_bound(edges_.begin(), edges_.end(), run->box.x) - edges_.begin()) - 1;
      cell.column = std::max(0, cell.column);
      cell.text = std::move(text);
      cell.font = run->font;
      cell.align = run->align;
      cell.bold = document_.band(source.band).kind == BandKind::GroupHeader;
      typeCell(cell, source, document_.control(source.control).format);
      row.cells.push_back(std::move(cell));
    }
  }
  flush();
}

ReportTable::ReportTable(const PageDocument &document) : document_(document) {
  std::vector<Twips> lefts;
  std::optional<std::uint32_t> heading;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page page = document.page(index);
    for (const PageItem &item : page.items()) {
      const auto *run = std::get_if<TextRun>(&item);
      const PrintedValue *value = run ? page.valueOf(*run) : nullptr;
      if (!value || !page.beginsValue(*run, *value))
        continue;
      const BandShowing &showing = document.band(value->source().band);
      // The heading's texts go into the columns of the values.
      if (showing.kind != BandKind::PageHeader && kept(value->source().band, heading))
        lefts.push_back(run->box.x);
    }
  }
  edges_ = groupStarts(std::move(lefts), kColumnTolerance);
  widths_.assign(edges_.size(), kNarrowestColumn);

  bool inHeading = true;
  walk([&](const SheetRow &row, bool isHeading) {
    ++rows_;
    deepestLevel_ = std::max(deepestLevel_, row.outlineLevel);
    if (inHeading && isHeading)
      frozen_ = rows_;
    inHeading = inHeading && (isHeading || frozen_ == 0);
    // A heading's texts may run on into the empty cells beside them.
    if (isHeading)
      return;
    for (const SheetCell &cell : row.cells) {
      Twips &width = widths_[std::size_t(cell.column)];
      width = std::clamp(widestLine(cell, document_.font(cell.font)) + kCellPadding, width, kWidestColumn);
    }
  });
  if (frozen_ > kMostFrozenRows)
    frozen_ = 0;
}

void ReportTable::forEachRow(const std::function<void(const SheetRow &row)> &visit) const {
  walk([&](SheetRow &row, bool isHeading) {
    Twips height = 0;
    for (SheetCell &cell : row.cells) {
      const PageFont &font = document_.font(cell.font);
      const Twips width = widths_[std::size_t(cell.column)];
      cell.wrap = !isHeading && cell.kind == SheetCell::Kind::Text &&
                  (cell.text.contains(QLatin1Char('\n')) || widestLine(cell, font) + kCellPadding > width);
      height = std::max(height, Twips(linesIn(cell, font, width) * lineHeight(font)));
    }
    row.height = height;
    visit(row);
  });
}

} // namespace

std::unique_ptr<SheetContent> reportTable(const PageDocument &document) {
  auto table = std::make_unique<ReportTable>(document);
  if (!table->hasValues())
    return nullptr;
  return table;
}

} // namespace kordel::engine::xls
