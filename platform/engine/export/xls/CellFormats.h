#pragma once

#include "engine/export/xls/BiffStream.h"
#include "engine/export/xls/SheetContent.h"
#include "engine/render/PageDocument.h"

#include <QHash>

#include <cstdint>
#include <vector>

namespace kordel::engine::xls {

// The fonts, number formats and cell formats (XF records) of a workbook.
// Cells refer to a cell format; a cell format names a font, a number
// format, an alignment and whether text wraps. The workbook starts with
// the five fonts and sixteen formats that every workbook has, then gets
// one font per document font (plain or made bold) and one number format
// per format code its cells use, and one cell format per combination.
class CellFormats {
public:
  // The formats a workbook can have.
  static constexpr int kMaxFormats = 4050;
  // The format of cells without a font or alignment of their own.
  static constexpr std::uint16_t kDefaultCellFormat = 15;

  explicit CellFormats(const PageDocument &document) : document_(document) {}

  // The index of the format for the cell, added on first use. Raises 5
  // beyond the formats a workbook can have.
  std::uint16_t cellFormat(const SheetCell &cell);

  // The FONT, FORMAT, XF and STYLE records.
  void write(BiffStream &stream) const;

private:
  struct CellFormat {
    int fontRecord; // position among the document's fonts written
    std::uint16_t numberFormat;
    TextAlign align;
    bool wrap;
  };
  struct FontUse {
    int font;
    bool bold;
  };

  int fontRecord(int font, bool bold);
  std::uint16_t numberFormat(const QString &code);

  const PageDocument &document_;
  std::vector<FontUse> fonts_; // in the order written
  QHash<quint64, int> fontRecords_;
  std::vector<QString> numberFormats_; // from the first custom index on
  QHash<QString, std::uint16_t> numberFormatIndex_;
  std::vector<CellFormat> formats_;
  QHash<CellStyle, std::uint16_t> formatIndex_;
};

} // namespace kordel::engine::xls
