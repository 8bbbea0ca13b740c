#include "engine/format/LayoutFormat.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel::engine {

void saveLayoutFile(const LayoutReport &report, const QString &path) {
  const QString source = QStringLiteral("SaveLayout");
  const QByteArray bytes = saveLayout(report);
  const QFileInfo info(path);
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, source,
               QStringLiteral("Path not found: the folder %1 does not exist").arg(info.absolutePath()));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write %1: it is a folder").arg(path));
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write the layout file %1: %2").arg(path, file.errorString()));
}

} // namespace kordel::engine
