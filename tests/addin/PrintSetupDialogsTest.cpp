// The margin box, the margins dialog and the report properties dialog on
// the demo database: centimetres in, twips out at one mm; paper sizes from
// a choice and from a typed width, upright and lying; a new report made
// on its class. The windows are shown offscreen and driven with mouse and
// key events where the user's road matters. KORDEL_SCREENSHOT_DIR=FOLDER
// keeps a picture of each dialog for a look.

#include "DemoFixture.h"
#include "LayoutSketch.h"
#include "WidgetTools.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "dialogs/DlgMargins.h"
#include "dialogs/DlgReportProperties.h"
#include "dialogs/MarginBox.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/Layout.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::child;

namespace {

const QString kSubPage = QStringLiteral("{PRINT-SETUP-SUB}");

void showNow(QWidget &window) {
  window.show();
  QApplication::processEvents();
}

// Replaces the text of a box as typed and leaves it with Tab.
void typeInto(QLineEdit &text, const QString &typed) {
  text.setFocus();
  text.selectAll();
  QTest::keyClicks(&text, typed);
  QTest::keyClick(&text, Qt::Key_Tab);
}

// A click on an option button's circle, where it reacts.
void clickOption(QRadioButton &option) {
  QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
}

QLineEdit &textOf(QWidget &window, const char *box) { return *child<MarginBox>(window, box).TextBox(); }

QString scriptsOf(const Variant &layoutBytes) {
  const ObjectRef layout = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  layout->invoke(QStringLiteral("LoadLayout"), {layoutBytes});
  QString result = layout->get(QStringLiteral("Script")).toString();
  const ObjectRef sections = layout->get(QStringLiteral("Sections")).toObject();
  for (int i = 0; i < sections->get(QStringLiteral("Count")).toLong(); ++i)
    result += sections->invoke(QStringLiteral("Item"), {i}).toObject()->get(QStringLiteral("Script")).toString();
  return result;
}

} // namespace

class PrintSetupDialogsTest : public test::DemoHostedTest {
protected:
  std::shared_ptr<Report> newReport() {
    auto report = std::make_shared<Report>();
    report->LoadContents(Variant());
    return report;
  }

  std::shared_ptr<Report> companyReport() {
    auto report = newReport();
    EXPECT_TRUE(report->Create(QStringLiteral("company")));
    report->SetName(QStringLiteral("Companies"));
    return report;
  }

  std::unique_ptr<DlgReportProperties> propertiesDialog(const std::shared_ptr<Report> &report,
                                                        std::shared_ptr<hostapi::Class> contextClass = nullptr) {
    auto dialog = std::make_unique<DlgReportProperties>();
    dialog->SetReport(report);
    dialog->SetContextClass(std::move(contextClass));
    dialog->Form_Load();
    showNow(*dialog);
    return dialog;
  }

  std::unique_ptr<DlgMargins> marginsDialog(float top, float bottom, float left, float right) {
    auto dialog = std::make_unique<DlgMargins>();
    dialog->SetMarginTop(top);
    dialog->SetMarginBottom(bottom);
    dialog->SetMarginLeft(left);
    dialog->SetMarginRight(right);
    dialog->Form_Load();
    showNow(*dialog);
    return dialog;
  }

  QString localName(const QString &className) const {
    return CurrentApplication()->classes()->item(className)->localName();
  }

  // Keeps a picture of the window, each tab of it when it has tabs.
  void lookAt(QWidget &window, const QString &name) {
    const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR", screenshots.path());
    auto *tabs = window.findChild<QTabBar *>(QStringLiteral("TabProperties"));
    for (int tab = 0; tab < (tabs ? tabs->count() : 1); ++tab) {
      if (tabs)
        tabs->setCurrentIndex(tab);
      showNow(window);
      for (QWidget *control : window.findChildren<QWidget *>()) {
        if (control->objectName().isEmpty() || !control->isVisible())
          continue;
        const QRect place(control->mapTo(&window, QPoint(0, 0)), control->size());
        EXPECT_TRUE(window.rect().contains(place)) << name.toStdString() << ": " << control->objectName().toStdString();
      }
      EXPECT_EQ(test::mnemonicClashes(window), QStringList()) << name.toStdString() << " " << tab;
      const QString path = folder + QStringLiteral("/%1-%2.png").arg(name).arg(tab);
      EXPECT_TRUE(window.grab().save(path)) << path.toStdString();
    }
  }

