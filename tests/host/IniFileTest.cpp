#include "support/ErrorCapture.h"
#include "Unprivileged.h"

#include "host/IniFile.h"

#include "core/Error.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

using kordel::Error;
using kordel::host::IniFile;
using kordel::test::errorNumber;
using kordel::test::TempDir;

namespace {

const QStringList kHostileValues{
    QString(),
    QStringLiteral("  leading and trailing blanks  "),
    QStringLiteral("commas, semicolons; and 100% %1 %0"),
    QStringLiteral("C:\\temp\\new\\table.xml"),
    QStringLiteral("\\"),
    QStringLiteral("\""),
    QStringLiteral("say \"hi\" and \\\"escape\\\""),
    QStringLiteral("line one\r\nline two\nline three\rend"),
    QStringLiteral("\n"),
    QStringLiteral("\ttab\t"),
    QStringLiteral("="),
    QStringLiteral("[not a section]"),
    QStringLiteral("; not a comment"),
    QStringLiteral("\\n is not a line break"),
    QStringLiteral("\"quoted on its own\""),
    QString::fromUtf8("åäö ÅÄÖ ß 日本語 🎉"),
    QStringLiteral("/home/ann/Documents") + QString(4, QChar(0)) + QStringLiteral("\\0"),
};

const QStringList kHostileNames{
    QStringLiteral("Plain"),       QStringLiteral("with]bracket=and equals"),
    QStringLiteral(" spaced "),    QString(),
    QStringLiteral("\"quoted\""),  QStringLiteral(";semicolon"),
    QStringLiteral("[bracket"),    QStringLiteral("line\nbreak"),
    QStringLiteral("back\\slash"),
};

QString errorText(const std::function<void()> &action) {
  try {
    action();
  } catch (const Error &error) {
    return error.description();
  }
  return {};
}

} // namespace

TEST(IniFile, HostileValuesNamesAndSectionsComeBackExactly) {
  TempDir dir;
  const QStringList sections{QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt"),
                             QStringLiteral("sec]tion"),
                             QStringLiteral(" blank "),
                             QStringLiteral("a=b"),
                             QStringLiteral("two\nlines"),
                             QStringLiteral("\"")};
  IniFile written;
  for (const QString &section : sections) {
    for (int i = 0; i < kHostileValues.size(); ++i)
      written.setValue(section, QStringLiteral("Value%1").arg(i), kHostileValues[i]);
    for (const QString &name : kHostileNames)
      written.setValue(section, name, section + u'|' + name);
  }
  const QString path = dir.file(QStringLiteral("hostile.ini"));
  written.save(path);

  const QByteArray bytes = kordel::test::readFile(path);
  EXPECT_FALSE(bytes.contains('\r')) << "a carriage return in a value must be escaped";

  const IniFile read = IniFile::load(path);
  ASSERT_EQ(read.sections(), sections);
  for (const QString &section : sections) {
    for (int i = 0; i < kHostileValues.size(); ++i) {
      const auto value = read.value(section, QStringLiteral("Value%1").arg(i));
      ASSERT_TRUE(value.has_value()) << i;
      EXPECT_EQ(*value, kHostileValues[i]) << i;
    }
    for (const QString &name : kHostileNames)
      EXPECT_EQ(read.value(section, name), section + u'|' + name) << name.toStdString();
    EXPECT_EQ(read.names(section).mid(kHostileValues.size()), kHostileNames);
  }
  EXPECT_EQ(read.serialize(), bytes) << "saving what was read gives the same text";
}

TEST(IniFile, EmptyValueIsNotAnAbsentValue) {
  IniFile ini;
  ini.setValue(QStringLiteral("S"), QStringLiteral("Empty"), QString());
  const IniFile read = IniFile::parse(ini.serialize(), QStringLiteral("test"));
  ASSERT_TRUE(read.value(QStringLiteral("S"), QStringLiteral("Empty")).has_value());
  EXPECT_EQ(*read.value(QStringLiteral("S"), QStringLiteral("Empty")), QString());
  EXPECT_FALSE(read.value(QStringLiteral("S"), QStringLiteral("Missing")).has_value());
  EXPECT_FALSE(read.value(QStringLiteral("Other"), QStringLiteral("Empty")).has_value());
  EXPECT_FALSE(read.hasSection(QStringLiteral("Other")));
}

