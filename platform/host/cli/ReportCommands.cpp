#include "cli/ReportCommands.h"

#include "cli/DataCommands.h"
#include "cli/Options.h"

#include "host/AddinHost.h"
#include "host/HostApplication.h"
#include "host/ReportCatalog.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

void printLine(const QString &text) { std::fprintf(stdout, "%s\n", text.toUtf8().constData()); }

// The words of a command: its positional arguments and its --db.
struct Words {
  QStringList positional;
  QString database;
  QString name;
};

Words parse(const QStringList &args, bool takesName, const QString &usage) {
  Words words;
  for (qsizetype at = 0; at < args.size(); ++at) {
    const QString &word = args[at];
    if (word == QLatin1String("--db"))
      words.database = optionValue(args, at);
    else if (takesName && word == QLatin1String("--name"))
      words.name = optionValue(args, at);
    else if (word.startsWith(QLatin1String("--")))
      raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("usage: %1 ('%2' is unknown)").arg(usage, word));
    else
      words.positional << word;
  }
  return words;
}

void requireCount(const Words &words, qsizetype count, const QString &usage) {
  if (words.positional.size() != count)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("usage: %1").arg(usage));
}

// The add-in connected to the application for the length of a command.
class ConnectedCatalog {
public:
  explicit ConnectedCatalog(HostApplication &app)
      : addins_(app), catalog_(app, addins_.connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId))) {}
  ReportCatalog &operator*() { return catalog_; }
  ReportCatalog *operator->() { return &catalog_; }

private:
  AddinHost addins_;
  ReportCatalog catalog_;
};

// The local name of a class for a listing; the internal name when the
// database lacks it.
QString classText(HostApplication &app, const QString &name) {
  const auto classes = app.classes();
  return classes->exists(name) ? classes->item(name)->localName() : name;
}

} // namespace

int reports(HostApplication &app, const QStringList &args) {
  const QString usage = QStringLiteral("orvex reports [--db DATABASE]");
  const Words words = parse(args, false, usage);
  requireCount(words, 0, usage);
  openDatabase(app, words.database);
  ConnectedCatalog catalog(app);
  const QList<ReportEntry> entries = catalog->list();
  if (entries.isEmpty()) {
    printLine(QStringLiteral("No reports."));
    return 0;
  }
  for (const ReportEntry &entry : entries) {
    QString line = QStringLiteral("%1  (%2)").arg(entry.name, classText(app, entry.reportClass));
    if (!entry.category.isEmpty())
      line += QStringLiteral("  [%1]").arg(entry.category);
    printLine(line);
  }
  return 0;
}

int reportExport(HostApplication &app, const QStringList &args) {
  const QString usage = QStringLiteral("orvex report-export NAME FILE [--db DATABASE]");
  const Words words = parse(args, false, usage);
  requireCount(words, 2, usage);
  openDatabase(app, words.database);
  ConnectedCatalog catalog(app);
  catalog->exportDocument(words.positional[0], words.positional[1]);
  printLine(QStringLiteral("Wrote \"%1\" to %2").arg(catalog->find(words.positional[0]).name, words.positional[1]));
  return 0;
}

int reportImport(HostApplication &app, const QStringList &args) {
  const QString usage = QStringLiteral("orvex report-import FILE [--name NAME] [--db DATABASE]");
  const Words words = parse(args, true, usage);
  requireCount(words, 1, usage);
  openDatabase(app, words.database);
  ConnectedCatalog catalog(app);
  const ReportEntry entry = catalog->importDocument(words.positional[0], words.name);
  printLine(QStringLiteral("Stored \"%1\" (%2)").arg(entry.name, classText(app, entry.reportClass)));
  return 0;
}

QStringList addDemoReports(HostApplication &app) {
  ConnectedCatalog catalog(app);
  QTemporaryDir scratch;
  if (!scratch.isValid())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No temporary folder for the demo reports"));
  QStringList names;
  const QDir resources(QStringLiteral(":/demo-reports"));
  for (const QString &file : resources.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name)) {
    const QString path = scratch.filePath(file);
    if (!QFile::copy(resources.filePath(file), path))
      raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write %1").arg(path));
    names << catalog->importDocument(path, QString()).name;
  }
  return names;
}

} // namespace kordel::host::cli
