// What records read as: raw values, and the texts a user sees in English
// and Swedish.

#include "KnownRecords.h"

#include "nuvo/ClassObjects.h"

#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/Records.h"

#include "core/VbDate.h"

using namespace kordel;
using kordel::test::KnownRecordsTest;

namespace {

namespace FT = hostapi::FieldType;
namespace DT = hostapi::DataType;

const QString nbsp = QString(QChar(0x00A0));

class TextTest : public KnownRecordsTest {};

TEST_P(TextTest, ValuesAreRawAndOfTheirOwnKind) {
  auto company = record("en", "company", 1234);
  ASSERT_TRUE(company);
  EXPECT_EQ(company->value("turnover"), Variant(1234567.5));
  EXPECT_EQ(company->value("founded"), Variant(dateFromParts(2001, 3, 5)));
  EXPECT_EQ(company->value("category"), Variant(4));
  EXPECT_EQ(company->value("coworker"), Variant(1));
  EXPECT_EQ(company->value("idcompany"), Variant(1234));
  auto deal = record("en", "deal", 1);
  EXPECT_EQ(deal->value("value"), Variant(Currency::fromDouble(1234.5)));
  EXPECT_EQ(deal->value("probability"), Variant(0.25));
  EXPECT_TRUE(deal->value("coworker").isNull());
  EXPECT_EQ(record("en", "product", 1)->value("active"), Variant(true));
  EXPECT_EQ(record("en", "history", 1)->value("date"),
            Variant(combineDateTime(dateFromParts(2024, 2, 29), timeFromParts(14, 5, 0))));
  // A formula's value, and a data type that follows it.
  EXPECT_DOUBLE_EQ(deal->value("weighted").toDouble(), 308.625);
  EXPECT_EQ(deal->field("weighted")->dataType(), DT::Double);
  // No value is Null, and reads as "".
  auto empty = record("en", "company", 2);
  for (const char *path : {"name", "turnover", "founded", "category", "coworker", "coworker.name"}) {
    EXPECT_TRUE(empty->value(path).isNull()) << path;
    EXPECT_EQ(empty->text(path), QString()) << path;
  }
  EXPECT_EQ(empty->description(), QString());
}

TEST_P(TextTest, TextsFollowTheLanguage) {
  struct Expected {
    const char *cls;
    int id;
    const char *path;
    QString english;
    QString swedish;
  };
  const std::vector<Expected> cases{
      {"company", 1234, "turnover", "1,234,567.50", "1" + nbsp + "234" + nbsp + "567,50"},
      {"company", 1234, "founded", "3/5/2001", "2001-03-05"},
      {"company", 1234, "category", "Supplier", QString::fromUtf8("Leverantör")},
      {"company", 1234, "coworker", "Anna Lindqvist", "Anna Lindqvist"},
      {"company", 1234, "idcompany", "1234", "1234"},
      {"company", 1234, "createdtime", "1/2/2020 9:30 AM", "2020-01-02 09:30"},
      {"deal", 1, "value", "1,234.50", "1" + nbsp + "234,50"},
      {"deal", 1, "probability", "25%", "25" + nbsp + "%"},
      {"deal", 1, "stage", "Qualified", "Kvalificerad"},
      {"deal", 1, "weighted", "308.63", "308,63"},
      {"deal", 1, "person", QString::fromUtf8("Klára Dvořáková"), QString::fromUtf8("Klára Dvořáková")},
      {"deal", 1, "company.coworker", "Anna Lindqvist", "Anna Lindqvist"},
      {"history", 1, "date", "2/29/2024 2:05 PM", "2024-02-29 14:05"},
      {"history", 1, "type", "Visit", QString::fromUtf8("Besök")},
      {"history", 1, "deal.stage", "Qualified", "Kvalificerad"},
      {"product", 1, "active", "Yes", "Ja"},
      {"product", 2, "active", "No", "Nej"},
      {"product", 2, "price", "", ""},
  };
  for (const Expected &c : cases) {
    EXPECT_EQ(record("en", c.cls, c.id)->text(c.path), c.english) << c.cls << "." << c.path;
    EXPECT_EQ(record("sv", c.cls, c.id)->text(c.path), c.swedish) << c.cls << "." << c.path;
  }
  EXPECT_EQ(record("en", "history", 1)->description(), "2/29/2024 2:05 PM Visit");
  EXPECT_EQ(record("sv", "history", 1)->description(), QString::fromUtf8("2024-02-29 14:05 Besök"));
  EXPECT_EQ(record("sv", "person", 1)->description(), QString::fromUtf8("Klára Dvořáková"));
}

// The record cursor decides by Type and DataType which values reach a
// layout raw: only decimals, currency and percent (and whole numbers of
// type 5). Every field of the model must fall on the intended side.
TEST_P(TextTest, TypesAndDataTypesSortValuesFromTexts) {
  const auto reachesLayoutRaw = [](const hostapi::Field &field) {
    const int dataType = field.dataType();
    const int type = field.type();
    return (dataType == DT::Long || dataType == DT::Double || dataType == DT::Currency) &&
           (type == 5 || type == 6 || type == 8 || type == 9);
  };
  nuvo::ClassesObject classes(english);
  QStringList raw;
  for (int c = 0; c < classes.count(); ++c) {
    const auto fields = classes.at(c)->fields();
    for (int f = 1; f <= fields->count(); ++f) {
      const auto field = std::dynamic_pointer_cast<nuvo::FieldsObject>(fields)->at(f - 1);
      if (reachesLayoutRaw(*field))
        raw << classes.at(c)->name() + u'.' + field->name();
      // Dates sort as dates, relations to many have no column: the types
      // must say so.
      if (field->dataType() == DT::Date) {
        EXPECT_TRUE(field->type() == FT::Date || field->type() == FT::DateTime || field->type() >= 39)
            << field->name().toStdString();
      }
    }
  }
  EXPECT_EQ(raw, QStringList({"company.turnover", "deal.value", "deal.probability", "product.price"}));
}

} // namespace

KORDEL_ON_BOTH_DATABASES(TextTest);