TEST(IniFile, ReadsHandWrittenFiles) {
  // A file as an editor leaves it: byte order mark, CRLF line ends, blank
  // lines, comments and values without quotes.
  const QByteArray text = "\xEF\xBB\xBF; Swedish texts\r\n"
                          "\r\n"
                          "[kordel]\r\n"
                          "  Addin.Name =  Standardrapporter  \r\n"
                          "Globals.ErrorMessage=Fel: %1 (%2)%0i %3\r\n"
                          "Path = C:\\temp\\new\r\n"
                          "Quoted = \"  kept  \"\r\n"
                          "Mixed = \"Hej\" sa han\r\n"
                          "Equation = a=b\r\n"
                          "Nothing =\r\n"
                          "; a comment in the middle\r\n"
                          "Text.Swedish = Förhandsgranska\r\n";
  const IniFile ini = IniFile::parse(text, QStringLiteral("kordel.sv.ini"));
  const QString s = QStringLiteral("kordel");
  EXPECT_EQ(ini.value(s, QStringLiteral("Addin.Name")), QStringLiteral("Standardrapporter"));
  EXPECT_EQ(ini.value(s, QStringLiteral("Globals.ErrorMessage")), QStringLiteral("Fel: %1 (%2)%0i %3"));
  EXPECT_EQ(ini.value(s, QStringLiteral("Path")), QStringLiteral("C:\\temp\\new"));
  EXPECT_EQ(ini.value(s, QStringLiteral("Quoted")), QStringLiteral("  kept  "));
  EXPECT_EQ(ini.value(s, QStringLiteral("Mixed")), QStringLiteral("\"Hej\" sa han"));
  EXPECT_EQ(ini.value(s, QStringLiteral("Equation")), QStringLiteral("a=b"));
  EXPECT_EQ(ini.value(s, QStringLiteral("Nothing")), QString());
  EXPECT_EQ(ini.value(s, QStringLiteral("Text.Swedish")), QString::fromUtf8("Förhandsgranska"));
  EXPECT_EQ(ini.sections(), QStringList{s});
}

TEST(IniFile, CommentsSurviveARewrite) {
  const QByteArray text = "; about the file\n[A]\n; about x\nx=1\n; at the end\n";
  IniFile ini = IniFile::parse(text, QStringLiteral("test"));
  ini.setValue(QStringLiteral("A"), QStringLiteral("y"), QStringLiteral("2"));
  const QString out = QString::fromUtf8(ini.serialize());
  EXPECT_EQ(out, QStringLiteral("; about the file\n[A]\n; about x\nx=\"1\"\ny=\"2\"\n; at the end\n"));
}

TEST(IniFile, LookupIgnoresCaseAndKeepsFirstCaseAndOrder) {
  IniFile ini;
  ini.setValue(QStringLiteral("Zeta"), QStringLiteral("one"), QStringLiteral("1"));
  ini.setValue(QString::fromUtf8("Åland"), QStringLiteral("Name"), QStringLiteral("a"));
  ini.setValue(QStringLiteral("Alpha"), QStringLiteral("z"), QStringLiteral("z"));
  ini.setValue(QStringLiteral("Alpha"), QStringLiteral("a"), QStringLiteral("a"));
  ini.setValue(QString::fromUtf8("åLAND"), QStringLiteral("NAME"), QStringLiteral("b"));
  ini.setValue(QStringLiteral("ZETA"), QStringLiteral("ONE"), QStringLiteral("2"));

  const IniFile read = IniFile::parse(ini.serialize(), QStringLiteral("test"));
  EXPECT_EQ(read.sections(),
            (QStringList{QStringLiteral("Zeta"), QString::fromUtf8("Åland"), QStringLiteral("Alpha")}));
  EXPECT_EQ(read.names(QStringLiteral("alpha")), (QStringList{QStringLiteral("z"), QStringLiteral("a")}));
  EXPECT_EQ(read.names(QString::fromUtf8("ÅLAND")), QStringList{QStringLiteral("Name")});
  EXPECT_EQ(read.value(QStringLiteral("zeta"), QStringLiteral("One")), QStringLiteral("2"));
  EXPECT_EQ(read.value(QString::fromUtf8("åland"), QStringLiteral("name")), QStringLiteral("b"));
}

