#include "engine/export/ExportFile.h"

#include "engine/render/PageDocument.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel::engine {

void checkExportTarget(const QString &path, const QString &source) {
  if (path.isEmpty())
    raiseError(ErrorNumber::PathNotFound, source, QStringLiteral("No file name was given for the export"));
  const QFileInfo info(path);
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, source,
               QStringLiteral("Cannot write %1: the folder %2 does not exist").arg(path, info.absolutePath()));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write %1: it is a folder").arg(path));
}

void writeExportFile(const QString &path, const QByteArray &bytes, const QString &source) {
  checkExportTarget(path, source);
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
    raiseExportWriteError(path, file.errorString(), source);
}

void raiseExportWriteError(const QString &path, const QString &reason, const QString &source) {
  raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write the file %1: %2").arg(path, reason));
}

void checkPageRange(const PageDocument &document, int firstPage, int lastPage, const QString &source) {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The report has no pages"));
  if (firstPage < 0 || lastPage >= document.pageCount() || firstPage > lastPage)
    raiseError(ErrorNumber::SubscriptOutOfRange, source,
               QStringLiteral("Pages %1 to %2 are not a range of the report's %3 pages (counted from 0)")
                   .arg(firstPage)
                   .arg(lastPage)
                   .arg(document.pageCount()));
}

} // namespace kordel::engine
