#include "DemoFixture.h"
#include "LayoutSketch.h"

#include "design/ControlFactory.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"

#include "engine/model/Controls.h"
#include "engine/model/Section.h"
#include "engine/model/LayoutReport.h"
#include "hostapi/Layout.h"
#include "core/Error.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using addin::ControlFactory;
using engine::SectionType;

double num(const std::shared_ptr<engine::Control> &control, const char *name) {
  return control->get(QString::fromLatin1(name)).toDouble();
}

QString str(const std::shared_ptr<engine::Control> &control, const char *name) {
  return control->get(QString::fromLatin1(name)).toString();
}

std::shared_ptr<engine::Control> addControl(const std::shared_ptr<engine::Section> &section, const char *progId,
                                            double left, double top, double width, double height = 270) {
  const auto control = section->controls()->add(QString::fromLatin1(progId));
  control->set(QStringLiteral("Left"), left);
  control->set(QStringLiteral("Top"), top);
  control->set(QStringLiteral("Width"), width);
  control->set(QStringLiteral("Height"), height);
  return control;
}

// ---- the factory on a page of the demo database

class ControlFactoryTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<addin::Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create(QStringLiteral("person")));
    page = report->Page();
    layout = std::dynamic_pointer_cast<engine::LayoutReport>(
        app->createObject(QString::fromLatin1(hostapi::kLayoutReportProgId)));
    layout->sections()->add(QStringLiteral("PageHeader"), 0, SectionType::PageHeader, 300);
    detail = layout->sections()->add(QStringLiteral("Detail"), 1, SectionType::Detail, 300);
    layout->sections()->add(QStringLiteral("PageFooter"), 2, SectionType::PageFooter, 300);
    layout->setRefreshListener([this] { ++refreshes; });
  }

  ControlFactory factory() const {
    ControlFactory made;
    made.SetActiveReport(layout);
    made.SetReportPage(page);
    return made;
  }

  std::shared_ptr<engine::Control> control(const QString &name) const {
    for (const auto &section : layout->sections()->all())
      if (const auto found = section->controls()->find(name))
        return found;
    return nullptr;
  }

  QStringList pageFieldNames() const {
    QStringList names;
    for (int i = 1; i <= page->Fields()->Count(); ++i)
      names << page->Fields()->Item(i)->Name;
    return names;
  }

  std::shared_ptr<addin::Report> report;
  std::shared_ptr<addin::Page> page;
  std::shared_ptr<engine::LayoutReport> layout;
  std::shared_ptr<engine::Section> detail;
  int refreshes = 0;
};

TEST_F(ControlFactoryTest, BuiltInFieldsCarryTheirTypeNameAndExpressionInTheScriptLanguage) {
  ControlFactory made = factory();
  ASSERT_TRUE(made.CreateBuiltInField(ControlFactory::Date, QStringLiteral("PageHeader")));
  ASSERT_TRUE(made.CreateBuiltInField(ControlFactory::Date, QStringLiteral("PageHeader")));
  ASSERT_TRUE(made.CreateBuiltInField(ControlFactory::PageNumber, QStringLiteral("PageFooter")));
  ASSERT_TRUE(made.CreateBuiltInField(ControlFactory::RecordIndex, QStringLiteral("Detail")));
  EXPECT_EQ(refreshes, 4);

  const auto date = control(QStringLiteral("pField_date1"));
  ASSERT_TRUE(date);
  EXPECT_EQ(str(date, "Tag"), QStringLiteral("1"));
  EXPECT_EQ(str(date, "DataField"), QStringLiteral("=Extensions.Timestamp(\"yyyy-mm-dd\")"));
  EXPECT_EQ(str(date, "Text"), QStringLiteral("Date"));
  EXPECT_GT(num(date, "Width"), 0);
  const auto second = control(QStringLiteral("pField_date2"));
  ASSERT_TRUE(second);
  EXPECT_GT(num(second, "Left"), num(date, "Left") + num(date, "Width")); // beside the first

  const auto pageNumber = control(QStringLiteral("pField_pagenumber1"));
  EXPECT_EQ(str(pageNumber, "DataField"), QString());
  EXPECT_EQ(num(pageNumber, "RunningKind"), 2);
  EXPECT_EQ(num(pageNumber, "CountKind"), 4);
  EXPECT_EQ(num(control(QStringLiteral("pField_record1")), "FieldMode"), 1);

  // Deleting the first date field frees its name; in JScript the
  // expressions end as statements, and a save writes them anew.
  date->section()->controls()->remove(QStringLiteral("pField_date1"));
  report->SetScriptLanguage(QStringLiteral("JScript"));
  ASSERT_TRUE(made.CreateBuiltInField(ControlFactory::Date, QStringLiteral("Detail")));
  EXPECT_EQ(str(control(QStringLiteral("pField_date1")), "DataField"),
            QStringLiteral("=Extensions.Timestamp(\"yyyy-mm-dd\");"));
  made.UpdateReportFields();
  EXPECT_EQ(str(second, "DataField"), QStringLiteral("=Extensions.Timestamp(\"yyyy-mm-dd\");"));
  EXPECT_TRUE(pageFieldNames().isEmpty()); // built-in fields are no fields of the page

  // An unknown section is reported and gives false.
  EXPECT_FALSE(made.CreateBuiltInField(ControlFactory::Time, QStringLiteral("Nowhere")));
  EXPECT_EQ(ui->boxes.size(), 1u);
}

