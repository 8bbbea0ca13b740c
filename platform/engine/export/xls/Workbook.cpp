#include "engine/export/xls/Workbook.h"

#include "engine/export/xls/BiffStream.h"
#include "engine/export/xls/CellFormats.h"
#include "engine/export/xls/CellValue.h"
#include "engine/export/xls/SharedStrings.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace kordel::engine::xls {

namespace {

constexpr std::uint16_t kBiff8 = 0x0600;
constexpr std::uint16_t kGlobalsSubstream = 0x0005;
constexpr std::uint16_t kWorksheetSubstream = 0x0010;
constexpr std::uint16_t kBuildId = 0x0DBB;
constexpr std::uint16_t kBuildYear = 0x07CC;
constexpr std::uint32_t kLowestVersion = 0x06;
constexpr std::uint16_t kUtf16Codepage = 1200;

// A column width counts 1/256 of the width of a digit of the default font
// (10-point DejaVu Sans, a digit about 127 twips wide).
constexpr double kTwipsPerDigit = 127.0;
constexpr int kMaxColumnWidth = 255 * 256;
// The tallest row a worksheet shows, in twips.
constexpr Twips kMaxRowHeight = 8180;
// ROW flags: the row's height is its own, not the font's; bit 8 is always set.
constexpr std::uint16_t kRowOwnHeight = 0x0140;
constexpr int kRowsPerBlock = 32;

// WINDOW2: grid lines, headings, zeros, outline symbols, the default grid
// colour, the sheet selected and shown.
constexpr std::uint16_t kSheetWindowFlags = 0x06B6;
constexpr std::uint16_t kDefaultGridColor = 0x40;

const QString kSheetName = QStringLiteral("Report");

struct Cell {
  int row;
  int column;
  std::uint16_t format;
  std::optional<double> number;
  std::uint32_t string = 0; // index into the shared strings for text
};

void bof(BiffStream &stream, std::uint16_t substream) {
  stream.record(Record::Bof, Bytes()
                                 .u16(kBiff8)
                                 .u16(substream)
                                 .u16(kBuildId)
                                 .u16(kBuildYear)
                                 .u32(0) // file history
                                 .u32(kLowestVersion));
}

void window1(BiffStream &stream) {
  stream.record(Record::Window1, Bytes()
                                     .u16(0) // left, top, width, height of the window
                                     .u16(0)
                                     .u16(0x4000)
                                     .u16(0x2000)
                                     .u16(0x0038) // scroll bars and sheet tabs shown
                                     .u16(0)      // the active sheet
                                     .u16(0)      // the first tab shown
                                     .u16(1)      // sheets selected
                                     .u16(600));  // tab bar width ratio, in 1/1000
}

std::uint16_t columnWidth(Twips width) {
  return std::uint16_t(std::clamp<long>(std::lround(width / kTwipsPerDigit * 256), 256, kMaxColumnWidth));
}

void columnInfos(BiffStream &stream, const SheetLayout &sheet) {
  for (int column = 0; column < sheet.columnCount(); ++column)
    stream.record(Record::ColInfo, Bytes()
                                       .u16(std::uint16_t(column))
                                       .u16(std::uint16_t(column))
                                       .u16(columnWidth(sheet.columnWidths[column]))
                                       .u16(CellFormats::kDefaultCellFormat)
                                       .u16(0) // shown, no outline
                                       .u16(0));
}

void dimensions(BiffStream &stream, const SheetLayout &sheet) {
  stream.record(Record::Dimensions, Bytes()
                                        .u32(0)
                                        .u32(std::uint32_t(sheet.rowCount())) // one past the last row
                                        .u16(0)
                                        .u16(std::uint16_t(sheet.columnCount()))
                                        .u16(0));
}

void rowRecord(BiffStream &stream, int row, int firstColumn, int lastColumn, Twips height) {
  stream.record(Record::Row, Bytes()
                                 .u16(std::uint16_t(row))
                                 .u16(std::uint16_t(firstColumn))
                                 .u16(std::uint16_t(lastColumn + 1))
                                 .u16(std::uint16_t(std::clamp<Twips>(height, 1, kMaxRowHeight)))
                                 .u16(0)
                                 .u16(0)
                                 .u16(kRowOwnHeight)
                                 .u16(CellFormats::kDefaultCellFormat));
}

void cellRecord(BiffStream &stream, const Cell &cell) {
  Bytes bytes;
  bytes.u16(std::uint16_t(cell.row)).u16(std::uint16_t(cell.column)).u16(cell.format);
  if (cell.number) {
    stream.record(Record::Number, bytes.f64(*cell.number));
  } else {
    stream.record(Record::LabelSst, bytes.u32(cell.string));
  }
}

// Rows go in blocks of 32: the ROW records of the block, then its cells.
void rowBlocks(BiffStream &stream, const SheetLayout &sheet, const std::vector<Cell> &cells) {
  std::size_t next = 0;
  for (int blockStart = 0; blockStart < sheet.rowCount(); blockStart += kRowsPerBlock) {
    const int blockEnd = std::min(blockStart + kRowsPerBlock, sheet.rowCount());
    const std::size_t blockCells = next;
    for (int row = blockStart; row < blockEnd; ++row) {
      int first = -1;
      int last = -1;
      for (; next < cells.size() && cells[next].row == row; ++next) {
        if (first < 0)
          first = cells[next].column;
        last = cells[next].column;
      }
      if (first >= 0)
        rowRecord(stream, row, first, last, sheet.rowHeights[row]);
    }
    for (std::size_t i = blockCells; i < next; ++i)
      cellRecord(stream, cells[i]);
  }
}

void window2(BiffStream &stream) {
  stream.record(Record::Window2, Bytes()
                                     .u16(kSheetWindowFlags)
                                     .u16(0) // the first row shown
                                     .u16(0) // the first column shown
                                     .u16(kDefaultGridColor)
                                     .u16(0)
                                     .u16(0) // zoom of the page break preview: default
                                     .u16(0) // zoom of the normal view: default
                                     .u32(0));
}

} // namespace

QByteArray workbookStream(const PageDocument &document, const SheetLayout &sheet) {
  CellFormats formats(document);
  SharedStrings strings;
  std::vector<Cell> cells;
  cells.reserve(sheet.cells.size());
  for (const SheetCell &sheetCell : sheet.cells) {
    Cell cell{sheetCell.row, sheetCell.column, formats.cellFormat(sheetCell.font, sheetCell.align),
              plainNumber(sheetCell.text)};
    if (!cell.number)
      cell.string = strings.add(sheetCell.text);
    cells.push_back(cell);
  }

  BiffStream stream;
  bof(stream, kGlobalsSubstream);
  stream.record(Record::Codepage, Bytes().u16(kUtf16Codepage));
  window1(stream);
  formats.write(stream);
  const qsizetype sheetOffsetAt = stream.position() + 4; // the first field of the BOUNDSHEET record
  stream.record(Record::BoundSheet, Bytes()
                                        .u32(0) // where the worksheet begins, set below
                                        .u8(0)  // visible
                                        .u8(0)  // a worksheet
                                        .unicode(kSheetName, 1));
  strings.write(stream);
  stream.record(Record::Eof, QByteArray());

  stream.patchU32(sheetOffsetAt, std::uint32_t(stream.position()));
  bof(stream, kWorksheetSubstream);
  columnInfos(stream, sheet);
  dimensions(stream, sheet);
  rowBlocks(stream, sheet, cells);
  window2(stream);
  stream.record(Record::Eof, QByteArray());
  return stream.take();
}

} // namespace kordel::engine::xls
