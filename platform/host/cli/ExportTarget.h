#pragma once

#include <QString>

#include <sys/types.h>

namespace kordel::host::cli {

// The file an export is to write, checked before the run so that a run that
// could not write it is refused at once, and marked as it was then so that
// afterwards the command can tell whether the run wrote it.
class ExportTarget {
public:
  // The path made absolute. Raises 5 for an extension that no exporter
  // writes, naming those that one does, and for a folder given as the
  // file; 76 for a folder that does not exist; 70 for a folder that takes
  // no new files and a file that is read-only (engine::checkExportTarget).
  static ExportTarget check(const QString &path);

  const QString &path() const { return path_; }
  // The ProgID of the engine's exporter for the file's type.
  const char *exporterProgId() const { return progId_; }
  // Whether the file is there now and is not the file that was there when
  // it was checked: exporters replace a file by renaming a new one onto it.
  bool written() const;

private:
  struct Stamp {
    bool exists = false;
    ino_t inode = 0;
    qint64 modified = 0; // nanoseconds
    bool operator==(const Stamp &) const = default;
  };
  static Stamp stampOf(const QString &path);

  QString path_;
  const char *progId_ = nullptr;
  Stamp before_;
};

} // namespace kordel::host::cli
