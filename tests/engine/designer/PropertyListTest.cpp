// The designer's property list and format bar on a real document: edits of
// several controls at once as one step of the history, blank values where
// the selection differs, lengths in the ruler's unit, refused text, the
// report's own properties, the dialogs through the host's Ui, the owner's
// events, the keyboard, and the table of properties against the layout
// file's attributes.

#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/FormatBar.h"
#include "engine/designer/PropertyEditors.h"
#include "engine/designer/PropertyList.h"
#include "engine/designer/PropertyValues.h"
#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "support/ScriptedUi.h"
#include "support/TempDir.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopeGuard>
#include <QTest>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <map>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

template <class T> std::shared_ptr<T> place(Section &section, const char *name, float left, float top) {
  auto control = std::make_shared<T>();
  control->name = QLatin1String(name);
  control->left = left;
  control->top = top;
  section.controls()->append(control);
  return control;
}

// A group header, the detail and the group's footer with labels, a
// summary, a line, a shape, a picture and a sub report.
QByteArray sampleLayout() {
  auto report = LayoutReport::create();
  Sections &sections = *report->sections();
  auto header = sections.add(QStringLiteral("GroupHeader1"), 0, SectionType::GroupHeader, 400);
  header->dataField = QStringLiteral("Region");
  auto detail = sections.add(QStringLiteral("Detail"), 1, SectionType::Detail, 900);
  auto footer = sections.add(QStringLiteral("GroupFooter1"), 2, SectionType::GroupFooter, 400);
  place<Label>(*header, "Label1", 0, 0)->caption = QStringLiteral("Name");
  place<Label>(*header, "Label2", 2000, 0)->caption = QStringLiteral("Amount");
  place<Label>(*footer, "Label3", 0, 0)->caption = QStringLiteral("Total");
  auto total = place<Field>(*footer, "Field1", 2000, 0);
  total->dataField = QStringLiteral("Amount");
  total->countKind = 1;
  total->summaryGroup = QStringLiteral("GroupHeader1");
  place<Line>(*detail, "Line1", 0, 600);
  place<Shape>(*detail, "Shape1", 3000, 0);
  place<Picture>(*detail, "Picture1", 5000, 0);
  place<SubReport>(*detail, "SubReport1", 7000, 0);
  return saveLayout(*report);
}

// The owner's side of the events: what was raised, in order, and whether
// to cancel the changes asked about.
class RecordedEvents : public DesignerEvents {
public:
  bool validateChange(const ObjectRef &, int kind) override {
    asked.push_back(kind);
    return !cancel;
  }
  void layoutChanged(const ObjectRef &, int kind) override { changed.push_back(kind); }
  bool contextMenuOpen(const ObjectRef &, int, QPoint) override { return false; }
  int message(int, const QString &, int) override { return 0; }

  bool cancel = false;
  std::vector<int> asked;
  std::vector<int> changed;
};

class PropertyListTest : public ::testing::Test {
protected:
  void SetUp() override {
    document_.load(sampleLayout());
    list_.resize(380, 700);
    list_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&list_));
  }

  std::shared_ptr<Control> control(const char *name) const {
    for (const auto &section : document_.report()->sections()->all())
      if (auto found = section->controls()->find(QLatin1String(name)))
        return found;
    return nullptr;
  }
  template <class T> T &controlAs(const char *name) const { return dynamic_cast<T &>(*control(name)); }
  std::shared_ptr<Section> section(const char *name) const {
    return document_.report()->sections()->find(QLatin1String(name));
  }
  void selectControls(std::initializer_list<const char *> names) {
    std::vector<ObjectRef> objects;
    for (const char *name : names)
      objects.push_back(control(name));
    document_.select(objects);
  }
  template <class W> W *input(const char *property) const {
    PropertyEditor *editor = list_.editor(QLatin1String(property));
    return editor ? editor->findChild<W *>() : nullptr;
  }

  DesignerDocument document_;
  PropertyList list_{document_};
};

// ---- Editing several controls ----

