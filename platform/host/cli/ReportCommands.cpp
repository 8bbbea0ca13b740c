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

int reports(HostApplication &app, const Arguments &arguments) {
  openDatabase(app, arguments.value(QStringLiteral("--db")), nuvo::OpenMode::ReadOnly);
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

int reportExport(HostApplication &app, const Arguments &arguments) {
  openDatabase(app, arguments.value(QStringLiteral("--db")), nuvo::OpenMode::ReadOnly);
  const QString &name = arguments.positional()[0];
  const QString &file = arguments.positional()[1];
  ConnectedCatalog catalog(app);
  const ReportEntry entry = catalog->exportDocument(name, file);
  printLine(QStringLiteral("Wrote \"%1\" to %2").arg(entry.name, file));
  return 0;
}

int reportImport(HostApplication &app, const Arguments &arguments) {
  openDatabase(app, arguments.value(QStringLiteral("--db")), nuvo::OpenMode::ReadWrite);
  ConnectedCatalog catalog(app);
  const ReportEntry entry =
      catalog->importDocument(arguments.positional()[0], arguments.value(QStringLiteral("--name")));
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