  void lookAtEach(const QString &language) {
    const auto margins = marginsDialog(1134, 1134, 567, 1000);
    lookAt(*margins, QStringLiteral("margins-") + language);
    const auto properties = propertiesDialog(companyReport());
    lookAt(*properties, QStringLiteral("report-properties-") + language);
  }

  test::TempDir screenshots;
};

// ---- the margin box

TEST_F(PrintSetupDialogsTest, TheMarginBoxShowsCentimetresAndReadsWholeMillimetres) {
  MarginBox box;
  QSignalSpy changes(&box, &MarginBox::Change);
  const auto shownAndRead = [&](std::int32_t twips) {
    box.SetValue(twips);
    return box.TextBox()->text() + u'|' + QString::number(box.Value());
  };
  EXPECT_EQ(shownAndRead(1134), "2 cm|1134");
  // 1.76 cm shows with one decimal and comes back as 18 mm.
  EXPECT_EQ(shownAndRead(1000), "1.8 cm|1020");
  EXPECT_EQ(shownAndRead(12240), "21.6 cm|12246");
  EXPECT_EQ(shownAndRead(0), "0 cm|0");
  EXPECT_EQ(shownAndRead(28), "0.1 cm|57") << "0.49 mm rounds to 0.05 cm first, then up to 0.1";
  EXPECT_EQ(shownAndRead(16838), "29.7 cm|16838");
  EXPECT_EQ(changes.count(), 0) << "a value set from code raises nothing";

  // Typed texts: the unit may be left out; no number reads as 0.
  const auto typed = [&](const char *text) {
    box.TextBox()->setText(QString::fromUtf8(text));
    return QString::number(box.Value()) + (box.Validate() ? "|valid" : "|invalid");
  };
  EXPECT_EQ(typed("2.54"), "1417|valid") << "2.54 cm is 25 mm";
  EXPECT_EQ(typed("  3 cm "), "1701|valid");
  EXPECT_EQ(typed("abc"), "0|invalid");
  EXPECT_EQ(typed(""), "0|invalid");
  EXPECT_EQ(typed("0 cm"), "0|invalid");
  EXPECT_EQ(typed("-1"), "-567|invalid");
  EXPECT_EQ(typed("0.04"), "0|valid") << "above 0 but less than a millimetre";
  EXPECT_EQ(typed("1e60"), "0|invalid");
}

TEST_F(PrintSetupDialogsTest, TheMarginBoxStepsByOneMillimetreAndNotBelowZero) {
  const auto dialog = marginsDialog(57, 1134, 1134, 1134);
  auto &box = child<MarginBox>(*dialog, "MbMarginTop");
  QLineEdit &text = *box.TextBox();
  QSignalSpy changes(&box, &MarginBox::Change);
  EXPECT_EQ(text.text(), "0.1 cm");
  text.setFocus();
  QTest::keyClick(&text, Qt::Key_Down);
  EXPECT_EQ(text.text(), "0 cm");
  QTest::keyClick(&text, Qt::Key_Down);
  EXPECT_EQ(text.text(), "0 cm") << "no step below 0";
  EXPECT_EQ(box.Value(), 0);
  QTest::keyClick(&text, Qt::Key_Up);
  QTest::keyClick(&text, Qt::Key_Up);
  EXPECT_EQ(text.text(), "0.2 cm");
  ASSERT_EQ(changes.count(), 4) << "each step is a change, also the one that stays at 0";
  EXPECT_EQ(changes.at(1).at(0).toInt(), 0);
  EXPECT_EQ(changes.at(3).at(0).toInt(), 113);

  // The arrows step as the keys do.
  const auto arrows = box.findChildren<QToolButton *>();
  ASSERT_EQ(arrows.size(), 2);
  for (QToolButton *arrow : arrows)
    if (arrow->arrowType() == Qt::UpArrow)
      QTest::mouseClick(arrow, Qt::LeftButton);
  EXPECT_EQ(text.text(), "0.3 cm");
  EXPECT_EQ(QApplication::focusWidget(), &text) << "the arrows leave the focus in the text";

  // Leaving the text writes it in the box's own form and raises a change.
  changes.clear();
  typeInto(text, "4.56");
  EXPECT_EQ(text.text(), "4.6 cm");
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes.at(0).at(0).toInt(), 2608);
  EXPECT_EQ(QApplication::focusWidget(), &textOf(*dialog, "MbMarginBottom"));
}

