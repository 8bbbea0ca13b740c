#pragma once

#include "engine/render/Page.h"

#include <QHashFunctions>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace kordel::engine::xls {

// One cell as a workbook writer writes it: a text, a number shown in a
// number format, or a truth value; in a font of the document's table,
// aligned, and wrapped within its column where it says so.
struct SheetCell {
  enum class Kind : std::uint8_t { Text, Number, Boolean };

  int column = 0;
  Kind kind = Kind::Text;
  double number = 0;
  QString text;
  QString numberFormat; // a spreadsheet format code; empty for General
  int font = 0;
  TextAlign align = TextAlign::Left;
  bool bold = false; // bold whatever its font
  bool wrap = false;
};

// What a cell's format is made of; cells with equal styles share one.
struct CellStyle {
  int font = 0;
  bool bold = false;
  TextAlign align = TextAlign::Left;
  bool wrap = false;
  QString numberFormat;

  static CellStyle of(const SheetCell &cell) {
    return {cell.font, cell.bold, cell.align, cell.wrap, cell.numberFormat};
  }
  friend bool operator==(const CellStyle &, const CellStyle &) = default;
};

inline size_t qHash(const CellStyle &style, size_t seed = 0) {
  return qHashMulti(seed, style.font, style.bold, int(style.align), style.wrap, style.numberFormat);
}

// One row: its cells by column, its height, and its outline level (how
// deep in sub reports its values stand, which a spreadsheet can fold).
struct SheetRow {
  std::vector<SheetCell> cells;
  Twips height = 0;
  int outlineLevel = 0;
};

// What a worksheet is made of before it is written: column widths, the
// rows at the top that stay in view, and the rows, which are given one at
// a time in order so that a writer need not hold them all.
class SheetContent {
public:
  virtual ~SheetContent() = default;
  virtual int rowCount() const = 0;
  virtual const std::vector<Twips> &columnWidths() const = 0;
  // Rows kept in view above the others; 0 for none.
  virtual int frozenRows() const = 0;
  // The highest outline level of the rows.
  virtual int deepestOutlineLevel() const = 0;
  virtual void forEachRow(const std::function<void(const SheetRow &row)> &visit) const = 0;
};

} // namespace kordel::engine::xls
