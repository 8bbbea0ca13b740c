#include "cli/ScriptCommand.h"

#include "cli/DataCommands.h"

#include "host/HostApplication.h"

#include "hostapi/Ui.h"

#include "script/ScriptRunner.h"

#include "core/Error.h"

#include <QFileInfo>

#include <cstdio>

namespace kordel::host::cli {

namespace {

const QString kUsage =
    QStringLiteral("usage: orvex script [--db DATABASE] [--language VBScript|JScript] FILE [ARGUMENTS]");

} // namespace

int script(HostApplication &app, const QStringList &args) {
  QString database;
  QString language;
  QString file;
  QStringList scriptArguments;
  for (qsizetype at = 0; at < args.size(); ++at) {
    const QString &arg = args[at];
    if (!file.isEmpty())
      scriptArguments << arg; // everything after the file belongs to the script
    else if ((arg == QLatin1String("--db") || arg == QLatin1String("--language")) && at + 1 < args.size())
      (arg == QLatin1String("--db") ? database : language) = args[++at];
    else if (!arg.startsWith(QLatin1String("--")))
      file = arg;
    else
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"), kUsage);
  }
  if (file.isEmpty())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"), kUsage);
  if (!database.isEmpty() || QFileInfo::exists(defaultDatabase()))
    openDatabase(app, database);

  script::ScriptRunOptions options;
  options.language = !language.isEmpty()                                        ? language
                     : file.endsWith(QLatin1String(".js"), Qt::CaseInsensitive) ? QStringLiteral("JScript")
                                                                                : QStringLiteral("VBScript");
  options.scriptName = QFileInfo(file).fileName();
  options.arguments = scriptArguments;
  options.namedItems.emplace_back(QStringLiteral("Application"), app.shared_from_this());
  options.objectFactory = [&app](const QString &progId) -> ObjectRef {
    try {
      return app.createObject(progId);
    } catch (const Error &error) {
      if (error.number() == ErrorNumber::CannotCreateObject)
        return nullptr; // not a host ProgID; the engine reports it
      throw;
    }
  };
  options.ui.messageBox = [](const QString &prompt, int buttons, const QString &title) {
    return hostapi::ui().messageBox(prompt, buttons, title);
  };
  options.ui.inputBox = [](const QString &prompt, const QString &title, const QString &defaultText) {
    return hostapi::ui().inputBox(prompt, title, defaultText);
  };
  const script::ScriptOutcome outcome =
      script::runScript(script::readScriptFile(file), options, [](const QString &line) {
        std::fprintf(stdout, "%s\n", line.toUtf8().constData());
        std::fflush(stdout);
      });
  if (const auto &failure = outcome.error)
    std::fprintf(stderr, "%s(%d, %d): %s (%d)\n", options.scriptName.toUtf8().constData(), failure->line(),
                 failure->column(), failure->description().toUtf8().constData(), failure->number());
  return outcome.exitCode;
}

} // namespace kordel::host::cli
