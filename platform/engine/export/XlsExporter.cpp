#include "engine/export/XlsExporter.h"

#include "engine/export/xls/CompoundFile.h"
#include "engine/export/xls/ReportTable.h"
#include "engine/export/xls/SheetLayout.h"
#include "engine/export/xls/Workbook.h"
#include "engine/export/xls/XlsxWorkbook.h"
#include "engine/module/EngineModule.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

namespace kordel::engine {

namespace {

std::unique_ptr<xls::SheetContent> sheetOf(const PageDocument &document, SpreadsheetLayout layout,
                                           const QString &source) {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The report has no pages to export"));
  if (layout == SpreadsheetLayout::Table)
    if (auto table = xls::reportTable(document))
      return table;
  return xls::pageSheet(document);
}

} // namespace

SpreadsheetLayout spreadsheetLayoutNamed(const QString &name, const QString &source) {
  if (name.compare(QLatin1String("table"), Qt::CaseInsensitive) == 0)
    return SpreadsheetLayout::Table;
  if (name.compare(QLatin1String("pages"), Qt::CaseInsensitive) == 0)
    return SpreadsheetLayout::Pages;
  raiseError(ErrorNumber::InvalidCall, source,
             QStringLiteral("\"%1\" is no workbook layout: say \"table\" or \"pages\"").arg(name));
}

void XlsExporter::exportDocument(const PageDocument &document, const QString &path) const {
  const QString source = QStringLiteral("XlsExporter");
  const auto sheet = sheetOf(document, layout, source);
  checkExportTarget(path, source);
  writeExportFile(path, xls::compoundFileWithStream(QStringLiteral("Workbook"), xls::workbookStream(document, *sheet)),
                  source);
}

void XlsxExporter::exportDocument(const PageDocument &document, const QString &path) const {
  const QString source = QStringLiteral("XlsxExporter");
  const auto sheet = sheetOf(document, layout, source);
  ExportFile file(path, source);
  // The workbook writer lives in a module of its own with the libraries it
  // needs, loaded by the first workbook written.
  const auto write = reinterpret_cast<xls::XlsxEntry>(
      engineModuleEntry(xls::kXlsxModule, xls::kXlsxEntry, QStringLiteral("workbook writer"), source));
  write(document, *sheet, file.fileName(), source);
  file.commit();
}

} // namespace kordel::engine
