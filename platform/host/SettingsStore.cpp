#include "host/SettingsStore.h"

#include "core/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <sys/stat.h>
#include <ctime>

#include <algorithm>

namespace kordel::host {

namespace {

// How long a write waits for another process that holds the lock.
constexpr int kLockWaitMs = 10000;
// File times advance in coarse ticks: a file modified less than this long
// ago may change again without a new modification time.
constexpr qint64 kTimeGranularityNs = 2'000'000'000;

qint64 nanoseconds(const timespec &time) { return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec; }

} // namespace

SettingsStore::SettingsStore(QString filePath) : path_(std::move(filePath)) {}

SettingsStore::FileStamp SettingsStore::stampOnDisk() const {
  struct stat info {};
  if (::stat(QFile::encodeName(path_).constData(), &info) != 0)
    return {};
  return FileStamp{true, quint64(info.st_ino), qint64(info.st_size), nanoseconds(info.st_mtim),
                   nanoseconds(info.st_ctim)};
}

void SettingsStore::reloadIfChanged() {
  const FileStamp stamp = stampOnDisk();
  if (loaded_ && *loaded_ == stamp && !recent_)
    return;
  data_ = stamp.exists ? IniFile::load(path_) : IniFile();
  loaded_ = stamp;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  recent_ = stamp.exists && nanoseconds(now) - std::max(stamp.modifiedNs, stamp.changedNs) < kTimeGranularityNs;
}

std::optional<QString> SettingsStore::read(const QString &key, const QString &name) {
  reloadIfChanged();
  return data_.value(key, name);
}

void SettingsStore::write(const QString &key, const QString &name, const QString &value) {
  const QString folder = QFileInfo(path_).absolutePath();
  if (!QDir().mkpath(folder))
    raiseError(ErrorNumber::PathNotFound, QStringLiteral("Registry"),
               QStringLiteral("Cannot create the folder %1").arg(folder));
  QLockFile lock(path_ + QStringLiteral(".lock"));
  if (!lock.tryLock(kLockWaitMs))
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("Registry"),
               QStringLiteral("Cannot lock %1: %2")
                   .arg(path_, lock.error() == QLockFile::LockFailedError
                                   ? QStringLiteral("another process holds it")
                                   : QStringLiteral("the folder is not writable")));
  reloadIfChanged();
  IniFile updated = data_;
  updated.setValue(key, name, value);
  updated.save(path_);
  data_ = std::move(updated);
  loaded_ = stampOnDisk();
  recent_ = true;
}

} // namespace kordel::host
