#include "HostedFixture.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "host/IniTranslator.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <stdexcept>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::HostedTest;

namespace {

// The host's translator, kept to a folder of the test's own texts.
class FixedFolderTranslator : public host::IniTranslator {
public:
  explicit FixedFolderTranslator(QString folder) : fixed_(std::move(folder)) {}
  void setTranslationFolder(const QString &) override { host::IniTranslator::setTranslationFolder(fixed_); }

private:
  QString fixed_;
};

} // namespace

class TranslationTest : public HostedTest {
protected:
  void TearDown() override {
    for (int i = 0; i < 8 && translatorRunning(); ++i)
      StopTranslation();
    HostedTest::TearDown();
  }
  static bool translatorRunning() { return TranslateText("Name", "Addin") != "Name"; }
};

TEST_F(TranslationTest, TextsComeFromTheFilesBesideTheAddin) {
  EXPECT_EQ(TranslateText("Name", "Addin"), "Name");
  StartTranslation("sv");
  EXPECT_EQ(GetMessage("Addin.Name"), QString::fromUtf8("Kordel rapporter"));
  EXPECT_EQ(GetMessage("PrintSource.Selected", "1 234"), QString::fromUtf8("Markerad&e poster (1 234)"));
  EXPECT_EQ(GetMessage("Scripts.VBScript"), "VBScript");
  StopTranslation();
  EXPECT_EQ(GetMessage("Addin.Name"), "Name");

  StartTranslation("en");
  EXPECT_EQ(GetMessage("DlgReportDesigner.Caption", "Customers", "Company", "Kordel"), "Customers (Company) - Kordel");
  EXPECT_EQ(GetMessage("DlgReportDesigner.SaveChanges"), "The report has changed.\r\n\r\nSave the changes?");
  StopTranslation();
}

TEST_F(TranslationTest, OneTranslatorLivesUntilTheLastStop) {
  int made = 0;
  app->registerProgId("Skarnholt.Translator", [&made] {
    ++made;
    return std::make_shared<host::IniTranslator>();
  });
  StartTranslation("en");
  StartTranslation("sv"); // the running translator keeps its language
  EXPECT_EQ(made, 1);
  EXPECT_EQ(GetMessage("Addin.Name"), "Kordel Reports");
  StopTranslation();
  EXPECT_EQ(GetMessage("Addin.Name"), "Kordel Reports");
  StopTranslation();
  EXPECT_EQ(GetMessage("Addin.Name"), "Name");
}

TEST_F(TranslationTest, ArgumentsAreReplacedOneAfterTheOther) {
  kordel::test::writeFile(dir.file("kordel.en.ini"), QByteArray("[kordel]\n"
                                                                "Error.Locked=%1\n"
                                                                "Test.Break=a%0b\n"
                                                                "Test.All=%4%3%2%1\n"));
  const QString folder = dir.path();
  app->registerProgId("Skarnholt.Translator", [folder] { return std::make_shared<FixedFolderTranslator>(folder); });
  StartTranslation("en");
  EXPECT_EQ(GetMessage("Error.Locked", "A%2", "B"), "AB");
  EXPECT_EQ(GetMessage("Test.Break"), "a\r\nb");
  EXPECT_EQ(GetMessage("Test.All", "1", "2", "3", "4"), "4321");
  EXPECT_EQ(GetMessage("Test.Break.Extra"), "a\r\nb");
  StopTranslation();
}

TEST_F(TranslationTest, AFailedStartLeavesNoTranslatorRunning) {
  app->registerProgId("Skarnholt.Translator", [] { return ObjectRef(); });
  EXPECT_THROW(StartTranslation("en"), Error);
  EXPECT_EQ(GetMessage("Addin.Name"), "Name");
}

class ReporterTest : public TranslationTest {
protected:
  void SetUp() override {
    TranslationTest::SetUp();
    StartTranslation("en");
  }

  // Raises an error and reports it as a handler does.
  static void report(int number, const QString &description) {
    try {
      raiseError(number, "Test", description);
    } catch (...) {
      ErrorMessage("CustomReport.PrintReport");
    }
  }
};

TEST_F(ReporterTest, UserMessageIsShownAsInformationAndLogged) {
  SetBusyCursor();
  report(ErrorNumber::UserMessage, "The filter has no records.");
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].text, "The filter has no records.");
  EXPECT_EQ(ui->boxes[0].flags, 64);
  EXPECT_EQ(ui->boxes[0].title, "Kordel Reports");
  EXPECT_EQ(app->mousePointer(), 0);

  const QStringList lines = logLines();
  ASSERT_EQ(lines.size(), 1);
  const QStringList fields = lines[0].split(u'\t');
  ASSERT_EQ(fields.size(), 6);
  EXPECT_EQ(fields[1], "Info");
  EXPECT_EQ(fields[2], "Standard Report");
  EXPECT_EQ(fields[3], "CustomReport.PrintReport");
  EXPECT_EQ(fields[4], "");
  EXPECT_EQ(fields[5], "The filter has no records.");
}

