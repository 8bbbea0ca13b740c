#include "engine/export/xls/Workbook.h"

#include "engine/export/xls/BiffStream.h"
#include "engine/export/xls/CellFormats.h"
#include "engine/export/xls/SharedStrings.h"

#include "core/Error.h"

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
constexpr int kRowsPerBlock = 32;

// WINDOW2: grid lines, headings, zeros, outline symbols, the default grid
// colour, the sheet selected and shown.
constexpr std::uint16_t kSheetWindowFlags = 0x06B6;
constexpr std::uint16_t kDefaultGridColor = 0x40;

const QString kSheetName = QStringLiteral("Report");
const QString kSource = QStringLiteral("XlsExporter");

// The most rows and columns a worksheet of this format holds.
constexpr int kMaxSheetRows = 65536;
constexpr int kMaxSheetColumns = 256;

// ROW flags beside the outline level: the row's height is its own, not the
// font's; bit 8 is always set.
constexpr std::uint16_t kRowOwnHeight = 0x0140;
// WINDOW2 flags for panes frozen without a split line.
constexpr std::uint16_t kFrozenPanes = 0x0108;
// WSBOOL: page breaks shown, outline symbols shown, and a group's summary
// row (the parent's row) above its rows rather than below.
constexpr std::uint16_t kSheetOptions = 0x0481;
// The pane below a horizontal split.
constexpr std::uint8_t kBottomPane = 2;

struct Cell {
  std::uint16_t column;
  std::uint16_t format;
  SheetCell::Kind kind;
  double number;
  std::uint32_t string; // index into the shared strings for text
};

struct Row {
  int index;
  Twips height;
  int outlineLevel;
  std::vector<Cell> cells;
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

void columnInfos(BiffStream &stream, const std::vector<Twips> &widths) {
  for (std::size_t column = 0; column < widths.size(); ++column)
    stream.record(Record::ColInfo, Bytes()
                                       .u16(std::uint16_t(column))
                                       .u16(std::uint16_t(column))
                                       .u16(columnWidth(widths[column]))
                                       .u16(CellFormats::kDefaultCellFormat)
                                       .u16(0) // shown, no outline
                                       .u16(0));
}

void dimensions(BiffStream &stream, int rows, int columns) {
  stream.record(Record::Dimensions, Bytes()
                                        .u32(0)
                                        .u32(std::uint32_t(rows)) // one past the last row
                                        .u16(0)
                                        .u16(std::uint16_t(columns))
                                        .u16(0));
}

// GUTS and WSBOOL: room for the outline symbols of the deepest level.
void outline(BiffStream &stream, int deepestLevel) {
  stream.record(Record::Guts, Bytes()
                                  .u16(std::uint16_t(deepestLevel > 0 ? 12 + 14 * deepestLevel : 0))
                                  .u16(0)
                                  .u16(std::uint16_t(deepestLevel > 0 ? deepestLevel + 1 : 0))
                                  .u16(0));
  stream.record(Record::WsBool, Bytes().u16(kSheetOptions));
}

void rowRecord(BiffStream &stream, const Row &row) {
  stream.record(Record::Row, Bytes()
                                 .u16(std::uint16_t(row.index))
                                 .u16(row.cells.front().column)
                                 .u16(std::uint16_t(row.cells.back().column + 1))
                                 .u16(std::uint16_t(std::clamp<Twips>(row.height, 1, kMaxRowHeight)))
                                 .u16(0)
                                 .u16(0)
                                 .u16(std::uint16_t(kRowOwnHeight | row.outlineLevel))
                                 .u16(CellFormats::kDefaultCellFormat));
}

void cellRecord(BiffStream &stream, int row, const Cell &cell) {
  Bytes bytes;
  bytes.u16(std::uint16_t(row)).u16(cell.column).u16(cell.format);
  switch (cell.kind) {
  case SheetCell::Kind::Number: stream.record(Record::Number, bytes.f64(cell.number)); break;
  case SheetCell::Kind::Boolean:
    stream.record(Record::BoolErr, bytes.u8(cell.number != 0 ? 1 : 0).u8(0)); // a truth value, not an error
    break;
  case SheetCell::Kind::Text: stream.record(Record::LabelSst, bytes.u32(cell.string)); break;
  }
}

// Rows go in blocks of 32: the ROW records of the block, then its cells.
void rowBlock(BiffStream &stream, const std::vector<Row> &rows) {
  for (const Row &row : rows)
    rowRecord(stream, row);
  for (const Row &row : rows)
    for (const Cell &cell : row.cells)
      cellRecord(stream, row.index, cell);
}

void window2(BiffStream &stream, int frozenRows) {
  stream.record(Record::Window2, Bytes()
                                     .u16(std::uint16_t(kSheetWindowFlags | (frozenRows > 0 ? kFrozenPanes : 0)))
                                     .u16(0) // the first row shown
                                     .u16(0) // the first column shown
                                     .u16(kDefaultGridColor)
                                     .u16(0)
                                     .u16(0) // zoom of the page break preview: default
                                     .u16(0) // zoom of the normal view: default
                                     .u32(0));
  if (frozenRows > 0)
    stream.record(Record::Pane, Bytes()
                                    .u16(0) // no columns frozen
                                    .u16(std::uint16_t(frozenRows))
                                    .u16(std::uint16_t(frozenRows)) // the first row of the pane below
                                    .u16(0)
                                    .u8(kBottomPane)
                                    .u8(0));
}

void checkSize(const SheetContent &sheet) {
  if (sheet.columnWidths().size() > std::size_t(kMaxSheetColumns))
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report needs %1 columns, but a worksheet of this format has only %2 columns; "
                              "export to .xlsx instead")
                   .arg(sheet.columnWidths().size())
                   .arg(kMaxSheetColumns));
  if (sheet.rowCount() > kMaxSheetRows)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report needs %1 rows, but a worksheet of this format ends at row %2; export to "
                              ".xlsx instead, which holds more")
                   .arg(sheet.rowCount())
                   .arg(kMaxSheetRows));
}

