// nuvo_bench: how fast the data engine reads records, against a plain SQL
// query of the same rows through the same driver in the same run.
//
//   nuvo_bench [--db FILE] [--companies N] [--rounds R]
//
// Opens a view of ten company paths, two of them across a relation, over
// all companies by a filter and over a pool of half of them, and reads the
// Value and the Text of every path of every record. A missing database is
// made first with the demo data. Prints rows per second of both roads and
// their ratio; the aim is a ratio of at most 3.

#include "BenchTools.h"

#include "nuvo/Engine.h"
#include "nuvo/FilterObject.h"
#include "nuvo/PoolObject.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/ViewObject.h"

#include "hostapi/Filters.h"

#include "core/Error.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace kordel;

namespace {

const QStringList kPaths{"name",     "city",     "country", "phone",         "email",
                         "category", "turnover", "founded", "coworker.name", "coworker.email"};

const QString kPlainSelect = QStringLiteral(
    "SELECT c.idcompany, c.name, c.city, c.country, c.phone, c.email, c.category, c.turnover, c.founded, "
    "w.name, w.email FROM company c LEFT JOIN coworker w ON w.idcoworker = c.coworker");

struct Run {
  qint64 rows = 0;
  qint64 nanoseconds = 0;
  double rowsPerSecond() const { return nanoseconds ? rows * 1e9 / double(nanoseconds) : 0.0; }
};

// The best of a few rounds, so that a busy machine disturbs less.
Run best(int rounds, const std::function<qint64()> &work) {
  Run fastest;
  for (int i = 0; i < rounds; ++i) {
    QElapsedTimer timer;
    timer.start();
    const qint64 rows = work();
    const qint64 elapsed = timer.nsecsElapsed();
    if (i == 0 || elapsed < fastest.nanoseconds)
      fastest = {rows, elapsed};
  }
  return fastest;
}

// Reads Value and Text of every path of every record.
qint64 readThroughEngine(const std::shared_ptr<nuvo::Engine> &engine, const std::shared_ptr<hostapi::Filter> &filter,
                         qint64 &checksum) {
  auto view = std::make_shared<nuvo::ViewObject>();
  for (const QString &path : kPaths)
    view->add(path, 0, -1, QString());
  nuvo::RecordsObject records(engine);
  records.open(QStringLiteral("company"), filter, view, 0);
  for (int i = 0; i < records.count(); ++i) {
    const auto record = records.at(i);
    for (const QString &path : kPaths) {
      checksum += record->value(path).isNull() ? 0 : 1;
      checksum += record->text(path).size();
    }
  }
  return records.count();
}

// Reads every column of every row of a plain query.
qint64 readPlain(nuvo::SqlConnection &sql, const QString &where) {
  QSqlQuery query = sql.select(kPlainSelect + where + QStringLiteral(" ORDER BY c.idcompany"));
  qint64 rows = 0;
  qint64 checksum = 0;
  while (query.next()) {
    for (int c = 0; c <= kPaths.size(); ++c)
      checksum += query.value(c).isNull() ? 0 : 1;
    ++rows;
  }
  return checksum >= 0 ? rows : 0;
}

// The same pool for the plain road: a temporary table filled by plain
// INSERTs of 500 rows.
qint64 readPlainPool(nuvo::SqlConnection &sql, const std::vector<int> &ids) {
  sql.exec(QStringLiteral("DROP TABLE IF EXISTS bench_pool"));
  sql.exec(QStringLiteral("CREATE TEMP TABLE bench_pool (id INTEGER PRIMARY KEY)"));
  sql.begin();
  for (std::size_t start = 0; start < ids.size(); start += 500) {
    QString insert = QStringLiteral("INSERT INTO bench_pool (id) VALUES ");
    QVariantList params;
    for (std::size_t i = start; i < std::min(ids.size(), start + 500); ++i) {
      insert += i == start ? QStringLiteral("(?)") : QStringLiteral(",(?)");
      params << ids[i];
    }
    sql.exec(insert, params);
  }
  sql.commit();
  return readPlain(sql, QStringLiteral(" WHERE c.idcompany IN (SELECT id FROM bench_pool)"));
}

void report(const char *what, const Run &engine, const Run &plain) {
  std::printf("%-28s %8lld rows  engine %10.0f rows/s  plain %10.0f rows/s  ratio %.2f\n", what,
              static_cast<long long>(engine.rows), engine.rowsPerSecond(), plain.rowsPerSecond(),
              plain.nanoseconds ? double(engine.nanoseconds) / double(plain.nanoseconds) : 0.0);
}

} // namespace

int main(int argc, char **argv) {
  QCoreApplication app(argc, argv);
  QString database = QStringLiteral("nuvo_bench.db");
  int companies = 100000;
  int rounds = 3;
  const QStringList args = app.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--db"))
      database = args[i + 1];
    else if (args[i] == QLatin1String("--companies"))
      companies = args[i + 1].toInt();
    else if (args[i] == QLatin1String("--rounds"))
      rounds = std::max(1, args[i + 1].toInt());
  }
  try {
    const auto address = demoDatabase(database, companies);
    auto engine = nuvo::Engine::open(address, QStringLiteral("en"));
    nuvo::SqlConnection plainSql(address);

    qint64 checksum = 0;
    auto everything = std::make_shared<nuvo::FilterObject>();
    everything->addCondition(QStringLiteral("idcompany"), 0, hostapi::ConditionOp::Greater, 0);
    const Run filterEngine = best(rounds, [&] { return readThroughEngine(engine, everything, checksum); });
    const Run filterPlain = best(rounds, [&] { return readPlain(plainSql, QStringLiteral(" WHERE c.idcompany > 0")); });
    report("by filter (all companies)", filterEngine, filterPlain);

    std::vector<int> half;
    for (int id = 2; id <= 2 * 50000; id += 2)
      half.push_back(id);
    const Run poolEngine = best(rounds, [&] {
      // A new pool each round, so that its copy into the database is paid.
      auto pool = std::make_shared<nuvo::PoolObject>(half);
      auto byPool = std::make_shared<nuvo::FilterObject>();
      byPool->addCondition(QStringLiteral("idcompany"), Variant(pool), hostapi::ConditionOp::InPool, 0);
      return readThroughEngine(engine, byPool, checksum);
    });
    const Run poolPlain = best(rounds, [&] { return readPlainPool(plainSql, half); });
    report("by pool of 50,000 ids", poolEngine, poolPlain);
    std::printf("(checksum %lld)\n", static_cast<long long>(checksum));
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "nuvo_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
