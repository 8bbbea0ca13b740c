// The demo database: deterministic for a seed, the same on both databases,
// realistic in size and in its names.

#include "NuvoFixture.h"

#include "support/ErrorCapture.h"

#include "nuvo/ActiveUserObject.h"
#include "nuvo/ClassObjects.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/demo/DemoDatabase.h"

#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Records.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

using namespace kordel;
using kordel::test::DatabaseTest;
using kordel::test::dumpClass;

namespace {

const QStringList kClasses{"coworker", "company", "person", "deal", "history", "product"};

class DemoTest : public DatabaseTest {
protected:
  // Another SQLite demo database in the test's folder.
  std::shared_ptr<nuvo::Engine> sqliteDemo(const QString &name, int companies, std::uint64_t seed) {
    nuvo::DatabaseAddress other;
    other.file = dir.file(name);
    nuvo::demo::DemoOptions options;
    options.companies = companies;
    options.seed = seed;
    nuvo::demo::createDemoDatabase(other, options);
    return nuvo::Engine::open(other, QStringLiteral("en"), QStringLiteral("anna"));
  }
};

TEST_P(DemoTest, ASeedGivesTheSameDataOnEitherDatabase) {
  createDemo(25, 42);
  auto here = open();
  auto same = sqliteDemo("same.db", 25, 42);
  auto other = sqliteDemo("other.db", 25, 43);
  for (const QString &cls : kClasses)
    EXPECT_EQ(dumpClass(*here, cls), dumpClass(*same, cls)) << cls.toStdString();
  EXPECT_NE(dumpClass(*here, "company"), dumpClass(*other, "company"));
  EXPECT_NE(dumpClass(*here, "history"), dumpClass(*other, "history"));
}

TEST_P(DemoTest, EveryUserHasACoworkerRecord) {
  createDemo(5);
  auto engine = open();
  auto coworkers = std::make_shared<nuvo::RecordsObject>(engine);
  coworkers->open("coworker", nullptr, nullptr, 0);
  ASSERT_EQ(coworkers->count(), 10);
  for (int i = 0; i < coworkers->count(); ++i) {
    const QString login = coworkers->at(i)->text("login");
    auto user = nuvo::ActiveUserObject(open("sv", login));
    ASSERT_TRUE(user.record()) << login.toStdString();
    EXPECT_EQ(user.record()->id(), coworkers->at(i)->id());
    EXPECT_EQ(user.name(), coworkers->at(i)->text("name"));
  }
  EXPECT_EQ(test::errorNumber([&] { open("en", "nobody"); }), ErrorNumber::InvalidCall);
}

TEST_P(DemoTest, RefusesWhatItCannotMake) {
  EXPECT_EQ(test::errorNumber([&] { createDemo(0); }), ErrorNumber::InvalidCall);
  createDemo(2);
  if (GetParam() == nuvo::Dialect::SQLite) {
    const QByteArray before = test::readFile(address.file);
    EXPECT_EQ(test::errorNumber([&] { createDemo(2); }), ErrorNumber::FileAlreadyExists);
    EXPECT_EQ(test::readFile(address.file), before);
  } else {
    EXPECT_EQ(test::errorNumber([&] { createDemo(2); }), ErrorNumber::FileAlreadyExists);
  }
  EXPECT_EQ(dumpClass(*open(), "company").size(), 2) << "the first demo is intact";
}

// Sizes and names at a few hundred companies; SQLite only, as nothing here
// depends on the database.
TEST(DemoContentTest, NamesAndSizesLookReal) {
  test::TempDir dir;
  nuvo::DatabaseAddress address;
  address.file = dir.file("demo.db");
  nuvo::demo::DemoOptions options;
  options.companies = 400;
  const auto counts = nuvo::demo::createDemoDatabase(address, options);
  EXPECT_EQ(counts.value("company"), 400);
  EXPECT_NEAR(counts.value("person") / 400.0, 3.0, 0.3);
  EXPECT_NEAR(counts.value("deal") / 400.0, 2.0, 0.3);
  EXPECT_NEAR(counts.value("history") / 400.0, 5.0, 0.3);
  EXPECT_EQ(counts.value("coworker"), 10);
  EXPECT_EQ(counts.value("product"), 20);

  auto engine = nuvo::Engine::open(address, "sv", "anna");
  const auto distinct = [&](const char *cls, const QStringList &paths) {
    auto records = std::make_shared<nuvo::RecordsObject>(engine);
    records->open(cls, nullptr, nullptr, 0);
    QSet<QString> values;
    for (int i = 0; i < records->count(); ++i) {
      QString value;
      for (const QString &path : paths)
        value += records->at(i)->text(path) + u' ';
      values.insert(value);
    }
    return values;
  };
  const auto names = distinct("company", {"name"});
  const auto cities = distinct("company", {"city"});
  const auto people = distinct("person", {"firstname", "lastname"});
  const auto notes = distinct("history", {"note"});
  EXPECT_GE(names.size(), 200);
  EXPECT_GE(cities.size(), 60);
  EXPECT_GE(people.size(), 500);
  EXPECT_GE(notes.size(), 500);
  const QString all = QStringList(names.values()).join(u' ') + QStringList(cities.values()).join(u' ') +
                      QStringList(people.values()).join(u' ');
  for (const char *letters : {"åäö", "üß", "čřě"})
    for (const QChar letter : QString::fromUtf8(letters))
      EXPECT_TRUE(all.contains(letter)) << QString(letter).toStdString();

  // Every class and field has a Swedish name of its own.
  nuvo::ClassesObject classes(engine);
  for (int c = 0; c < classes.count(); ++c) {
    const auto cls = classes.at(c);
    EXPECT_NE(cls->localName(), cls->name());
    EXPECT_GE(cls->filters()->count(), 2) << cls->name().toStdString();
    const auto fields = std::dynamic_pointer_cast<nuvo::FieldsObject>(cls->fields());
    for (int f = 0; f < fields->count(); ++f)
      EXPECT_FALSE(fields->at(f)->localName().isEmpty());
  }
}

} // namespace

KORDEL_ON_BOTH_DATABASES(DemoTest);