// The worksheet substream, gathering the fonts, formats and strings its
// cells use.
QByteArray worksheet(const SheetContent &sheet, CellFormats &formats, SharedStrings &strings) {
  BiffStream stream;
  bof(stream, kWorksheetSubstream);
  outline(stream, sheet.deepestOutlineLevel());
  columnInfos(stream, sheet.columnWidths());
  dimensions(stream, sheet.rowCount(), int(sheet.columnWidths().size()));

  std::vector<Row> block;
  int index = 0;
  sheet.forEachRow([&](const SheetRow &sheetRow) {
    Row row{index++, sheetRow.height, sheetRow.outlineLevel, {}};
    for (const SheetCell &sheetCell : sheetRow.cells) {
      Cell cell{std::uint16_t(sheetCell.column), formats.cellFormat(sheetCell), sheetCell.kind, sheetCell.number, 0};
      if (cell.kind == SheetCell::Kind::Text)
        cell.string = strings.add(sheetCell.text);
      row.cells.push_back(cell);
    }
    const bool blockEnds = row.index % kRowsPerBlock == kRowsPerBlock - 1;
    if (!row.cells.empty())
      block.push_back(std::move(row));
    if (blockEnds) {
      rowBlock(stream, block);
      block.clear();
    }
  });
  rowBlock(stream, block);
  window2(stream, sheet.frozenRows());
  stream.record(Record::Eof, QByteArray());
  return stream.take();
}

} // namespace

QByteArray workbookStream(const PageDocument &document, const SheetContent &sheet) {
  checkSize(sheet);
  CellFormats formats(document);
  SharedStrings strings;
  const QByteArray sheetStream = worksheet(sheet, formats, strings);

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
  QByteArray workbook = stream.take();
  workbook += sheetStream;
  return workbook;
}

} // namespace kordel::engine::xls
