#pragma once

#include "host/IniFile.h"

#include <QString>

#include <optional>

namespace kordel::host {

// The per-user registry of the host, kept in one INI file: each key path
// ("HKEY_CURRENT_USER\Software\...") is a section, each value a line.
//
// Reads come from memory, which is read again when the file has changed on
// disk. Each write is saved at once: under a lock file the store reads the
// file again, applies the one change and saves atomically, so processes that
// share the file do not lose each other's writes.
class SettingsStore {
public:
  explicit SettingsStore(QString filePath);

  const QString &filePath() const { return path_; }

  // The value under a key, nothing when it is absent. Raises when the file
  // exists but cannot be read.
  std::optional<QString> read(const QString &key, const QString &name);
  // Raises 70 when the file cannot be locked or written; the file is then
  // left as it was.
  void write(const QString &key, const QString &name, const QString &value);

private:
  // What tells one version of the file from another.
  struct FileStamp {
    bool exists = false;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    qint64 changedNs = 0;
    friend bool operator==(const FileStamp &, const FileStamp &) = default;
  };

  FileStamp stampOnDisk() const;
  void reloadIfChanged();

  QString path_;
  IniFile data_;
  std::optional<FileStamp> loaded_;
  // Set while the loaded file is so new that a change within the same
  // clock tick would leave its stamp unchanged; reads then load it again.
  bool recent_ = false;
};

} // namespace kordel::host
