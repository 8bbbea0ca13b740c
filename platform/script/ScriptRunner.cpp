#include "script/ScriptRunner.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace kordel::script {

WScriptObject::WScriptObject(Sink sink, QString scriptName)
    : sink_(std::move(sink)), scriptName_(std::move(scriptName)) {}

void WScriptObject::echo(const Args &args) {
  QStringList parts;
  for (const Variant &value : args)
    parts.append(value.toString());
  if (sink_)
    sink_(parts.join(u' '));
}

const MemberTable &WScriptObject::memberTable() const {
  static const MemberTable table{{
      method<WScriptObject>("Echo",
                            [](WScriptObject &w, Args &args) {
                              w.echo(args);
                              return Variant();
                            }),
      property<WScriptObject>("ScriptName", [](WScriptObject &w) { return w.scriptName(); }),
  }};
  return table;
}

std::optional<ScriptError> runScript(const QString &code, const ScriptRunOptions &options,
                                     const WScriptObject::Sink &echo) {
  try {
    std::unique_ptr<ScriptEngine> engine = createScriptEngine(options.language);
    engine->setBudget(options.budget);
    engine->setDynamicCodeAllowed(options.dynamicCode);
    if (options.objectFactory)
      engine->setObjectFactory(options.objectFactory);
    engine->setUi(options.ui);
    engine->addNamedItem(QStringLiteral("WScript"), std::make_shared<WScriptObject>(echo, options.scriptName));
    for (const auto &[name, object] : options.namedItems)
      engine->addNamedItem(name, object);
    engine->addCode(code);
    return std::nullopt;
  } catch (const ScriptError &error) {
    return error;
  } catch (...) {
    return ScriptError(pendingError(), 0, 0);
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
