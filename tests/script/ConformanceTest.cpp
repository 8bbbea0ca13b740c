// Runs every script of tests/script/vbs and compares what it echoes with
// the expected output beside it (NAME.vbs -> NAME.out, one Echo per line).

#include "script/ScriptRunner.h"
#include "script/ScriptTestSupport.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

QString scriptFolder() { return QStringLiteral(KORDEL_SCRIPT_TEST_DIR "/vbs"); }

std::vector<std::string> scriptNames() {
  std::vector<std::string> names;
  const QStringList files = QDir(scriptFolder()).entryList({QStringLiteral("*.vbs")}, QDir::Files, QDir::Name);
  for (const QString &file : files)
    names.push_back(QFileInfo(file).completeBaseName().toStdString());
  return names;
}

QStringList expectedLines(const QString &path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return {QStringLiteral("<missing %1>").arg(path)};
  QString text = QString::fromUtf8(file.readAll());
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  if (text.endsWith(u'\n'))
    text.chop(1);
  return text.split(u'\n');
}

class Conformance : public ::testing::TestWithParam<std::string> {
protected:
  void SetUp() override { useUnitedStatesRegion(); }
};

TEST_P(Conformance, EchoesWhatVBScriptEchoes) {
  const QString name = QString::fromStdString(GetParam());
  const QString code = script::readScriptFile(scriptFolder() + u'/' + name + QStringLiteral(".vbs"));
  QStringList output;
  script::ScriptRunOptions options;
  options.scriptName = name + QStringLiteral(".vbs");
  options.budget.milliseconds = 20000; // only so that a broken loop cannot hang the suite
  const auto error = script::runScript(code, options, [&output](const QString &line) { output.append(line); }).error;
  if (error)
    ADD_FAILURE() << "script ended with error " << error->number() << " at line " << error->line() << ": "
                  << error->description().toStdString();
  const QStringList expected = expectedLines(scriptFolder() + u'/' + name + QStringLiteral(".out"));
  const int common = int(std::min(output.size(), expected.size()));
  for (int i = 0; i < common; ++i)
    EXPECT_EQ(output[i].toStdString(), expected[i].toStdString()) << "echo line " << i + 1;
  EXPECT_EQ(output.size(), expected.size()) << "number of echo lines";
}

INSTANTIATE_TEST_SUITE_P(Vbs, Conformance, ::testing::ValuesIn(scriptNames()),
                         [](const ::testing::TestParamInfo<std::string> &info) { return info.param; });

} // namespace
} // namespace kordel::test
