// orvex: the host's command line. The commands are in the table of
// cli/Commands; this reads the command's name, answers the requests for
// help and the version, and runs the command on its words.

#include "cli/Commands.h"
#include "cli/Languages.h"
#include "cli/Options.h"

#include "host/AddinHost.h"
#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/SettingsStore.h"

#include "core/Error.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <unistd.h>

using namespace kordel;

namespace {

// Exit code for a command line that names no command orvex has.
constexpr int kUsageError = 2;

void write(FILE *stream, const QString &text) {
  std::fputs(text.toUtf8().constData(), stream);
  std::fflush(stream);
}

QString usage() {
  QString text = QStringLiteral("usage: orvex COMMAND [ARGUMENTS]\n"
                                "       orvex COMMAND --help\n"
                                "       orvex --version\n\ncommands:\n");
  for (const host::cli::Command &command : host::cli::commands())
    text += QStringLiteral("  %1 %2\n").arg(command.syntax.name, -14).arg(command.syntax.summary);
  return text + QStringLiteral("\n`orvex COMMAND --help` tells what a command takes.\n");
}

int unknownCommand(const QString &word) {
  const QString nearest = host::cli::nearestCommand(word);
  write(stderr, QStringLiteral("orvex: '%1' is not a command%2; `orvex --help` lists the commands\n")
                    .arg(word, nearest.isEmpty() ? QString() : QStringLiteral(" (did you mean '%1'?)").arg(nearest)));
  return kUsageError;
}

// Without a display the command line still works: windows render
// offscreen, and the commands that need a screen refuse to run.
void chooseWindowPlatform() {
  const QString chosen = qEnvironmentVariable("QT_QPA_PLATFORM").section(u':', 0, 0);
  const bool display = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  // These platforms draw into memory: a window there reaches nobody.
  const bool invisible = chosen == QLatin1String("offscreen") || chosen == QLatin1String("minimal");
  host::cli::setWindowsReachTheUser(chosen.isEmpty() ? display : !invisible);
  if (chosen.isEmpty() && !display)
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

// Qt wants a private runtime folder; a bare shell or CI may not have one.
void ensureRuntimeFolder() {
  if (qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
    return;
  const QByteArray runtime = QDir::tempPath().toLocal8Bit() + "/orvex-runtime-" + QByteArray::number(getuid());
  QDir().mkpath(QString::fromLocal8Bit(runtime));
  QFile::setPermissions(QString::fromLocal8Bit(runtime),
                        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
  qputenv("XDG_RUNTIME_DIR", runtime);
}

int run(const host::cli::Command &command, const QStringList &words) {
  try {
    const auto arguments = host::cli::Arguments::parse(command.syntax, words);
    if (arguments.helpAsked()) {
      write(stdout, host::cli::helpText(command.syntax));
      return 0;
    }
    // The language of the application is the add-in's, which it reads
    // when it is connected.
    const QString language = arguments.value(QStringLiteral("--lang"));
    host::cli::checkLanguage(language);
    hostapi::installUi(std::make_shared<host::BatchUi>());
    auto app =
        std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(host::HostPaths::registryFile()),
                                                std::make_shared<host::FileLog>(host::HostPaths::logFile()), language);
    // Scripts and commands make the add-ins' objects by their ProgIDs.
    host::AddinHost(*app).loadPlugins(host::HostPaths::addinFolder());
    return command.run(*app, arguments);
  } catch (const Error &error) {
    write(stderr, QStringLiteral("orvex: %1 (%2)\n").arg(error.description()).arg(error.number()));
    return 1;
  }
}

} // namespace

int main(int argc, char **argv) {
  chooseWindowPlatform();
  ensureRuntimeFolder();
  QApplication qt(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("orvex"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KORDEL_VERSION));

  QStringList words = QCoreApplication::arguments().mid(1);
  // Alone, or with only the database or the language, orvex is the
  // desktop client; "orvex open FILE" names the database as a word.
  if (words.isEmpty() || words.first().startsWith(QLatin1String("--db")) ||
      words.first().startsWith(QLatin1String("--lang"))) {
    if (words.isEmpty() && !host::cli::windowsReachTheUser()) {
      write(stderr, usage());
      return kUsageError;
    }
    words.prepend(QStringLiteral("open"));
  }
  if (words.size() >= 2 && words[0] == QLatin1String("open") && !words[1].startsWith(u'-'))
    words.insert(1, QStringLiteral("--db"));
  const QString first = words.takeFirst();
  if (first == QLatin1String("--help") || first == QLatin1String("-h") ||
      (first == QLatin1String("help") && words.isEmpty())) {
    write(stdout, usage());
    return 0;
  }
  if (first == QLatin1String("--version")) {
    write(stdout, QStringLiteral("orvex %1\n").arg(QCoreApplication::applicationVersion()));
    return 0;
  }
  // "orvex help COMMAND" is "orvex COMMAND --help".
  const QString name = first == QLatin1String("help") ? words.takeFirst() : first;
  if (first == QLatin1String("help"))
    words = QStringList{QStringLiteral("--help")};
  const host::cli::Command *command = host::cli::findCommand(name);
  return command ? run(*command, words) : unknownCommand(name);
}
