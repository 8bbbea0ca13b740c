#include "engine/export/ExportFile.h"

#include "engine/render/PageDocument.h"

#include "core/Error.h"
#include "core/ScriptRights.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace kordel::engine {

namespace {

constexpr QFileDevice::Permissions kNewFilePermissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                         QFileDevice::ReadUser | QFileDevice::WriteUser |
                                                         QFileDevice::ReadGroup | QFileDevice::ReadOther;

// Links are followed this deep; a deeper chain is left for the system to
// refuse.
constexpr int kMaxLinkDepth = 40;

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

QString systemReason() { return QString::fromLocal8Bit(std::strerror(errno)); }

// The file a path leads to, following symbolic links, also to a file that
// does not exist yet.
QString followLinks(const QString &path) {
  QFileInfo info(path);
  for (int depth = 0; depth < kMaxLinkDepth && info.isSymLink(); ++depth)
    info.setFile(info.symLinkTarget());
  return info.absoluteFilePath();
}

} // namespace

void checkExportTarget(const QString &path, const QString &source) {
  // Every exporter writes through here: no layout script writes files.
  requireFullRights(source);
  if (path.isEmpty())
    raiseError(ErrorNumber::PathNotFound, source, QStringLiteral("No file name was given for the export"));
  const QFileInfo info(followLinks(path));
  const QString folder = info.absolutePath();
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, source,
               QStringLiteral("Cannot write %1: the folder %2 does not exist").arg(path, folder));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write %1: it is a folder").arg(path));

  const QByteArray folderName = QFile::encodeName(folder);
  struct stat status {};
  if (::stat(folderName.constData(), &status) == 0 && (status.st_mode & kAnyWrite) == 0)
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write %1: the folder %2 is read-only").arg(path, folder));
  if (::access(folderName.constData(), W_OK | X_OK) != 0)
    raiseError(
        ErrorNumber::PermissionDenied, source,
        QStringLiteral("Cannot write %1: the folder %2 takes no new files (%3)").arg(path, folder, systemReason()));

  const QByteArray fileName = QFile::encodeName(info.absoluteFilePath());
  if (::stat(fileName.constData(), &status) != 0)
    return; // a new file
  if (!S_ISREG(status.st_mode))
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write %1: it is not a plain file").arg(path));
  if ((status.st_mode & kAnyWrite) == 0)
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write %1: the file is read-only").arg(path));
  if (::access(fileName.constData(), W_OK) != 0)
    raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write %1: %2").arg(path, systemReason()));
}

ExportFile::ExportFile(const QString &path, const QString &source)
    : target_(path), finalPath_(followLinks(path)), source_(source) {
  checkExportTarget(path, source);
  const QFileInfo final(finalPath_);
  setFileTemplate(final.absolutePath() + QStringLiteral("/.") + final.fileName() + QStringLiteral(".XXXXXX"));
  if (!open(QIODevice::ReadWrite | QIODevice::Unbuffered))
    fail(QStringLiteral("no file can be made beside it"));
}

qint64 ExportFile::writeData(const char *data, qint64 length) {
  qint64 done = 0;
  while (done < length) {
    // After a part, the next write fails with the system's error or goes on.
    const qint64 written = QTemporaryFile::writeData(data + done, length - done);
    if (written <= 0)
      return -1;
    done += written;
  }
  return done;
}

void ExportFile::writeAll(const QByteArray &bytes) {
  if (write(bytes) != bytes.size())
    fail(QStringLiteral("the data could not be written"));
}

void ExportFile::commit() {
  // A writer that ignored a failed write still must not leave a short file.
  if (error() != QFileDevice::NoError)
    fail({});
  const QFileInfo existing(finalPath_);
  if (!setPermissions(existing.exists() ? existing.permissions() : kNewFilePermissions))
    fail(QStringLiteral("its permissions could not be set"));
  if (::fsync(handle()) != 0)
    fail(systemReason());
  close();
  if (::rename(QFile::encodeName(fileName()).constData(), QFile::encodeName(finalPath_).constData()) != 0)
    fail(systemReason());
  setAutoRemove(false);
}

void ExportFile::fail(const QString &what) const {
  raiseExportWriteError(target_, error() != QFileDevice::NoError ? errorString() : what, source_);
}

void writeExportFile(const QString &path, const QByteArray &bytes, const QString &source) {
  ExportFile file(path, source);
  file.writeAll(bytes);
  file.commit();
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
