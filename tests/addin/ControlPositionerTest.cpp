#include "LayoutSketch.h"

#include "design/ControlPositioner.h"

#include "engine/model/Controls.h"
#include "engine/model/Section.h"
#include "engine/model/LayoutReport.h"
#include "hostapi/Layout.h"

#include <gtest/gtest.h>

namespace kordel::test {
namespace {

using addin::ControlPositioner;
using engine::SectionType;

double num(const std::shared_ptr<engine::Control> &control, const char *name) {
  return control->get(QString::fromLatin1(name)).toDouble();
}

class ControlPositionerTest : public ::testing::Test {
protected:
  void SetUp() override {
    layout->printWidth = 6000;
    detail = layout->sections()->add(QStringLiteral("Detail"), 0, SectionType::Detail, 200);
    footer = layout->sections()->add(QStringLiteral("PageFooter"), 1, SectionType::PageFooter, 200);
  }

  std::shared_ptr<engine::Control> newField(double width = 2000) {
    return addControl(detail, hostapi::kFieldProgId, 0, 0, width);
  }

  std::shared_ptr<engine::LayoutReport> layout = engine::LayoutReport::create();
  std::shared_ptr<engine::Section> detail;
  std::shared_ptr<engine::Section> footer;
};

TEST_F(ControlPositionerTest, FieldsGoSideBySideWrapUnderTheLowestAndGrowTheSectionOnly) {
  ControlPositioner positioner;
  positioner.Initialize(layout, 115);

  const auto first = newField();
  positioner.SetPosition(first, QStringLiteral("Detail"), 1, 135);
  EXPECT_EQ(num(first, "Left"), 115); // an empty row starts at the spacing, at the row's top
  EXPECT_EQ(num(first, "Top"), 0);

  const auto second = newField();
  positioner.SetPosition(second, QStringLiteral("Detail"), 1, 135);
  EXPECT_EQ(num(second, "Left"), 115 + 2000 + 135);
  EXPECT_EQ(num(second, "Top"), 0);

  // 4250 + 135 + 2000 passes the print width of 6000: a new row, with the
  // spacing as its gap whatever the offset. The row goes under the last
  // label when the last field is not below it; in a section without
  // labels that is the untouched label rectangle at 0, so the new row
  // starts 115 down, as layouts have always been filled.
  const auto third = newField();
  positioner.SetPosition(third, QStringLiteral("Detail"), 1, 135);
  EXPECT_EQ(num(third, "Left"), 115);
  EXPECT_EQ(num(third, "Top"), 115);
  EXPECT_EQ(detail->height, 115 + 270 + 115);

  // Under a label the wrapped row starts below the label.
  const auto label = addControl(detail, hostapi::kLabelProgId, 0, 0, 5000, 400);
  positioner.SetPosition(label, QStringLiteral("Detail"), 0, 100);
  EXPECT_EQ(num(label, "Left"), 115);
  EXPECT_EQ(num(label, "Top"), 385 + 100); // mode 0: a new row under the last field
  const auto fourth = newField(5000);
  positioner.SetPosition(fourth, QStringLiteral("Detail"), 1, 135);
  EXPECT_EQ(num(fourth, "Top"), 885 + 115);
  EXPECT_EQ(detail->height, 1000 + 270 + 115);

  detail->height = 5000;
  positioner.SetPosition(newField(), QStringLiteral("Detail"), 1, 135);
  EXPECT_EQ(detail->height, 5000);
}

TEST_F(ControlPositionerTest, StartsFromTheVisibleControlsAndPlacesLabelsOnTheLastControl) {
  addControl(detail, hostapi::kFieldProgId, 300, 400, 1000);
  addControl(detail, hostapi::kFieldProgId, 100, 3000, 1000)->set(QStringLiteral("Visible"), false);

  ControlPositioner positioner;
  positioner.Initialize(layout, 115);
  const auto field = newField(1000);
  positioner.SetPosition(field, QStringLiteral("Detail"), 1, 100);
  EXPECT_EQ(num(field, "Left"), 1300 + 100); // beside the visible field, the hidden one is not looked at
  EXPECT_EQ(num(field, "Top"), 400);

  // A label in another section goes on the field's own place (mode 3);
  // the next control in mode 2 then goes under the label.
  const auto label = addControl(footer, hostapi::kLabelProgId, 0, 0, 800, 200);
  positioner.SetPosition(label, QStringLiteral("PageFooter"), 3, 0);
  EXPECT_EQ(num(label, "Left"), 1400);
  EXPECT_EQ(num(label, "Top"), 400);
  const auto below = addControl(footer, hostapi::kFieldProgId, 0, 0, 800);
  positioner.SetPosition(below, QStringLiteral("PageFooter"), 2, 10);
  EXPECT_EQ(num(below, "Left"), 1400);
  EXPECT_EQ(num(below, "Top"), 610);

  // An unknown section places nothing and fails nothing.
  const auto stray = newField();
  positioner.SetPosition(stray, QStringLiteral("NoSuchSection"), 1, 0);
  EXPECT_EQ(num(stray, "Left"), 0);
}

TEST_F(ControlPositionerTest, OtherControlsStartANewRowUnderEverything) {
  addControl(detail, hostapi::kLabelProgId, 115, 100, 1000);
  addControl(detail, hostapi::kFieldProgId, 115, 500, 1000);
  ControlPositioner positioner;
  positioner.Initialize(layout, 115);
  const auto sub = addControl(detail, hostapi::kSubReportProgId, 2000, 0, 6000, 600);
  positioner.SetPosition(sub, QStringLiteral("Detail"), 0, 115);
  EXPECT_EQ(num(sub, "Left"), 115);
  EXPECT_EQ(num(sub, "Top"), 770 + 115);
  EXPECT_EQ(detail->height, 885 + 600 + 115);
}

} // namespace
} // namespace kordel::test
