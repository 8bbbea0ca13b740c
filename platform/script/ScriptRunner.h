#pragma once

#include "script/ScriptEngine.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace kordel::script {

// The WScript object of a script run from the command line. Echo turns
// each argument into text as CStr does, joins them with blanks and hands
// the line to the sink.
class WScriptObject final : public Object {
public:
  using Sink = std::function<void(const QString &line)>;

  WScriptObject(Sink sink, QString scriptName);

  QString typeName() const override { return QStringLiteral("Object"); }
  void echo(const Args &args);
  const QString &scriptName() const { return scriptName_; }

protected:
  const MemberTable &memberTable() const override;

private:
  Sink sink_;
  QString scriptName_;
};

struct ScriptRunOptions {
  QString language = QStringLiteral("VBScript");
  QString scriptName;
  // Objects the script sees besides WScript, such as the host's Application.
  std::vector<std::pair<QString, ObjectRef>> namedItems;
  ScriptBudget budget;
  bool dynamicCode = true;
  ObjectFactory objectFactory;
  ScriptUi ui;
};

// Runs a whole script: its global statements run at once. Echo lines go to
// echo as they come. Returns the error that ended the script, if any.
std::optional<ScriptError> runScript(const QString &code, const ScriptRunOptions &options,
                                     const WScriptObject::Sink &echo);

// Reads a script file: UTF-8, or UTF-16 with a byte-order mark. Raises 53
// when the file does not exist and 70 when it cannot be read.
QString readScriptFile(const QString &path);

} // namespace kordel::script
