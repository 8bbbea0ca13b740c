#include "engine/export/xls/XlsxWorkbook.h"

#include "core/Error.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <xlsxwriter.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <type_traits>

namespace kordel::engine::xls {

namespace {

constexpr int kMaxSheetRows = LXW_ROW_MAX;
constexpr int kMaxSheetColumns = LXW_COL_MAX;
constexpr int kMaxCellText = 32767;
// A column width counts characters of the default font (11-point, a
// digit about 140 twips wide with its padding).
constexpr double kTwipsPerCharacter = 140.0;
constexpr double kTwipsPerPoint = 20.0;
constexpr double kTallestRow = 409; // points

const QString kSheetName = QStringLiteral("Report");

struct WorkbookCloser {
  void operator()(lxw_workbook *workbook) const {
    if (workbook)
      workbook_close(workbook);
  }
};

// Formats made once per combination of font, number format, alignment and
// wrapping.
class Formats {
public:
  Formats(lxw_workbook *workbook, const PageDocument &document) : workbook_(workbook), document_(document) {}

  lxw_format *of(const SheetCell &cell) {
    const CellStyle key = CellStyle::of(cell);
    if (lxw_format *found = formats_.value(key))
      return found;
    lxw_format *format = workbook_add_format(workbook_);
    const PageFont &font = document_.font(cell.font);
    format_set_font_name(format, font.family.toUtf8().constData());
    format_set_font_size(format, font.pointSize);
    if (font.bold || cell.bold)
      format_set_bold(format);
    if (font.italic)
      format_set_italic(format);
    if (font.underline)
      format_set_underline(format, LXW_UNDERLINE_SINGLE);
    if (font.strikeout)
      format_set_font_strikeout(format);
    format_set_align(format, cell.align == TextAlign::Right    ? LXW_ALIGN_RIGHT
                             : cell.align == TextAlign::Center ? LXW_ALIGN_CENTER
                                                               : LXW_ALIGN_LEFT);
    format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
    if (cell.wrap)
      format_set_text_wrap(format);
    if (!cell.numberFormat.isEmpty())
      format_set_num_format(format, cell.numberFormat.toUtf8().constData());
    formats_.insert(key, format);
    return format;
  }

private:
  lxw_workbook *workbook_;
  const PageDocument &document_;
  QHash<CellStyle, lxw_format *> formats_;
};

class XlsxWriter {
public:
  XlsxWriter(const PageDocument &document, const SheetContent &sheet, const QString &file, const QString &source)
      : document_(document), sheet_(sheet), file_(file), source_(source) {}

  void write();

private:
  void check(lxw_error error) const {
    if (error == LXW_NO_ERROR)
      return;
    if (error == LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED)
      raiseError(
          ErrorNumber::InvalidCall, source_,
          QStringLiteral("A text of the report is longer than the %1 characters a cell holds").arg(kMaxCellText));
    raiseError(ErrorNumber::PermissionDenied, source_,
               QStringLiteral("Cannot write the file %1: %2").arg(file_, QString::fromUtf8(lxw_strerror(error))));
  }
  void newSheet();
  void writeRow(const SheetRow &row);

