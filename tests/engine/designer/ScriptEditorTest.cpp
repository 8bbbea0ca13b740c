// The script editor on a designer's document: procedure stubs in both
// languages, going to a procedure the script has, Check marking the line of
// an error, OK as one step of the history and Cancel as none, asking
// before it discards changes, find and replace, the colours of the code
// and the keys that reach it all.

#include "engine/designer/CodeEditor.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerMessages.h"
#include "engine/designer/FindBar.h"
#include "engine/designer/ScriptEditor.h"
#include "engine/designer/ScriptHighlighter.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"
#include "hostapi/Ui.h"
#include "script/ScriptEngine.h"
#include "support/ScriptedUi.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;

namespace {

// A document whose layout has a script in a language; the history starts
// with that layout.
std::unique_ptr<DesignerDocument> documentWith(const QString &language, const QString &script) {
  auto document = std::make_unique<DesignerDocument>();
  document->report()->scriptLanguage = language;
  document->report()->script = script;
  document->load(document->save());
  return document;
}

QString textOf(const ScriptEditor &dialog) { return dialog.editor().toPlainText(); }

// The format the highlighter gave the character at a column of a line.
QTextCharFormat formatAt(const CodeEditor &editor, int line, int column) {
  const QTextBlock block = editor.document()->findBlockByNumber(line - 1);
  for (const QTextLayout::FormatRange &range : block.layout()->formats())
    if (column >= range.start && column < range.start + range.length)
      return range.format;
  return {};
}

bool coloured(const CodeEditor &editor, int line, int column, ScriptHighlighter::Kind kind) {
  return formatAt(editor, line, column).foreground() == ScriptHighlighter::format(kind).foreground();
}

// A stub compiles and the engine finds it under the name a run calls.
void expectCallable(const QString &language, const QString &script, const QString &procedure) {
  const auto engine = script::createScriptEngine(language);
  engine->addCode(script);
  EXPECT_TRUE(engine->hasProcedure(procedure)) << procedure.toStdString();
}

TEST(ScriptEditor, EventsAddStubsNamedAsTheRunCallsThemInVBScript) {
  const auto document = documentWith(QStringLiteral("VBScript"), QStringLiteral("Dim total"));
  ScriptEditor dialog(*document);
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("FetchData"));
  EXPECT_EQ(textOf(dialog), QStringLiteral("Dim total\n\nSub ActiveReport_FetchData(eof)\n    \nEnd Sub\n"));
  // The cursor waits in the body.
  EXPECT_EQ(dialog.editor().currentLine(), 4);
  EXPECT_EQ(dialog.editor().textCursor().positionInBlock(), CodeEditor::indentWidth);
  dialog.insertEvent(QStringLiteral("detail"), QStringLiteral("beforeprint"));
  EXPECT_TRUE(textOf(dialog).endsWith(QStringLiteral("End Sub\n\nSub Detail_BeforePrint()\n    \nEnd Sub\n")));
  expectCallable(QStringLiteral("VBScript"), textOf(dialog), QStringLiteral("ActiveReport_FetchData"));
  expectCallable(QStringLiteral("VBScript"), textOf(dialog), QStringLiteral("Detail_BeforePrint"));
  // The drop-downs show where the cursor went.
  EXPECT_EQ(dialog.findChild<QComboBox *>(QStringLiteral("CboObject"))->currentText(), QStringLiteral("Detail"));
  EXPECT_EQ(dialog.findChild<QComboBox *>(QStringLiteral("CboEvent"))->currentText(), QStringLiteral("BeforePrint"));
  EXPECT_THROW(dialog.insertEvent(QStringLiteral("Nowhere"), QStringLiteral("Format")), Error);
  EXPECT_THROW(dialog.insertEvent(QStringLiteral("Detail"), QStringLiteral("FetchData")), Error);
}

TEST(ScriptEditor, EventsAddStubsNamedAsTheRunCallsThemInJScript) {
  const auto document = documentWith(QStringLiteral("JScript"), QString());
  ScriptEditor dialog(*document);
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("PrintProgress"));
  dialog.insertEvent(QStringLiteral("PageFooter"), QStringLiteral("Format"));
  EXPECT_EQ(textOf(dialog), QStringLiteral("function ActiveReport_PrintProgress(page) {\n    \n}\n\n"
                                           "function PageFooter_Format() {\n    \n}\n"));
  EXPECT_EQ(dialog.editor().currentLine(), 6);
  expectCallable(QStringLiteral("JScript"), textOf(dialog), QStringLiteral("ActiveReport_PrintProgress"));
  expectCallable(QStringLiteral("JScript"), textOf(dialog), QStringLiteral("PageFooter_Format"));
}

