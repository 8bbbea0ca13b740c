#include "engine/export/xls/SheetLayout.h"

#include "engine/export/xls/CellValue.h"

#include <algorithm>
#include <tuple>

namespace kordel::engine::xls {

namespace {

// The index of the group a value belongs to: the last group starting at or
// before it.
int groupOf(const std::vector<Twips> &starts, Twips value) {
  return int(std::upper_bound(starts.begin(), starts.end(), value) - starts.begin()) - 1;
}

struct PlacedRun {
  int row;
  int column;
  Twips x;
  Twips right;
  QString text;
  int font;
  TextAlign align;
};

template <class Visit> void forEachText(const Page &page, Visit visit) {
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item)) {
      QString text = page.text(*run);
      if (!text.trimmed().isEmpty())
        visit(*run, std::move(text));
    }
  }
}

class PageSheet : public SheetContent {
public:
  explicit PageSheet(const PageDocument &document);

  int rowCount() const override { return int(rows_.size()); }
  const std::vector<Twips> &columnWidths() const override { return widths_; }
  int frozenRows() const override { return 0; }
  int deepestOutlineLevel() const override { return 0; }
  void forEachRow(const std::function<void(const SheetRow &row)> &visit) const override {
    for (const SheetRow &row : rows_)
      visit(row);
  }

private:
  std::vector<SheetRow> rows_;
  std::vector<Twips> widths_;
};

PageSheet::PageSheet(const PageDocument &document) {
  std::vector<Twips> lefts;
  for (int index = 0; index < document.pageCount(); ++index)
    forEachText(document.page(index), [&](const TextRun &run, const QString &) { lefts.push_back(run.box.x); });
  const std::vector<Twips> edges = groupStarts(std::move(lefts), kColumnTolerance);

  std::vector<PlacedRun> runs;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page page = document.page(index);
    std::vector<Twips> tops;
    forEachText(page, [&](const TextRun &run, const QString &) { tops.push_back(run.box.y); });
    const std::vector<Twips> lines = groupStarts(std::move(tops), kRowTolerance);
    const int firstRow = rowCount();
    rows_.resize(rows_.size() + lines.size());
    forEachText(page, [&](const TextRun &run, QString text) {
      const int row = firstRow + groupOf(lines, run.box.y);
      rows_[std::size_t(row)].height = std::max(rows_[std::size_t(row)].height, run.box.height);
      runs.push_back(PlacedRun{row, groupOf(edges, run.box.x), run.box.x, run.box.x + run.box.width, std::move(text),
                               run.font, run.align});
    });
  }

  // A column is as wide as the gap to the next one; the last as wide as
  // its widest text.
  widths_.resize(edges.size(), 0);
  for (std::size_t column = 0; column + 1 < edges.size(); ++column)
    widths_[column] = edges[column + 1] - edges[column];
  for (const PlacedRun &run : runs) {
    if (run.column + 1 == int(edges.size()))
      widths_.back() = std::max(widths_.back(), run.right - edges.back());
  }

  // Texts that landed in the same cell are joined; the first gives the
  // cell its font and alignment.
  std::sort(runs.begin(), runs.end(), [](const PlacedRun &a, const PlacedRun &b) {
    return std::tie(a.row, a.column, a.x) < std::tie(b.row, b.column, b.x);
  });
  const PlacedRun *previous = nullptr;
  for (PlacedRun &run : runs) {
    std::vector<SheetCell> &cells = rows_[std::size_t(run.row)].cells;
    if (previous && previous->row == run.row && previous->column == run.column) {
      cells.back().text += QLatin1Char(' ') + run.text;
    } else {
      SheetCell cell;
      cell.column = run.column;
      cell.text = std::move(run.text);
      cell.font = run.font;
      cell.align = run.align;
      cells.push_back(std::move(cell));
    }
    previous = &run;
  }
  for (SheetRow &row : rows_)
    for (SheetCell &cell : row.cells)
      if (const std::optional<double> number = plainNumber(cell.text)) {
        cell.kind = SheetCell::Kind::Number;
        cell.number = *number;
      }
}

} // namespace

std::vector<Twips> groupStarts(std::vector<Twips> values, Twips tolerance) {
  std::sort(values.begin(), values.end());
  std::vector<Twips> starts;
  for (const Twips value : values) {
    if (starts.empty() || value - starts.back() > tolerance)
      starts.push_back(value);
  }
  return starts;
}

std::unique_ptr<SheetContent> pageSheet(const PageDocument &document) { return std::make_unique<PageSheet>(document); }

} // namespace kordel::engine::xls
