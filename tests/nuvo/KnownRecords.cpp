#include "KnownRecords.h"

#include "nuvo/RecordWriter.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/demo/DemoCatalog.h"

#include "hostapi/Filters.h"
#include "hostapi/Records.h"

#include "core/VbDate.h"

namespace kordel::test {

namespace {

void write(nuvo::Engine &engine, const char *cls, const QStringList &fields, const std::vector<Variant> &values) {
  nuvo::RecordWriter writer(engine.sql(), engine.classNamed(QString::fromLatin1(cls)), fields);
  writer.add(values);
  writer.flush();
}

} // namespace

void KnownRecordsTest::SetUp() {
  DatabaseTest::SetUp();
  if (IsSkipped())
    return;
  auto engine = nuvo::Engine::create(address, nuvo::demo::demoCatalog(), QStringLiteral("Known"), QStringLiteral("en"));
  nuvo::Transaction transaction(engine->sql());
  write(*engine, "coworker", {"idcoworker", "name", "login"}, {1, QString::fromUtf8("Anna Lindqvist"), "anna"});
  engine->sql().exec(
      QStringLiteral("INSERT INTO nv_user (login, name, coworker) VALUES ('anna', 'Anna Lindqvist', 1)"));
  write(*engine, "company", {"idcompany", "name", "category", "turnover", "founded", "coworker", "createdtime"},
        {1234, QString::fromUtf8("Åkerlund & Söner AB"), 4, 1234567.5, dateFromParts(2001, 3, 5), 1,
         combineDateTime(dateFromParts(2020, 1, 2), timeFromParts(9, 30, 0))});
  write(*engine, "company", {"idcompany"}, {2});
  write(*engine, "person", {"idperson", "firstname", "lastname", "company"},
        {1, QString::fromUtf8("Klára"), QString::fromUtf8("Dvořáková"), 1234});
  write(*engine, "deal", {"iddeal", "name", "value", "probability", "stage", "closedate", "company", "person"},
        {1, "Support renewal", Currency::fromDouble(1234.5), 0.25, 2, dateFromParts(2024, 12, 31), 1234, 1});
  write(*engine, "history", {"idhistory", "date", "type", "note", "company", "deal"},
        {1, combineDateTime(dateFromParts(2024, 2, 29), timeFromParts(14, 5, 0)), 5, "Visited the office", 1234, 1});
  write(*engine, "product", {"idproduct", "name", "price", "active"}, {1, "Licence", Currency::fromDouble(4900), true});
  write(*engine, "product", {"idproduct", "name", "active"}, {2, "Old licence", false});
  transaction.commit();
  english = open(QStringLiteral("en"));
  swedish = open(QStringLiteral("sv"));
}

std::shared_ptr<hostapi::Record> KnownRecordsTest::record(const QString &language, const QString &cls, int id) {
  auto records = std::make_shared<nuvo::RecordsObject>(language == QLatin1String("sv") ? swedish : english);
  records->open(cls, nullptr, nullptr, 0);
  for (int i = 0; i < records->count(); ++i)
    if (records->at(i)->id() == id)
      return records->at(i);
  return nullptr;
}

} // namespace kordel::test
