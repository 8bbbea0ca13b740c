#include "engine/export/XlsExporter.h"

#include "engine/export/xls/CompoundFile.h"
#include "engine/export/xls/SheetLayout.h"
#include "engine/export/xls/Workbook.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("XlsExporter");

} // namespace

void XlsExporter::exportDocument(const PageDocument &document, const QString &path) const {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  checkExportTarget(path, kSource);
  writeExportFile(path,
                  xls::compoundFileWithStream(QStringLiteral("Workbook"),
                                              xls::workbookStream(document, xls::layoutSheet(document))),
                  kSource);
}

} // namespace kordel::engine
