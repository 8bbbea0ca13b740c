#include "NuvoFixture.h"

#include "PrivatePostgres.h"

#include "nuvo/RecordObject.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/demo/DemoDatabase.h"

#include "hostapi/Classes.h"

namespace kordel::test {

void DatabaseTest::SetUp() {
  if (GetParam() == nuvo::Dialect::SQLite) {
    address.file = dir.file(QStringLiteral("test.db"));
    return;
  }
  auto &server = PrivatePostgres::instance();
  if (!server.available())
    GTEST_SKIP() << "No PostgreSQL server: " << server.failure().toStdString();
  cleanup.postgres = server.createDatabase();
  address = *cleanup.postgres;
}

DatabaseTest::Cleanup::~Cleanup() {
  if (postgres)
    PrivatePostgres::instance().dropDatabase(*postgres);
}

void DatabaseTest::createDemo(int companies, std::uint64_t seed) {
  nuvo::demo::DemoOptions options;
  options.companies = companies;
  options.seed = seed;
  nuvo::demo::createDemoDatabase(address, options);
}

std::shared_ptr<nuvo::Engine> DatabaseTest::open(const QString &language, const QString &login) {
  return nuvo::Engine::open(address, language, login);
}

std::string dialectName(const ::testing::TestParamInfo<nuvo::Dialect> &info) {
  return info.param == nuvo::Dialect::SQLite ? "SQLite" : "PostgreSQL";
}

QStringList dumpClass(nuvo::Engine &engine, const QString &className) {
  auto records = std::make_shared<nuvo::RecordsObject>(engine.shared_from_this());
  records->open(className, nullptr, nullptr, 0);
  const nuvo::ClassDef &cls = engine.classNamed(className);
  QStringList lines;
  for (int i = 0; i < records->count(); ++i) {
    auto record = records->at(i);
    QStringList line{QString::number(record->id())};
    for (const auto &field : cls.fields) {
      if (!field->hasColumn())
        continue;
      line << record->value(field->name).toText() << record->text(field->name);
    }
    lines << line.join(u'|');
  }
  return lines;
}

} // namespace kordel::test
