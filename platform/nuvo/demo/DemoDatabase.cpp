#include "nuvo/demo/DemoDatabase.h"

#include "nuvo/Catalog.h"
#include "nuvo/RecordWriter.h"
#include "nuvo/SchemaStore.h"
#include "nuvo/demo/DemoCatalog.h"
#include "nuvo/demo/DemoNames.h"
#include "nuvo/demo/DemoRandom.h"

#include "hostapi/Database.h"

#include "core/Error.h"
#include "core/VbDate.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <memory>

namespace kordel::nuvo::demo {

namespace {

const QString kSource = QStringLiteral("orvex demo");

QStringList names(std::initializer_list<const char *> list) {
  QStringList result;
  for (const char *name : list)
    result << QString::fromLatin1(name);
  return result;
}

const QStringList kSystemFields = names({"createdtime", "timestamp", "createdby", "updatedby"});

// A text with %1 to %4 replaced; a text may use any of them.
QString fillIn(QString text, const QStringList &values) {
  for (qsizetype i = 0; i < values.size(); ++i)
    text.replace(u'%' + QString::number(i + 1), values[i]);
  return text;
}

// The probability of a deal by its stage (keys 1 to 6).
constexpr double kStageProbability[] = {0.0, 0.1, 0.25, 0.5, 0.75, 1.0, 0.0};

class DemoGenerator {
public:
  DemoGenerator(SqlConnection &sql, const Catalog &catalog, const DemoOptions &options)
      : sql_(sql), catalog_(catalog), random_(options.seed), companies_(options.companies),
        personsPerCompany_(options.personsPerCompany) {}

  DemoCounts run() {
    writeUsersAndPolicies();
    writeCoworkers();
    writeProducts();
    writeCompanies();
    return counts_;
  }

private:
  std::unique_ptr<RecordWriter> writer(const char *className, std::initializer_list<const char *> fields) {
    return std::make_unique<RecordWriter>(sql_, *catalog_.find(QString::fromLatin1(className)),
                                          names(fields) + kSystemFields);
  }

  // Created and changed times and logins, in the order of kSystemFields.
  std::vector<Variant> systemValues() {
    const Date created = combineDateTime(dateFromParts(2020, 1, 1 + random_.between(0, 1800)),
                                         timeFromParts(random_.between(7, 18), random_.between(0, 59), 0));
    const Date changed{created.serial + random_.between(0, 400) + random_.fraction()};
    const auto &coworkers = demoCoworkers();
    const QString &creator = coworkers[std::size_t(random_.between(0, int(coworkers.size()) - 1))].login;
    const QString &changer = coworkers[std::size_t(random_.between(0, int(coworkers.size()) - 1))].login;
    return {created, Date{std::floor(changed.serial * 86400.0) / 86400.0}, creator, changer};
  }

  void finish(RecordWriter &writer, const char *className) {
    writer.flush();
    counts_.insert(QString::fromLatin1(className), writer.written());
  }

  QString phone(const CountryWords &words) {
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(words.phonePrefix)
        .arg(random_.between(8, 99))
        .arg(random_.between(100, 999))
        .arg(random_.between(10, 99))
        .arg(random_.between(10, 99));
  }

  const CountryWords &pickCountry() {
    int roll = random_.between(1, 100);
    for (const CountryShare &share : demoCountries()) {
      if (roll <= share.percent)
        return *share.words;
      roll -= share.percent;
    }
    return *demoCountries().front().words;
  }

  void writeUsersAndPolicies() {
    int id = 1;
    for (const DemoCoworker &coworker : demoCoworkers())
      sql_.exec(QStringLiteral("INSERT INTO nv_user (login, name, coworker) VALUES (?, ?, ?)"),
                {coworker.login, coworker.name, id++});
    sql_.exec(
        QStringLiteral("INSERT INTO nv_policy (id, name) VALUES (1, 'Everyone'), (2, 'Sales'), (3, 'Management')"));
    const int all = hostapi::Access::All;
    const int read = hostapi::Access::Read;
    const int change = hostapi::Access::Read | hostapi::Access::Change;
    sql_.exec(QStringLiteral("INSERT INTO nv_access (policy, login, mask) VALUES (1, '*', ?), (2, '*', ?), (3, ?, ?)"),
              {all, read, demoCoworkers().front().login, all});
    for (const DemoCoworker &coworker : demoCoworkers())
      if (coworker.sales)
        sql_.exec(QStringLiteral("INSERT INTO nv_access (policy, login, mask) VALUES (2, ?, ?)"),
                  {coworker.login, change});
  }

