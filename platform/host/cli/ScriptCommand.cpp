#include "cli/ScriptCommand.h"

#include "cli/DataCommands.h"
#include "cli/Options.h"

#include "host/HostApplication.h"
#include "host/HostPaths.h"

#include "hostapi/Ui.h"

#include "script/ScriptRunner.h"

#include "core/Error.h"

#include <QFileInfo>

#include <cstdio>

namespace kordel::host::cli {

int script(HostApplication &app, const Arguments &arguments) {
  const QString &file = arguments.positional().front();
  const QString database = arguments.value(QStringLiteral("--db"));
  const QString language = arguments.value(QStringLiteral("--language"));
  // A script may change the database; on a database that cannot be
  // written it still reads, and a change it tries is refused.
  if (!database.isEmpty() || QFileInfo::exists(HostPaths::defaultDatabase())) {
    const auto address = nuvo::DatabaseAddress::parse(database.isEmpty() ? HostPaths::defaultDatabase() : database);
    openDatabase(app, database,
                 nuvo::whyNotWritable(address).isEmpty() ? nuvo::OpenMode::ReadWrite : nuvo::OpenMode::ReadOnly);
  }

  script::ScriptRunOptions options;
  options.language = !language.isEmpty()                                        ? language
                     : file.endsWith(QLatin1String(".js"), Qt::CaseInsensitive) ? QStringLiteral("JScript")
                                                                                : QStringLiteral("VBScript");
  options.scriptName = QFileInfo(file).fileName();
  options.arguments = arguments.rest();
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
