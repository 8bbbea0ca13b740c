#include "DemoFixture.h"
#include "LayoutSketch.h"

#include "design/ReportDesigner.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "document/ReportFields.h"

#include "engine/designer/DesignerActions.h"
#include "engine/designer/DesignerControl.h"
#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "hostapi/Layout.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using addin::ReportDesigner;
using engine::SectionType;

const QString kPersons = QStringLiteral("{DESIGN-PERSONS}");
const QString kDeals = QStringLiteral("{DESIGN-DEALS}");

class ReportDesignerTest : public DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<addin::Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create(QStringLiteral("company")));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    ASSERT_TRUE(report->AddPage(kDeals, "Deals", "deal", report->Guid(), Variant()));
    designer = std::make_unique<ReportDesigner>();
    control = std::dynamic_pointer_cast<engine::DesignerControl>(designer->DesignerControl());
  }

  std::shared_ptr<engine::LayoutReport> shown() const { return control->document().report(); }

  std::shared_ptr<engine::Control> shownControl(const QString &name) const {
    for (const auto &section : shown()->sections()->all())
      if (const auto found = section->controls()->find(name))
        return found;
    return nullptr;
  }

  QStringList shownSections() const {
    QStringList names;
    for (const auto &section : shown()->sections()->all())
      names << section->name;
    return names;
  }

  // The stored layout of a page, loaded.
  std::shared_ptr<engine::LayoutReport> stored(const std::shared_ptr<addin::Page> &page) const {
    const auto layout = engine::LayoutReport::create();
    const Variant bytes = page->LayoutTemplate();
    engine::loadLayout(*layout, bytes.isByteArray() ? bytes.rawBytes() : bytes.toString().toUtf8());
    return layout;
  }

  std::shared_ptr<addin::Report> report;
  std::unique_ptr<ReportDesigner> designer;
  std::shared_ptr<engine::DesignerControl> control;
};

TEST_F(ReportDesignerTest, APageTravelsWithInternalPathsAndIsShownWithLocalOnes) {
  const auto top = report->Page();
  top->SetWidth(0);
  top->SetLayoutTemplate(Variant(LayoutSketch()
                                     .section("PageHeader", SectionType::PageHeader)
                                     .section("Detail", SectionType::Detail)
                                     .field("coworker.name")
                                     .bytes()));
  ASSERT_TRUE(designer->ShowPage(top));
  EXPECT_EQ(top->Width(), 11906); // a top page without a width gets A4's
  EXPECT_EQ(shown()->printWidth, 11906);
  const auto field = shown()->sections()->find("Detail")->controls()->at(0);
  EXPECT_EQ(field->get("DataField").toString(), "Responsible.Name");
  EXPECT_EQ(field->get("Text").toString(), "<Responsible.Name>");
  EXPECT_FALSE(designer->IsNewPage());
  EXPECT_FALSE(control->document().isDirty());
  EXPECT_FALSE(control->document().canUndo()) << "the history starts at the page as opened";

  // Nothing changed: leaving the page writes nothing.
  const Variant before = top->LayoutTemplate();
  designer->SavePage();
  EXPECT_EQ(top->LayoutTemplate().toString(), before.toString());

  // A built-in field is a step of the designer's history, and the save
  // stores the paths in their internal form.
  control->document().select({shown()->sections()->find("PageHeader")});
  ASSERT_TRUE(designer->SetActiveSection());
  designer->InsertBuiltInField(1);
  EXPECT_TRUE(control->document().isDirty());
  EXPECT_TRUE(control->document().canUndo());
  designer->SavePage();
  const auto saved = stored(top);
  EXPECT_EQ(saved->sections()->find("Detail")->controls()->at(0)->get("DataField").toString(), "coworker.name");
  EXPECT_TRUE(saved->sections()->find("PageHeader")->controls()->find("pField_date1"));
  EXPECT_EQ(field->get("DataField").toString(), "Responsible.Name") << "the designer goes on in local names";
  EXPECT_TRUE(top->Fields()->Exists("coworker.name"));
  EXPECT_TRUE(top->Edited());

  // Without a current section a built-in field is refused with a message.
  control->document().clearSelection();
  designer->SetActiveSection();
  designer->InsertBuiltInField(1);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_FALSE(shownControl("pField_date2"));
}