  const PageDocument &document_;
  const SheetContent &sheet_;
  QString file_;
  QString source_;
  std::unique_ptr<lxw_workbook, WorkbookCloser> workbook_;
  std::unique_ptr<Formats> formats_;
  lxw_worksheet *worksheet_ = nullptr;
  int sheets_ = 0;
  lxw_row_t next_ = 0;
  std::vector<SheetRow> heading_; // the frozen rows, repeated on further sheets
};

void XlsxWriter::newSheet() {
  ++sheets_;
  const QString name = sheets_ == 1 ? kSheetName : QStringLiteral("%1 (%2)").arg(kSheetName).arg(sheets_);
  worksheet_ = workbook_add_worksheet(workbook_.get(), name.toUtf8().constData());
  if (!worksheet_)
    check(LXW_ERROR_MEMORY_MALLOC_FAILED);
  const std::vector<Twips> &widths = sheet_.columnWidths();
  for (std::size_t column = 0; column < widths.size(); ++column)
    check(worksheet_set_column(worksheet_, lxw_col_t(column), lxw_col_t(column),
                               std::max(1.0, widths[column] / kTwipsPerCharacter), nullptr));
  // The parent's row stands above the rows of its sub reports.
  worksheet_outline_settings(worksheet_, LXW_TRUE, LXW_FALSE, LXW_TRUE, LXW_FALSE);
  next_ = 0;
  if (sheets_ > 1) {
    for (const SheetRow &row : heading_)
      writeRow(row);
  }
  if (sheet_.frozenRows() > 0)
    worksheet_freeze_panes(worksheet_, lxw_row_t(sheet_.frozenRows()), 0);
}

void XlsxWriter::writeRow(const SheetRow &row) {
  if (next_ >= lxw_row_t(kMaxSheetRows))
    newSheet();
  lxw_row_col_options options{};
  options.level = std::uint8_t(std::clamp(row.outlineLevel, 0, 7));
  check(
      worksheet_set_row_opt(worksheet_, next_, std::min(kTallestRow, row.height / kTwipsPerPoint), nullptr, &options));
  for (const SheetCell &cell : row.cells) {
    lxw_format *format = formats_->of(cell);
    switch (cell.kind) {
    case SheetCell::Kind::Number:
      check(worksheet_write_number(worksheet_, next_, lxw_col_t(cell.column), cell.number, format));
      break;
    case SheetCell::Kind::Boolean:
      check(worksheet_write_boolean(worksheet_, next_, lxw_col_t(cell.column), cell.number != 0, format));
      break;
    case SheetCell::Kind::Text:
      if (cell.text.size() > kMaxCellText)
        check(LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED);
      check(worksheet_write_string(worksheet_, next_, lxw_col_t(cell.column), cell.text.toUtf8().constData(), format));
      break;
    }
  }
  ++next_;
}

void XlsxWriter::write() {
  if (sheet_.columnWidths().size() > std::size_t(kMaxSheetColumns))
    raiseError(ErrorNumber::InvalidCall, source_,
               QStringLiteral("The report needs %1 columns, but a worksheet has only %2")
                   .arg(sheet_.columnWidths().size())
                   .arg(kMaxSheetColumns));
  // Rows go to temporary files beside the system's others while the
  // workbook is made, one row in memory at a time.
  QByteArray tmpdir = QFile::encodeName(QDir::tempPath());
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  options.tmpdir = tmpdir.data();
  options.use_zip64 = LXW_TRUE;
  const QByteArray path = QFile::encodeName(file_);
  workbook_.reset(workbook_new_opt(path.constData(), &options));
  if (!workbook_)
    check(LXW_ERROR_MEMORY_MALLOC_FAILED);
  formats_ = std::make_unique<Formats>(workbook_.get(), document_);

  QByteArray title = document_.title().toUtf8();
  QByteArray creator = QByteArrayLiteral("Kordel");
  lxw_doc_properties properties{};
  properties.title = title.data();
  properties.author = creator.data();
  check(workbook_set_properties(workbook_.get(), &properties));

  newSheet();
  const int frozen = sheet_.frozenRows();
  int index = 0;
  sheet_.forEachRow([&](const SheetRow &row) {
    if (index++ < frozen)
      heading_.push_back(row);
    writeRow(row);
  });
  const lxw_error closed = workbook_close(workbook_.release());
  check(closed);
}

} // namespace

void writeXlsxWorkbook(const PageDocument &document, const SheetContent &sheet, const QString &file,
                       const QString &source) {
  XlsxWriter(document, sheet, file, source).write();
}

} // namespace kordel::engine::xls

// The module's entry: writeXlsxWorkbook, found by this name.
extern "C" __attribute__((visibility("default"))) void
kordel_write_xlsx_workbook(const kordel::engine::PageDocument &document, const kordel::engine::xls::SheetContent &sheet,
                           const QString &file, const QString &source) {
  kordel::engine::xls::writeXlsxWorkbook(document, sheet, file, source);
}
static_assert(std::is_same_v<decltype(&kordel_write_xlsx_workbook), kordel::engine::xls::XlsxEntry>);
