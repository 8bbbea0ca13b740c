// Field paths and names: lookups in each mode, translation between the
// local and the internal form, and what a path's field reports.

#include "NuvoFixture.h"

#include "support/ErrorCapture.h"

#include "nuvo/ClassObjects.h"

#include "hostapi/FieldTypes.h"

using namespace kordel;
using kordel::test::DatabaseTest;

namespace {

namespace LM = hostapi::LookupMode;
namespace FT = hostapi::FieldType;

class PathTest : public DatabaseTest {
protected:
  void SetUp() override {
    DatabaseTest::SetUp();
    if (IsSkipped())
      return;
    createDemo(5);
    english = std::make_shared<nuvo::ClassesObject>(open(QStringLiteral("en")));
    swedish = std::make_shared<nuvo::ClassesObject>(open(QStringLiteral("sv")));
  }

  std::shared_ptr<hostapi::Fields> fields(const char *cls, bool inSwedish = false) {
    return (inSwedish ? swedish : english)->item(QString::fromLatin1(cls))->fields();
  }

  std::shared_ptr<nuvo::ClassesObject> english;
  std::shared_ptr<nuvo::ClassesObject> swedish;
};

TEST_P(PathTest, LookupReadsEachModeAsDocumented) {
  const auto person = fields("person", true);
  // Internal names only in mode 0, local ones only in mode 1.
  EXPECT_TRUE(person->lookup(QStringLiteral("company.city"), LM::Internal));
  EXPECT_FALSE(person->lookup(QStringLiteral("Företag.Ort"), LM::Internal));
  EXPECT_TRUE(person->lookup(QStringLiteral("Företag.Ort"), LM::Local));
  EXPECT_FALSE(person->lookup(QStringLiteral("company.city"), LM::Local));
  // Modes 2 and 4 take either form, step by step, and ignore case.
  for (int mode : {LM::LocalFirst, LM::Either}) {
    for (const char *path : {"company.city", "Företag.Ort", "företag.city", "COMPANY.Ort"}) {
      const auto field = person->lookup(QString::fromUtf8(path), mode);
      ASSERT_TRUE(field) << path << " in mode " << mode;
      EXPECT_EQ(field->name(), QStringLiteral("company.city"));
    }
  }
  EXPECT_FALSE(person->lookup(QStringLiteral("company.nosuchfield"), LM::Either));
  EXPECT_FALSE(person->lookup(QStringLiteral("firstname.company"), LM::Either)) << "only relations lead on";
  EXPECT_FALSE(person->lookup(QString(), LM::Either));
}

TEST_P(PathTest, LocalFirstAndEitherDifferWhereALocalNameIsAnotherFieldsName) {
  // On a company in English, "Name" is the local name of "name" and no
  // other field's own name; on a deal, the relation "person" is shown as
  // "Contact", while the Swedish "Person" is the local name of no deal field.
  const auto deal = fields("deal");
  EXPECT_EQ(deal->lookup(QStringLiteral("Contact"), LM::Either)->name(), QStringLiteral("person"));
  EXPECT_EQ(deal->lookup(QStringLiteral("person"), LM::LocalFirst)->name(), QStringLiteral("person"));
  // "Company" is the English local name of deal.company and also, in
  // another case, its own name: both modes agree.
  EXPECT_EQ(deal->lookup(QStringLiteral("Company"), LM::LocalFirst)->name(), QStringLiteral("company"));
}

TEST_P(PathTest, TranslatePathGoesBothWaysInTheLanguageOfTheApplication) {
  const auto swedishDeal = fields("deal", true);
  EXPECT_EQ(swedishDeal->translatePath(QStringLiteral("Kontaktperson.Företag.Ansvarig.Namn"), 0),
            QStringLiteral("person.company.coworker.name"));
  EXPECT_EQ(swedishDeal->translatePath(QStringLiteral("person.company.coworker.name"), 1),
            QStringLiteral("Kontaktperson.Företag.Ansvarig.Namn"));
  const auto englishDeal = fields("deal");
  EXPECT_EQ(englishDeal->translatePath(QStringLiteral("person.company.coworker.name"), 1),
            QStringLiteral("Contact.Company.Responsible.Name"));
  // A path already in the asked form comes back as it is.
  EXPECT_EQ(englishDeal->translatePath(QStringLiteral("value"), 0), QStringLiteral("value"));
  EXPECT_EQ(test::errorNumber([&] { englishDeal->translatePath(QStringLiteral("Contact.Nothing"), 0); }),
            ErrorNumber::InvalidCall);
}

TEST_P(PathTest, AFieldOfAPathNamesTheWholePathAndItsLastField) {
  const auto field = fields("history")->lookup(QStringLiteral("deal.company.category"), LM::Internal);
  ASSERT_TRUE(field);
  EXPECT_EQ(field->name(), QStringLiteral("deal.company.category"));
  EXPECT_EQ(field->localName(), QStringLiteral("Deal.Company.Category"));
  EXPECT_EQ(field->type(), FT::Choice);
  EXPECT_EQ(field->fieldClass()->name(), QStringLiteral("company"));
  EXPECT_FALSE(field->relatedField());
}

TEST_P(PathTest, RelationsKnowTheirOtherSide) {
  const auto company = fields("company");
  const auto persons = company->item(QStringLiteral("person"));
  EXPECT_EQ(persons->type(), FT::RelationToMany);
  const auto back = persons->relatedField();
  ASSERT_TRUE(back);
  EXPECT_EQ(back->name(), QStringLiteral("company"));
  EXPECT_EQ(back->type(), FT::RelationToOne);
  EXPECT_EQ(back->fieldClass()->name(), QStringLiteral("person"));
  EXPECT_EQ(back->relatedField()->fieldClass()->name(), QStringLiteral("company"));
  // The way a sub page of persons under companies finds its parent.
  EXPECT_TRUE(fields("person")->lookup(QStringLiteral("company.idcompany"), LM::Either));
}

TEST_P(PathTest, FieldsAndClassesReportTheirKindsAndNames) {
  const auto company = fields("company", true);
  EXPECT_EQ(company->item(QStringLiteral("name"))->size(), 128);
  EXPECT_EQ(company->item(QStringLiteral("turnover"))->dataType(), hostapi::DataType::Double);
  EXPECT_EQ(company->item(QStringLiteral("founded"))->dataType(), hostapi::DataType::Date);
  EXPECT_EQ(company->item(QStringLiteral("idcompany"))->type(), FT::Counter);
  EXPECT_EQ(company->item(QStringLiteral("createdtime"))->type(), FT::CreatedTime);
  EXPECT_TRUE(fields("coworker")->item(QStringLiteral("login"))->hidden());
  EXPECT_EQ(company->item(QStringLiteral("category"))->localName(), QStringLiteral("Kategori"));
  EXPECT_EQ(test::errorNumber([&] { company->item(QStringLiteral("nosuch")); }), ErrorNumber::SubscriptOutOfRange);

  EXPECT_EQ(swedish->item(QStringLiteral("deal"))->localName(), QStringLiteral("Affär"));
  EXPECT_EQ(english->lookup(QStringLiteral("Deal"), LM::Local)->name(), QStringLiteral("deal"));
  EXPECT_EQ(swedish->lookup(QStringLiteral("Affär"), LM::LocalFirst)->name(), QStringLiteral("deal"));
  EXPECT_EQ(swedish->lookup(QStringLiteral("deal"), LM::LocalFirst)->name(), QStringLiteral("deal"));
  EXPECT_FALSE(swedish->lookup(QStringLiteral("Affär"), LM::Internal));
  EXPECT_FALSE(english->exists(QStringLiteral("invoice")));
  EXPECT_EQ(english->count(), 6);
}

TEST_P(PathTest, ScriptsReachTheSameMembersLateBound) {
  ObjectRef classes = english;
  const Variant company = classes->invoke(QStringLiteral("Item"), {QStringLiteral("company")});
  const Variant fieldsObject = company.rawObject()->get(QStringLiteral("Fields"));
  const Variant city = fieldsObject.rawObject()->invoke(QStringLiteral("Lookup"), {QStringLiteral("coworker.name"), 4});
  EXPECT_EQ(city.rawObject()->get(QStringLiteral("Name")).toString(), QStringLiteral("coworker.name"));
  EXPECT_EQ(fieldsObject.rawObject()
                ->invoke(QStringLiteral("TranslatePath"), {QStringLiteral("Responsible.Name"), 0})
                .toString(),
            QStringLiteral("coworker.name"));
  EXPECT_TRUE(fieldsObject.rawObject()->invoke(QStringLiteral("Lookup"), {QStringLiteral("nowhere"), 4}).isNothing());
  // Item by position counts from 1.
  EXPECT_EQ(classes->invoke(QStringLiteral("Item"), {1}).rawObject()->get(QStringLiteral("Name")).toString(),
            QStringLiteral("coworker"));
}

} // namespace

KORDEL_ON_BOTH_DATABASES(PathTest);
