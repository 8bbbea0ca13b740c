#include "cli/DataCommands.h"
#include "cli/InterruptCleanup.h"
#include "cli/Options.h"
#include "cli/ReportCommands.h"

#include "host/HostApplication.h"
#include "host/HostPaths.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/demo/DemoBuild.h"
#include "nuvo/demo/DemoDatabase.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

} // namespace

QMap<QString, int> makeDemoDatabase(HostApplication &app, const QString &database, int companies, std::uint64_t seed,
                                    const std::function<void(const std::function<void()> &)> &runBuild) {
  nuvo::demo::DemoOptions options;
  options.companies = companies;
  options.seed = seed;
  const auto target = nuvo::DatabaseAddress::parse(database);
  if (target.dialect == nuvo::Dialect::SQLite)
    QDir().mkpath(QFileInfo(target.file).absolutePath());
  nuvo::demo::DemoBuild build(target);
  const InterruptCleanup cleanup(build.temporaryFiles());
  nuvo::demo::DemoCounts counts;
  const std::function<void()> make = [&] { counts = nuvo::demo::createDemoDatabase(build.address(), options); };
  if (runBuild)
    runBuild(make);
  else
    make();
  // Opened without a write-ahead log, so that the file alone holds the
  // reports when it takes its name.
  app.setDatabase(std::make_shared<nuvo::DatabaseObject>(
      nuvo::Engine::open(build.address(), app.language(), {}, nuvo::OpenMode::Create)));
  QMap<QString, int> made;
  for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
    made.insert(it.key(), it.value());
  made.insert(QStringLiteral("reports"), int(addDemoReports(app).size()));
  app.setDatabase(nullptr);
  build.finish();
  return made;
}

int demo(HostApplication &app, const Arguments &arguments) {
  QString database = arguments.value(QStringLiteral("--db"));
  if (database.isEmpty())
    database = HostPaths::defaultDatabase();
  nuvo::demo::DemoOptions defaults;
  int companies = defaults.companies;
  std::uint64_t seed = defaults.seed;
  if (arguments.has(QStringLiteral("--companies")))
    companies = wholeNumber(arguments.value(QStringLiteral("--companies")), QStringLiteral("--companies"));
  if (arguments.has(QStringLiteral("--seed")))
    seed = std::uint64_t(wholeNumber(arguments.value(QStringLiteral("--seed")), QStringLiteral("--seed")));
  const QMap<QString, int> counts = makeDemoDatabase(app, database, companies, seed);

  std::fprintf(stdout, "Demo database %s:\n", nuvo::DatabaseAddress::parse(database).location().toUtf8().constData());
  for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
    if (it.key() != QLatin1String("reports"))
      std::fprintf(stdout, "  %-10s %d\n", it.key().toUtf8().constData(), it.value());
  std::fprintf(stdout, "  %-10s %d\n", "reports", counts.value(QStringLiteral("reports")));
  return 0;
}

void openDatabase(HostApplication &app, const QString &database, nuvo::OpenMode mode) {
  const auto address = nuvo::DatabaseAddress::parse(database.isEmpty() ? HostPaths::defaultDatabase() : database);
  std::shared_ptr<nuvo::Engine> engine;
  try {
    engine = nuvo::Engine::open(address, app.language(), {}, mode);
  } catch (const Error &error) {
    if (error.number() != ErrorNumber::FileNotFound && error.number() != ErrorNumber::InvalidFileFormat)
      throw;
    const QString make =
        database.isEmpty() ? QStringLiteral("orvex demo") : QStringLiteral("orvex demo --db ") + database;
    raiseError(error.number(), kSource, QStringLiteral("%1; run `%2` to make one").arg(error.description(), make));
  }
  app.setDatabase(std::make_shared<nuvo::DatabaseObject>(std::move(engine)));
}

} // namespace kordel::host::cli