TEST(ScriptEditor, AnEventTheScriptAnswersIsGoneToNotAddedAgain) {
  const QString vb = QStringLiteral("' Sub Detail_Format() was here\n"
                                    "Dim count\n"
                                    "Private Sub detail_format()\n"
                                    "    count = count + 1\n"
                                    "End Sub\n");
  auto document = documentWith(QStringLiteral("VBScript"), vb);
  {
    ScriptEditor dialog(*document);
    dialog.insertEvent(QStringLiteral("Detail"), QStringLiteral("Format"));
    EXPECT_EQ(textOf(dialog), vb);
    EXPECT_EQ(dialog.editor().currentLine(), 3);
  }
  // A name in a comment is no procedure.
  const QString js = QStringLiteral("// function ActiveReport_ReportEnd() {}\n"
                                    "var n = 0;\n"
                                    "  function ActiveReport_ReportStart() {\n"
                                    "    n = 1;\n"
                                    "}\n");
  document = documentWith(QStringLiteral("JScript"), js);
  ScriptEditor dialog(*document);
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("ReportStart"));
  EXPECT_EQ(textOf(dialog), js);
  EXPECT_EQ(dialog.editor().currentLine(), 3);
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("ReportEnd"));
  EXPECT_EQ(textOf(dialog).count(QStringLiteral("ActiveReport_ReportEnd")), 2);
}

TEST(ScriptEditor, CheckMarksTheLineOfAnErrorAndPassesAGoodScript) {
  struct Case {
    QString language;
    QString bad;
    int line;
    QString good;
  };
  const Case cases[] = {
      {QStringLiteral("VBScript"), QStringLiteral("Dim a\nSub Detail_Format()\n    a = (1 + 2\nEnd Sub\n"), 3,
       QStringLiteral("Dim a\nSub Detail_Format()\n    a = (1 + 2)\nEnd Sub\n")},
      {QStringLiteral("JScript"), QStringLiteral("var a;\n\nfunction Detail_Format() {\n    a = ;\n}\n"), 4,
       QStringLiteral("var a;\n\nfunction Detail_Format() {\n    a = 1;\n}\n")},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.language.toStdString());
    const auto document = documentWith(c.language, c.bad);
    ScriptEditor dialog(*document);
    const auto *outcome = dialog.findChild<QLabel *>(QStringLiteral("LblCheck"));
    EXPECT_FALSE(dialog.check());
    EXPECT_EQ(dialog.editor().errorLine(), c.line);
    EXPECT_EQ(dialog.editor().currentLine(), c.line);
    EXPECT_TRUE(outcome->text().startsWith(QStringLiteral("Line %1,").arg(c.line))) << outcome->text().toStdString();
    // The mark stays until the text changes.
    dialog.editor().moveCursor(QTextCursor::Start);
    EXPECT_EQ(dialog.editor().errorLine(), c.line);
    dialog.editor().setPlainText(c.good);
    EXPECT_EQ(dialog.editor().errorLine(), 0);
    EXPECT_TRUE(dialog.check());
    EXPECT_EQ(outcome->text(), QStringLiteral("No errors found."));
    EXPECT_EQ(dialog.editor().errorLine(), 0);
  }
}

TEST(ScriptEditor, CheckRunsNothing) {
  const auto document = documentWith(QStringLiteral("VBScript"), QStringLiteral("Do\nLoop\n"));
  ScriptEditor dialog(*document);
  // The endless loop would never come back if it ran.
  EXPECT_TRUE(dialog.check());
}

