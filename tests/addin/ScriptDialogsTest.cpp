// The three small windows that put questions to the user while a report
// runs: ExtOption (one value), ExtSet (several values) and FormInput (a
// line of text), each shown through the scripted user interface, whose
// handler finds the controls by name, sets them and clicks as a user would.

#include "HostedFixture.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "host/QtUi.h"
#include "runtime/ExtOption.h"
#include "runtime/ExtSet.h"
#include "runtime/Extensions.h"
#include "runtime/FormInput.h"
#include "support/ErrorCapture.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::errorNumber;
using kordel::test::HostedTest;

namespace {

// What a handler saw of a window while it was shown.
struct Seen {
  QString caption;
  QString prompt;
  QStringList items;
  QString current;
  QStringList selected;
  int currentRow = -1;
  int mousePointer = -1;
};

template <class T> T &child(QWidget &window, const char *name) {
  T *found = window.findChild<T *>(QString::fromLatin1(name));
  if (!found)
    throw std::runtime_error(std::string("no control ") + name);
  return *found;
}

void click(QWidget &window, const char *button) { child<QPushButton>(window, button).click(); }

// An array with the given lower bound, as a script's ReDim makes one.
Variant arrayFrom(std::int32_t lower, std::vector<Variant> values) {
  VariantArray array({{lower, lower + std::int32_t(values.size()) - 1}});
  for (std::size_t i = 0; i < values.size(); ++i)
    array.at(lower + std::int32_t(i)) = values[i];
  return Variant(std::move(array));
}

// The texts of an ExtSet result, which must be an array from 0.
QStringList textsOf(const Variant &result) {
  const VariantArray &array = result.array();
  EXPECT_EQ(array.dimensions(), 1);
  EXPECT_EQ(array.lowerBound(), 0);
  QStringList texts;
  for (const Variant &value : array.elements())
    texts << value.toString();
  return texts;
}

class ScriptDialogsTest : public HostedTest {
protected:
  void SetUp() override {
    HostedTest::SetUp();
    StartTranslation("en");
  }
  void TearDown() override {
    StopTranslation();
    HostedTest::TearDown();
  }

  // Records the combo box or the list of a window, then lets act finish it.
  void drive(std::function<void(QWidget &)> act) {
    ui->modalHandler = [this, act](QWidget &window) {
      seen = Seen();
      seen.caption = window.windowTitle();
      seen.prompt = child<QLabel>(window, "LblPrompt").text();
      seen.mousePointer = app->mousePointer();
      if (auto *combo = window.findChild<QComboBox *>("CboOptions")) {
        for (int i = 0; i < combo->count(); ++i)
          seen.items << combo->itemText(i);
        seen.current = combo->currentText();
      }
      if (auto *list = window.findChild<QListWidget *>("LbSet")) {
        for (int i = 0; i < list->count(); ++i) {
          seen.items << list->item(i)->text();
          if (list->item(i)->isSelected())
            seen.selected << list->item(i)->text();
        }
        seen.currentRow = list->currentRow();
      }
      act(window);
    };
  }

