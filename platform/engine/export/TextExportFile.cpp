#include "engine/export/TextExportFile.h"

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
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write the file %1: %2").arg(path, file.errorString()));
}

} // namespace kordel::engine