TEST_F(ControlFactoryTest, SectionQueriesAndRemovalByType) {
  ControlFactory made = factory();
  EXPECT_EQ(made.GetIndexOfDetailSection().toLong(), 1);
  layout->sections()->add(QStringLiteral("Detail2"), 3, SectionType::Detail, 300);
  EXPECT_EQ(made.GetIndexOfDetailSection().toLong(), 1); // the first one
  EXPECT_TRUE(made.SectionTypeExists(3));
  made.RemoveSectionByType(int(SectionType::Detail));
  EXPECT_FALSE(made.SectionTypeExists(int(SectionType::Detail)));
  EXPECT_EQ(made.GetIndexOfDetailSection().toLong(), -1);
  made.RemoveSectionByType(int(SectionType::GroupHeader)); // none there: nothing happens
  EXPECT_EQ(layout->sections()->count(), 2);
  EXPECT_EQ(refreshes, 0); // refreshing is the caller's duty here
}

TEST_F(ControlFactoryTest, TheLayoutIsTheMasterOfThePagesFieldsAndSortFields) {
  const auto add = [&](const QString &name, const QString &text, const QString &dataField) {
    const auto field = addControl(detail, hostapi::kFieldProgId, 0, 0, 1000);
    field->set(QStringLiteral("Name"), name);
    field->set(QStringLiteral("Text"), text);
    field->set(QStringLiteral("DataField"), dataField);
    return field;
  };
  add("fld_lastname1", "<Last name>", "Last name");
  add("fld_lastname2", "<Last name>", "Last name");
  const auto city = add("fld_companycity1", "<Company.City>", "Company.City");
  add("fld_script1", "<vbscript:[Company.Name] & \"!\">", "vbscript:script1");
  add("free", "<>", "nothing");
  page->Fields()->Add("firstname", "firstname", "");
  page->SortFields()->Add("firstname", 1);
  page->SortFields()->Add("lastname", 2);

  ControlFactory made = factory();
  made.UpdateReportFields();
  EXPECT_EQ(pageFieldNames(), (QStringList{"lastname", "company.city", "vbscript:script1"}));
  EXPECT_EQ(page->Fields()->Field("vbscript:script1")->Expression, QStringLiteral("[company.name] & \"!\""));
  EXPECT_FALSE(page->SortFields()->Exists("firstname")); // no control shows it any more
  EXPECT_TRUE(page->SortFields()->Exists("lastname"));

  // Typing another path between the brackets rebinds the field.
  city->set(QStringLiteral("Text"), QStringLiteral("<Company.Country>"));
  made.UpdateReportFields();
  EXPECT_EQ(str(city, "DataField"), QStringLiteral("Company.Country"));
  EXPECT_EQ(pageFieldNames(), (QStringList{"lastname", "vbscript:script1", "company.country"}));

  // A text between brackets that is no path leaves the old data field to
  // decide; a group on a script field nobody shows loses its field.
  city->set(QStringLiteral("Text"), QStringLiteral("<no such path>"));
  const auto group = layout->sections()->add(QStringLiteral("GroupScript"), 1, SectionType::GroupHeader, 300);
  group->set(QStringLiteral("DataField"), QStringLiteral("vbscript:script9"));
  made.UpdateReportFields();
  EXPECT_TRUE(page->Fields()->Exists("company.country"));
  EXPECT_EQ(group->get(QStringLiteral("DataField")).toString(), QString());
}

TEST_F(ControlFactoryTest, SubPagesFollowTheirControlsAtTheSave) {
  ASSERT_TRUE(report->AddPage("{KEPT}", "Deals", "deal", page->Guid(), Variant()));
  ASSERT_TRUE(report->AddPage("{ORPHAN}", "History", "history", page->Guid(), Variant()));
  const auto sub = addControl(detail, hostapi::kSubReportProgId, 0, 300, 5000, 600);
  sub->set(QStringLiteral("Tag"), QStringLiteral("{KEPT}"));
  sub->set(QStringLiteral("ReportName"), QStringLiteral("Open deals"));
  sub->set(QStringLiteral("Width"), 5000.4);

  ControlFactory made = factory();
  made.UpdateSubPages();
  EXPECT_TRUE(report->PageExists("{KEPT}"));
  EXPECT_FALSE(report->PageExists("{ORPHAN}")); // no control shows it
  EXPECT_EQ(report->LookupPage("{KEPT}")->Name(), QStringLiteral("Open deals"));
  EXPECT_EQ(report->LookupPage("{KEPT}")->Width(), 5000);

  // A control whose page is gone is taken out and stops the save.
  sub->set(QStringLiteral("Tag"), QStringLiteral("{GONE}"));
  EXPECT_THROW(made.UpdateSubPages(), Error);
  EXPECT_FALSE(control(sub->name));

  // Removing a sub page takes the page and its control.
  const auto again = addControl(detail, hostapi::kSubReportProgId, 0, 300, 5000, 600);
  again->set(QStringLiteral("Tag"), QStringLiteral("{KEPT}"));
  ObjectRef handle = again;
  made.RemoveSubPage(handle, QStringLiteral("{KEPT}"));
  EXPECT_FALSE(handle);
  EXPECT_FALSE(report->PageExists("{KEPT}"));
  EXPECT_EQ(detail->controls()->count(), 0);
}

} // namespace
} // namespace kordel::test
