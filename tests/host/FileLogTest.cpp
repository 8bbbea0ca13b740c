#include "host/FileLog.h"

#include "core/Error.h"
#include "support/TempDir.h"

#include <QDateTime>

#include <gtest/gtest.h>

using kordel::Error;
using kordel::host::FileLog;
using kordel::test::TempDir;

namespace {

// The lines of a log file, each split into its fields with the escapes
// undone.
std::vector<QStringList> readEntries(const QString &path) {
  std::vector<QStringList> entries;
  const QString text = QString::fromUtf8(kordel::test::readFile(path));
  for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts)) {
    QStringList fields;
    for (const QString &raw : line.split(u'\t')) {
      QString field;
      for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] != u'\\' || i + 1 == raw.size()) {
          field += raw[i];
          continue;
        }
        const QChar next = raw[++i];
        field += next == u'n' ? QChar(u'\n') : next == u'r' ? QChar(u'\r') : next == u't' ? QChar(u'\t') : next;
      }
      fields << field;
    }
    entries.push_back(fields);
  }
  return entries;
}

} // namespace

TEST(FileLog, EachEntryIsOneLineWithItsFieldsInOrder) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("logs/nested/orvex.log"));
  FileLog log(path);
  log.writeLogEntry(2, QStringLiteral("Standard Report"), QStringLiteral("CustomReport.RunReport"),
                    QStringLiteral("91"), QStringLiteral("Object variable not set\r\nsecond line\tand a tab \\n"));
  log.writeLogEntry(0, QStringLiteral("Standard Report"), QStringLiteral("Report.Save"), QString(),
                    QString::fromUtf8("Rapporten är sparad.\n"));
  log.writeLogEntry(1, QStringLiteral("Mod"), QStringLiteral("Src"), QStringLiteral("7"), QStringLiteral("w"));
  log.logEvent(QStringLiteral("Addin.OnConnection: Cannot create object (429)"));

  const auto entries = readEntries(path);
  ASSERT_EQ(entries.size(), 4u);
  for (const QStringList &fields : entries) {
    ASSERT_EQ(fields.size(), 6);
    EXPECT_TRUE(QDateTime::fromString(fields[0], Qt::ISODateWithMs).isValid()) << fields[0].toStdString();
  }
  EXPECT_EQ(entries[0].mid(1), (QStringList{QStringLiteral("Error"), QStringLiteral("Standard Report"),
                                            QStringLiteral("CustomReport.RunReport"), QStringLiteral("91"),
                                            QStringLiteral("Object variable not set\r\nsecond line\tand a tab \\n")}));
  EXPECT_EQ(entries[1][1], QStringLiteral("Info"));
  EXPECT_EQ(entries[1][5], QString::fromUtf8("Rapporten är sparad.\n"));
  EXPECT_EQ(entries[2][1], QStringLiteral("Warning"));
  EXPECT_EQ(entries[3].mid(1), (QStringList{QStringLiteral("Event"), QString(), QString(), QString(),
                                            QStringLiteral("Addin.OnConnection: Cannot create object (429)")}));
}

TEST(FileLog, AppendsToWhatIsThereAndIsReachableLateBound) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("orvex.log"));
  ASSERT_TRUE(kordel::test::writeFile(path, "earlier line\n"));
  auto log = std::make_shared<FileLog>(path);
  log->invoke(QStringLiteral("WriteLogEntry"),
              {0, QStringLiteral("Standard Report"), QStringLiteral("Src"), QString(), QStringLiteral("text")});
  log->invoke(QStringLiteral("LogEvent"), {QStringLiteral("plain")});

  const QStringList lines = QString::fromUtf8(kordel::test::readFile(path)).split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[0], QStringLiteral("earlier line"));
  EXPECT_TRUE(lines[1].endsWith(QStringLiteral("\tInfo\tStandard Report\tSrc\t\ttext")));
  EXPECT_TRUE(lines[2].endsWith(QStringLiteral("\tEvent\t\t\t\tplain")));
}

TEST(FileLog, ALogThatCannotBeWrittenRaises) {
  TempDir dir;
  FileLog log(dir.path()); // a folder, not a file
  try {
    log.writeLogEntry(2, QStringLiteral("M"), QStringLiteral("S"), QStringLiteral("1"), QStringLiteral("t"));
    FAIL() << "no error";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), 70);
    EXPECT_TRUE(error.description().contains(dir.path()));
  }
}
