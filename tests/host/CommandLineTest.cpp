// The conventions every orvex command follows, run as a user runs the
// program: help and the version on standard output, options as
// "--name value" or "--name=value", and one-line refusals of what cannot
// be read.

#include "host/IniTranslator.h"

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using kordel::test::OrvexRun;

namespace {

// A report whose page lists a field its class lacks: the add-in refuses to
// run it with a message of its own.
const QByteArray kUnfinished = R"(<?xml version="1.0"?>
<application><section name="system"><property name="name" value="Unfinished"/></section>
<section name="settings"><property name="toppage" value="{5D0C7E21-8A3B-4F6C-9E2D-1B4A7C9F3E60}"/>
<property name="source" value="product"/></section><section name="pages">
<section name="{5D0C7E21-8A3B-4F6C-9E2D-1B4A7C9F3E60}"><property name="name" value="Products"/>
<property name="source" value="product"/><section name="fields"><section name="colour">
<property name="name" value="colour"/><property name="expression" value="colour"/></section></section>
</section></section></application>)";

// The add-in's text of a key in a language, from its translation files.
QString addinText(const QString &key, const QString &language) {
  kordel::host::IniTranslator translator;
  translator.setTranslationFolder(QStringLiteral(KORDEL_SOURCE_DIR "/translation"));
  translator.loadSection(QStringLiteral("kordel"), language);
  return translator.translateKey(key);
}

class CommandLineTest : public ::testing::Test {
protected:
  OrvexRun orvex(const QStringList &arguments) { return kordel::test::runOrvex(dir, arguments); }

  // The commands the overall help lists, one a line below "commands:".
  QStringList listedCommands(const QString &help) {
    QStringList names;
    const QString list = help.section(QStringLiteral("commands:\n"), 1).section(QStringLiteral("\n\n"), 0, 0);
    for (const QString &line : list.split(u'\n', Qt::SkipEmptyParts))
      names << line.trimmed().section(u' ', 0, 0);
    return names;
  }

  kordel::test::TempDir dir;
};