TEST_F(ReporterTest, CancelsPassSilentlyButResetTheCursor) {
  for (int number : {ErrorNumber::SilentCancel, ErrorNumber::DialogCancelled}) {
    SetBusyCursor();
    report(number, "cancelled");
    EXPECT_EQ(app->mousePointer(), 0);
  }
  EXPECT_TRUE(ui->boxes.empty());
  EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(ReporterTest, OtherErrorsAreWarningsWithNumberAndSource) {
  report(ErrorNumber::TypeMismatch, "Type mismatch");
  try {
    throw std::runtime_error("disk on fire");
  } catch (...) {
    ErrorMessage("Records.OpenRecords");
  }
  ASSERT_EQ(ui->boxes.size(), 2u);
  EXPECT_EQ(ui->boxes[0].flags, 48);
  EXPECT_EQ(ui->boxes[0].text, "Type mismatch\r\n\r\nError number: 13\r\nSource: CustomReport.PrintReport");
  EXPECT_EQ(ui->boxes[1].text, "disk on fire\r\n\r\nError number: 5\r\nSource: Records.OpenRecords");

  const QStringList lines = logLines();
  ASSERT_EQ(lines.size(), 2);
  const QStringList first = lines[0].split(u'\t');
  EXPECT_EQ(first[1], "Error");
  EXPECT_EQ(first[2], "Standard Report");
  EXPECT_EQ(first[3], "CustomReport.PrintReport");
  EXPECT_EQ(first[4], "13");
  EXPECT_EQ(first[5], "Type mismatch");
  EXPECT_EQ(lines[1].split(u'\t')[4], "5");
}

TEST_F(ReporterTest, NeverRaisesEvenWithoutAHost) {
  StopTranslation();
  Disconnect();
  hostapi::installUi(nullptr);
  EXPECT_NO_THROW(report(ErrorNumber::TypeMismatch, "lost"));
  EXPECT_NO_THROW(report(ErrorNumber::UserMessage, "lost"));
  EXPECT_NO_THROW(ErrorMessage("Outside.AnyHandler"));
}

TEST_F(ReporterTest, ShowMessageKeepsTheBusyCursor) {
  SetBusyCursor();
  ui->boxAnswers.push_back(hostapi::MsgBox::No);
  EXPECT_EQ(ShowMessage("Save?", 4 + 32), hostapi::MsgBox::No);
  EXPECT_EQ(app->mousePointer(), 11);
  EXPECT_EQ(ui->waitCursorDepth, 1);
  ResetCursor();
  EXPECT_EQ(ui->waitCursorDepth, 0);
}

TEST_F(ReporterTest, FileDialogsReturnTheChoiceOrFalseOnCancel) {
  QString name = "Customers";
  ui->fileAnswers.push_back("/tmp/out.pdf");
  ASSERT_TRUE(DisplayFileSave("Export", "/tmp", "All|*.*|PDF|*.pdf", 2, name));
  EXPECT_EQ(name, "/tmp/out.pdf");
  EXPECT_EQ(ui->fileDialogs[0].filterIndex, 2);
  EXPECT_EQ(ui->fileDialogs[0].fileName, "Customers");

  QString chosen = "unchanged";
  EXPECT_FALSE(DisplayFileOpen("Import", "/tmp", "All|*.*", 0, chosen));
  EXPECT_EQ(chosen, "unchanged");
  EXPECT_EQ(ui->fileDialogs[1].filterIndex, 1);
  EXPECT_TRUE(ui->boxes.empty()); // a cancelled dialog is silent
  EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(ReporterTest, TranslateFormSetsCaptionsOfNamedControls) {
  kordel::test::writeFile(dir.file("kordel.en.ini"), QByteArray("[kordel]\n"
                                                                "ExtOption.Caption=Options\n"
                                                                "ExtOption.CmdOK=OK\n"
                                                                "ExtOption.LblPrompt=Choose one\n"
                                                                "ExtOption.TxtValue=must not be used\n"));
  StopTranslation();
  const QString folder = dir.path();
  app->registerProgId("Skarnholt.Translator", [folder] { return std::make_shared<FixedFolderTranslator>(folder); });
  StartTranslation("en");

  QWidget form;
  form.setObjectName("ExtOption");
  auto *ok = new QPushButton("#OK", &form);
  ok->setObjectName("CmdOK");
  auto *label = new QLabel("#Caption", &form);
  label->setObjectName("LblPrompt");
  auto *text = new QLineEdit("typed", &form);
  text->setObjectName("TxtValue");
  TranslateForm(form);
  EXPECT_EQ(form.windowTitle(), "Options");
  EXPECT_EQ(ok->text(), "OK");
  EXPECT_EQ(label->text(), "Choose one");
  EXPECT_EQ(text->text(), "typed"); // a text box has no caption
}
