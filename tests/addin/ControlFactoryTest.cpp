#include "DemoFixture.h"
#include "LayoutSketch.h"
#include "WidgetTools.h"

#include "design/ControlFactory.h"
#include "dialogs/DlgSelectSubPage.h"
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

#include "common/ScriptExpression.h"
#include "hostapi/Classes.h"

#include <QCheckBox>
#include <QFile>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

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

void selectPath(QWidget &window, const QString &path) { select(child<QTreeWidget>(window, "TvwFields"), path); }

void choose(QWidget &window, const char *combo, const QString &text) {
  auto &box = child<QComboBox>(window, combo);
  box.setCurrentIndex(box.findText(text));
}

void click(QWidget &window, const char *button) { child<QPushButton>(window, button).click(); }

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
    layout->setChangeListener([this](engine::LayoutReport::OutsideChange) { ++refreshes; });
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

TEST_F(ControlFactoryTest, PageFieldsComeWithLabelsOverThemOrOnTheirPlaceInAnotherSection) {
  ControlFactory made = factory();
  made.SetActiveSection(detail);
  // Labels in the page header: each field goes where its label stands.
  ui->modalHandler = [](QWidget &window) {
    EXPECT_TRUE(child<QCheckBox>(window, "ChkInsertLabels").isChecked()) << "a current section brings labels";
    selectPath(window, "Last name");
    click(window, "CmdInsert");
    selectPath(window, "Company.Name");
    click(window, "CmdInsert");
    choose(window, "CboLabelSections", "PageHeader");
    click(window, "CmdOK");
  };
  ASSERT_TRUE(made.CreatePageFields());
  EXPECT_EQ(refreshes, 1);
  const auto label = control("lbl_header1");
  const auto field = control("fld_lastname1");
  ASSERT_TRUE(label && field);
  EXPECT_EQ(label->section()->name, "PageHeader");
  EXPECT_EQ(str(label, "Caption"), "Last name");
  EXPECT_EQ(str(field, "Text"), "<Last name>");
  EXPECT_EQ(str(field, "DataField"), "Last name");
  EXPECT_EQ(num(field, "Left"), num(label, "Left"));
  EXPECT_EQ(num(field, "Top"), num(label, "Top"));
  EXPECT_GT(num(control("fld_companyname1"), "Left"), num(field, "Left") + num(field, "Width"));

  // Labels in the fields' own section: each field goes under its label.
  ui->modalHandler = [](QWidget &window) {
    selectPath(window, "Company.Name");
    click(window, "CmdInsert");
    click(window, "CmdOK");
  };
  ASSERT_TRUE(made.CreatePageFields());
  const auto again = control("fld_companyname2");
  const auto overIt = control("lbl_header3");
  ASSERT_TRUE(again && overIt);
  EXPECT_EQ(overIt->section()->name, "Detail");
  EXPECT_EQ(num(again, "Left"), num(overIt, "Left"));
  EXPECT_EQ(num(again, "Top"), num(overIt, "Top") + num(overIt, "Height"));
  EXPECT_GE(detail->height, num(again, "Top") + num(again, "Height") + 115);

  made.UpdateReportFields();
  EXPECT_EQ(pageFieldNames(), (QStringList{"lastname", "company.name"})); // two controls, one field

  // A cancelled dialog changes nothing.
  ui->modalHandler = [](QWidget &window) { click(window, "CmdCancel"); };
  const int controls = detail->controls()->count();
  ASSERT_TRUE(made.CreatePageFields());
  EXPECT_EQ(detail->controls()->count(), controls);
}

TEST_F(ControlFactoryTest, ScriptFieldsKeepTheirExpressionsThroughTheInternalForm) {
  const QString expression = QStringLiteral("[Last name] & \", \" & Text(\"Company.Name\")");
  ControlFactory made = factory();
  ui->modalHandler = [&](QWidget &window) {
    child<QPlainTextEdit>(window, "TbEditor").setPlainText(expression);
    click(window, "CmdUse");
    click(window, "CmdOK");
  };
  ASSERT_TRUE(made.CreateScriptFields());
  const auto field = control("fld_script1");
  ASSERT_TRUE(field);
  EXPECT_EQ(str(field, "DataField"), "vbscript:script1");
  EXPECT_EQ(str(field, "Text"), "<vbscript:" + expression + ">");
  EXPECT_EQ(field->section()->name, "PageHeader"); // no current section: the first one

  made.UpdateReportFields();
  const auto stored = page->Fields()->Field("vbscript:script1");
  ASSERT_TRUE(stored);
  EXPECT_EQ(stored->Expression, "[lastname] & \", \" & Text(\"company.name\")");
  EXPECT_EQ(addin::ConvertScriptExpression(page->Class()->fields(), stored->Expression, 1), expression);

  // Its name stays when the control is renamed; a group on it lives as
  // long as the control does.
  field->name = QStringLiteral("renamed");
  const auto group = layout->sections()->add(QStringLiteral("GroupScript1"), 1, SectionType::GroupHeader, 300);
  group->dataField = QStringLiteral("vbscript:script1");
  made.UpdateReportFields();
  EXPECT_EQ(pageFieldNames(), QStringList{"vbscript:script1"});
  EXPECT_EQ(group->dataField, "vbscript:script1");
}

