// report_bench: the product's main job at scale. The demo report "Company
// list" (companies grouped by country, page X of Y, a sub page of persons)
// is exported to PDF for every company through the add-in, loaded as a
// plugin, exactly as "orvex export" does it; then the layout engine's plain
// list runs in the same process for comparison.
//
//   report_bench [--db FILE] [--companies N] [--persons N] [--out FILE]
//
// The database is made first when the file does not exist: N companies
// (20,000 by default) with about --persons persons each (5: some 100,000
// persons). Prints the number of database queries of the export (one per
// page of the report's tree, plus the counting of the range), seconds,
// pages, pages per second and the peak memory, and the plain list's pages
// per second over as many rows.

#include "BenchTools.h"
#include "PlainList.h"

#include "cli/PageCountingExporter.h"
#include "cli/ReportCommands.h"
#include "core/Error.h"
#include "host/AddinHost.h"
#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/ReportCatalog.h"
#include "host/SettingsStore.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/Layout.h"
#include "hostapi/Report.h"
#include "hostapi/ReportContext.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>

using namespace kordel;

namespace {

const QString kReport = QStringLiteral("Company list");

int countOf(nuvo::Engine &engine, const char *table) {
  QSqlQuery query = engine.sql().select(QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table)));
  return query.next() ? query.value(0).toInt() : 0;
}

} // namespace

int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(argc, argv);
  QString database = QStringLiteral("report_bench.db");
  int companies = 20000;
  int persons = 5;
  QTemporaryDir scratch;
  QString out = scratch.filePath(QStringLiteral("company-list.pdf"));
  const QStringList args = qt.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--db"))
      database = args[i + 1];
    else if (args[i] == QLatin1String("--companies"))
      companies = args[i + 1].toInt();
    else if (args[i] == QLatin1String("--persons"))
      persons = args[i + 1].toInt();
    else if (args[i] == QLatin1String("--out"))
      out = args[i + 1];
  }
  try {
    const bool fresh = !QFileInfo::exists(database);
    const auto address = demoDatabase(database, companies, persons);

    hostapi::installUi(std::make_shared<host::BatchUi>());
    auto app = std::make_shared<host::HostApplication>(
        std::make_shared<host::SettingsStore>(scratch.filePath(QStringLiteral("registry.ini"))),
        std::make_shared<host::FileLog>(scratch.filePath(QStringLiteral("bench.log"))), QStringLiteral("en"));
    auto engine = nuvo::Engine::open(address, QStringLiteral("en"));
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(engine));
    host::AddinHost addins(*app);
    addins.loadPlugins(host::HostPaths::addinFolder());
    if (fresh)
      host::cli::addDemoReports(*app);
    host::ReportCatalog catalog(*app, addins.connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId)));
    const auto report = catalog.open(catalog.find(kReport));

    auto context =
        std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject(QStringLiteral("Nuvo.ReportContext")));
    context->setContextClass(app->classes()->item(QStringLiteral("company")));
    context->setName(QStringLiteral("All companies"));
    context->setRange(Variant(app->createObject(QStringLiteral("Nuvo.Filter"))));
    context->setProperty(QStringLiteral("sysprop__exportfile"), out);
    const auto pages =
        host::cli::PageCountingExporter::countExportsOf(*app, QString::fromLatin1(hostapi::kPdfExportProgId));

    std::printf("%d companies, %d persons; exporting \"%s\"\n", countOf(*engine, "company"), countOf(*engine, "person"),
                kReport.toUtf8().constData());
    engine->sql().resetCounters();
    QElapsedTimer timer;
    timer.start();
    report->IReport_PrintOut(false, ObjectRef(context));
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const int queries = engine->sql().counters().selects;
    const long reportMemory = peakMegabytes();
    if (*pages < 1 || !QFileInfo::exists(out)) {
      std::fprintf(stderr, "report_bench: the export wrote nothing (see the message above)\n");
      return 1;
    }
    std::printf("queries %d\nexport  %8.1f s, %d pages, %.1f pages/s  (%s)\n", queries, seconds, *pages,
                *pages / seconds, out.toUtf8().constData());
    std::printf("peak memory %ld MB after the export\n", reportMemory);

    const int rows = countOf(*engine, "company") + countOf(*engine, "person");
    const PlainListRun plain = runPlainList(rows, scratch.filePath(QStringLiteral("plain-list.pdf")));
    const double plainSeconds = plain.runSeconds + plain.exportSeconds;
    std::printf("plain list of %d rows: %.1f s, %d pages, %.1f pages/s; the report takes %.2f times as long a page\n",
                rows, plainSeconds, plain.pages, plain.pages / plainSeconds,
                (seconds / *pages) / (plainSeconds / plain.pages));
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "report_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
