// orvex demo and orvex script, run as the user runs them.

#include "support/OrvexProcess.h"
#include "support/TempDir.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

class CommandLineTest : public ::testing::Test {
protected:
  kordel::test::OrvexRun orvex(const QStringList &arguments) {
    return kordel::test::runOrvex(dir, arguments, {{"ORVEX_LANGUAGE", "sv"}, {"ORVEX_USER", "mats"}});
  }

  kordel::test::TempDir dir;
};

TEST_F(CommandLineTest, ADemoDatabaseIsMadeAndDrivenByAScript) {
  const QString db = dir.file("crm.db");
  const kordel::test::OrvexRun made = orvex({"demo", "--db", db, "--companies", "30", "--seed", "9"});
  ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  EXPECT_TRUE(made.out.contains(QRegularExpression("company\\s+30\\n")));
  EXPECT_TRUE(made.out.contains(QRegularExpression("coworker\\s+10\\n")));

  kordel::test::writeFile(dir.file("report.vbs"), R"(
Set filters = Application.Classes("company").Filters
Set r = CreateObject("Nuvo.Records")
r.Open "company", filters.Lookup("Kunder", 2), Nothing, 0
WScript.Echo "customers " & r.Count
WScript.Echo "user " & Application.ActiveUser.Record.Text("Namn")
Set sh = CreateObject("WScript.Shell")
)");
  const kordel::test::OrvexRun ran = orvex({"script", "--db", db, dir.file("report.vbs")});
  EXPECT_EQ(ran.exitCode, 1) << "the last line creates what no host makes";
  EXPECT_TRUE(ran.out.contains(QRegularExpression("customers [1-9][0-9]*\\n"))) << ran.out.toStdString();
  EXPECT_TRUE(ran.out.contains(QString::fromUtf8("user Mats Öberg\n"))) << ran.out.toStdString();
  EXPECT_TRUE(ran.err.contains("report.vbs(7, ")) << ran.err.toStdString();
  EXPECT_TRUE(ran.err.contains("(429)")) << ran.err.toStdString();

  const kordel::test::OrvexRun again = orvex({"demo", "--db", db});
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_TRUE(again.err.contains("(58)")) << again.err.toStdString();
  EXPECT_EQ(orvex({"demo", "--companies", "many"}).exitCode, 1);
}

} // namespace