TEST_F(ControlFactoryTest, AGroupWrapsTheDetailMostClosely) {
  ControlFactory made = factory();
  ui->modalHandler = [](QWidget &window) {
    selectPath(window, "Company.Country");
    click(window, "CmdOK");
  };
  ASSERT_TRUE(made.CreateGroupSection());
  ASSERT_TRUE(made.CreateGroupSection());
  QStringList names;
  for (const auto &section : layout->sections()->all())
    names << section->name;
  EXPECT_EQ(names, (QStringList{"PageHeader", "GroupCompanyCountry1", "GroupCompanyCountry2", "Detail",
                                "SumCompanyCountry2", "SumCompanyCountry1", "PageFooter"}));
  EXPECT_EQ(layout->sections()->find("GroupCompanyCountry2")->dataField, "Company.Country");
  EXPECT_EQ(layout->sections()->find("SumCompanyCountry1")->height, 370);
  made.UpdateReportFields();
  EXPECT_EQ(pageFieldNames(), QStringList{"company.country"});

  // Without a detail section nothing happens, and nothing is said.
  made.RemoveSectionByType(int(SectionType::Detail));
  const int count = layout->sections()->count();
  EXPECT_TRUE(made.CreateGroupSection());
  EXPECT_EQ(layout->sections()->count(), count);
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(ControlFactoryTest, SubPagesAreMadeMovedAndTakenBackWithTheirControls) {
  report = std::make_shared<addin::Report>();
  report->LoadContents(Variant());
  ASSERT_TRUE(report->Create(QStringLiteral("company")));
  page = report->Page();
  ControlFactory made = factory();
  made.SetActiveSection(detail);

  const auto pickRelation = [](const QString &path) {
    return [path](QWidget &window) {
      selectPath(window, path);
      static_cast<addin::DlgSelectSubPage &>(window).FieldCtrl_FieldSelected();
      click(window, "CmdOK");
    };
  };
  ui->modalHandler = pickRelation("Persons");
  ObjectRef none;
  ASSERT_TRUE(made.CreateSubPage(none));
  ASSERT_TRUE(none);
  const auto sub = std::dynamic_pointer_cast<engine::Control>(none);
  EXPECT_EQ(sub->section()->name, "Detail");
  EXPECT_EQ(num(sub, "Left"), 0);
  EXPECT_EQ(num(sub, "Width"), layout->printWidth);
  const QString guid = str(sub, "Tag");
  ASSERT_TRUE(report->PageExists(guid));
  const auto subPage = report->LookupPage(guid);
  EXPECT_EQ(subPage->Name(), str(sub, "ReportName"));
  EXPECT_EQ(subPage->Source(), "person");
  EXPECT_EQ(subPage->Parent()->Guid(), page->Guid());

  // A sub page of the sub page takes the whole path as its source.
  ControlFactory inner;
  const auto innerLayout = engine::LayoutReport::create();
  const auto innerDetail = innerLayout->sections()->add("Detail", 0, SectionType::Detail, 300);
  inner.SetActiveReport(innerLayout);
  inner.SetReportPage(subPage);
  inner.SetActiveSection(innerDetail);
  ui->modalHandler = pickRelation("Deals");
  ObjectRef innerControl;
  ASSERT_TRUE(inner.CreateSubPage(innerControl));
  EXPECT_EQ(report->LookupPage(str(std::dynamic_pointer_cast<engine::Control>(innerControl), "Tag"))->Source(),
            "person.deal");

  // Moving keeps name, page and place; the page is not touched.
  ui->modalHandler = [](QWidget &window) {
    choose(window, "CboSection", "PageFooter");
    click(window, "CmdOK");
  };
  const QString name = sub->name;
  made.MoveSubReport(sub);
  const auto moved = control(name);
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->section()->name, "PageFooter");
  EXPECT_EQ(str(moved, "Tag"), guid);
  EXPECT_EQ(detail->controls()->count(), 0);

  // A control drawn with the tool goes again when the dialog is cancelled,
  // and no page is made.
  const int pages = page->Pages()->Count();
  ObjectRef drawn = addControl(detail, hostapi::kSubReportProgId, 100, 100, 3000, 600);
  ui->modalHandler = [](QWidget &window) { click(window, "CmdCancel"); };
  ASSERT_TRUE(made.CreateSubPage(drawn));
  EXPECT_FALSE(drawn);
  EXPECT_EQ(detail->controls()->count(), 0);
  EXPECT_EQ(page->Pages()->Count(), pages);
}

