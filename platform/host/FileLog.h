#pragma once

#include "hostapi/ApplicationLog.h"

namespace kordel::host {

// The application log as a text file, one entry a line, fields separated by
// tabs: ISO timestamp, level word (Info, Warning, Error), module, source,
// code, text. Backslashes, tabs and line breaks inside a field are written
// as \\, \t, \n and \r, so an entry never spans two lines. The folder is
// made when missing. Late-bound: WriteLogEntry, LogEvent.
class FileLog : public hostapi::ApplicationLog {
public:
  explicit FileLog(QString path);

  QString typeName() const override { return QStringLiteral("ApplicationLog"); }
  const QString &path() const { return path_; }

  // Raises 70 when the log file cannot be written.
  void writeLogEntry(int level, const QString &module, const QString &source, const QString &code,
                     const QString &text) override;
  // One plain line of the process-wide log, with level word "Event" and
  // empty module, source and code.
  void logEvent(const QString &line);

protected:
  const MemberTable &memberTable() const override;

private:
  void append(const QString &level, const QStringList &fields);

  QString path_;
};

} // namespace kordel::host