// ---- the margins dialog

TEST_F(PrintSetupDialogsTest, TheMarginsDialogTakesValidMarginsOnOkOnly) {
  {
    // Enter takes the margins, each through the box's millimetres.
    const auto dialog = marginsDialog(1134.4f, 1000, 567, 12240);
    EXPECT_EQ(dialog->windowTitle(), "Margins");
    EXPECT_EQ(textOf(*dialog, "MbMarginTop").text(), "2 cm");
    typeInto(textOf(*dialog, "MbMarginLeft"), "1.5");
    QTest::keyClick(&textOf(*dialog, "MbMarginRight"), Qt::Key_Return);
    EXPECT_TRUE(dialog->Status());
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->MarginTop(), 1134.0f);
    EXPECT_EQ(dialog->MarginBottom(), 1020.0f);
    EXPECT_EQ(dialog->MarginLeft(), 850.0f);
    EXPECT_EQ(dialog->MarginRight(), 12246.0f);
  }
  {
    // A margin of 0 is refused with the focus on its box; a second bad
    // box is not reached.
    const auto dialog = marginsDialog(1134, 1134, 1134, 1134);
    textOf(*dialog, "MbMarginBottom").setText("0");
    textOf(*dialog, "MbMarginRight").setText("none");
    QTest::mouseClick(&child<QPushButton>(*dialog, "CmdOK"), Qt::LeftButton);
    ASSERT_EQ(ui->boxes.size(), 1u);
    EXPECT_EQ(ui->boxes[0].text, GetMessage("DlgMargins.Invalid"));
    EXPECT_EQ(ui->boxes[0].flags, 48);
    EXPECT_FALSE(dialog->Status());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &textOf(*dialog, "MbMarginBottom"));
    EXPECT_EQ(dialog->MarginBottom(), 1134.0f);
    // Escape drops the change.
    QTest::keyClick(&textOf(*dialog, "MbMarginBottom"), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_FALSE(dialog->Status());
    EXPECT_EQ(dialog->MarginBottom(), 1134.0f);
  }
}

// ---- paper sizes

TEST_F(PrintSetupDialogsTest, PaperSizesAndWidthsGoBothWays) {
  DlgReportProperties dialog;
  // Every size is found again from its own width lying on its side, and
  // upright but for Legal, which an upright width takes for Letter.
  for (const int size : {1, 5, 9, 11, 20, 27, 28}) {
    EXPECT_EQ(dialog.GetPaperSizeConstant(dialog.GetPaperSizeWidth(size, 2), 2), size) << size;
    EXPECT_EQ(dialog.GetPaperSizeConstant(dialog.GetPaperSizeWidth(size, 1), 1), size == 5 ? 1 : size) << size;
  }
  EXPECT_EQ(dialog.GetPaperSizeWidth(9, -1), 11906);
  EXPECT_EQ(dialog.GetPaperSizeWidth(5, 2), 20160);
  EXPECT_EQ(dialog.GetPaperSizeConstant(20160, 1), -1);
  EXPECT_EQ(dialog.GetPaperSizeConstant(16838, 1), -1) << "an A4 width lying on its side is no upright size";
  EXPECT_EQ(dialog.GetPaperSizeConstant(16838, -1), 9);
  // The bounds are strict: 21.498 cm is A4, 21.50004 cm already Letter.
  EXPECT_EQ(dialog.GetPaperSizeConstant(12188, 1), 9);
  EXPECT_EQ(dialog.GetPaperSizeConstant(12189, 1), 1);
  EXPECT_EQ(dialog.GetPaperSizeConstant(5000, -1), -1);
  // No known width: A4 upright, and lying 297 taken as cm.
  EXPECT_EQ(dialog.GetPaperSizeWidth(-1, 1), 11906);
  EXPECT_EQ(dialog.GetPaperSizeWidth(99, -1), 11906);
  EXPECT_EQ(dialog.GetPaperSizeWidth(-1, 2), 168378);
}