TEST_F(PropertyListTest, TypingACaptionChangesEverySelectedLabelAsOneStep) {
  const QByteArray before = document_.save();
  selectControls({"Label1", "Label2"});
  auto *caption = input<QPlainTextEdit>("Caption");
  ASSERT_TRUE(caption);
  QTest::keyClicks(caption, QStringLiteral("Heading"));
  QTest::keyClick(caption, Qt::Key_Return);

  EXPECT_EQ(controlAs<Label>("Label1").caption, QStringLiteral("Heading"));
  EXPECT_EQ(controlAs<Label>("Label2").caption, QStringLiteral("Heading"));
  EXPECT_EQ(controlAs<Label>("Label3").caption, QStringLiteral("Total"));
  EXPECT_EQ(list_.shownText(QStringLiteral("Caption")), QStringLiteral("Heading"));

  document_.undo();
  EXPECT_FALSE(document_.canUndo()) << "one edit, one step";
  EXPECT_EQ(document_.save(), before);
  EXPECT_EQ(list_.shownText(QStringLiteral("Caption")), QString()) << "the captions differ again";
  document_.redo();
  EXPECT_EQ(controlAs<Label>("Label2").caption, QStringLiteral("Heading"));
}

TEST_F(PropertyListTest, ShiftEnterStartsANewLineOfACaption) {
  selectControls({"Label1"});
  auto *caption = input<QPlainTextEdit>("Caption");
  ASSERT_TRUE(caption);
  caption->selectAll();
  QTest::keyClicks(caption, QStringLiteral("Two"));
  QTest::keyClick(caption, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClicks(caption, QStringLiteral("lines"));
  EXPECT_EQ(controlAs<Label>("Label1").caption, QStringLiteral("Name")) << "nothing given yet";
  QTest::keyClick(caption, Qt::Key_Return);
  EXPECT_EQ(controlAs<Label>("Label1").caption, QStringLiteral("Two\nlines"));
}

TEST_F(PropertyListTest, ValuesTheSelectionDoesNotShareAreBlank) {
  controlAs<Label>("Label2").visible = false;
  document_.noteOutsideChange();
  selectControls({"Label1", "Label2"});

  EXPECT_EQ(list_.shownText(QStringLiteral("Caption")), QString());
  EXPECT_EQ(list_.shownText(QStringLiteral("Left")), QString());
  EXPECT_EQ(list_.shownText(QStringLiteral("Top")), QStringLiteral("0 in"));
  EXPECT_EQ(list_.shownText(QStringLiteral("ForeColor")), QStringLiteral("#000000"));
  auto *visible = input<QCheckBox>("Visible");
  ASSERT_TRUE(visible);
  EXPECT_EQ(visible->checkState(), Qt::PartiallyChecked);
  EXPECT_EQ(list_.findChild<QLabel *>("LblPropertyTarget")->text(), QStringLiteral("2 controls"));

  // Enter on a blank value left untouched gives nothing to the controls.
  const QByteArray before = document_.save();
  QTest::keyClick(input<QLineEdit>("Left"), Qt::Key_Return);
  EXPECT_FLOAT_EQ(controlAs<Label>("Label2").left, 2000);
  EXPECT_EQ(document_.save(), before);
}

TEST_F(PropertyListTest, OnlyPropertiesEverySelectedObjectHasAreListed) {
  selectControls({"Label1", "Line1"});
  const QStringList both = list_.propertyNames();
  for (const char *name : {"Left", "Top", "Width", "Height", "Visible", "Tag"})
    EXPECT_TRUE(both.contains(QLatin1String(name))) << name;
  for (const char *name : {"Caption", "Font", "X1", "LineStyle", "Name"})
    EXPECT_FALSE(both.contains(QLatin1String(name))) << name;

  document_.select({section("GroupHeader1")});
  EXPECT_TRUE(list_.propertyNames().contains(QStringLiteral("RepeatStyle")));
  EXPECT_EQ(list_.shownText(QStringLiteral("DataField")), QStringLiteral("Region"));
  document_.select({section("Detail")});
  EXPECT_FALSE(list_.propertyNames().contains(QStringLiteral("RepeatStyle")));
  EXPECT_EQ(list_.shownText(QStringLiteral("Type")), QStringLiteral("Detail"));
  EXPECT_FALSE(list_.setValue(QStringLiteral("Type"), QStringLiteral("Group Header")));
  EXPECT_EQ(section("Detail")->type(), SectionType::Detail);
}

// ---- Units and refused text ----

TEST_F(PropertyListTest, LengthsAreTypedInTheRulersUnitAndKeptInTwips) {
  selectControls({"Label1", "Label3"});
  list_.setRulerUnits(RulerUnits::Centimetres);
  auto *width = input<QLineEdit>("Width");
  ASSERT_TRUE(width);
  width->selectAll();
  QTest::keyClicks(width, QStringLiteral("2.54"));
  QTest::keyClick(width, Qt::Key_Return);
  EXPECT_FLOAT_EQ(controlAs<Label>("Label1").width, 1440);
  EXPECT_FLOAT_EQ(controlAs<Label>("Label3").width, 1440);
  EXPECT_EQ(width->text(), QStringLiteral("2.54 cm"));

  EXPECT_TRUE(list_.setValue(QStringLiteral("Height"), QStringLiteral("5 mm")));
  EXPECT_FLOAT_EQ(controlAs<Label>("Label1").height, 283); // 283.46 twips, kept whole
  EXPECT_TRUE(list_.setValue(QStringLiteral("Left"), QStringLiteral("0,5")));
  EXPECT_FLOAT_EQ(controlAs<Label>("Label3").left, 283);

  list_.setRulerUnits(RulerUnits::Inches);
  EXPECT_EQ(list_.shownText(QStringLiteral("Width")), QStringLiteral("1 in"));
  EXPECT_TRUE(list_.setValue(QStringLiteral("Width"), QStringLiteral("1.5")));
  EXPECT_FLOAT_EQ(controlAs<Label>("Label1").width, 2160);
}

TEST_F(PropertyListTest, TextThatIsNoValueIsRefusedAndChangesNothing) {
  selectControls({"Label1", "Label2"});
  const QByteArray before = document_.save();
  auto *width = input<QLineEdit>("Width");
  width->selectAll();
  QTest::keyClicks(width, QStringLiteral("wide"));
  QTest::keyClick(width, Qt::Key_Return);

  EXPECT_EQ(document_.save(), before);
  EXPECT_FALSE(document_.canUndo());
  EXPECT_TRUE(list_.message().contains(QStringLiteral("\"wide\" is not a length"))) << list_.message().toStdString();
  EXPECT_TRUE(list_.findChild<QLabel *>("LblPropertyMessage")->isVisible());
  EXPECT_EQ(width->text(), QStringLiteral("wide")) << "the text typed stays to be put right";

  QTest::keyClick(width, Qt::Key_Escape);
  EXPECT_EQ(width->text(), QStringLiteral("1 in"));
  EXPECT_EQ(list_.message(), QString());

  EXPECT_FALSE(list_.setValue(QStringLiteral("Width"), QStringLiteral("-2")));
  EXPECT_TRUE(list_.message().contains(QStringLiteral("less than 0 in")));
  EXPECT_FALSE(list_.setValue(QStringLiteral("ForeColor"), QStringLiteral("blurple")));
  EXPECT_FALSE(list_.setValue(QStringLiteral("Alignment"), QStringLiteral("Justified")));
  EXPECT_TRUE(list_.message().contains(QStringLiteral("Left, Right, Center")));
  EXPECT_EQ(document_.save(), before);
}

TEST_F(PropertyListTest, NamesAreRefusedWhenTakenOrNoNames) {
  selectControls({"Label1"});
  EXPECT_FALSE(list_.setValue(QStringLiteral("Name"), QStringLiteral("label2")));
  EXPECT_TRUE(list_.message().contains(QStringLiteral("taken")));
  EXPECT_FALSE(list_.setValue(QStringLiteral("Name"), QStringLiteral("Detail")));
  EXPECT_FALSE(list_.setValue(QStringLiteral("Name"), QStringLiteral("Two words")));
  EXPECT_FALSE(list_.setValue(QStringLiteral("Name"), QString()));
  EXPECT_TRUE(control("Label1"));
  EXPECT_TRUE(list_.setValue(QStringLiteral("Name"), QStringLiteral("lblCustomer")));
  EXPECT_TRUE(control("lblCustomer"));
  EXPECT_EQ(list_.findChild<QLabel *>("LblPropertyTarget")->text(), QStringLiteral("lblCustomer (Label)"));
}

TEST_F(PropertyListTest, RenamingAGroupHeaderTakesItsSummariesAlong) {
  document_.select({section("GroupHeader1")});
  EXPECT_TRUE(list_.setValue(QStringLiteral("Name"), QStringLiteral("ByRegion")));
  EXPECT_EQ(controlAs<Field>("Field1").summaryGroup, QStringLiteral("ByRegion"));
  document_.undo();
  EXPECT_EQ(controlAs<Field>("Field1").summaryGroup, QStringLiteral("GroupHeader1"));
  EXPECT_TRUE(section("GroupHeader1"));
}

// ---- The report ----

TEST_F(PropertyListTest, WithNothingSelectedTheReportsOwnAreListed) {
  document_.clearSelection();
  const QStringList names = list_.propertyNames();
  for (const char *name : {"ScriptLanguage", "PrintWidth", "DocumentName", "Caption", "PaperSize", "Orientation",
                           "PaperWidth", "PaperHeight", "LeftMargin", "RightMargin", "TopMargin", "BottomMargin"})
    EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
  EXPECT_FALSE(names.contains(QStringLiteral("Name")));
  EXPECT_EQ(list_.shownText(QStringLiteral("PaperSize")), QStringLiteral("A4"));
  EXPECT_EQ(list_.findChild<QLabel *>("LblPropertyTarget")->text(), QStringLiteral("Report"));

  EXPECT_TRUE(list_.setValue(QStringLiteral("PaperSize"), QStringLiteral("Letter")));
  const PageSettings &page = *document_.report()->pageSettings();
  EXPECT_FLOAT_EQ(page.paperWidth, 12240);
  EXPECT_FLOAT_EQ(page.paperHeight, 15840);
  list_.setRulerUnits(RulerUnits::Centimetres);
  EXPECT_TRUE(list_.setValue(QStringLiteral("LeftMargin"), QStringLiteral("2 cm")));
  EXPECT_FLOAT_EQ(document_.report()->pageSettings()->leftMargin, 1134);
  EXPECT_TRUE(list_.setValue(QStringLiteral("Caption"), QStringLiteral("Sales by region")));
  EXPECT_EQ(document_.report()->caption, QStringLiteral("Sales by region"));

  // Choices by the keyboard, as in a closed combo box.
  auto *language = input<QComboBox>("ScriptLanguage");
  ASSERT_TRUE(language);
  EXPECT_EQ(language->currentText(), QStringLiteral("VBScript"));
  QTest::keyClick(language, Qt::Key_Down);
  EXPECT_EQ(document_.report()->scriptLanguage, QStringLiteral("JScript"));
  auto *orientation = input<QComboBox>("Orientation");
  QTest::keyClick(orientation, Qt::Key_Down);
  EXPECT_EQ(document_.report()->pageSettings()->orientation, 2);

  // A value the model refuses leaves the report as it was, and no step.
  const QByteArray before = document_.save();
  const QString lastStep = document_.undoLabel();
  document_.report()->holdForRun();
  document_.report()->fixScriptLanguage();
  EXPECT_FALSE(list_.setValue(QStringLiteral("ScriptLanguage"), QStringLiteral("VBScript")));
  document_.report()->releaseFromRun();
  EXPECT_TRUE(list_.message().contains(QStringLiteral("running"))) << list_.message().toStdString();
  EXPECT_EQ(document_.save(), before);
  EXPECT_EQ(document_.undoLabel(), lastStep);
}

TEST_F(PropertyListTest, ThePrintWidthAsksTheOwnerAndACancelChangesNothing) {
  RecordedEvents events;
  list_.setEvents(&events);
  int changedCalls = 0;
  list_.setChanged([&] { ++changedCalls; });
  document_.clearSelection();

  events.cancel = true;
  EXPECT_FALSE(list_.setValue(QStringLiteral("PrintWidth"), QStringLiteral("7")));
  EXPECT_FLOAT_EQ(document_.report()->printWidth, 9360);
  EXPECT_EQ(list_.shownText(QStringLiteral("PrintWidth")), QStringLiteral("6.5 in"));
  EXPECT_EQ(events.asked, std::vector<int>{DesignChange::PrintWidth});
  EXPECT_TRUE(events.changed.empty());
  EXPECT_EQ(changedCalls, 0);

  events.cancel = false;
  EXPECT_TRUE(list_.setValue(QStringLiteral("PrintWidth"), QStringLiteral("7")));
  EXPECT_FLOAT_EQ(document_.report()->printWidth, 10080);
  EXPECT_EQ(events.changed, std::vector<int>{DesignChange::PrintWidth});
  EXPECT_EQ(changedCalls, 1);

  events.changed.clear();
  selectControls({"Label1", "Label2"});
  EXPECT_TRUE(list_.setValue(QStringLiteral("Top"), QStringLiteral("0.25")));
  EXPECT_EQ(events.changed, (std::vector<int>{DesignChange::ControlMoved, DesignChange::ControlMoved}));
  EXPECT_EQ(changedCalls, 2);
}

// ---- Dialogs ----

TEST_F(PropertyListTest, DialogsThroughTheUiGiveTheirChoiceToEverySelectedControl) {
  const auto ui = std::make_shared<test::ScriptedUi>();
  hostapi::installUi(ui);
  const auto uninstall = qScopeGuard([] { hostapi::installUi(nullptr); });
  ui->colorAnswers = {QColor(200, 16, 32), QColor()};

  selectControls({"Label1", "Field1"});
  EXPECT_TRUE(list_.chooseValue(QStringLiteral("ForeColor")));
  EXPECT_EQ(ui->colorsOffered, std::vector<QColor>{QColor(Qt::black)});
  EXPECT_EQ(controlAs<Label>("Label1").foreColor, QColor(200, 16, 32));
  EXPECT_EQ(controlAs<Field>("Field1").foreColor, QColor(200, 16, 32));
  EXPECT_EQ(list_.shownText(QStringLiteral("ForeColor")), QStringLiteral("#c81020"));
  const QByteArray chosen = document_.save();
  EXPECT_FALSE(list_.chooseValue(QStringLiteral("BackColor")));
  EXPECT_EQ(document_.save(), chosen) << "a cancelled dialog changes nothing";

  // F4 in the font's row opens the dialog.
  QFont serif(QStringLiteral("DejaVu Serif"));
  serif.setPointSizeF(14);
  serif.setBold(true);
  ui->fontAnswers = {serif};
  QTest::keyClick(input<QLineEdit>("Font"), Qt::Key_F4);
  for (const char *name : {"Label1", "Field1"}) {
    const QFont now = control(name)->font->font();
    EXPECT_EQ(now.family(), QStringLiteral("DejaVu Serif")) << name;
    EXPECT_EQ(now.pointSizeF(), 14) << name;
    EXPECT_TRUE(now.bold()) << name;
  }
  EXPECT_EQ(list_.shownText(QStringLiteral("Font")), QStringLiteral("DejaVu Serif, 14 pt, Bold"));

  TempDir dir;
  QImage image(12, 8, QImage::Format_RGB32);
  image.fill(Qt::darkCyan);
  ASSERT_TRUE(image.save(dir.file(QStringLiteral("logo.png"))));
  ASSERT_TRUE(test::writeFile(dir.file(QStringLiteral("notes.png")), "no picture"));
  selectControls({"Picture1"});
  ui->fileAnswers = {dir.file(QStringLiteral("notes.png")), dir.file(QStringLiteral("logo.png")), QString()};
  EXPECT_FALSE(list_.chooseValue(QStringLiteral("Picture")));
  EXPECT_TRUE(list_.message().contains(QStringLiteral("cannot be read as a picture")));
  ASSERT_FALSE(ui->fileDialogs.empty());
  EXPECT_TRUE(ui->fileDialogs.front().filter.contains(QStringLiteral("*.png"))) << "pictures are offered";
  EXPECT_TRUE(list_.chooseValue(QStringLiteral("Picture")));
  EXPECT_EQ(controlAs<Picture>("Picture1").image.size(), QSize(12, 8));
  EXPECT_EQ(list_.shownText(QStringLiteral("Picture")), QStringLiteral("12 × 8 pixels"));
  EXPECT_FALSE(list_.chooseValue(QStringLiteral("Picture"))) << "cancelled";
  EXPECT_EQ(controlAs<Picture>("Picture1").image.size(), QSize(12, 8));
  EXPECT_TRUE(list_.setValue(QStringLiteral("Picture"), QString()));
  EXPECT_TRUE(controlAs<Picture>("Picture1").image.isNull());
}

// ---- The keyboard ----

TEST_F(PropertyListTest, TabGoesFromRowToRowAndEscapeBringsBackTheValue) {
  list_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&list_));
  selectControls({"Label1"});
  auto *left = input<QLineEdit>("Left");
  left->setFocus();
  QTest::keyClick(left, Qt::Key_Tab);
  EXPECT_TRUE(list_.editor(QStringLiteral("Top"))->isAncestorOf(QApplication::focusWidget()));
  EXPECT_TRUE(list_.findChild<QLabel *>("LblPropertyHelp")->text().contains(QStringLiteral("Top")));

  auto *top = input<QLineEdit>("Top");
  top->selectAll();
  QTest::keyClicks(top, QStringLiteral("3"));
  QTest::keyClick(top, Qt::Key_Escape);
  EXPECT_EQ(top->text(), QStringLiteral("0 in"));
  // Leaving the row after Esc gives nothing.
  QTest::keyClick(top, Qt::Key_Tab);
  EXPECT_FLOAT_EQ(controlAs<Label>("Label1").top, 0);
  EXPECT_FALSE(document_.canUndo());

  // Typing and leaving by Tab gives the value.
  auto *width = input<QLineEdit>("Width");
  width->setFocus();
  width->selectAll();
  QTest::keyClicks(width, QStringLiteral("2"));
  QTest::keyClick(width, Qt::Key_Tab);
  EXPECT_FLOAT_EQ(controlAs<Label>("Label1").width, 2880);
}