TEST_F(ReportDesignerTest, ANewPageIsSavedOnLeavingAndASubPageStartsWithoutPageSections) {
  const auto persons = report->LookupPage(kPersons);
  persons->SetWidth(8000);
  persons->SetLayoutTemplate(Variant(LayoutSketch()
                                         .section("PageHeader", SectionType::PageHeader)
                                         .section("Detail", SectionType::Detail)
                                         .section("PageFooter", SectionType::PageFooter)
                                         .bytes()));
  // The top page shows both sub pages, so that its saves keep them.
  report->Page()->SetLayoutTemplate(Variant(LayoutSketch()
                                                .section("Detail", SectionType::Detail)
                                                .subReport(kPersons)
                                                .subReport(kDeals, 0, 6000, 600)
                                                .bytes()));
  const auto deals = report->LookupPage(kDeals);
  ASSERT_TRUE(designer->ShowPage(deals));
  EXPECT_TRUE(designer->IsNewPage());

  ASSERT_TRUE(designer->ShowPage(persons));
  EXPECT_FALSE(deals->LayoutTemplate().toString().isEmpty()) << "a page without a layout is saved on leaving";
  EXPECT_TRUE(deals->Edited());
  EXPECT_EQ(shownSections(), QStringList{"Detail"});
  EXPECT_EQ(shown()->printWidth, 8000);
  EXPECT_FALSE(designer->IsAddSectionEnabled(2)) << "no page header on a sub page";

  // Once edited, a sub page keeps what it has.
  persons->SetEdited(true);
  ASSERT_TRUE(designer->ShowPage(deals));
  ASSERT_TRUE(designer->ShowPage(persons));
  EXPECT_EQ(shownSections(), (QStringList{"PageHeader", "Detail", "PageFooter"}));
}

TEST_F(ReportDesignerTest, AFixedWidthHoldsAgainstControlsAndTheWidthHandle) {
  const auto persons = report->LookupPage(kPersons);
  persons->SetWidth(6000);
  persons->SetEdited(true);
  persons->SetLayoutTemplate(Variant(LayoutSketch().section("Detail", SectionType::Detail).label("Name", 0).bytes()));
  ASSERT_TRUE(designer->ShowPage(persons));
  const auto label = shown()->sections()->at(0)->controls()->at(0);
  label->set("Left", 5000.0);
  designer->ard_LayoutChanged(label, 0);
  EXPECT_EQ(label->get("Width").toDouble(), 1000);
  EXPECT_EQ(shown()->printWidth, 6000);
  bool cancel = false;
  designer->ard_ValidateChange(shown(), 6, cancel);
  EXPECT_TRUE(cancel);

  // A top page on paper of the user's own size moves freely; only a size
  // change is held to its width.
  report->SetPaperSize(-1);
  const auto top = report->Page();
  top->SetWidth(6000);
  ASSERT_TRUE(designer->ShowPage(top));
  const auto wide = shown()->sections()->find("Detail")->controls()->add(QString::fromLatin1(hostapi::kLabelProgId));
  wide->set("Left", 5000.0);
  wide->set("Width", 3000.0);
  designer->ard_LayoutChanged(wide, 0);
  EXPECT_EQ(wide->get("Width").toDouble(), 3000);
  designer->ard_LayoutChanged(wide, 1);
  EXPECT_EQ(wide->get("Width").toDouble(), 1000);
  cancel = false;
  designer->ard_ValidateChange(shown(), 6, cancel);
  EXPECT_FALSE(cancel);
}

TEST_F(ReportDesignerTest, DeletingASectionTakesItsSubPagesAfterTheDeletion) {
  const auto top = report->Page();
  top->SetLayoutTemplate(Variant(LayoutSketch()
                                     .section("Detail", SectionType::Detail)
                                     .section("GroupFooter", SectionType::ReportFooter, 900)
                                     .subReport(kPersons)
                                     .subReport(kDeals, 0, 6000, 600)
                                     .bytes()));
  ASSERT_TRUE(designer->ShowPage(top));
  QSignalSpy removed(designer.get(), &ReportDesigner::SubPageRemoved);
  control->document().select({shown()->sections()->find("GroupFooter")});
  ASSERT_TRUE(control->actions().query(engine::DesignAction::DeleteSection) & 1);
  control->actions().execute(engine::DesignAction::DeleteSection);
  EXPECT_EQ(shownSections(), QStringList{"Detail"});
  EXPECT_FALSE(report->PageExists(kPersons));
  EXPECT_FALSE(report->PageExists(kDeals));
  EXPECT_EQ(removed.count(), 2);
}

TEST_F(ReportDesignerTest, CopyKeysWorkOnlyWithFocusAndSomethingToCopy) {
  report->Page()->SetLayoutTemplate(
      Variant(LayoutSketch().section("Detail", SectionType::Detail).label("Name").bytes()));
  ASSERT_TRUE(designer->ShowPage(report->Page()));
  int key = 'C', shift = 2;
  designer->OnKeyDown(key, shift);
  EXPECT_EQ(key, 'C') << "without the focus the key goes on";
  designer->ard_GotFocus();
  designer->OnKeyDown(key, shift);
  EXPECT_EQ(key, 'C') << "nothing selected: nothing to copy";
  control->document().selectAll();
  designer->OnKeyDown(key, shift);
  EXPECT_EQ(key, 0);
  EXPECT_EQ(shift, 0);
  EXPECT_TRUE(control->actions().query(engine::DesignAction::Paste) & 1);
}

} // namespace
} // namespace kordel::test
