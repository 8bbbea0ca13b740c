#pragma once

#include <QFile>
#include <QString>

namespace kordel::addin {

// A text file of the script interchange: single-byte text (Latin-1; a
// character it cannot hold is written as "?"), lines ended by carriage
// return and line feed. Reading ends a line at a line feed and drops one
// carriage return before it, so files with bare line feeds read as well.
// Failures raise: 53 for a missing file, 76 for a missing folder, 70 for a
// file that cannot be opened or written.
class ScriptTextFile {
public:
  enum class Mode {
    Create, // a new file, replacing one that is there
    Read,   // an existing file
  };

  ScriptTextFile(const QString &path, Mode mode);

  void WriteLine(const QString &text);
  QString ReadLine();
  bool AtEndOfStream() const;
  // The number of the line the last ReadLine gave, counted from 1.
  int Line() const { return line_; }
  QString FileName() const { return file_.fileName(); }

private:
  QFile file_;
  int line_ = 0;
};

} // namespace kordel::addin
