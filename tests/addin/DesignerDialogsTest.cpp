// The designer's property and option dialogs on the demo database: the
// page properties of a report's top page and of its persons sub page,
// the grid, ruler and font options, and the toolbar choice. The windows
// are shown offscreen and driven with mouse and key events where the
// user's road matters. KORDEL_SCREENSHOT_DIR=FOLDER keeps a picture of
// each dialog for a look.

#include "DemoFixture.h"
#include "WidgetTools.h"

#include "common/ResourceManager.h"
#include "common/Settings.h"
#include "dialogs/DlgCustomize.h"
#include "dialogs/DlgOptions.h"
#include "dialogs/DlgPageProperties.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>


using namespace kordel;
using namespace kordel::addin;
using kordel::test::child;

namespace {

const QString kPersons = QStringLiteral("{DIALOGS-PERSONS}");

QStringList comboTexts(QComboBox &combo) {
  QStringList result;
  for (int i = 0; i < combo.count(); ++i)
    result << combo.itemText(i);
  return result;
}

// Each row as "text|sub item".
QStringList rows(QTreeWidget &list) {
  QStringList result;
  for (int i = 0; i < list.topLevelItemCount(); ++i)
    result << list.topLevelItem(i)->text(0) + u'|' + list.topLevelItem(i)->text(1);
  return result;
}

// A click on a check box's text, where it reacts.
void clickBox(QCheckBox &box) { QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2)); }

void clickRow(QTreeWidget &list, int row) {
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.topLevelItem(row)).center());
}

void showNow(QWidget &window) {
  window.show();
  QApplication::processEvents();
}

QString storedToolbars() {
  return ReadSetting(kSettingsRoot + QStringLiteral("\\Designer"), QStringLiteral("ShowToolbars"), Variant())
      .toString();
}

} // namespace

class DesignerDialogsTest : public test::DemoHostedTest {
protected:
  void SetUp() override {
    DemoHostedTest::SetUp();
    report = std::make_shared<Report>();
    report->LoadContents(Variant());
    ASSERT_TRUE(report->Create(QStringLiteral("company")));
    ASSERT_TRUE(report->AddPage(kPersons, "Persons", "person", report->Guid(), Variant()));
    persons = report->LookupPage(kPersons);
    persons->Fields()->Add("lastname", "lastname", "");
    persons->Fields()->Add("company.city", "company.city", "-");
    persons->Fields()->Add("vbscript:script1", "[company.name] & \"!\"", "?");
    persons->SortFields()->Add("lastname", kSortDescending);
  }

  // A page properties dialog loaded on page and shown.
  std::unique_ptr<DlgPageProperties> pageDialog(const std::shared_ptr<Page> &page) {
    auto dialog = std::make_unique<DlgPageProperties>();
    dialog->SetPage(page);
    dialog->Form_Load();
    showNow(*dialog);
    return dialog;
  }

  std::unique_ptr<DlgOptions> optionsDialog() {
    auto dialog = std::make_unique<DlgOptions>();
    dialog->SetShowGrid(true);
    dialog->SetAlignToGrid(false);
    dialog->SetGridX(8);
    dialog->SetGridY(4);
    dialog->SetRulerUnits(1);
    dialog->Form_Load();
    showNow(*dialog);
    return dialog;
  }

  // Checks that every named control shown lies wholly inside the window
  // with room for its text, and keeps a picture of it.
  void lookAt(QWidget &window, const QString &name) {
    showNow(window);
    const QRect inside = window.rect();
    for (QWidget *control : window.findChildren<QWidget *>()) {
      if (control->objectName().isEmpty() || control->objectName().startsWith("qt_") || !control->isVisible())
        continue;
      const std::string where = name.toStdString() + ": " + control->objectName().toStdString();
      const QRect place(control->mapTo(&window, QPoint(0, 0)), control->size());
      EXPECT_TRUE(inside.contains(place)) << where;
      EXPECT_GE(control->width(), control->minimumSizeHint().width()) << where;
    }
    EXPECT_EQ(test::mnemonicClashes(window), QStringList()) << name.toStdString();
    const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR", screenshots.path());
    const QString path = folder + u'/' + name + QStringLiteral(".png");
    EXPECT_TRUE(window.grab().save(path)) << path.toStdString();
  }