TEST_F(CommandLineTest, HelpAndVersionGoToStandardOutputAndSucceed) {
  const OrvexRun help = orvex({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_TRUE(help.out.startsWith("usage: orvex COMMAND")) << help.out.toStdString();
  for (const char *alias : {"-h", "help"}) {
    const OrvexRun again = orvex({alias});
    EXPECT_EQ(again.exitCode, 0) << alias;
    EXPECT_EQ(again.out, help.out) << alias;
  }

  const QStringList commands = listedCommands(help.out);
  ASSERT_TRUE(commands.contains("export")) << help.out.toStdString();
  for (const QString &command : commands) {
    const OrvexRun own = orvex({command, "--help"});
    EXPECT_EQ(own.exitCode, 0) << command.toStdString() << ": " << own.err.toStdString();
    EXPECT_EQ(own.err, "") << command.toStdString();
    EXPECT_TRUE(own.out.startsWith("usage: orvex " + command)) << own.out.toStdString();
    EXPECT_EQ(orvex({"help", command}).out, own.out) << command.toStdString();
  }

  const OrvexRun version = orvex({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_TRUE(QRegularExpression("^orvex \\d+\\.\\d+\\.\\d+\\n$").match(version.out).hasMatch())
      << version.out.toStdString();
}

TEST_F(CommandLineTest, AnUnknownCommandIsNamedOnOneLineWithTheNearestOne) {
  const OrvexRun slip = orvex({"exprot", "--all"});
  EXPECT_EQ(slip.exitCode, 2);
  EXPECT_EQ(slip.out, "");
  EXPECT_EQ(slip.err.count(u'\n'), 1) << slip.err.toStdString();
  EXPECT_TRUE(slip.err.contains("'exprot' is not a command")) << slip.err.toStdString();
  EXPECT_TRUE(slip.err.contains("did you mean 'export'?")) << slip.err.toStdString();

  const OrvexRun nothingNear = orvex({"zebra"});
  EXPECT_EQ(nothingNear.exitCode, 2);
  EXPECT_EQ(nothingNear.err.count(u'\n'), 1) << nothingNear.err.toStdString();
  EXPECT_FALSE(nothingNear.err.contains("did you mean")) << nothingNear.err.toStdString();

  // No command at all is a mistake too, and the usage says what to give.
  const OrvexRun none = orvex({});
  EXPECT_EQ(none.exitCode, 2);
  EXPECT_TRUE(none.err.startsWith("usage: orvex")) << none.err.toStdString();
}

TEST_F(CommandLineTest, OptionsTakeTheirValueAfterASpaceOrAnEqualsSign) {
  const QString database = dir.file("crm.db");
  const OrvexRun made = orvex({"demo", "--db=" + database, "--companies=3", "--seed", "4"});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  const OrvexRun spaced = orvex({"reports", "--db", database});
  const OrvexRun joined = orvex({"reports", "--db=" + database});
  EXPECT_EQ(spaced.exitCode, 0) << spaced.err.toStdString();
  EXPECT_TRUE(spaced.out.contains("Company list")) << spaced.out.toStdString();
  EXPECT_EQ(joined.out, spaced.out);

  // Options and positional words come in any order; "--" ends the options.
  const QString document = dir.file("--list.xml");
  const OrvexRun written = orvex({"report-export", "--db", database, "Company list", "--", document});
  EXPECT_EQ(written.exitCode, 0) << written.err.toStdString();
  EXPECT_TRUE(written.out.contains(document)) << written.out.toStdString();
}

TEST_F(CommandLineTest, WhatCannotBeReadIsRefusedOnOneLineNamingTheWord) {
  const QString pdf = dir.file("out.pdf");
  const struct {
    QStringList arguments;
    const char *reason;
  } cases[] = {
      {{"export", "--report", "--all", "--out", pdf}, "--report needs a value, not the option --all"},
      {{"export", "--report", "Company list", "--all", "--out"}, "--out needs a value"},
      {{"export", "--report=", "--all", "--out", pdf}, "--report needs a value"},
      {{"export", "--report", "Company list", "--all=yes", "--out", pdf}, "--all takes no value"},
      {{"export", "--report", "A", "--report=B", "--all", "--out", pdf}, "--report is given twice"},
      {{"reports", "--database", "x.db"}, "'--database' is unknown to orvex reports"},
      {{"report-export", "Company list"}, "orvex report-export needs FILE"},
      {{"report-import", "a.xml", "b.xml"}, "'b.xml' is one word more"},
      {{"demo", "--companies", "many"}, "--companies takes a whole number"},
  };
  for (const auto &refused : cases) {
    const OrvexRun run = orvex(refused.arguments);
    const std::string what = refused.arguments.join(u' ').toStdString();
    EXPECT_EQ(run.exitCode, 1) << what;
    EXPECT_EQ(run.err.count(u'\n'), 1) << what << ": " << run.err.toStdString();
    EXPECT_TRUE(run.err.startsWith("orvex: ")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QLatin1String(refused.reason))) << what << ": " << run.err.toStdString();
  }
  EXPECT_FALSE(QFile::exists(pdf));
}

TEST_F(CommandLineTest, TheAddinSpeaksTheLanguageGiven) {
  const QString database = dir.file("crm.db");
  ASSERT_EQ(orvex({"demo", "--db", database, "--companies", "2"}).exitCode, 0);
  ASSERT_TRUE(kordel::test::writeFile(dir.file("unfinished.xml"), kUnfinished));
  ASSERT_EQ(orvex({"report-import", dir.file("unfinished.xml"), "--db", database}).exitCode, 0);

  for (const QString language : {"sv", "en"}) {
    const QString name = addinText("Addin.Name", language);
    const OrvexRun about = orvex({"about", "--lang", language});
    EXPECT_TRUE(about.out.startsWith("Orvex ") && about.out.section(u'\n', 0, 0).endsWith(" with " + name))
        << about.out.toStdString();

    // An unfinished report goes to the designer first, which a command
    // line has no window for: the refusal comes in the add-in's words.
    const OrvexRun run = orvex({"export", "--report", "Unfinished", "--all", "--out", dir.file("u.pdf"), "--lang",
                                language, "--db", database});
    EXPECT_EQ(run.exitCode, 1);
    const QString source = addinText("Globals.ErrorMessage", language)
                               .section(QStringLiteral("%0"), -1)
                               .replace("%3", "CustomReport.Configure");
    EXPECT_TRUE(run.err.contains(name + ": ") && run.err.contains(source)) << run.err.toStdString();
  }
  EXPECT_FALSE(QFile::exists(dir.file("u.pdf")));
}

} // namespace
