#include "BenchTools.h"

#include "nuvo/SqlConnection.h"
#include "nuvo/demo/DemoDatabase.h"

#include <QFileInfo>

#include <sys/resource.h>

#include <cstdio>

long peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

kordel::nuvo::DatabaseAddress demoDatabase(const QString &database, int companies, int personsPerCompany) {
  auto address = kordel::nuvo::DatabaseAddress::parse(database);
  if (address.dialect == kordel::nuvo::Dialect::SQLite && !QFileInfo::exists(address.file)) {
    std::printf("making a demo database of %d companies in %s\n", companies, address.file.toUtf8().constData());
    kordel::nuvo::demo::DemoOptions options;
    options.companies = companies;
    options.personsPerCompany = personsPerCompany;
    kordel::nuvo::demo::createDemoDatabase(address, options);
  }
  return address;
}
