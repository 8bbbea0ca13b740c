// records_bench: how fast the report cursor turns a two-level page tree
// into rows, against one plain SQL join that returns the same rows in the
// same order through the same driver in the same run.
//
//   records_bench [--db FILE] [--companies N]
//
// Opens companies (sorted by name, then city descending) with a sub page
// of their persons (last name, then first name), over a pool of every
// company, and walks every person of every company with SetParentFilter,
// reading each row's record and id. A missing database is made first with
// the demo data. Prints rows per second of both roads, their ratio, the
// time per parent of the walk at a quarter and at all of the parents (a
// walk that grows with the square of the rows shows there), and the peak
// memory of the process.

#include "BenchTools.h"

#include "common/ApplicationManager.h"
#include "common/ResourceManager.h"
#include "data/Records.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/SettingsStore.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"

#include "core/Error.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>

using namespace kordel;

namespace {

const QString kPersons = QStringLiteral("{BENCH-PERSONS}");

std::shared_ptr<addin::Report> companyReport() {
  auto report = std::make_shared<addin::Report>();
  report->LoadContents(Variant());
  if (!report->Create(QStringLiteral("company")) ||
      !report->AddPage(kPersons, QStringLiteral("Persons"), QStringLiteral("person"), report->Guid(), Variant()))
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("records_bench"), QStringLiteral("The report cannot be made"));
  auto top = report->Page();
  top->Fields()->Add(QStringLiteral("name"), QStringLiteral("name"), QString());
  top->Fields()->Add(QStringLiteral("city"), QStringLiteral("city"), QString());
  top->SortFields()->Add(QStringLiteral("name"), addin::kSortAscending);
  top->SortFields()->Add(QStringLiteral("city"), addin::kSortDescending);
  auto persons = report->LookupPage(kPersons);
  persons->Fields()->Add(QStringLiteral("lastname"), QStringLiteral("lastname"), QString());
  persons->Fields()->Add(QStringLiteral("firstname"), QStringLiteral("firstname"), QString());
  persons->SortFields()->Add(QStringLiteral("lastname"), addin::kSortAscending);
  persons->SortFields()->Add(QStringLiteral("firstname"), addin::kSortAscending);
  return report;
}

} // namespace

int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(argc, argv);
  QString database = QStringLiteral("records_bench.db");
  int companies = 20000;
  const QStringList args = qt.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--db"))
      database = args[i + 1];
    else if (args[i] == QLatin1String("--companies"))
      companies = args[i + 1].toInt();
  }
  try {
    const auto address = demoDatabase(database, companies);

    QTemporaryDir scratch;
    hostapi::installUi(std::make_shared<host::BatchUi>());
    auto app = std::make_shared<host::HostApplication>(
        std::make_shared<host::SettingsStore>(scratch.filePath(QStringLiteral("registry.ini"))),
        std::make_shared<host::FileLog>(scratch.filePath(QStringLiteral("bench.log"))), QStringLiteral("en"));
    auto engine = nuvo::Engine::open(address, QStringLiteral("en"));
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(engine));
    addin::Connect(app);
    addin::StartTranslation(QStringLiteral("en"));

    // Every company, by a pool, as a print of a whole list goes.
    auto everyCompany = std::dynamic_pointer_cast<hostapi::Pool>(app->createObject(QStringLiteral("Nuvo.Pool")));
    {
      QSqlQuery ids = engine->sql().select(QStringLiteral("SELECT idcompany FROM company"));
      while (ids.next())
        everyCompany->add(ids.value(0).toInt());
    }
    auto context =
        std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject(QStringLiteral("Nuvo.ReportContext")));
    context->setRange(Variant(ObjectRef(everyCompany)));
    const auto report = companyReport();

    QElapsedTimer timer;
    timer.start();
    engine->sql().resetCounters();
    auto top = std::make_shared<addin::Records>();
    top->OpenRecords(report->Page(), context, nullptr);
    const qint64 opened = timer.nsecsElapsed();
    const int queries = engine->sql().counters().selects;
    auto persons = top->LookupSubRecords(kPersons);
    auto parent = std::dynamic_pointer_cast<hostapi::Pool>(app->createObject(QStringLiteral("Nuvo.Pool")));
    qint64 rows = 0;
    qint64 checksum = 0;
    const int parents = top->RecordCount();
    qint64 atQuarter = 0;
    int walked = 0;
    while (!top->EndOfFile()) {
      const auto company = top->Record();
      ++rows;
      parent->clear();
      parent->add(company->id());
      persons->SetParentFilter(parent);
      while (!persons->EndOfFile()) {
        checksum += persons->Record()->id();
        ++rows;
        persons->MoveNext();
      }
      top->MoveNext();
      if (++walked == parents / 4)
        atQuarter = timer.nsecsElapsed() - opened;
    }
    const qint64 cursorTime = timer.nsecsElapsed();
    const qint64 walkTime = cursorTime - opened;

    // The same rows in the same order from one join.
    timer.restart();
    qint64 plainRows = 0;
    qint64 plainChecksum = 0;
    QSqlQuery join = engine->sql().select(
        QStringLiteral("SELECT c.idcompany, c.name, c.city, p.idperson, p.lastname, p.firstname FROM company c "
                       "LEFT JOIN person p ON p.company = c.idcompany "
                       "ORDER BY c.name COLLATE NOCASE, c.city COLLATE NOCASE DESC, c.idcompany, "
                       "p.lastname COLLATE NOCASE, p.firstname COLLATE NOCASE"));
    int lastCompany = -1;
    while (join.next()) {
      const int company = join.value(0).toInt();
      if (company != lastCompany) {
        ++plainRows;
        lastCompany = company;
      }
      if (!join.value(3).isNull()) {
        plainChecksum += join.value(3).toInt();
        ++plainRows;
      }
    }
    const qint64 plainTime = timer.nsecsElapsed();

    std::printf("companies %d, rows %lld (join %lld), queries to open %d\n", parents, static_cast<long long>(rows),
                static_cast<long long>(plainRows), queries);
    std::printf("open   %8.1f ms\n", opened / 1e6);
    std::printf("walk   %8.1f ms  (%.2f us per parent in the first quarter, %.2f us over all)\n", walkTime / 1e6,
                parents / 4 ? atQuarter / 1e3 / (parents / 4) : 0.0, parents ? walkTime / 1e3 / parents : 0.0);
    std::printf("cursor %10.0f rows/s\njoin   %10.0f rows/s\nratio  %10.2f (cursor time / join time)\n",
                rows * 1e9 / double(cursorTime), plainRows * 1e9 / double(plainTime),
                double(cursorTime) / double(plainTime));
    std::printf("peak memory %ld MB\n", peakMegabytes());
    if (checksum != plainChecksum || rows != plainRows)
      std::printf("warning: the two roads read different rows (checksums %lld and %lld)\n",
                  static_cast<long long>(checksum), static_cast<long long>(plainChecksum));
    addin::StopTranslation();
    addin::Disconnect();
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "records_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
