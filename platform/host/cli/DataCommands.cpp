#include "cli/DataCommands.h"
#include "cli/Options.h"
#include "cli/ReportCommands.h"

#include "host/HostApplication.h"
#include "host/HostPaths.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/demo/DemoDatabase.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

} // namespace

QString defaultDatabase() { return HostPaths::dataFolder() + QStringLiteral("/orvex.db"); }

int demo(HostApplication &app, const QStringList &args) {
  QString database = defaultDatabase();
  nuvo::demo::DemoOptions options;
  for (qsizetype at = 0; at < args.size(); ++at) {
    const QString &option = args[at];
    if (option == QLatin1String("--db"))
      database = optionValue(args, at);
    else if (option == QLatin1String("--companies"))
      options.companies = wholeNumber(optionValue(args, at), option);
    else if (option == QLatin1String("--seed"))
      options.seed = std::uint64_t(wholeNumber(optionValue(args, at), option));
    else
      raiseError(
          ErrorNumber::InvalidCall, kSource,
          QStringLiteral("usage: orvex demo [--db FILE] [--companies N] [--seed S] ('%1' is unknown)").arg(option));
  }
  const auto address = nuvo::DatabaseAddress::parse(database);
  if (address.dialect == nuvo::Dialect::SQLite)
    QDir().mkpath(QFileInfo(address.file).absolutePath());
  const auto counts = nuvo::demo::createDemoDatabase(address, options);
  std::fprintf(stdout, "Demo database %s:\n", address.location().toUtf8().constData());
  for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
    std::fprintf(stdout, "  %-10s %d\n", it.key().toUtf8().constData(), it.value());
  openDatabase(app, database);
  const QStringList reports = addDemoReports(app);
  std::fprintf(stdout, "  %-10s %lld\n", "reports", static_cast<long long>(reports.size()));
  return 0;
}

void openDatabase(HostApplication &app, const QString &database) {
  const auto address = nuvo::DatabaseAddress::parse(database.isEmpty() ? defaultDatabase() : database);
  auto engine = nuvo::Engine::open(address, app.language());
  app.setDatabase(std::make_shared<nuvo::DatabaseObject>(std::move(engine)));
}

} // namespace kordel::host::cli