TEST_F(PrintSetupDialogsTest, ThePaperControlsFollowEachOther) {
  const auto report = companyReport();
  report->SetPrintWidth(9000);
  report->SetPaperSize(9);
  const auto dialog = propertiesDialog(report);
  auto &paper = child<QComboBox>(*dialog, "CboPaperSize");
  QLineEdit &width = textOf(*dialog, "MbWidth");
  auto &portrait = child<QRadioButton>(*dialog, "RbOrientationPortrait");
  auto &landscape = child<QRadioButton>(*dialog, "RbOrientationLandscape");
  QTest::keyClick(&child<QLineEdit>(*dialog, "TbName"), Qt::Key_Tab, Qt::ControlModifier);
  ASSERT_TRUE(paper.isVisible());
  EXPECT_EQ(paper.currentText(), "A4");
  EXPECT_TRUE(portrait.isChecked());
  EXPECT_EQ(width.text(), "21 cm");

  // Lying A4 is wider and still A4; back upright it is 21 cm again.
  clickOption(landscape);
  EXPECT_EQ(width.text(), "29.7 cm");
  EXPECT_EQ(paper.currentText(), "A4");
  QTest::keyClick(&landscape, Qt::Key_Up);
  EXPECT_TRUE(portrait.isChecked());
  EXPECT_EQ(width.text(), "21 cm");

  // A typed width selects the size it matches, else the user's own.
  typeInto(width, "21.6");
  EXPECT_EQ(paper.currentText(), "Letter");
  EXPECT_EQ(width.text(), "21.6 cm") << "the typed width stays";
  typeInto(width, "25");
  EXPECT_EQ(paper.currentData().toInt(), -1);
  EXPECT_EQ(width.text(), "25 cm");
  // Chosen, the user's own paper takes its width from the report.
  paper.setCurrentIndex(0);
  paper.setCurrentIndex(paper.findData(-1));
  EXPECT_EQ(width.text(), "19.9 cm") << "9000 + 1134 + 1134 twips";
  // An upright user width of A4's length turns into A4 lying on its side.
  typeInto(width, "29.7");
  EXPECT_EQ(paper.currentData().toInt(), -1);
  clickOption(landscape);
  EXPECT_EQ(paper.currentText(), "A4");
  EXPECT_EQ(width.text(), "29.7 cm");

  child<QPushButton>(*dialog, "CmdOK").click();
  EXPECT_TRUE(dialog->Status());
  EXPECT_EQ(report->PaperSize(), 9);
  EXPECT_EQ(report->Orientation(), 2);
  EXPECT_EQ(report->PrintWidth(), 16838 - 2 * 1134);
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(PrintSetupDialogsTest, UserPaperKeepsItsTypedWidthAndAnUnknownSizeCannotBeSaved) {
  const auto report = companyReport();
  report->SetPaperSize(-1);
  report->SetPrintWidth(10000);
  report->SetMarginLeft(567);
  {
    const auto dialog = propertiesDialog(report);
    EXPECT_EQ(child<QComboBox>(*dialog, "CboPaperSize").currentData().toInt(), -1);
    // 11701 twips pass through the box as 20.6 cm, 11679 twips.
    EXPECT_EQ(textOf(*dialog, "MbWidth").text(), "20.6 cm");
    typeInto(textOf(*dialog, "MbRight"), "1");
    dialog->CmdOK_Click();
    EXPECT_EQ(report->PaperSize(), -1);
    EXPECT_EQ(report->MarginRight(), 567);
    EXPECT_EQ(report->PrintWidth(), 11679 - 567 - 567);
    EXPECT_EQ(report->Page()->Width(), 11679 - 567 - 567);
  }
  report->SetPaperSize(99);
  const auto dialog = propertiesDialog(report);
  EXPECT_EQ(child<QComboBox>(*dialog, "CboPaperSize").currentIndex(), -1);
  dialog->CmdOK_Click();
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_FALSE(dialog->Status());
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(report->PaperSize(), 99);
}

// ---- a new report, and changes to one

TEST_F(PrintSetupDialogsTest, ANewReportIsCreatedOnTheChosenClassWithItsName) {
  const auto report = newReport();
  const auto dialog = propertiesDialog(report);
  auto &classes = child<QComboBox>(*dialog, "CboClass");
  EXPECT_TRUE(classes.isEnabled());
  EXPECT_EQ(classes.count(), CurrentApplication()->classes()->count());
  EXPECT_EQ(classes.currentIndex(), 0) << "no list window: the first class";
  EXPECT_EQ(child<QComboBox>(*dialog, "CboScript").currentText(), "VBScript");
  EXPECT_EQ(child<QComboBox>(*dialog, "CboPaperSize").currentText(), "A4");
  EXPECT_EQ(textOf(*dialog, "MbTop").text(), "2 cm");
  EXPECT_EQ(dialog->findChild<MarginBox *>("MbWidth")->Value(), 11906);

  // No name: told, and the focus goes to the name.
  classes.setFocus();
  QTest::keyClick(&classes, Qt::Key_Return);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].flags, 64);
  EXPECT_TRUE(report->IsNew());
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "TbName");

  QTest::keyClicks(&child<QLineEdit>(*dialog, "TbName"), "Staff");
  classes.setCurrentIndex(classes.findText(localName("person")));
  child<QComboBox>(*dialog, "CboScript").setCurrentIndex(1);
  QTest::keyClick(&child<QLineEdit>(*dialog, "TbName"), Qt::Key_Return);
  EXPECT_TRUE(dialog->Status());
  ASSERT_FALSE(report->IsNew());
  EXPECT_EQ(report->Class()->name(), "person");
  EXPECT_EQ(report->Name(), "Staff");
  EXPECT_EQ(report->ScriptLanguage(), "JScript");
  EXPECT_EQ(report->PaperSize(), 9);
  EXPECT_EQ(report->Orientation(), 1);
  EXPECT_EQ(report->PrintWidth(), 11906 - 2 * 1134);
  EXPECT_EQ(ui->boxes.size(), 1u) << "no warning about the language of a new report";
}

