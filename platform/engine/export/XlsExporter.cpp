#include "engine/export/XlsExporter.h"

#include "engine/export/xls/CompoundFile.h"
#include "engine/export/xls/SheetLayout.h"
#include "engine/export/xls/Workbook.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("XlsExporter");

void checkTarget(const QString &path) {
  if (path.isEmpty())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No file name was given for the workbook"));
  const QFileInfo info(path);
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("Cannot write %1: the folder %2 does not exist").arg(path, info.absolutePath()));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write %1: it is a folder").arg(path));
}

[[noreturn]] void raiseWriteError(const QString &path, const QString &reason) {
  raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write the file %1: %2").arg(path, reason));
}

} // namespace

void XlsExporter::exportDocument(const PageDocument &document, const QString &path) const {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  checkTarget(path);

  const QByteArray workbook = xls::compoundFileWithStream(QStringLiteral("Workbook"),
                                                          xls::workbookStream(document, xls::layoutSheet(document)));

  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly))
    raiseWriteError(path, file.errorString());
  if (file.write(workbook) != workbook.size())
    raiseWriteError(path, file.errorString());
  if (!file.commit())
    raiseWriteError(path, file.errorString());
}

} // namespace kordel::engine
