#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

#include <vector>

namespace kordel::engine::xls {

// The most rows and columns a BIFF8 worksheet holds.
constexpr int kMaxSheetRows = 65536;
constexpr int kMaxSheetColumns = 256;

// Left edges closer than this to the first edge of a column belong to it.
constexpr Twips kColumnTolerance = 60;
// Text tops closer than this to the first top of a line belong to it.
constexpr Twips kRowTolerance = 30;

// One text of the pages in its place on the sheet.
struct SheetCell {
  int row = 0;
  int column = 0;
  QString text;
  int font = 0; // index into the document's font table
  TextAlign align = TextAlign::Left;
};

// The texts of all pages laid out on one worksheet: the distinct left
// edges of the texts over all pages are the columns, the distinct lines of
// each page are rows, and the pages follow one another down the sheet.
struct SheetLayout {
  std::vector<SheetCell> cells;    // by row, then by column
  std::vector<Twips> columnWidths; // one per column
  std::vector<Twips> rowHeights;   // one per row

  int rowCount() const { return int(rowHeights.size()); }
  int columnCount() const { return int(columnWidths.size()); }
};

// The first values of the groups that sorted values fall into: a value
// starts a new group when it lies more than the tolerance beyond the
// current group's first value.
std::vector<Twips> groupStarts(std::vector<Twips> values, Twips tolerance);

// Texts that share a row and a column are joined with a space, left to
// right. Texts of only white space are left out. Raises 5 when the pages
// need more rows or columns than a worksheet has.
SheetLayout layoutSheet(const PageDocument &document);

} // namespace kordel::engine::xls
