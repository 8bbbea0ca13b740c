#pragma once

#include <QString>
#include <QTemporaryDir>

namespace kordel::test {

// A fresh folder for one test, removed with the object.
class TempDir {
public:
  TempDir();
  QString path() const { return dir_.path(); }
  // A path inside the folder.
  QString file(const QString &name) const { return dir_.filePath(name); }

private:
  QTemporaryDir dir_;
};

// Reads a whole file as bytes; empty when it cannot be read.
QByteArray readFile(const QString &path);
// Writes bytes to a file, replacing it; false on failure.
bool writeFile(const QString &path, const QByteArray &bytes);

} // namespace kordel::test