TEST_F(PrintSetupDialogsTest, TheContextClassIsTheOnlyChoiceAndAnOpenReportKeepsItsClass) {
  const auto person = CurrentApplication()->classes()->item("person");
  const auto report = newReport();
  const auto dialog = propertiesDialog(report, person);
  auto &classes = child<QComboBox>(*dialog, "CboClass");
  EXPECT_FALSE(classes.isEnabled());
  ASSERT_EQ(classes.count(), 1);
  EXPECT_EQ(classes.currentText(), localName("person"));
  child<QLineEdit>(*dialog, "TbName").setText("People");
  dialog->CmdOK_Click();
  EXPECT_EQ(report->Class()->name(), "person");

  const auto open = propertiesDialog(companyReport(), person);
  auto &openClasses = child<QComboBox>(*open, "CboClass");
  EXPECT_FALSE(openClasses.isEnabled());
  EXPECT_EQ(openClasses.currentText(), localName("company"));
  EXPECT_EQ(child<QLineEdit>(*open, "TbName").text(), "Companies");
  EXPECT_EQ(child<QLineEdit>(*open, "TbName").selectedText(), "Companies") << "the name is selected at first";
  QTest::keyClick(&openClasses, Qt::Key_Escape);
  EXPECT_FALSE(open->Status());
}