  // Every dialog, each tab of the tabbed ones, handed to lookAt.
  void lookAtEach(const QString &language) {
    const auto dialog = pageDialog(persons);
    auto &tabs = child<QTabBar>(*dialog, "TabProperties");
    for (int tab = 0; tab < tabs.count(); ++tab) {
      tabs.setCurrentIndex(tab);
      lookAt(*dialog, QStringLiteral("page-properties-%1-%2").arg(tab).arg(language));
    }
    const auto options = optionsDialog();
    auto &optionTabs = child<QTabBar>(*options, "TabOptions");
    for (int tab = 0; tab < optionTabs.count(); ++tab) {
      optionTabs.setCurrentIndex(tab);
      lookAt(*options, QStringLiteral("options-%1-%2").arg(tab).arg(language));
    }
    DlgCustomize customize;
    customize.SetToolBars(146);
    customize.Form_Load();
    lookAt(customize, QStringLiteral("customize-") + language);
  }

  QString local(const QString &path) const {
    return persons->Class()->fields()->translatePath(path, hostapi::PathDirection::ToLocal);
  }

  std::shared_ptr<Report> report;
  std::shared_ptr<Page> persons;
  test::TempDir screenshots;
};

// ---- page properties

TEST_F(DesignerDialogsTest, ThePageChangesOnlyOnOkAndOnlyWhenSomethingDiffers) {
  persons->SetStripeDetail(false);
  persons->SetHideEmptyPage(true);
  persons->SetModified(false);
  {
    // OK with nothing changed leaves the page as it was, unmodified.
    const auto dialog = pageDialog(persons);
    EXPECT_TRUE(child<QCheckBox>(*dialog, "ChkHideEmptyPage").isChecked());
    EXPECT_FALSE(child<QCheckBox>(*dialog, "ChkStripeFirst").isEnabled());
    EXPECT_FALSE(dialog->HasChanges());
    child<QPushButton>(*dialog, "CmdOK").click();
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_FALSE(persons->Modified());
  }
  {
    // A change dropped by Escape never reaches the page.
    const auto dialog = pageDialog(persons);
    clickBox(child<QCheckBox>(*dialog, "ChkStripeDetail"));
    EXPECT_TRUE(child<QCheckBox>(*dialog, "ChkStripeFirst").isEnabled());
    EXPECT_TRUE(dialog->HasChanges());
    QTest::keyClick(&child<QCheckBox>(*dialog, "ChkStripeDetail"), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_FALSE(persons->StripeDetail());
    EXPECT_FALSE(persons->Modified());
  }
  {
    // Enter takes the changes: stripes and the hidden empty page.
    const auto dialog = pageDialog(persons);
    clickBox(child<QCheckBox>(*dialog, "ChkStripeDetail"));
    clickBox(child<QCheckBox>(*dialog, "ChkStripeFirst"));
    clickBox(child<QCheckBox>(*dialog, "ChkHideEmptyPage"));
    QTest::keyClick(&child<QCheckBox>(*dialog, "ChkHideEmptyPage"), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(persons->StripeDetail());
    EXPECT_TRUE(persons->StripeFirst());
    EXPECT_FALSE(persons->HideEmptyPage());
    EXPECT_TRUE(persons->Modified());
  }
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(DesignerDialogsTest, TheTopPageNeitherReadsNorWritesHidingTheEmptyPage) {
  const auto top = report->Page();
  top->Fields()->Add("name", "name", "");
  top->SetHideEmptyPage(true);
  const auto dialog = pageDialog(top);
  auto &hide = child<QCheckBox>(*dialog, "ChkHideEmptyPage");
  EXPECT_FALSE(hide.isEnabled());
  EXPECT_FALSE(hide.isChecked());
  EXPECT_FALSE(dialog->HasChanges()) << "the unchecked box is not compared on a top page";
  hide.setChecked(true);
  child<QCheckBox>(*dialog, "ChkStripeDetail").click();
  dialog->CmdOK_Click();
  EXPECT_TRUE(top->StripeDetail());
  EXPECT_TRUE(top->HideEmptyPage());
  EXPECT_TRUE(top->Modified());
}

TEST_F(DesignerDialogsTest, AFieldStandsEitherInTheSortListOrInTheCombo) {
  persons->SortFields()->Add("company.city", kSortAscending);
  const auto dialog = pageDialog(persons);
  auto &list = child<QTreeWidget>(*dialog, "LvwSortFields");
  auto &fieldsCombo = child<QComboBox>(*dialog, "CboSortFields");
  auto &sorting = child<QComboBox>(*dialog, "CboSorting");
  auto &remove = child<QPushButton>(*dialog, "CmdRemoveSortField");
  auto &up = child<QPushButton>(*dialog, "CmdMoveUp");
  auto &down = child<QPushButton>(*dialog, "CmdMoveDown");
  child<QTabBar>(*dialog, "TabProperties").setCurrentIndex(1);

  // Every sortable field is in use; the script field is none of them.
  EXPECT_EQ(rows(list), QStringList({local("lastname") + "|Descending", local("company.city") + "|Ascending"}));
  EXPECT_EQ(fieldsCombo.count(), 0);
  EXPECT_FALSE(fieldsCombo.isEnabled());
  EXPECT_FALSE(sorting.isEnabled());
  EXPECT_EQ(sorting.count(), 0);
  EXPECT_FALSE(child<QPushButton>(*dialog, "CmdAddSortField").isEnabled());
  // The last row added is selected: it can go up, not down.
  EXPECT_TRUE(remove.isEnabled());
  EXPECT_TRUE(up.isEnabled());
  EXPECT_FALSE(down.isEnabled());
  clickRow(list, 0);
  EXPECT_FALSE(up.isEnabled());
  EXPECT_TRUE(down.isEnabled());

  // The removed field comes back into the combo with its direction.
  QTest::mouseClick(&remove, Qt::LeftButton);
  EXPECT_EQ(rows(list), QStringList({local("company.city") + "|Ascending"}));
  EXPECT_EQ(comboTexts(fieldsCombo), QStringList({local("lastname")}));
  EXPECT_TRUE(fieldsCombo.isEnabled());
  EXPECT_EQ(comboTexts(sorting), QStringList({"Ascending", "Descending"}));
  EXPECT_EQ(sorting.currentText(), "Descending");
  // The row left is selected; alone, it can move neither way.
  EXPECT_TRUE(remove.isEnabled());
  EXPECT_FALSE(up.isEnabled());
  EXPECT_FALSE(down.isEnabled());

  // Adding it back, ascending now, empties the combo again.
  sorting.setCurrentIndex(0);
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdAddSortField"), Qt::LeftButton);
  EXPECT_EQ(rows(list), QStringList({local("company.city") + "|Ascending", local("lastname") + "|Ascending"}));
  EXPECT_EQ(fieldsCombo.count(), 0);
  EXPECT_EQ(sorting.count(), 0);
  dialog->CmdOK_Click();
  EXPECT_EQ(persons->SortFields()->Item(1)->Name, "company.city");
  EXPECT_EQ(persons->SortFields()->Item(2)->Name, "lastname");
  EXPECT_EQ(persons->SortFields()->Item(2)->SortOrder, kSortAscending);
}

TEST_F(DesignerDialogsTest, MovingARowUpChangesTheStoredOrderOnOk) {
  persons->SortFields()->Add("company.city", kSortAscending);
  const auto dialog = pageDialog(persons);
  auto &list = child<QTreeWidget>(*dialog, "LvwSortFields");
  child<QTabBar>(*dialog, "TabProperties").setCurrentIndex(1);
  clickRow(list, 1);
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdMoveUp"), Qt::LeftButton);
  EXPECT_EQ(rows(list), QStringList({local("company.city") + "|Ascending", local("lastname") + "|Descending"}));
  EXPECT_EQ(list.currentItem(), list.topLevelItem(0));
  EXPECT_FALSE(child<QPushButton>(*dialog, "CmdMoveUp").isEnabled());
  EXPECT_TRUE(dialog->HasChanges());
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdOK"), Qt::LeftButton);
  const auto sortFields = persons->SortFields();
  ASSERT_EQ(sortFields->Count(), 2);
  EXPECT_EQ(sortFields->Item(1)->Name, "company.city");
  EXPECT_EQ(sortFields->Item(1)->SortOrder, kSortAscending);
  EXPECT_EQ(sortFields->Item(2)->Name, "lastname");
  EXPECT_EQ(sortFields->Item(2)->SortOrder, kSortDescending);
  EXPECT_TRUE(persons->Modified());
}

TEST_F(DesignerDialogsTest, DefaultValuesShowScriptFieldsInTheirLocalFormAndChangeOnlyThroughUse) {
  const auto dialog = pageDialog(persons);
  auto &defaults = child<QTreeWidget>(*dialog, "LvwDefault");
  EXPECT_EQ(rows(defaults), QStringList({local("lastname") + "|", local("company.city") + "|-",
                                         "vbscript:[" + local("company.name") + "] & \"!\"|?"}));
  EXPECT_NE(local("company.name"), "company.name") << "the local form differs from the stored one";
  EXPECT_FALSE(comboTexts(child<QComboBox>(*dialog, "CboSortFields")).join(u'|').contains("vbscript"));

  // Ctrl+Tab twice leads to the default values.
  QTest::keyClick(&child<QTabBar>(*dialog, "TabProperties"), Qt::Key_Tab, Qt::ControlModifier);
  QTest::keyClick(&child<QTabBar>(*dialog, "TabProperties"), Qt::Key_Tab, Qt::ControlModifier);
  ASSERT_TRUE(defaults.isVisible());
  auto &text = child<QLineEdit>(*dialog, "TbDefault");
  clickRow(defaults, 2);
  EXPECT_EQ(text.text(), "?");
  // Typed but not used: dropped when another row is chosen.
  text.setText("typed");
  clickRow(defaults, 1);
  EXPECT_EQ(text.text(), "-");
  EXPECT_FALSE(dialog->HasChanges());
  QTest::keyClicks(&text, "n/a");
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdUseDefault"), Qt::LeftButton);
  EXPECT_EQ(defaults.topLevelItem(1)->text(1), "-n/a");
  EXPECT_EQ(persons->Fields()->Field("company.city")->DefaultValue, "-") << "nothing is saved before OK";
  dialog->CmdOK_Click();
  EXPECT_EQ(persons->Fields()->Field("company.city")->DefaultValue, "-n/a");
  EXPECT_EQ(persons->Fields()->Field("vbscript:script1")->DefaultValue, "?");
  EXPECT_TRUE(persons->Modified());
}

TEST_F(DesignerDialogsTest, ControlTabGoesRoundTheTabs) {
  persons->SetStripeDetail(true);
  const auto dialog = pageDialog(persons);
  auto &tabs = child<QTabBar>(*dialog, "TabProperties");
  auto &box = child<QCheckBox>(*dialog, "ChkStripeDetail");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(tabs.currentIndex(), 2);
  EXPECT_TRUE(child<QWidget>(*dialog, "PicDefaultValues").isVisible());
  EXPECT_FALSE(child<QWidget>(*dialog, "PicLayout").isVisible());
  QTest::keyClick(&child<QTreeWidget>(*dialog, "LvwDefault"), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(tabs.currentIndex(), 0);
  EXPECT_TRUE(child<QWidget>(*dialog, "PicLayout").isVisible());
  // Tab alone moves the focus and leaves the tabs alone.
  box.setFocus();
  ASSERT_EQ(QApplication::focusWidget(), &box);
  QTest::keyClick(&box, Qt::Key_Tab);
  EXPECT_EQ(tabs.currentIndex(), 0);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "ChkStripeFirst");
}

// ---- options

TEST_F(DesignerDialogsTest, GridSizesThatAreNoShortNumbersBecome16WhenLeft) {
  const auto dialog = optionsDialog();
  EXPECT_EQ(child<QComboBox>(*dialog, "CboUnits").currentText(), "Centimetres");
  auto &width = child<QLineEdit>(*dialog, "TxtWidth");
  auto &height = child<QLineEdit>(*dialog, "TxtHeight");
  EXPECT_EQ(width.text(), "8");
  EXPECT_EQ(height.text(), "4");
  width.setFocus();
  width.selectAll();
  QTest::keyClicks(&width, "abc");
  QTest::keyClick(&width, Qt::Key_Tab);
  EXPECT_EQ(width.text(), "16");
  height.setFocus();
  height.selectAll();
  QTest::keyClicks(&height, "40000");
  QTest::keyClick(&height, Qt::Key_Tab);
  EXPECT_EQ(height.text(), "16");
  height.setText("12.5");
  dialog->TxtHeight_LostFocus();
  EXPECT_EQ(height.text(), "12") << "halves round to even";

  child<QCheckBox>(*dialog, "ChkAlignControlsToGrid").click();
  child<QComboBox>(*dialog, "CboUnits").setCurrentIndex(0);
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdOK"), Qt::LeftButton);
  EXPECT_TRUE(dialog->Status());
  EXPECT_EQ(dialog->GridX(), 16);
  EXPECT_EQ(dialog->GridY(), 12);
  EXPECT_TRUE(dialog->AlignToGrid());
  EXPECT_TRUE(dialog->ShowGrid());
  EXPECT_EQ(dialog->RulerUnits(), 0);
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(DesignerDialogsTest, FontsChangeOnlyWhenChosenAndAreSavedOnOk) {
  QFont field(QStringLiteral("DejaVu Sans"), 9);
  WriteFont(kSettingsRoot + "\\Designer\\FieldFont", field);
  const auto dialog = optionsDialog();
  auto &fieldText = child<QLineEdit>(*dialog, "TbFieldFont");
  EXPECT_EQ(fieldText.text(), "DejaVu Sans, 9");

  // No answer queued: the font dialog is cancelled, silently.
  dialog->CmdFieldFont_Click();
  EXPECT_EQ(fieldText.text(), "DejaVu Sans, 9");
  EXPECT_TRUE(ui->boxes.empty());

  QFont chosen(QStringLiteral("DejaVu Serif"), 12);
  chosen.setBold(true);
  chosen.setUnderline(true);
  ui->fontAnswers.push_back(chosen);
  QTest::mouseClick(&child<QTabBar>(*dialog, "TabOptions"), Qt::LeftButton, {},
                    child<QTabBar>(*dialog, "TabOptions").tabRect(1).center());
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "CmdLabelFont");
  QTest::mouseClick(&child<QPushButton>(*dialog, "CmdFieldFont"), Qt::LeftButton);
  EXPECT_EQ(fieldText.text(), "DejaVu Serif, 12, bold, underlined");

  // Cancel keeps the settings as they were.
  QTest::keyClick(&child<QPushButton>(*dialog, "CmdLabelFont"), Qt::Key_Escape);
  EXPECT_FALSE(dialog->Status());
  EXPECT_EQ(ReadFont(kSettingsRoot + "\\Designer\\FieldFont").family(), "DejaVu Sans");

  const auto again = optionsDialog();
  ui->fontAnswers.push_back(chosen);
  again->CmdFieldFont_Click();
  QFont label(QStringLiteral("DejaVu Sans Mono"), 7);
  label.setItalic(true);
  ui->fontAnswers.push_back(label);
  again->CmdLabelFont_Click();
  again->CmdOK_Click();
  EXPECT_TRUE(again->Status());
  const QFont storedField = ReadFont(kSettingsRoot + "\\Designer\\FieldFont");
  EXPECT_EQ(storedField.family(), "DejaVu Serif");
  EXPECT_EQ(storedField.pointSize(), 12);
  EXPECT_TRUE(storedField.bold());
  EXPECT_TRUE(storedField.underline());
  const QFont storedLabel = ReadFont(kSettingsRoot + "\\Designer\\LabelFont");
  EXPECT_EQ(storedLabel.family(), "DejaVu Sans Mono");
  EXPECT_EQ(storedLabel.pointSize(), 7);
  EXPECT_TRUE(storedLabel.italic());
  EXPECT_FALSE(storedLabel.bold());
}

// ---- toolbars

TEST_F(DesignerDialogsTest, TheToolbarMaskHoldsOnlyTheTickedToolbars) {
  DlgCustomize dialog;
  dialog.SetToolBars(146 | 64);
  dialog.Form_Load();
  showNow(dialog);
  auto &list = child<QListWidget>(dialog, "LbToolbars");
  ASSERT_EQ(list.count(), 7);
  QStringList ticked;
  for (int i = 0; i < list.count(); ++i)
    if (list.item(i)->checkState() == Qt::Checked)
      ticked << list.item(i)->text();
  EXPECT_EQ(ticked, QStringList({"Toolbox", "Format", "Properties"}));
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_TRUE(dialog.Status());
  EXPECT_EQ(storedToolbars(), "146") << "bit 64 belongs to no entry and is lost";

  DlgCustomize none;
  none.SetToolBars(146);
  none.Form_Load();
  showNow(none);
  auto &entries = child<QListWidget>(none, "LbToolbars");
  for (int i = 0; i < entries.count(); ++i)
    entries.item(i)->setCheckState(Qt::Unchecked);
  none.CmdOK_Click();
  EXPECT_EQ(storedToolbars(), "0");

  DlgCustomize cancelled;
  cancelled.SetToolBars(0);
  cancelled.Form_Load();
  showNow(cancelled);
  child<QListWidget>(cancelled, "LbToolbars").item(0)->setCheckState(Qt::Checked);
  QTest::keyClick(&child<QListWidget>(cancelled, "LbToolbars"), Qt::Key_Escape);
  EXPECT_FALSE(cancelled.Status());
  EXPECT_EQ(storedToolbars(), "0");
}

// ---- languages and looks

TEST_F(DesignerDialogsTest, TheDialogsFitTheirTextsInEnglish) { lookAtEach(QStringLiteral("en")); }

TEST_F(DesignerDialogsTest, TheDialogsSpeakSwedish) {
  StopTranslation();
  StartTranslation("sv");
  {
    const auto dialog = pageDialog(persons);
    EXPECT_EQ(dialog->windowTitle(), "Sidegenskaper");
    EXPECT_EQ(child<QTabBar>(*dialog, "TabProperties").tabText(2), QString::fromUtf8("Standardvärden"));
    EXPECT_EQ(rows(child<QTreeWidget>(*dialog, "LvwSortFields")).value(0), local("lastname") + "|Fallande");
  }
  {
    const auto dialog = optionsDialog();
    EXPECT_EQ(dialog->windowTitle(), "Alternativ");
    EXPECT_EQ(child<QComboBox>(*dialog, "CboUnits").currentText(), "Centimeter");
  }
  lookAtEach(QStringLiteral("sv"));
}
