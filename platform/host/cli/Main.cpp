// orvex: the host's command line. Each sub command is one function in the
// table below; a later one designs reports.

#include "cli/DataCommands.h"
#include "cli/ReportCommands.h"
#include "cli/RunCommands.h"
#include "cli/ScriptCommand.h"

#include "host/AddinHost.h"
#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/IniTranslator.h"
#include "host/SettingsStore.h"

#include "cli/Options.h"
#include "core/Error.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <unistd.h>
#include <functional>
#include <map>

using namespace kordel;

namespace {

void printLine(const QString &text) { std::fprintf(stdout, "%s\n", text.toUtf8().constData()); }

QString translationFolder() {
  // The add-in's texts lie in "translation" beside its library, which the
  // build puts in ../lib next to this program.
  return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/translation")).absolutePath();
}

// orvex about: what the host is, its language and where it keeps things.
int about(host::HostApplication &app, const QStringList &) {
  host::IniTranslator translator;
  translator.setTranslationFolder(translationFolder());
  translator.loadSection(QStringLiteral("kordel"), app.language());
  printLine(QStringLiteral("Orvex %1 with %2")
                .arg(QCoreApplication::applicationVersion(), translator.translateKey(QStringLiteral("Addin.Name"))));
  printLine(QStringLiteral("Language:      %1").arg(app.language()));
  printLine(QStringLiteral("Settings:      %1").arg(host::HostPaths::registryFile()));
  printLine(QStringLiteral("Log:           %1").arg(host::HostPaths::logFile()));
  printLine(QStringLiteral("Databases:     %1").arg(host::HostPaths::dataFolder()));
  printLine(QStringLiteral("Message texts: %1").arg(translator.translationFolder()));
  return 0;
}

using Command = std::function<int(host::HostApplication &, const QStringList &)>;

const std::map<QString, std::pair<Command, const char *>> &commands() {
  static const std::map<QString, std::pair<Command, const char *>> table{
      {QStringLiteral("about"), {about, "show the version, the language and where settings, log and databases live"}},
      {QStringLiteral("demo"), {host::cli::demo, "make a demo database: [--db FILE] [--companies N] [--seed S]"}},
      {QStringLiteral("reports"), {host::cli::reports, "list the reports of a database: [--db DATABASE]"}},
      {QStringLiteral("report-export"),
       {host::cli::reportExport, "write a report's document to a file: NAME FILE [--db DATABASE]"}},
      {QStringLiteral("report-import"),
       {host::cli::reportImport, "store a document file as a report: FILE [--name NAME] [--db DATABASE]"}},
      {QStringLiteral("script"), {host::cli::script, "run an automation script: [--db DATABASE] FILE"}},
      {QStringLiteral("export"),
       {host::cli::exportReport, "run a report into a PDF, XLS, HTML, RTF, TXT or TIFF file: --report NAME --out "
                                 "FILE RANGE [--subfilter PAGE=FILTER]... [--lang LANG] [--db DATABASE]"}},
      {QStringLiteral("print"),
       {host::cli::printReport, "run a report and print it: --report NAME RANGE [--printer NAME] [--copies N] "
                                "[--subfilter PAGE=FILTER]... [--lang LANG] [--db DATABASE]"}},
      {QStringLiteral("preview"),
       {host::cli::previewReport, "run a report and show it in the preview window: --report NAME RANGE "
                                  "[--subfilter PAGE=FILTER]... [--lang LANG] [--db DATABASE]"}},
  };
  return table;
}

int usage() {
  std::fprintf(stderr, "usage: orvex COMMAND [ARGUMENTS]\n\ncommands:\n");
  for (const auto &[name, entry] : commands())
    std::fprintf(stderr, "  %-14s %s\n", name.toUtf8().constData(), entry.second);
  std::fprintf(stderr, "\nRANGE is one of --filter NAME (a saved filter), --ids 1,2,3, --all, or\n"
                       "--explorer CLASS [--select 1,2] (a list window and its selection, else all it lists).\n");
  return 2;
}

} // namespace

int main(int argc, char **argv) {
  // Without a display the command line still works: windows render
  // offscreen, and the commands that need a screen refuse to run.
  const bool chosenPlatform = !qgetenv("QT_QPA_PLATFORM").isEmpty();
  const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  host::cli::setWindowsReachTheUser(display || chosenPlatform);
  if (!display && !chosenPlatform)
    qputenv("QT_QPA_PLATFORM", "offscreen");
  // Qt wants a private runtime folder; a bare shell or CI may not have one.
  if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
    const QByteArray runtime = QDir::tempPath().toLocal8Bit() + "/orvex-runtime-" + QByteArray::number(getuid());
    QDir().mkpath(QString::fromLocal8Bit(runtime));
    QFile::setPermissions(QString::fromLocal8Bit(runtime),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime);
  }
  QApplication qt(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("orvex"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KORDEL_VERSION));

  QStringList args = QCoreApplication::arguments().mid(1);
  if (args.isEmpty() || args.front() == QStringLiteral("--help") || args.front() == QStringLiteral("-h"))
    return usage();
  const auto found = commands().find(args.takeFirst());
  if (found == commands().end())
    return usage();

  try {
    hostapi::installUi(std::make_shared<host::BatchUi>());
    auto app =
        std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(host::HostPaths::registryFile()),
                                                std::make_shared<host::FileLog>(host::HostPaths::logFile()));
    // Scripts and commands make the add-ins' objects by their ProgIDs.
    host::AddinHost(*app).loadPlugins(host::HostPaths::addinFolder());
    return found->second.first(*app, args);
  } catch (const Error &error) {
    std::fprintf(stderr, "orvex: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