  void writeCoworkers() {
    auto coworkers = writer("coworker", {"idcoworker", "name", "email", "phone", "login"});
    int id = 1;
    for (const DemoCoworker &coworker : demoCoworkers()) {
      const QStringList parts = coworker.name.split(u' ');
      const QString email =
          asciiSlug(parts.front()) + u'.' + asciiSlug(parts.back()) + QStringLiteral("@orvex-demo.se");
      std::vector<Variant> row{id++, coworker.name, email, phone(*demoCountries().front().words), coworker.login};
      for (Variant &value : systemValues())
        row.push_back(std::move(value));
      coworkers->add(row);
    }
    finish(*coworkers, "coworker");
  }

  void writeProducts() {
    auto products = writer("product", {"idproduct", "name", "price", "active"});
    int id = 1;
    for (const DemoProduct &product : demoProducts()) {
      std::vector<Variant> row{id++, product.name, Currency::fromDouble(product.price), random_.chance(0.8)};
      for (Variant &value : systemValues())
        row.push_back(std::move(value));
      products->add(row);
    }
    finish(*products, "product");
  }

  void writeCompanies() {
    auto companies = writer("company", {"idcompany", "name", "city", "country", "phone", "email", "category",
                                        "turnover", "founded", "coworker"});
    auto persons =
        writer("person", {"idperson", "firstname", "lastname", "position", "email", "phone", "birthday", "company"});
    auto deals = writer(
        "deal", {"iddeal", "name", "value", "probability", "stage", "closedate", "company", "person", "coworker"});
    auto history = writer("history", {"idhistory", "date", "type", "note", "company", "person", "deal", "coworker"});
    const int coworkerCount = int(demoCoworkers().size());
    int personId = 0, dealId = 0, historyId = 0;

    for (int companyId = 1; companyId <= companies_; ++companyId) {
      const CountryWords &words = pickCountry();
      const QString root = random_.pick(words.companyRoots);
      const QString name = root + u' ' + random_.pick(words.companyForms);
      const QString city = random_.pick(words.cities);
      const QString domain = asciiSlug(root) + u'.' + words.domain;
      const int category = random_.chance(0.45) ? 1 : random_.between(2, 5);
      const double turnover = std::round(std::pow(10.0, 5.0 + 4.0 * random_.fraction()) * 100.0) / 100.0;
      const int responsible = random_.between(1, coworkerCount);
      std::vector<Variant> company{
          companyId,
          name,
          city,
          words.country,
          phone(words),
          QStringLiteral("info@") + domain,
          category,
          turnover,
          dateFromParts(random_.between(1890, 2022), random_.between(1, 12), random_.between(1, 28)),
          responsible};
      for (Variant &value : systemValues())
        company.push_back(std::move(value));
      companies->add(company);

      std::vector<int> companyPersons;
      std::vector<QString> firstNames;
      const int personCount = random_.between(1, 2 * personsPerCompany_ - 1);
      for (int p = 0; p < personCount; ++p) {
        const bool female = random_.chance(0.5);
        const QString first = random_.pick(female ? words.femaleNames : words.maleNames);
        QString last = random_.pick(words.lastNames);
        if (female)
          last = femaleLastName(words, last);
        const Variant email =
            random_.chance(0.85) ? Variant(asciiSlug(first) + u'.' + asciiSlug(last) + u'@' + domain) : Variant::null();
        std::vector<Variant> person{
            ++personId,
            first,
            last,
            random_.pick(words.positions),
            email,
            phone(words),
            dateFromParts(random_.between(1950, 2000), random_.between(1, 12), random_.between(1, 28)),
            companyId};
        for (Variant &value : systemValues())
          person.push_back(std::move(value));
        persons->add(person);
        companyPersons.push_back(personId);
        firstNames.push_back(first);
      }

      std::vector<int> companyDeals;
      QStringList subjects;
      const int dealCount = random_.between(0, 4);
      for (int d = 0; d < dealCount; ++d) {
        const QString subject = random_.pick(words.dealSubjects);
        const int stage = random_.between(1, 6);
        const int contact = random_.between(0, personCount - 1);
        std::vector<Variant> deal{
            ++dealId,
            subject + u' ' + QString::number(random_.between(2022, 2026)),
            Currency::fromDouble(std::round(std::pow(10.0, 4.0 + 2.7 * random_.fraction()))),
            kStageProbability[stage],
            stage,
            dateFromParts(random_.between(2022, 2026), random_.between(1, 12), random_.between(1, 28)),
            companyId,
            companyPersons[std::size_t(contact)],
            random_.chance(0.7) ? responsible : random_.between(1, coworkerCount)};
        for (Variant &value : systemValues())
          deal.push_back(std::move(value));
        deals->add(deal);
        companyDeals.push_back(dealId);
        subjects << subject;
      }

      const int historyCount = random_.between(3, 7);
      for (int h = 0; h < historyCount; ++h) {
        const int contact = random_.between(0, personCount - 1);
        const int dealIndex =
            companyDeals.empty() || random_.chance(0.4) ? -1 : random_.between(0, int(companyDeals.size()) - 1);
        const QString subject = dealIndex >= 0 ? subjects[dealIndex] : random_.pick(words.dealSubjects);
        const QString note = fillIn(random_.pick(words.notes), {firstNames[std::size_t(contact)], subject, city, name});
        const Date when = combineDateTime(dateFromParts(2021, 1, 1 + random_.between(0, 1825)),
                                          timeFromParts(random_.between(8, 17), 15 * random_.between(0, 3), 0));
        std::vector<Variant> entry{++historyId,
                                   when,
                                   random_.between(1, 5),
                                   note,
                                   companyId,
                                   random_.chance(0.9) ? Variant(companyPersons[std::size_t(contact)])
                                                       : Variant::null(),
                                   dealIndex >= 0 ? Variant(companyDeals[std::size_t(dealIndex)]) : Variant::null(),
                                   random_.between(1, coworkerCount)};
        for (Variant &value : systemValues())
          entry.push_back(std::move(value));
        history->add(entry);
      }
    }
    finish(*companies, "company");
    finish(*persons, "person");
    finish(*deals, "deal");
    finish(*history, "history");
  }

  SqlConnection &sql_;
  const Catalog &catalog_;
  DemoRandom random_;
  int companies_;
  int personsPerCompany_;
  DemoCounts counts_;
};

void removeSqliteFiles(const QString &file) {
  for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
    QFile::remove(file + suffix);
}

} // namespace

DemoCounts createDemoDatabase(const DatabaseAddress &address, const DemoOptions &options) {
  if (options.companies < 1)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("A demo database needs at least one company"));
  if (options.personsPerCompany < 1)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("A demo company has at least one person"));
  const bool sqlite = address.dialect == Dialect::SQLite;
  if (sqlite && QFileInfo::exists(address.file))
    raiseError(ErrorNumber::FileAlreadyExists, kSource, QStringLiteral("%1 exists already").arg(address.file));
  auto catalog = demoCatalog();
  catalog->complete();
  try {
    SqlConnection sql(address, OpenMode::Create);
    Transaction transaction(sql);
    SchemaStore::create(sql, *catalog, options.databaseName);
    DemoCounts counts = DemoGenerator(sql, *catalog, options).run();
    transaction.commit();
    return counts;
  } catch (...) {
    if (sqlite)
      removeSqliteFiles(address.file);
    throw;
  }
}

} // namespace kordel::nuvo::demo
