#include "cli/ExportTarget.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"
#include "hostapi/Layout.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

QString knownExtensions() {
  QStringList extensions;
  for (const hostapi::ExportType &type : hostapi::kExportTypes)
    extensions << QString::fromLatin1(type.extension);
  return extensions.join(QStringLiteral(", "));
}

} // namespace

ExportTarget ExportTarget::check(const QString &path) {
  const QFileInfo file(path);
  ExportTarget target;
  target.path_ = file.absoluteFilePath();
  const QString extension = file.suffix().toLower();
  for (const hostapi::ExportType &type : hostapi::kExportTypes)
    if (extension == QLatin1String(type.extension))
      target.progId_ = type.progId;
  if (!target.progId_)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("Cannot export to %1: the file's extension names no export type (%2)")
                   .arg(target.path_, knownExtensions()));
  if (file.isDir())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("%1 is a folder, not a file").arg(target.path_));
  if (!file.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("Cannot export to %1: there is no folder %2")
                   .arg(target.path_, QDir::toNativeSeparators(file.absolutePath())));
  // A folder or a file that cannot be written is refused before the run.
  engine::checkExportTarget(target.path_, kSource);
  target.before_ = stampOf(target.path_);
  return target;
}

bool ExportTarget::written() const {
  const Stamp now = stampOf(path_);
  return now.exists && !(now == before_);
}

ExportTarget::Stamp ExportTarget::stampOf(const QString &path) {
  struct stat status {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0)
    return {};
  return {true, status.st_ino, qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec};
}

} // namespace kordel::host::cli