TEST(IniFile, RepeatedSectionsAndNamesInAHandWrittenFileMerge) {
  const IniFile ini = IniFile::parse("[A]\nx=1\n[B]\ny=2\n[a]\nX=3\nz=4\n", QStringLiteral("test"));
  EXPECT_EQ(ini.sections(), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
  EXPECT_EQ(ini.names(QStringLiteral("A")), (QStringList{QStringLiteral("x"), QStringLiteral("z")}));
  EXPECT_EQ(ini.value(QStringLiteral("A"), QStringLiteral("x")), QStringLiteral("3"));
}

TEST(IniFile, BadTextGivesAnErrorNamingFileAndLine) {
  const auto parse = [](const QByteArray &text) { return [text] { IniFile::parse(text, QStringLiteral("f.ini")); }; };
  EXPECT_EQ(errorNumber(parse("[A]\nx=1\njust words\n")), 321);
  EXPECT_TRUE(errorText(parse("[A]\nx=1\njust words\n")).contains(QStringLiteral("f.ini, line 3")));
  EXPECT_EQ(errorNumber(parse("x=1\n[A]\n")), 321);
  EXPECT_EQ(errorNumber(parse("[A\nx=1\n")), 321);
  EXPECT_EQ(errorNumber(parse("[A]\nx=\xff\xfe\n")), 321) << "text that is not UTF-8";
}

TEST(IniFile, FilesThatCannotBeReadGiveClearErrors) {
  TempDir dir;
  EXPECT_EQ(errorNumber([&] { IniFile::load(dir.file(QStringLiteral("missing.ini"))); }), 53);
  EXPECT_EQ(errorNumber([&] { IniFile::load(dir.path()); }), 70);

  const QString path = dir.file(QStringLiteral("secret.ini"));
  ASSERT_TRUE(kordel::test::writeFile(path, "[A]\nx=1\n"));
  ASSERT_EQ(chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
  ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0600), 0);
  kordel::test::Unprivileged user;
  if (!user.active())
    GTEST_SKIP() << "cannot drop root's rights to test an unreadable file";
  EXPECT_EQ(errorNumber([&] { IniFile::load(path); }), 70);
}

TEST(IniFile, SaveIntoAReadOnlyFolderLeavesTheOldFileIntact) {
  TempDir dir;
  const QString folder = dir.file(QStringLiteral("settings"));
  ASSERT_TRUE(QDir().mkpath(folder));
  const QString path = folder + QStringLiteral("/registry.ini");
  IniFile ini;
  ini.setValue(QStringLiteral("A"), QStringLiteral("x"), QStringLiteral("old"));
  ini.save(path);
  const QByteArray before = kordel::test::readFile(path);

  ASSERT_EQ(chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
  ASSERT_EQ(chmod(QFile::encodeName(folder).constData(), 0555), 0);
  int number = 0;
  {
    kordel::test::Unprivileged user;
    if (!user.active())
      GTEST_SKIP() << "cannot drop root's rights to make a folder read-only";
    IniFile changed = IniFile::load(path);
    changed.setValue(QStringLiteral("A"), QStringLiteral("x"), QStringLiteral("new value that is longer"));
    number = errorNumber([&] { changed.save(path); });
  }
  chmod(QFile::encodeName(folder).constData(), 0755);
  EXPECT_EQ(number, 70);
  EXPECT_EQ(kordel::test::readFile(path), before);
  EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("registry.ini")});
}

TEST(IniFile, SaveReplacesTheFileWithoutLeftovers) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("a.ini"));
  IniFile ini;
  ini.setValue(QStringLiteral("A"), QStringLiteral("x"), QStringLiteral("a long first value"));
  ini.save(path);
  ini.setValue(QStringLiteral("A"), QStringLiteral("x"), QStringLiteral("short"));
  ini.save(path);
  EXPECT_EQ(IniFile::load(path).value(QStringLiteral("A"), QStringLiteral("x")), QStringLiteral("short"));
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("a.ini")});
}
