#include "script/ScriptRunner.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace kordel::script {

QString ScriptArguments::item(int index) const {
  if (index < 0 || index >= words_.size())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("WScript.Arguments"));
  return words_[index];
}

std::unique_ptr<Enumerator> ScriptArguments::enumerate() {
  std::vector<Variant> values(words_.begin(), words_.end());
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &ScriptArguments::memberTable() const {
  static const MemberTable table{{
                                     property<ScriptArguments>("Count", [](ScriptArguments &a) { return a.count(); }),
                                     property<ScriptArguments>("Length", [](ScriptArguments &a) { return a.count(); }),
                                     indexedProperty<ScriptArguments>("Item",
                                                                      [](ScriptArguments &a, Args &args) {
                                                                        expectArgs(args, 1, 1);
                                                                        return a.item(args[0].toLong());
                                                                      }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

WScriptObject::WScriptObject(Sink sink, QString scriptName, QStringList arguments)
    : sink_(std::move(sink)), scriptName_(std::move(scriptName)),
      arguments_(std::make_shared<ScriptArguments>(std::move(arguments))) {}

void WScriptObject::echo(const Args &args) {
  QStringList parts;
  for (const Variant &value : args)
    parts.append(value.toString());
  if (sink_)
    sink_(parts.join(u' '));
}

void WScriptObject::quit(const Args &args) {
  expectArgs(args, 0, 1);
  throw ScriptStop(args.empty() || args[0].isEmpty() ? 0 : args[0].toLong());
}

const MemberTable &WScriptObject::memberTable() const {
  static const MemberTable table{{
      method<WScriptObject>("Echo",
                            [](WScriptObject &w, Args &args) {
                              w.echo(args);
                              return Variant();
                            }),
      method<WScriptObject>("Quit", [](WScriptObject &w, Args &args) -> Variant { w.quit(args); }),
      property<WScriptObject>("ScriptName", [](WScriptObject &w) { return w.scriptName(); }),
      property<WScriptObject>("Arguments", [](WScriptObject &w) { return Variant(w.arguments_); }),
  }};
  return table;
}

ScriptOutcome runScript(const QString &code, const ScriptRunOptions &options, const WScriptObject::Sink &echo) {
  try {
    std::unique_ptr<ScriptEngine> engine = createScriptEngine(options.language);
    engine->setBudget(options.budget);
    engine->setDynamicCodeAllowed(options.dynamicCode);
    if (options.objectFactory)
      engine->setObjectFactory(options.objectFactory);
    engine->setUi(options.ui);
    engine->addNamedItem(QStringLiteral("WScript"),
                         std::make_shared<WScriptObject>(echo, options.scriptName, options.arguments));
    for (const auto &[name, object] : options.namedItems)
      engine->addNamedItem(name, object);
    engine->addCode(code);
    return {};
  } catch (const ScriptStop &stop) {
    return {std::nullopt, stop.exitCode()};
  } catch (const ScriptError &error) {
    return {error, 1};
  } catch (...) {
    return {ScriptError(pendingError(), 0, 0), 1};
  }
}

QString readScriptFile(const QString &path) {
  QFile file(path);
  if (!file.exists())
    raiseError(ErrorNumber::FileNotFound, QStringLiteral("Script"), QStringLiteral("File not found: %1").arg(path));
  if (!file.open(QIODevice::ReadOnly))
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("Script"),
               QStringLiteral("Cannot read %1: %2").arg(path, file.errorString()));
  const QByteArray bytes = file.readAll();
  if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
    QStringDecoder decoder(QStringConverter::Utf16);
    return decoder(bytes);
  }
  QStringDecoder decoder(QStringConverter::Utf8);
  QString text = decoder(bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes);
  return text;
}

} // namespace kordel::script
