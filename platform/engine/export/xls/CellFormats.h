#pragma once

#include "engine/export/xls/BiffStream.h"
#include "engine/render/PageDocument.h"

#include <QHash>

#include <cstdint>
#include <vector>

namespace kordel::engine::xls {

// The fonts and cell formats (XF records) of a workbook. Cells refer to a
// format; a format names a font and an alignment. The workbook starts with
// the five fonts and sixteen formats that every workbook has, then gets
// one font per document font its cells use and one format per font and
// alignment they use.
class CellFormats {
public:
  // The formats a workbook can have.
  static constexpr int kMaxFormats = 4050;
  // The format of cells without a font or alignment of their own.
  static constexpr std::uint16_t kDefaultCellFormat = 15;

  explicit CellFormats(const PageDocument &document) : document_(document) {}

  // The index of the format for a cell in a font of the document's table
  // with an alignment, added on first use. Raises 5 beyond the formats a
  // workbook can have.
  std::uint16_t cellFormat(int font, TextAlign align);

  // The FONT, XF and STYLE records.
  void write(BiffStream &stream) const;

private:
  struct CellFormat {
    int fontRecord; // position among the document's fonts written
    TextAlign align;
  };

  int fontRecord(int font);

  const PageDocument &document_;
  std::vector<int> fonts_; // document font indices in the order written
  QHash<int, int> fontRecords_;
  std::vector<CellFormat> formats_;
  QHash<quint64, std::uint16_t> formatIndex_;
};

} // namespace kordel::engine::xls