// ---- The format bar ----

class FormatBarTest : public PropertyListTest {
protected:
  FormatBar bar_{document_};
};

TEST_F(FormatBarTest, BoldGoesToEverySelectedControlAsOneStep) {
  const QByteArray before = document_.save();
  selectControls({"Label1", "Label2", "Field1", "Line1"});
  QAction *bold = bar_.findChild<QAction *>("CmdBold");
  ASSERT_TRUE(bold);
  EXPECT_TRUE(bold->isEnabled());
  EXPECT_FALSE(bold->isChecked());
  bold->trigger();
  for (const char *name : {"Label1", "Label2", "Field1"})
    EXPECT_TRUE(control(name)->font->font().bold()) << name;
  EXPECT_FALSE(control("Label3")->font->font().bold());
  EXPECT_TRUE(bold->isChecked());
  EXPECT_TRUE(list_.shownText(QStringLiteral("Font")).isEmpty()) << "a line has no font: the list shows none";

  document_.undo();
  EXPECT_FALSE(document_.canUndo());
  EXPECT_EQ(document_.save(), before);
  EXPECT_FALSE(bold->isChecked());
}

TEST_F(FormatBarTest, TheBarShowsAndSetsWhatTheSelectedControlsShare) {
  selectControls({"Label1", "Label2"});
  auto *size = bar_.findChild<QComboBox *>("CboFontSize");
  ASSERT_TRUE(size);
  EXPECT_EQ(size->currentText(), QStringLiteral("10"));
  EXPECT_TRUE(bar_.setFontSize(QStringLiteral("12")));
  EXPECT_EQ(controlAs<Label>("Label2").font->font().pointSizeF(), 12);
  EXPECT_EQ(list_.shownText(QStringLiteral("Font")), QStringLiteral("DejaVu Sans, 12 pt"));

  const QByteArray before = document_.save();
  EXPECT_FALSE(bar_.setFontSize(QStringLiteral("huge")));
  EXPECT_FALSE(bar_.problem().isEmpty());
  EXPECT_EQ(document_.save(), before);
  EXPECT_EQ(size->currentText(), QStringLiteral("12"));

  bar_.findChild<QAction *>("CmdAlignCenter")->trigger();
  EXPECT_EQ(controlAs<Label>("Label1").alignment, Alignment::Center);
  EXPECT_TRUE(bar_.findChild<QAction *>("CmdAlignCenter")->isChecked());
  EXPECT_FALSE(bar_.findChild<QAction *>("CmdAlignLeft")->isChecked());

  EXPECT_TRUE(bar_.setBackColor(QColor(255, 255, 0)));
  EXPECT_EQ(controlAs<Label>("Label1").backColor, QColor(255, 255, 0));
  EXPECT_EQ(controlAs<Label>("Label1").backStyle, 1) << "a back colour shows only when filled";
  document_.undo();
  EXPECT_EQ(controlAs<Label>("Label1").backStyle, 0) << "colour and fill are one step";
  EXPECT_EQ(controlAs<Label>("Label1").alignment, Alignment::Center);

  selectControls({"Line1"});
  EXPECT_FALSE(bar_.findChild<QAction *>("CmdBold")->isEnabled());
  EXPECT_FALSE(bar_.findChild<QComboBox *>("CboFontName")->isEnabled());
  document_.select({section("Detail")});
  EXPECT_FALSE(bar_.findChild<QAction *>("CmdBackColor")->isEnabled());
}