TEST(ScriptEditor, OkIsOneStepThatUndoTakesBackByteForByte) {
  const auto document = documentWith(QStringLiteral("VBScript"), QStringLiteral("Dim a\r\nDim b\r\n"));
  const QByteArray before = document->save();
  {
    // OK without a change leaves the layout and the history alone, even
    // where the editor shows the line ends otherwise.
    ScriptEditor dialog(*document);
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(document->canUndo());
    EXPECT_EQ(document->save(), before);
  }
  ScriptEditor dialog(*document);
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("ReportStart"));
  dialog.insertEvent(QStringLiteral("Detail"), QStringLiteral("Format"));
  dialog.editor().insertPlainText(QStringLiteral("a = 1"));
  dialog.accept();
  EXPECT_EQ(document->report()->script, dialog.editor().toPlainText());
  EXPECT_TRUE(document->report()->script.contains(QStringLiteral("Sub Detail_Format()\n    a = 1\n")));
  EXPECT_TRUE(document->isDirty());
  EXPECT_EQ(document->undoLabel(), QStringLiteral("Script"));
  document->undo();
  EXPECT_FALSE(document->canUndo());
  EXPECT_EQ(document->save(), before);
  EXPECT_FALSE(document->isDirty());
}

// The owner's side of the designer's messages: what was asked, and the
// answer to give.
class Answering : public DesignerEvents {
public:
  bool validateChange(const ObjectRef &, int) override { return true; }
  void layoutChanged(const ObjectRef &, int) override {}
  bool contextMenuOpen(const ObjectRef &, int, QPoint) override { return false; }
  int message(int number, const QString &, int flags) override {
    asked.emplace_back(number, flags);
    return answer;
  }

  int answer = hostapi::MsgBox::No;
  std::vector<std::pair<int, int>> asked; // number, flags
};

TEST(ScriptEditor, CancelWithChangesAsksFirstAndNoKeepsTheEditorOpen) {
  const auto document = documentWith(QStringLiteral("JScript"), QStringLiteral("var a = 1;"));
  const QByteArray before = document->save();
  Answering owner;
  {
    // Nothing changed: Cancel closes without a question.
    ScriptEditor dialog(*document);
    dialog.setEvents(&owner);
    dialog.show();
    dialog.reject();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(owner.asked.empty());
  }
  ScriptEditor dialog(*document);
  dialog.setEvents(&owner);
  dialog.show();
  dialog.insertEvent(QStringLiteral("ActiveReport"), QStringLiteral("FetchData"));
  dialog.editor().insertPlainText(QStringLiteral("return true;"));
  auto *cancel = dialog.findChild<QPushButton *>(QStringLiteral("CmdCancel"));
  ASSERT_TRUE(cancel);
  QTest::mouseClick(cancel, Qt::LeftButton);
  EXPECT_TRUE(dialog.isVisible()) << "No keeps the edits";
  const int yesNo = hostapi::MsgBox::YesNo | hostapi::MsgBox::Question | hostapi::MsgBox::DefaultButton2;
  EXPECT_EQ(owner.asked, (std::vector<std::pair<int, int>>{{DesignMessage::DiscardScriptChanges, yesNo}}));
  // Closing the window asks the same.
  dialog.close();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(owner.asked.size(), 2u);

  owner.answer = hostapi::MsgBox::Yes;
  QTest::mouseClick(cancel, Qt::LeftButton);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
  EXPECT_EQ(document->save(), before);
  EXPECT_FALSE(document->canUndo());
  EXPECT_FALSE(document->isDirty());
}

TEST(ScriptEditor, WithoutAnOwnerTheQuestionIsABoxOfTheUi) {
  const auto ui = std::make_shared<test::ScriptedUi>();
  hostapi::installUi(ui);
  const auto uninstall = qScopeGuard([] { hostapi::installUi(nullptr); });
  const auto document = documentWith(QStringLiteral("VBScript"), QStringLiteral("Dim a"));
  ScriptEditor dialog(*document);
  dialog.show();
  dialog.editor().insertPlainText(QStringLiteral("' more"));
  ui->boxAnswers = {hostapi::MsgBox::No, hostapi::MsgBox::Yes};
  dialog.reject();
  EXPECT_TRUE(dialog.isVisible());
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes.front().text, designMessageText(DesignMessage::DiscardScriptChanges));
  EXPECT_EQ(ui->boxes.front().flags, designMessageFlags(DesignMessage::DiscardScriptChanges));
  dialog.reject();
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(document->report()->script, QStringLiteral("Dim a"));
}