TEST_F(PrintSetupDialogsTest, ANewLanguageStripsTheScriptsOnlyWhenTheUserAgrees) {
  const auto report = companyReport();
  const QByteArray layout = test::LayoutSketch()
                                .section("Detail", engine::SectionType::Detail)
                                .sectionScript("Sub OnFormat()\nEnd Sub\n")
                                .reportScript("Sub ActiveReport_ReportStart()\nEnd Sub\n")
                                .bytes();
  ASSERT_TRUE(report->AddPage(kSubPage, "Persons", "person", report->Guid(), Variant(layout)));
  report->Page()->SetLayoutTemplate(Variant(layout));
  ASSERT_FALSE(scriptsOf(Variant(layout)).isEmpty());
  {
    // No: the old language comes back and nothing is stripped.
    const auto dialog = propertiesDialog(report);
    ui->boxAnswers.push_back(7);
    child<QComboBox>(*dialog, "CboScript").setCurrentIndex(1);
    ASSERT_EQ(ui->boxes.size(), 1u);
    EXPECT_EQ(ui->boxes[0].flags, 52);
    EXPECT_EQ(child<QComboBox>(*dialog, "CboScript").currentText(), "VBScript");
    dialog->CmdOK_Click();
    EXPECT_EQ(scriptsOf(report->LookupPage(kSubPage)->LayoutTemplate()), scriptsOf(Variant(layout)));
  }
  {
    // The same language in other letters is no change.
    report->SetScriptLanguage("vbscript");
    const auto dialog = propertiesDialog(report);
    dialog->CmdOK_Click();
    EXPECT_EQ(ui->boxes.size(), 1u);
    EXPECT_FALSE(scriptsOf(report->Page()->LayoutTemplate()).isEmpty());
  }
  {
    // Yes: every page loses its scripts on OK.
    const auto dialog = propertiesDialog(report);
    child<QComboBox>(*dialog, "CboScript").setCurrentIndex(1);
    EXPECT_EQ(ui->boxes.size(), 2u);
    dialog->CmdOK_Click();
    EXPECT_EQ(report->ScriptLanguage(), "JScript");
    EXPECT_EQ(scriptsOf(report->Page()->LayoutTemplate()), "");
    EXPECT_EQ(scriptsOf(report->LookupPage(kSubPage)->LayoutTemplate()), "");
  }
}

TEST_F(PrintSetupDialogsTest, ANarrowerPrintWidthCutsOnlyTheWiderPages) {
  const auto report = companyReport();
  ASSERT_TRUE(report->AddPage(kSubPage, "Persons", "person", report->Guid(), Variant()));
  const auto top = report->Page();
  const auto sub = report->LookupPage(kSubPage);
  report->SetPrintWidth(9638);
  top->SetWidth(9638);
  sub->SetWidth(9000);
  const auto dialog = propertiesDialog(report);
  typeInto(textOf(*dialog, "MbLeft"), "3");
  typeInto(textOf(*dialog, "MbRight"), "3");
  dialog->CmdOK_Click();
  const int printWidth = 11906 - 2 * 1701;
  EXPECT_EQ(report->PrintWidth(), printWidth);
  EXPECT_EQ(top->Width(), printWidth);
  EXPECT_EQ(sub->Width(), printWidth);

  sub->SetWidth(5000);
  const auto wider = propertiesDialog(report);
  typeInto(textOf(*wider, "MbLeft"), "1");
  wider->CmdOK_Click();
  EXPECT_EQ(report->PrintWidth(), 11906 - 567 - 1701);
  EXPECT_EQ(top->Width(), 11906 - 567 - 1701) << "the top page takes the print width";
  EXPECT_EQ(sub->Width(), 5000) << "a narrower sub page stays";
}

// ---- languages and looks

TEST_F(PrintSetupDialogsTest, TheDialogsFitTheirTextsInEnglish) { lookAtEach(QStringLiteral("en")); }

TEST_F(PrintSetupDialogsTest, TheDialogsSpeakSwedish) {
  StopTranslation();
  StartTranslation("sv");
  {
    const auto dialog = propertiesDialog(companyReport());
    EXPECT_EQ(dialog->windowTitle(), "Rapportegenskaper");
    EXPECT_EQ(child<QTabBar>(*dialog, "TabProperties").tabText(1), "Pappersstorlek");
    EXPECT_EQ(child<QRadioButton>(*dialog, "RbOrientationPortrait").text(), QString::fromUtf8("S&tående"));
    EXPECT_EQ(child<QComboBox>(*dialog, "CboPaperSize").itemText(7), "Egen storlek");
  }
  {
    const auto dialog = marginsDialog(1134, 1134, 1134, 1134);
    EXPECT_EQ(dialog->windowTitle(), "Marginaler");
    EXPECT_EQ(child<QLabel>(*dialog, "LblMarginTop").text(), QString::fromUtf8("&Överkant:"));
  }
  lookAtEach(QStringLiteral("sv"));
}
