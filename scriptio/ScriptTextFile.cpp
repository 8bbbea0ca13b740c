#include "scriptio/ScriptTextFile.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>

namespace kordel::addin {

namespace {

const QString kSource = QStringLiteral("ScriptTextFile");
// The run-time number of a read beyond the last line.
constexpr int kInputPastEnd = 62;

[[noreturn]] void raiseOpenFailure(const QFile &file) {
  const QFileInfo info(file.fileName());
  if (!info.dir().exists())
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("The folder of %1 does not exist").arg(file.fileName()));
  raiseError(ErrorNumber::PermissionDenied, kSource,
             QStringLiteral("%1 cannot be opened: %2").arg(file.fileName(), file.errorString()));
}

} // namespace

ScriptTextFile::ScriptTextFile(const QString &path, Mode mode) : file_(path) {
  if (mode == Mode::Read && !QFileInfo::exists(path))
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("%1 does not exist").arg(path));
  if (!file_.open(mode == Mode::Read ? QIODevice::ReadOnly : QIODevice::WriteOnly | QIODevice::Truncate))
    raiseOpenFailure(file_);
}

void ScriptTextFile::WriteLine(const QString &text) {
  QByteArray bytes = text.toLatin1();
  bytes.append("\r\n");
  if (file_.write(bytes) != bytes.size())
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("%1 cannot be written: %2").arg(file_.fileName(), file_.errorString()));
}

QString ScriptTextFile::ReadLine() {
  if (file_.atEnd())
    raiseError(kInputPastEnd, kSource, QStringLiteral("Input past end of %1").arg(file_.fileName()));
  QByteArray bytes = file_.readLine();
  if (bytes.endsWith('\n'))
    bytes.chop(1);
  if (bytes.endsWith('\r'))
    bytes.chop(1);
  ++line_;
  return QString::fromLatin1(bytes);
}

bool ScriptTextFile::AtEndOfStream() const { return file_.atEnd(); }

} // namespace kordel::addin