  Seen seen;
  std::shared_ptr<Extensions> extensions = std::make_shared<Extensions>();
};

TEST_F(ScriptDialogsTest, OptionBoxOffersTheOptionsAndReturnsTheChosenOne) {
  drive([](QWidget &window) {
    child<QComboBox>(window, "CboOptions").setCurrentIndex(2);
    click(window, "CmdOK");
  });
  const Variant options = arrayFrom(1, {"North", "South", 42});
  EXPECT_EQ(extensions->ShowOptionBox("Which region?", options, "south", ""), "42");
  EXPECT_EQ(seen.items, QStringList({"North", "South", "42"}));
  EXPECT_EQ(seen.current, "South") << "the default picks its item whatever its case";
  EXPECT_EQ(seen.caption, GetMessage("Addin.Name")) << "an empty title takes the add-in's name";
  // The prompt is kept but never shown: the label keeps its caption.
  EXPECT_EQ(seen.prompt, GetMessage("ExtOption.LblPrompt"));
  EXPECT_FALSE(seen.prompt.isEmpty());
  EXPECT_EQ(seen.mousePointer, 0) << "the busy cursor ends before the window shows";
  EXPECT_EQ(app->mousePointer(), 0);
}

TEST_F(ScriptDialogsTest, OptionBoxEdgeCases) {
  // A default the box does not hold raises nothing and chooses nothing.
  drive([](QWidget &window) { click(window, "CmdOK"); });
  EXPECT_EQ(extensions->ShowOptionBox("p", arrayFrom(0, {"a", "b"}), "zz", "Pick"), "");
  EXPECT_EQ(seen.items, QStringList({"a", "b"}));
  EXPECT_EQ(seen.current, "");
  EXPECT_EQ(seen.caption, "Pick");

  // A single value is one item; with no default the first item is chosen.
  EXPECT_EQ(extensions->invoke("ShowOptionBox", {"p", "Only", "", ""}), Variant("Only"));
  EXPECT_EQ(seen.items, QStringList({"Only"}));

  // Cancel gives "" even with an item chosen.
  drive([](QWidget &window) { click(window, "CmdCancel"); });
  EXPECT_EQ(extensions->ShowOptionBox("p", arrayFrom(0, {"a", "b"}), "b", ""), "");
  EXPECT_EQ(seen.current, "b");

  // An option that cannot be a text goes back to the script.
  EXPECT_EQ(errorNumber([&] {
              extensions->ShowOptionBox("p", arrayFrom(0, {"a", Variant::null()}), "", "");
            }),
            ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(app->mousePointer(), 11) << "the failed load leaves the cursor to the script's host";
  ResetCursor();
}

TEST_F(ScriptDialogsTest, OptionBoxIsTranslatedAndDrivenByItsHandlers) {
  ExtOption window;
  window.SetOptions(arrayFrom(0, {"x", "y"}));
  window.SetDefault("Y");
  window.SetPrompt("not shown");
  window.Form_Load();
  EXPECT_EQ(child<QPushButton>(window, "CmdOK").text(), GetMessage("ExtOption.CmdOK"));
  EXPECT_EQ(child<QPushButton>(window, "CmdCancel").text(), GetMessage("ExtOption.CmdCancel"));
  EXPECT_FALSE(child<QPushButton>(window, "CmdCancel").text().startsWith(u'#'));
  EXPECT_EQ(child<QComboBox>(window, "CboOptions").currentText(), "y");
  window.CmdOK_Click();
  EXPECT_EQ(window.Result(), "y");
}

TEST_F(ScriptDialogsTest, SetBoxStartsWithEverythingChosenAndKeepsListOrder) {
  // The user takes "B" away.
  drive([](QWidget &window) {
    child<QListWidget>(window, "LbSet").item(1)->setSelected(false);
    click(window, "CmdOK");
  });
  Variant result = extensions->ShowSetBox("Which?", arrayFrom(1, {"A", "B", "C", 4}), "");
  EXPECT_EQ(seen.items, QStringList({"A", "B", "C", "4"}));
  EXPECT_EQ(seen.selected, seen.items) << "every option starts chosen";
  EXPECT_EQ(seen.currentRow, 0);
  EXPECT_EQ(seen.caption, GetMessage("Addin.Name"));
  EXPECT_EQ(seen.prompt, GetMessage("ExtSet.LblPrompt"));
  EXPECT_EQ(textsOf(result), QStringList({"A", "C", "4"}));

  // Chosen last to first, returned first to last.
  drive([](QWidget &window) {
    auto &list = child<QListWidget>(window, "LbSet");
    list.clearSelection();
    list.item(2)->setSelected(true);
    list.item(0)->setSelected(true);
    click(window, "CmdOK");
  });
  result = extensions->invoke("ShowSetBox", {"Which?", arrayFrom(0, {"A", "B", "C"}), "Letters"});
  EXPECT_EQ(seen.caption, "Letters");
  EXPECT_EQ(textsOf(result), QStringList({"A", "C"}));
}

TEST_F(ScriptDialogsTest, SetBoxGivesEmptyForNothingChosenAndForCancel) {
  drive([](QWidget &window) {
    child<QListWidget>(window, "LbSet").clearSelection();
    click(window, "CmdOK");
  });
  EXPECT_TRUE(extensions->ShowSetBox("p", arrayFrom(0, {"A", "B"}), "").isEmpty());

  drive([](QWidget &window) { click(window, "CmdCancel"); });
  EXPECT_TRUE(extensions->ShowSetBox("p", arrayFrom(0, {"A", "B"}), "").isEmpty());
  EXPECT_EQ(seen.selected, QStringList({"A", "B"}));

  // A single value is one chosen item.
  drive([](QWidget &window) { click(window, "CmdOK"); });
  EXPECT_EQ(textsOf(extensions->ShowSetBox("p", "Alone", "")), QStringList({"Alone"}));
  EXPECT_EQ(seen.selected, QStringList({"Alone"}));
}

TEST_F(ScriptDialogsTest, InputFormShowsItsPromptAndReturnsTheText) {
  const QString previousTitle = ApplicationTitle();
  SetApplicationTitle("Kordel test title");
  QString caption, prompt, ok, cancel, selected;
  int selectionStart = -1;
  ui->modalHandler = [&](QWidget &window) {
    caption = window.windowTitle();
    prompt = child<QLabel>(window, "LblPrompt").text();
    ok = child<QPushButton>(window, "CmdOK").text();
    cancel = child<QPushButton>(window, "CmdCancel").text();
    auto &input = child<QLineEdit>(window, "TbInput");
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &activate);
    selected = input.selectedText();
    selectionStart = input.selectionStart();
    input.setText("Changed text");
    click(window, "CmdOK");
  };
  FormInput form;
  EXPECT_EQ(form.QueryInput("Name of the copy:", "", "Invoices 2024"), "Changed text");
  EXPECT_EQ(caption, "Kordel test title") << "an empty title takes the application's";
  EXPECT_EQ(prompt, "Name of the copy:");
  EXPECT_EQ(ok, GetMessage("FormInput.CmdOK"));
  EXPECT_EQ(cancel, GetMessage("FormInput.CmdCancel"));
  EXPECT_EQ(selected, "Invoices 2024") << "activation selects the whole text";
  EXPECT_EQ(selectionStart, 0);
  SetApplicationTitle(previousTitle);

  // Cancel gives "" whatever was typed; a given title is the caption.
  ui->modalHandler = [&](QWidget &window) {
    caption = window.windowTitle();
    child<QLineEdit>(window, "TbInput").setText("typed");
    click(window, "CmdCancel");
  };
  FormInput second;
  EXPECT_EQ(second.QueryInput("Name:", "Copy report", "start"), "");
  EXPECT_EQ(caption, "Copy report");

  // Closed without a button: not confirmed either.
  ui->modalHandler = [](QWidget &) {};
  FormInput third;
  EXPECT_EQ(third.QueryInput("Name:", "t", "kept?"), "");
}

// On the desktop each window runs its own modal loop, which its buttons
// must end. The button is pressed once the loop runs; a late fallback
// closes a window whose loop would otherwise never end.
TEST_F(ScriptDialogsTest, TheDesktopLoopEndsWithTheButtons) {
  hostapi::installUi(std::make_shared<host::QtUi>());
  bool stuck = false;
  QObject timers; // ends the timers with the test
  const auto pressWhenShown = [&](const QString &windowName, const char *button) {
    QTimer::singleShot(0, &timers, [windowName, button] {
      for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == windowName && window->isVisible())
          window->findChild<QPushButton *>(QString::fromLatin1(button))->click();
      }
    });
    QTimer::singleShot(20000, &timers, [windowName, &stuck] {
      for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == windowName && window->isVisible()) {
          stuck = true;
          window->hide();
        }
      }
    });
  };

  pressWhenShown("FormInput", "CmdOK");
  FormInput form;
  EXPECT_EQ(form.QueryInput("Name:", "Copy", "kept"), "kept");
  pressWhenShown("ExtOption", "CmdOK");
  EXPECT_EQ(extensions->ShowOptionBox("p", arrayFrom(0, {"a", "b"}), "b", ""), "b");
  pressWhenShown("ExtSet", "CmdCancel");
  EXPECT_TRUE(extensions->ShowSetBox("p", arrayFrom(0, {"a", "b"}), "").isEmpty());
  EXPECT_FALSE(stuck);
}

} // namespace