// ---- The table of properties ----

// Attributes the layout keeps for every control but that a control of the
// kind does not draw: the list does not offer them.
const std::map<QString, QStringList> &undrawn() {
  static const QStringList box{"ForeColor", "BackColor", "BackStyle", "Alignment", "BorderStyle", "BorderColor"};
  static const std::map<QString, QStringList> attributes{
      {QStringLiteral("Line"), box},
      {QStringLiteral("Shape"), {"ForeColor", "Alignment", "BorderStyle", "BorderColor"}},
      {QStringLiteral("Picture"), box},
      {QStringLiteral("SubReport"), box},
  };
  return attributes;
}

TEST(DesignPropertiesTest, EveryAttributeOfTheLayoutFileHasARowForItsKind) {
  DesignerDocument document;
  QByteArray layout = sampleLayout();
  {
    // Every section type, so that each type's attributes are checked.
    auto report = LayoutReport::create();
    loadLayout(*report, layout);
    report->sections()->add(QStringLiteral("ReportHeader"), 0, SectionType::ReportHeader, 300);
    report->sections()->add(QStringLiteral("PageHeader"), 1, SectionType::PageHeader, 300);
    report->sections()->add(QStringLiteral("PageFooter"), 5, SectionType::PageFooter, 300);
    report->sections()->add(QStringLiteral("ReportFooter"), 6, SectionType::ReportFooter, 300);
    layout = saveLayout(*report);
  }
  document.load(layout);
  const LayoutReport &report = *document.report();

  int checked = 0;
  QXmlStreamReader xml(layout);
  std::shared_ptr<Section> section;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement)
      continue;
    const QString element = xml.name().toString();
    Object *object = nullptr;
    QStringList unused;
    if (element == QLatin1String("Report") || element == QLatin1String("PageSettings")) {
      object = document.report().get();
    } else if (element == QLatin1String("Section")) {
      section = report.sections()->find(xml.attributes().value(QLatin1String("Name")).toString());
      object = section.get();
      if (section->type() != SectionType::GroupHeader)
        unused << QStringLiteral("DataField") << QStringLiteral("RepeatStyle");
      if (section->type() == SectionType::PageHeader || section->type() == SectionType::PageFooter)
        unused << QStringLiteral("KeepTogether") << QStringLiteral("NewPage");
    } else if (element == QLatin1String("Font")) {
      continue; // checked with its control
    } else if (element != QLatin1String("Layout") && element != QLatin1String("Script") &&
               element != QLatin1String("Image")) {
      ASSERT_TRUE(section);
      const auto control = section->controls()->find(xml.attributes().value(QLatin1String("Name")).toString());
      ASSERT_TRUE(control) << element.toStdString();
      object = control.get();
      const auto found = undrawn().find(element);
      if (found != undrawn().end())
        unused = found->second;
      const bool hasFont = control->kind() == ControlKind::Label || control->kind() == ControlKind::Field;
      EXPECT_EQ(bool(findDesignProperty(QStringLiteral("Font"), *control)), hasFont) << element.toStdString();
      if (control->kind() == ControlKind::Picture) {
        EXPECT_TRUE(findDesignProperty(QStringLiteral("Picture"), *control));
      }
    }
    if (!object)
      continue;
    for (const QXmlStreamAttribute &attribute : xml.attributes()) {
      const QString name = attribute.name().toString();
      EXPECT_EQ(bool(findDesignProperty(name, *object)), !unused.contains(name))
          << element.toStdString() << "." << name.toStdString();
      ++checked;
    }
  }
  EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
  EXPECT_GT(checked, 100);
}

} // namespace
