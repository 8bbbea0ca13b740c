#include "cli/ReportCommands.h"

#include "cli/DataCommands.h"
#include "cli/DemoLayouts.h"
#include "cli/Options.h"
#include "cli/PageLayouts.h"

#include "host/AddinHost.h"
#include "host/HostApplication.h"
#include "host/ReportCatalog.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"

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

// The words of a command with its number of positional arguments, and its
// database opened.
Words commandWords(HostApplication &app, const QStringList &args, qsizetype count, bool takesName,
                   const QString &usage) {
  const Words words = parse(args, takesName, usage);
  if (words.positional.size() != count)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("usage: %1").arg(usage));
  openDatabase(app, words.database);
  return words;
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
  commandWords(app, args, 0, false, QStringLiteral("orvex reports [--db DATABASE]"));
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
  const Words words =
      commandWords(app, args, 2, false, QStringLiteral("orvex report-export NAME FILE [--db DATABASE]"));
  ConnectedCatalog catalog(app);
  const ReportEntry entry = catalog->exportDocument(words.positional[0], words.positional[1]);
  printLine(QStringLiteral("Wrote \"%1\" to %2").arg(entry.name, words.positional[1]));
  return 0;
}

int reportImport(HostApplication &app, const QStringList &args) {
  const Words words =
      commandWords(app, args, 1, true, QStringLiteral("orvex report-import FILE [--name NAME] [--db DATABASE]"));
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
  for (const DemoReport &report : demoReports()) {
    QFile source(QStringLiteral(":/demo-reports/") + report.document);
    if (!source.open(QIODevice::ReadOnly))
      raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("The program lacks %1").arg(source.fileName()));
    const QString path = scratch.filePath(report.document);
    const QByteArray bytes = withPageLayouts(source.readAll(), report.layouts);
    QFile document(path);
    if (!document.open(QIODevice::WriteOnly) || document.write(bytes) != bytes.size())
      raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("Cannot write %1").arg(path));
    document.close();
    names << catalog->importDocument(path, QString()).name;
  }
  return names;
}

} // namespace kordel::host::cli
