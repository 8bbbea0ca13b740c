// Running whole script files as the command line will: reading the file in
// its encoding, WScript.Echo, and the error that ends a script.

#include "core/Dictionary.h"
#include "script/ScriptRunner.h"
#include "script/ScriptTestSupport.h"
#include "support/TempDir.h"

#include <QStringEncoder>

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

QStringList run(const QString &code, std::optional<script::ScriptError> *error = nullptr,
                const script::ScriptRunOptions &options = {}) {
  QStringList lines;
  const script::ScriptOutcome outcome =
      script::runScript(code, options, [&lines](const QString &line) { lines.append(line); });
  if (error)
    *error = outcome.error;
  return lines;
}

TEST(ScriptRunner, ReadsUtf8AndUtf16FilesWithOrWithoutByteOrderMark) {
  TempDir dir;
  const QString text = QStringLiteral("WScript.Echo \"grüße €\"\r\n");
  ASSERT_TRUE(writeFile(dir.file(QStringLiteral("plain.vbs")), text.toUtf8()));
  ASSERT_TRUE(writeFile(dir.file(QStringLiteral("bom.vbs")), QByteArray("\xEF\xBB\xBF") + text.toUtf8()));
  QStringEncoder utf16(QStringConverter::Utf16LE);
  ASSERT_TRUE(writeFile(dir.file(QStringLiteral("wide.vbs")), QByteArray("\xFF\xFE") + QByteArray(utf16(text))));
  for (const char *name : {"plain.vbs", "bom.vbs", "wide.vbs"}) {
    const QString code = script::readScriptFile(dir.file(QString::fromLatin1(name)));
    EXPECT_EQ(code, text) << name;
    EXPECT_EQ(run(code), QStringList{QStringLiteral("grüße €")}) << name;
  }
}

TEST(ScriptRunner, ArgumentsReachTheScriptInBothLanguages) {
  script::ScriptRunOptions options;
  options.arguments = {QStringLiteral("first"), QStringLiteral("two words")};
  EXPECT_EQ(run(QStringLiteral("WScript.Echo WScript.Arguments.Count, WScript.Arguments(1)\n"
                               "For Each a In WScript.Arguments: WScript.Echo \"[\" & a & \"]\": Next"),
                nullptr, options),
            QStringList({"2 two words", "[first]", "[two words]"}));

  std::optional<script::ScriptError> error;
  run(QStringLiteral("x = WScript.Arguments(2)"), &error, options);
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number(), ErrorNumber::SubscriptOutOfRange);

  options.language = QStringLiteral("JScript");
  EXPECT_EQ(run(QStringLiteral("WScript.Echo(WScript.Arguments.Length, WScript.Arguments(0));"), nullptr, options),
            QStringList({"2 first"}));
}

TEST(ScriptRunner, MissingFileRaisesFileNotFound) {
  TempDir dir;
  try {
    script::readScriptFile(dir.file(QStringLiteral("absent.vbs")));
    FAIL() << "no error";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), ErrorNumber::FileNotFound);
  }
}

TEST(ScriptRunner, EchoJoinsArgumentsAsTextAndKeepsOrder) {
  useUnitedStatesRegion();
  EXPECT_EQ(run(QStringLiteral("WScript.Echo\nWScript.Echo 1, \"a\", True, 2.5, #1/2/2003#, Empty\n"
                               "WScript.Echo WScript.ScriptName\n"),
                nullptr,
                [] {
                  script::ScriptRunOptions options;
                  options.scriptName = QStringLiteral("demo.vbs");
                  return options;
                }()),
            (QStringList{QString(), QStringLiteral("1 a True 2.5 1/2/2003 "), QStringLiteral("demo.vbs")}));
}

TEST(ScriptRunner, ReportsTheErrorThatEndedTheScriptAfterItsOutput) {
  std::optional<script::ScriptError> error;
  const QStringList lines =
      run(QStringLiteral("WScript.Echo \"first\"\nDim x\nx = CInt(\"abc\")\nWScript.Echo \"never\"\n"), &error);
  EXPECT_EQ(lines, QStringList{QStringLiteral("first")});
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number(), ErrorNumber::TypeMismatch);
  EXPECT_EQ(error->line(), 3);

  run(QStringLiteral("WScript.Echo (\n"), &error);
  ASSERT_TRUE(error.has_value());
  EXPECT_TRUE(error->isCompileError());
}

TEST(ScriptRunner, PassesTheHostsObjectsFactoryAndBudget) {
  script::ScriptRunOptions options;
  auto host = std::make_shared<Dictionary>();
  host->add(Variant(QStringLiteral("name")), Variant(QStringLiteral("orvex")));
  options.namedItems.push_back({QStringLiteral("Application"), host});
  options.objectFactory = [](const QString &progId) -> ObjectRef {
    return progId == QLatin1String("Test.Thing") ? std::make_shared<Dictionary>() : nullptr;
  };
  options.budget.statements = 1000;
  std::optional<script::ScriptError> error;
  const QStringList lines =
      run(QStringLiteral("WScript.Echo Application(\"name\"), TypeName(CreateObject(\"Test.Thing\"))\n"
                         "Do\nLoop\n"),
          &error, options);
  EXPECT_EQ(lines, QStringList{QStringLiteral("orvex Dictionary")});
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number(), 1001);
}

} // namespace
} // namespace kordel::test
