#include "engine/export/xls/SheetLayout.h"

#include "core/Error.h"

#include <algorithm>
#include <tuple>

namespace kordel::engine::xls {

namespace {

const QString kSource = QStringLiteral("XlsExporter");

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

std::vector<Twips> columnEdges(const PageDocument &document) {
  std::vector<Twips> lefts;
  for (int index = 0; index < document.pageCount(); ++index)
    forEachText(document.page(index), [&](const TextRun &run, const QString &) { lefts.push_back(run.box.x); });
  std::vector<Twips> edges = groupStarts(std::move(lefts), kColumnTolerance);
  if (int(edges.size()) > kMaxSheetColumns)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The pages have texts at %1 different left edges, but a worksheet has only %2 columns")
                   .arg(edges.size())
                   .arg(kMaxSheetColumns));
  return edges;
}

// Joins the texts that landed in the same cell; the first text gives the
// cell its font and alignment.
std::vector<SheetCell> mergeCells(std::vector<PlacedRun> runs) {
  std::sort(runs.begin(), runs.end(), [](const PlacedRun &a, const PlacedRun &b) {
    return std::tie(a.row, a.column, a.x) < std::tie(b.row, b.column, b.x);
  });
  std::vector<SheetCell> cells;
  for (PlacedRun &run : runs) {
    if (!cells.empty() && cells.back().row == run.row && cells.back().column == run.column) {
      cells.back().text += QLatin1Char(' ') + run.text;
      continue;
    }
    cells.push_back(SheetCell{run.row, run.column, std::move(run.text), run.font, run.align});
  }
  return cells;
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

SheetLayout layoutSheet(const PageDocument &document) {
  const std::vector<Twips> edges = columnEdges(document);
  SheetLayout sheet;
  std::vector<PlacedRun> runs;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page &page = document.page(index);
    std::vector<Twips> tops;
    forEachText(page, [&](const TextRun &run, const QString &) { tops.push_back(run.box.y); });
    const std::vector<Twips> lines = groupStarts(std::move(tops), kRowTolerance);
    const int firstRow = sheet.rowCount();
    if (firstRow + qsizetype(lines.size()) > kMaxSheetRows)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("Page %1 would end beyond row %2, the last row of a worksheet; the pages have too "
                                "many lines of text for one worksheet")
                     .arg(index + 1)
                     .arg(kMaxSheetRows));
    sheet.rowHeights.resize(sheet.rowHeights.size() + lines.size(), 0);
    forEachText(page, [&](const TextRun &run, QString text) {
      const int row = firstRow + groupOf(lines, run.box.y);
      sheet.rowHeights[row] = std::max(sheet.rowHeights[row], run.box.height);
      runs.push_back(PlacedRun{row, groupOf(edges, run.box.x), run.box.x, run.box.x + run.box.width, std::move(text),
                               run.font, run.align});
    });
  }

  // A column is as wide as the gap to the next one; the last as wide as
  // its widest text.
  sheet.columnWidths.resize(edges.size(), 0);
  for (std::size_t column = 0; column + 1 < edges.size(); ++column)
    sheet.columnWidths[column] = edges[column + 1] - edges[column];
  for (const PlacedRun &run : runs) {
    if (run.column + 1 == int(edges.size()))
      sheet.columnWidths.back() = std::max(sheet.columnWidths.back(), run.right - edges.back());
  }
  sheet.cells = mergeCells(std::move(runs));
  return sheet;
}

} // namespace kordel::engine::xls
