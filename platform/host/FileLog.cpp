#include "host/FileLog.h"

#include "core/Error.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kordel::host {

namespace {

QString escapeField(const QString &field) {
  QString out;
  out.reserve(field.size());
  for (const QChar c : field) {
    switch (c.unicode()) {
    case u'\\': out += QStringLiteral("\\\\"); break;
    case u'\t': out += QStringLiteral("\\t"); break;
    case u'\n': out += QStringLiteral("\\n"); break;
    case u'\r': out += QStringLiteral("\\r"); break;
    default: out += c;
    }
  }
  return out;
}

// Local time with its offset from UTC, to the millisecond.
QString timestamp() {
  const QDateTime now = QDateTime::currentDateTime();
  return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QString levelWord(int level) {
  switch (level) {
  case hostapi::LogLevel::UserMessage: return QStringLiteral("Info");
  case hostapi::LogLevel::Warning: return QStringLiteral("Warning");
  case hostapi::LogLevel::Error: return QStringLiteral("Error");
  default: return QStringLiteral("Level%1").arg(level);
  }
}

} // namespace

FileLog::FileLog(QString path) : path_(std::move(path)) {}

void FileLog::writeLogEntry(int level, const QString &module, const QString &source, const QString &code,
                            const QString &text) {
  append(levelWord(level), {module, source, code, text});
}

void FileLog::logEvent(const QString &line) { append(QStringLiteral("Event"), {{}, {}, {}, line}); }

void FileLog::append(const QString &level, const QStringList &fields) {
  QString line = timestamp() + u'\t' + level;
  for (const QString &field : fields)
    line += u'\t' + escapeField(field);
  line += u'\n';

  QDir().mkpath(QFileInfo(path_).absolutePath());
  QFile file(path_);
  // Unbuffered, so that the line reaches the file in one write and lines of
  // processes that share the log do not interleave.
  const QByteArray bytes = line.toUtf8();
  if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) || file.write(bytes) != bytes.size())
    raiseError(ErrorNumber::PermissionDenied, typeName(),
               QStringLiteral("Cannot write the log %1: %2").arg(path_, file.errorString()));
}

const MemberTable &FileLog::memberTable() const {
  static const MemberTable table{{
      fullRightsOnly(method<FileLog>("WriteLogEntry",
                                     [](FileLog &log, Args &a) {
                                       expectArgs(a, 5, 5);
                                       log.writeLogEntry(a[0].toLong(), a[1].toString(), a[2].toString(),
                                                         a[3].toString(), a[4].toString());
                                       return Variant();
                                     })),
      fullRightsOnly(method<FileLog>("LogEvent",
                                     [](FileLog &log, Args &a) {
                                       expectArgs(a, 1, 1);
                                       log.logEvent(a[0].toString());
                                       return Variant();
                                     })),
  }};
  return table;
}

} // namespace kordel::host