// The pages of a report document with their sources and fields, sub
// pages after their parents.
QStringList outline(const std::shared_ptr<addin::Page> &top) {
  QStringList lines;
  std::function<void(const std::shared_ptr<addin::Page> &, int)> walk = [&](const auto &page, int depth) {
    QStringList fields;
    for (int i = 1; i <= page->Fields()->Count(); ++i)
      fields << page->Fields()->Item(i)->Name;
    lines << QString(depth * 2, u' ') + page->Source() + u':' + fields.join(u',');
    for (int i = 1; i <= page->Pages()->Count(); ++i)
      walk(page->Pages()->Item(i), depth + 1);
  };
  walk(top, 0);
  return lines;
}

TEST_F(ControlFactoryTest, TheDemoCompanyHistoryCanBeBuiltThroughTheFactoryAlone) {
  report = std::make_shared<addin::Report>();
  report->LoadContents(Variant());
  ASSERT_TRUE(report->Create(QStringLiteral("company")));
  page = report->Page();

  const auto fieldsInto = [this](const QString &section, const QStringList &paths) {
    ui->modalHandler = [section, paths](QWidget &window) {
      for (const QString &path : paths) {
        selectPath(window, path);
        click(window, "CmdInsert");
      }
      choose(window, "CboFieldSections", section);
      click(window, "CmdOK");
    };
  };
  const auto subPageOn = [this](const QString &relation) {
    ui->modalHandler = [relation](QWidget &window) {
      selectPath(window, relation);
      static_cast<addin::DlgSelectSubPage &>(window).FieldCtrl_FieldSelected();
      choose(window, "CboPageSection", "Detail");
      click(window, "CmdOK");
    };
  };
  // Each page's layout as a user builds it: fields, then the sub page
  // below them.
  const auto build = [&](const std::shared_ptr<addin::Page> &onPage, const std::shared_ptr<engine::LayoutReport> &on,
                         const QStringList &paths, const QString &relation) {
    ControlFactory made;
    made.SetActiveReport(on);
    made.SetReportPage(onPage);
    fieldsInto("Detail", paths);
    EXPECT_TRUE(made.CreatePageFields());
    ObjectRef control;
    if (!relation.isEmpty()) {
      subPageOn(relation);
      EXPECT_TRUE(made.CreateSubPage(control));
    }
    made.UpdateReportFields();
    made.UpdateSubPages();
    return control ? report->LookupPage(control->get("Tag").toString()) : nullptr;
  };
  ControlFactory top = factory();
  ASSERT_TRUE(top.CreateBuiltInField(ControlFactory::Date, "PageHeader"));
  ASSERT_TRUE(top.CreateBuiltInField(ControlFactory::PageNumber, "PageFooter"));
  ASSERT_TRUE(top.CreateBuiltInField(ControlFactory::PageTotal, "PageFooter"));
  const auto newLayout = [] {
    const auto made = engine::LayoutReport::create();
    made->sections()->add("Detail", 0, SectionType::Detail, 300);
    return made;
  };
  const auto persons = build(page, layout, {"Name", "City"}, "Persons");
  ASSERT_TRUE(persons);
  const auto history = build(persons, newLayout(), {"First name", "Last name", "Position"}, "History");
  ASSERT_TRUE(history);
  build(history, newLayout(), {"Date", "Type", "Note"}, QString());

  QFile file(QStringLiteral(KORDEL_SOURCE_DIR "/platform/host/cli/demo-reports/3-company-history.xml"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const auto demo = std::make_shared<addin::Report>();
  demo->LoadContents(Variant(QString::fromUtf8(file.readAll())));
  EXPECT_EQ(outline(demo->Page()), (QStringList{"company:name,city", "  person:firstname,lastname,position",
                                                "    person.history:date,type,note"}));
  EXPECT_EQ(outline(page), outline(demo->Page()));
}

} // namespace
} // namespace kordel::test
