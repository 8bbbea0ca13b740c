#pragma once

#include "script/ScriptEngine.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace kordel::script {

// WScript.Arguments: the words given after the script's name, from 0;
// Item is the default member, so WScript.Arguments(0) reads the first.
class ScriptArguments final : public Object {
public:
  explicit ScriptArguments(QStringList words) : words_(std::move(words)) {}

  QString typeName() const override { return QStringLiteral("Object"); }
  int count() const { return int(words_.size()); }
  // Raises 9 outside 0..Count-1.
  QString item(int index) const;
  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  QStringList words_;
};

// The WScript object of a script run from the command line. Echo turns
// each argument into text as CStr does, joins them with blanks and hands
// the line to the sink. Quit([code]) ends the run at once with the code
// (0 when left out), whatever error handling the script has.
class WScriptObject final : public Object {
public:
  using Sink = std::function<void(const QString &line)>;

  WScriptObject(Sink sink, QString scriptName, QStringList arguments = {});

  QString typeName() const override { return QStringLiteral("Object"); }
  void echo(const Args &args);
  // Throws ScriptStop.
  [[noreturn]] void quit(const Args &args);
  const QString &scriptName() const { return scriptName_; }

protected:
  const MemberTable &memberTable() const override;

private:
  Sink sink_;
  QString scriptName_;
  std::shared_ptr<ScriptArguments> arguments_;
};

struct ScriptRunOptions {
  QString language = QStringLiteral("VBScript");
  QString scriptName;
  // The words given after the script's name, as WScript.Arguments.
  QStringList arguments;
  // Objects the script sees besides WScript, such as the host's Application.
  std::vector<std::pair<QString, ObjectRef>> namedItems;
  ScriptBudget budget;
  bool dynamicCode = true;
  ObjectFactory objectFactory;
  ScriptUi ui;
};

// How a whole script run ended, and the exit code a command line gives
// for it: 0 at the script's end, WScript.Quit's code, or 1 for the error
// that ended the script.
struct ScriptOutcome {
  std::optional<ScriptError> error;
  int exitCode = 0;
};

// Runs a whole script: its global statements run at once. Echo lines go to
// echo as they come.
ScriptOutcome runScript(const QString &code, const ScriptRunOptions &options, const WScriptObject::Sink &echo);

// Reads a script file: UTF-8, or UTF-16 with a byte-order mark. Raises 53
// when the file does not exist and 70 when it cannot be read.
QString readScriptFile(const QString &path);

} // namespace kordel::script
