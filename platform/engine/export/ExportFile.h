#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryFile>

namespace kordel::engine {

class PageDocument;

// Checks that an export can write the file at path: the path names a file
// whose folder exists and takes new files, and a file already there is a
// plain file that is not read-only (no write permission for anyone, or none
// for this process). A symbolic link counts as the file it leads to.
// Raises 76 for an empty path or a folder that does not exist, and 70 for
// the others, with the system's reason where it gave one. The source names
// the exporter in the error.
void checkExportTarget(const QString &path, const QString &source);

// A new export file, written beside its target under a temporary name and
// renamed onto the target by commit(), so that a failure on the way leaves
// any earlier file as it was and no partial one. The file can be read and
// sought as it is written. A write goes to the system at once and whole: a
// write the system takes only in part is carried on until the system
// refuses, so that the error tells the system's reason (a full disk, a
// quota, a file size limit) and not a short count. The file is removed
// unless committed.
class ExportFile : public QTemporaryFile {
public:
  // Checks the target as checkExportTarget does and opens the temporary
  // file; raises 70 with the reason when it cannot be made.
  ExportFile(const QString &path, const QString &source);

  // The target's path as given.
  const QString &target() const { return target_; }

  // Writes all of bytes; raises 70 with the system's reason.
  void writeAll(const QByteArray &bytes);
  // Gives the file the permissions of the file it replaces (a new file is
  // readable by all and writable by its owner), makes it durable and renames
  // it onto the target. Raises 70 with the system's reason.
  void commit();
  // Raises 70 for the target: with the system's reason when the file has
  // refused a write, else with what went wrong. The file is dropped with
  // the object.
  [[noreturn]] void fail(const QString &what) const;

protected:
  qint64 writeData(const char *data, qint64 length) override;

private:
  QString target_;
  QString finalPath_; // the target with symbolic links followed
  QString source_;
};

// Writes a finished export file through an ExportFile.
void writeExportFile(const QString &path, const QByteArray &bytes, const QString &source);

// Raises 70 for a file that could not be written, with the reason.
[[noreturn]] void raiseExportWriteError(const QString &path, const QString &reason, const QString &source);

// Checks that first to last (from 0, both included) are pages of the
// document: 5 for a document without pages, 9 for another range.
void checkPageRange(const PageDocument &document, int firstPage, int lastPage, const QString &source);

} // namespace kordel::engine