TEST(ScriptEditor, FindAndReplace) {
  const auto document =
      documentWith(QStringLiteral("VBScript"), QStringLiteral("total = 0\nTotal = total + 1\nsubtotal = 2\n"));
  ScriptEditor dialog(*document);
  FindBar &bar = dialog.findBar();
  CodeEditor &editor = dialog.editor();
  bar.open(true);
  auto *find = bar.findChild<QLineEdit *>(QStringLiteral("TxtFind"));
  auto *replacement = bar.findChild<QLineEdit *>(QStringLiteral("TxtReplace"));
  auto *matchCase = bar.findChild<QCheckBox *>(QStringLiteral("ChkMatchCase"));
  auto *wholeWords = bar.findChild<QCheckBox *>(QStringLiteral("ChkWholeWords"));
  find->setText(QStringLiteral("total"));

  // Without case, round the end and back to the start.
  const QList<int> lines = {1, 2, 2, 3, 1};
  for (int line : lines) {
    ASSERT_TRUE(bar.findNext());
    EXPECT_EQ(editor.currentLine(), line);
    EXPECT_EQ(editor.textCursor().selectedText().toLower(), QStringLiteral("total"));
  }
  ASSERT_TRUE(bar.findPrevious());
  EXPECT_EQ(editor.currentLine(), 3);

  // Whole words and case: only the first and the third "total".
  matchCase->setChecked(true);
  wholeWords->setChecked(true);
  replacement->setText(QStringLiteral("sum"));
  editor.moveCursor(QTextCursor::Start);
  ASSERT_TRUE(bar.findNext());
  EXPECT_TRUE(bar.replaceNext());
  EXPECT_EQ(editor.toPlainText(), QStringLiteral("sum = 0\nTotal = total + 1\nsubtotal = 2\n"));
  // Replacing leaves the next match selected.
  EXPECT_EQ(editor.textCursor().selectionStart(), editor.toPlainText().indexOf(QStringLiteral("total")));

  // Replace all is one undo of the editor.
  matchCase->setChecked(false);
  wholeWords->setChecked(false);
  replacement->setText(QStringLiteral("total sum"));
  EXPECT_EQ(bar.replaceAll(), 3);
  EXPECT_EQ(editor.toPlainText(), QStringLiteral("sum = 0\ntotal sum = total sum + 1\nsubtotal sum = 2\n"));
  editor.undo();
  EXPECT_EQ(editor.toPlainText(), QStringLiteral("sum = 0\nTotal = total + 1\nsubtotal = 2\n"));

  find->setText(QStringLiteral("missing"));
  EXPECT_FALSE(bar.findNext());
  EXPECT_EQ(bar.replaceAll(), 0);
  EXPECT_FALSE(bar.findChild<QLabel *>(QStringLiteral("LblFind"))->text().isEmpty());
}

TEST(ScriptEditor, ColoursFollowTheLanguage) {
  const auto vbDocument = documentWith(
      QStringLiteral("VBScript"), QStringLiteral("DIM s: s = \"Dim \"\"x\"\"\" ' Dim\nrem all of it\nx = &HFF + 1.5"));
  ScriptEditor vb(*vbDocument);
  using Kind = ScriptHighlighter::Kind;
  EXPECT_TRUE(coloured(vb.editor(), 1, 0, Kind::Keyword)); // DIM, in any case
  EXPECT_FALSE(coloured(vb.editor(), 1, 4, Kind::Keyword));
  EXPECT_TRUE(coloured(vb.editor(), 1, 12, Kind::String)); // Dim in the string
  EXPECT_TRUE(coloured(vb.editor(), 1, 17, Kind::String)); // past the doubled quotes
  EXPECT_TRUE(coloured(vb.editor(), 1, 24, Kind::Comment));
  EXPECT_TRUE(coloured(vb.editor(), 2, 8, Kind::Comment));
  EXPECT_TRUE(coloured(vb.editor(), 3, 5, Kind::Number));
  EXPECT_TRUE(coloured(vb.editor(), 3, 13, Kind::Number));

  const auto jsDocument =
      documentWith(QStringLiteral("JScript"),
                   QStringLiteral("var Var = 'it\\'s'; /* open\nstill */ return `a\nb`; // 42\nx = 0x1F;"));
  ScriptEditor js(*jsDocument);
  EXPECT_TRUE(coloured(js.editor(), 1, 0, Kind::Keyword));
  EXPECT_FALSE(coloured(js.editor(), 1, 4, Kind::Keyword)); // case counts
  EXPECT_TRUE(coloured(js.editor(), 1, 15, Kind::String));
  EXPECT_TRUE(coloured(js.editor(), 1, 20, Kind::Comment));
  EXPECT_TRUE(coloured(js.editor(), 2, 2, Kind::Comment)); // the comment goes on
  EXPECT_TRUE(coloured(js.editor(), 2, 9, Kind::Keyword));
  EXPECT_TRUE(coloured(js.editor(), 3, 0, Kind::String)); // and so does the template
  EXPECT_TRUE(coloured(js.editor(), 3, 7, Kind::Comment));
  EXPECT_TRUE(coloured(js.editor(), 4, 5, Kind::Number));
}

