// The layout's object model as code and scripts reach it: sections in
// order, controls by ProgID with unique names, their members late-bound,
// unbound fields, paper and printer.

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "support/ErrorCapture.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::errorNumber;

namespace {

std::shared_ptr<LayoutReport> bandedReport() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  sections.add("PageHeader", 0, SectionType::PageHeader, 400);
  sections.add("Detail", 1, SectionType::Detail, 300);
  sections.add("PageFooter", 2, SectionType::PageFooter, 400);
  return report;
}

TEST(LayoutModelTest, SectionsKeepTheirOrderAndAreFoundByIndexOrName) {
  auto report = bandedReport();
  auto &sections = *report->sections();
  sections.add("GroupHeader1", 1, SectionType::GroupHeader, 500);
  ASSERT_EQ(sections.count(), 4);
  EXPECT_EQ(sections.at(1)->name, "GroupHeader1");
  EXPECT_EQ(sections.at(2)->name, "Detail") << "later sections move up";
  EXPECT_EQ(sections.item(Variant("detail"))->type(), SectionType::Detail);
  EXPECT_EQ(sections.item(Variant(3))->name, "PageFooter");
  EXPECT_EQ(report->detail(), sections.at(2));
  EXPECT_EQ(sections.at(2)->report(), report);
  EXPECT_EQ(errorNumber([&] { sections.add("Detail", 0, SectionType::Detail, 1); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(errorNumber([&] { sections.item(Variant("Nothing")); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { sections.add("Late", 9, SectionType::Detail, 1); }), ErrorNumber::SubscriptOutOfRange);
  sections.remove(1);
  EXPECT_EQ(sections.count(), 3);
  EXPECT_EQ(sections.at(1)->name, "Detail");
}

TEST(LayoutModelTest, ControlsAreMadeByProgIdWithNamesUniqueInTheReport) {
  auto report = bandedReport();
  auto header = report->sections()->at(0)->controls();
  auto detail = report->detail()->controls();
  auto first = header->add("DDActiveReports2.Field");
  auto second = detail->add("ddactivereports2.field");
  auto label = detail->add("DDActiveReports2.Label");
  EXPECT_EQ(first->name, "Field1");
  EXPECT_EQ(second->name, "Field2") << "unique across the sections of the report";
  EXPECT_EQ(label->name, "Label1");
  EXPECT_EQ(first->progId(), "DDActiveReports2.Field");
  EXPECT_EQ(second->section(), report->detail());
  for (const char *progId :
       {"DDActiveReports2.SubReport", "DDActiveReports2.Line", "DDActiveReports2.Shape", "DDActiveReports2.Picture"})
    EXPECT_TRUE(detail->add(progId)) << progId;
  EXPECT_EQ(errorNumber([&] { detail->add("DDActiveReports2.Chart"); }), ErrorNumber::CannotCreateObject);
  EXPECT_EQ(errorNumber([&] { detail->add("Field"); }), ErrorNumber::CannotCreateObject);

  EXPECT_EQ(detail->item(Variant("FIELD2")), second);
  EXPECT_EQ(detail->item(Variant(1)), label);
  detail->remove(Variant("Label1"));
  EXPECT_FALSE(detail->find("Label1"));
  EXPECT_EQ(detail->add("DDActiveReports2.Label")->name, "Label1") << "a freed name is used again";
  EXPECT_EQ(errorNumber([&] { detail->remove(Variant(42)); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(LayoutModelTest, ScriptsReachTheReportSectionsAndControlsByTheirNames) {
  auto report = bandedReport();
  auto field = std::static_pointer_cast<Field>(report->detail()->controls()->add("DDActiveReports2.Field"));
  // rpt.Sections("Detail").Controls("Field1").Text = "..." as a script writes it.
  const Variant detail = report->get("Sections").rawObject()->invoke("", {Variant("Detail")});
  const Variant control = detail.rawObject()->get("Controls").rawObject()->invoke("", {Variant("Field1")});
  control.rawObject()->set("Text", Variant("Hello"));
  control.rawObject()->set("DataField", Variant("=Extensions.Timestamp(\"yyyy\")"));
  control.rawObject()->set("Left", Variant(720));
  control.rawObject()->set("Visible", Variant(false));
  control.rawObject()->set("ForeColor", Variant(0x0000ff)); // red in &HBBGGRR
  control.rawObject()->get("Font").rawObject()->set("Bold", Variant(true));
  EXPECT_EQ(field->text, "Hello");
  EXPECT_EQ(field->dataField, "=Extensions.Timestamp(\"yyyy\")");
  EXPECT_FLOAT_EQ(field->left, 720);
  EXPECT_FALSE(field->visible);
  EXPECT_EQ(field->foreColor, QColor(255, 0, 0));
  EXPECT_TRUE(field->font->font().bold()) << "the font object is the control's own";
  EXPECT_EQ(errorNumber([&] { control.rawObject()->set("Caption", Variant("x")); }), ErrorNumber::NoSuchMember)
      << "a field has no caption";
  EXPECT_EQ(errorNumber([&] { control.rawObject()->set("Alignment", Variant(5)); }), ErrorNumber::InvalidCall);

  detail.rawObject()->set("Visible", Variant(false));
  detail.rawObject()->set("NewPage", Variant(2));
  EXPECT_FALSE(report->detail()->visible);
  EXPECT_EQ(report->detail()->newPage, NewPage::After);
  EXPECT_EQ(errorNumber([&] { detail.rawObject()->set("Type", Variant(3)); }), ErrorNumber::NoSuchMember)
      << "the type of a section is fixed";
  EXPECT_EQ(errorNumber([&] { report->set("ScriptLanguage", Variant("Perl")); }), ErrorNumber::InvalidCall);
  report->set("ScriptLanguage", Variant("JScript"));
  EXPECT_EQ(report->scriptLanguage, "JScript");

  // Counting the controls of every section, as a For Each in a script does.
  int controls = 0;
  auto sections = report->sections()->enumerate();
  Variant section;
  while (sections->next(section))
    controls += section.rawObject()->get("Controls").rawObject()->get("Count").toLong();
  EXPECT_EQ(controls, 1);
}

TEST(LayoutModelTest, UnboundFieldsAreAddedOnceAndCarryTheRowsValues) {
  auto report = LayoutReport::create();
  auto fields = report->fields();
  fields->add("name");
  EXPECT_EQ(fields->add("NAME"), fields->find("name")) << "adding a name that is there";
  fields->add("city");
  EXPECT_EQ(fields->count(), 2);
  fields->item(Variant("City"))->value = Variant("Lund");
  // rpt.Fields("name") = "Acme" through the default members.
  Args args{Variant("name")};
  report->get("Fields").rawObject()->set("Item", args, Variant("Acme"));
  EXPECT_EQ(fields->find("name")->value, Variant("Acme"));
  EXPECT_EQ(fields->item(Variant(1))->value, Variant("Lund"));
  EXPECT_EQ(errorNumber([&] { fields->item(Variant("missing")); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(LayoutModelTest, PaperPrinterAndNamedItems) {
  auto report = LayoutReport::create();
  EXPECT_FLOAT_EQ(report->pageSettings()->paperWidth, 11906) << "A4 by default";
  report->get("PageSettings").rawObject()->set("LeftMargin", Variant(567));
  EXPECT_FLOAT_EQ(report->pageSettings()->leftMargin, 567);
  auto printer = report->get("Printer").rawObject();
  printer->set("Copies", Variant(3));
  EXPECT_EQ(report->printer()->copies(), 3);
  EXPECT_EQ(errorNumber([&] { printer->set("Copies", Variant(0)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(report->printer()->copies(), 3) << "a refused value changes nothing";

  auto one = std::make_shared<LayoutPrinter>();
  auto two = std::make_shared<LayoutPrinter>();
  report->invoke("AddNamedItem", {Variant("Extensions"), Variant(ObjectRef(one))});
  report->addNamedItem("Records", two);
  report->addNamedItem("extensions", two);
  ASSERT_EQ(report->namedItems().size(), 2u);
  EXPECT_EQ(report->namedItems()[0].second, two) << "a name given again replaces its object";
}

} // namespace