class ScriptEditorWindow : public ::testing::Test {
protected:
  void SetUp() override {
    dialog_.show();
    QApplication::setActiveWindow(&dialog_);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog_));
  }

  std::unique_ptr<DesignerDocument> document_ =
      documentWith(QStringLiteral("VBScript"), QStringLiteral("Sub Detail_Format()\nEnd Sub\n"));
  ScriptEditor dialog_{*document_};
};

TEST_F(ScriptEditorWindow, KeysReachEveryPart) {
  CodeEditor &editor = dialog_.editor();
  ASSERT_TRUE(editor.hasFocus());
  // Tab indents with spaces; Return keeps the indent; Shift+Tab takes it back.
  editor.moveCursor(QTextCursor::EndOfLine);
  QTest::keyClick(&editor, Qt::Key_Return);
  QTest::keyClick(&editor, Qt::Key_Tab);
  QTest::keyClicks(&editor, QStringLiteral("x = 1"));
  QTest::keyClick(&editor, Qt::Key_Return);
  QTest::keyClicks(&editor, QStringLiteral("y = 2"));
  QTest::keyClick(&editor, Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(editor.toPlainText(), QStringLiteral("Sub Detail_Format()\n    x = 1\ny = 2\nEnd Sub\n"));

  // Escape in the editor does not close the dialog.
  QTest::keyClick(&editor, Qt::Key_Escape);
  EXPECT_TRUE(dialog_.isVisible());

  // Ctrl+F opens the find bar on the word selected; Escape goes back.
  editor.moveCursor(QTextCursor::Start);
  editor.moveCursor(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
  QTest::keyClick(&editor, Qt::Key_F, Qt::ControlModifier);
  auto *find = dialog_.findChild<QLineEdit *>(QStringLiteral("TxtFind"));
  ASSERT_TRUE(dialog_.findBar().isVisible());
  EXPECT_TRUE(find->hasFocus());
  EXPECT_EQ(find->text(), QStringLiteral("Sub"));
  EXPECT_FALSE(dialog_.findChild<QLineEdit *>(QStringLiteral("TxtReplace"))->isVisible());
  QTest::keyClick(find, Qt::Key_Return); // finds the next, and the dialog stays
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_EQ(editor.currentLine(), 4);
  QTest::keyClick(find, Qt::Key_Escape);
  EXPECT_FALSE(dialog_.findBar().isVisible());
  EXPECT_TRUE(dialog_.isVisible());
  EXPECT_TRUE(editor.hasFocus());
  // F3 finds on; Ctrl+H shows the replacement.
  QTest::keyClick(&editor, Qt::Key_F3);
  EXPECT_EQ(editor.currentLine(), 1);
  QTest::keyClick(&editor, Qt::Key_H, Qt::ControlModifier);
  EXPECT_TRUE(dialog_.findChild<QLineEdit *>(QStringLiteral("TxtReplace"))->isVisible());
  QTest::keyClick(find, Qt::Key_Escape);

  // Ctrl+Tab leaves the editor; Alt+O reaches the objects.
  QTest::keyClick(&editor, Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_FALSE(editor.hasFocus());
  QTest::keyClick(&dialog_, Qt::Key_O, Qt::AltModifier);
  EXPECT_TRUE(dialog_.findChild<QComboBox *>(QStringLiteral("CboObject"))->hasFocus());
  // Alt+K checks (the button's click follows its press as the style shows it).
  QTest::keyClick(&dialog_, Qt::Key_K, Qt::AltModifier);
  const auto *outcome = dialog_.findChild<QLabel *>(QStringLiteral("LblCheck"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !outcome->text().isEmpty(); }));
  EXPECT_EQ(outcome->text(), QStringLiteral("No errors found."));
}

} // namespace
