#include "engine/designer/ScriptEditor.h"

#include "engine/designer/CodeEditor.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerMessages.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/FindBar.h"
#include "engine/designer/ScriptHighlighter.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "hostapi/Ui.h"

#include "core/Error.h"
#include "script/ScriptEngine.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextCursor>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace kordel::engine {

namespace {

const std::vector<ScriptEvent> &eventsOf(const QString &object) {
  return object == reportObjectName() ? reportEvents() : sectionEvents();
}

void addShortcut(QWidget &window, const QString &name, const QKeySequence &key, std::function<void()> handler) {
  auto *action = new QAction(&window);
  action->setObjectName(name);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WindowShortcut);
  QObject::connect(action, &QAction::triggered, &window, std::move(handler));
  window.addAction(action);
}

} // namespace

ScriptEditor::ScriptEditor(DesignerDocument &document, QWidget *parent)
    : QDialog(parent), document_(document), language_(scriptLanguageNamed(document.report()->scriptLanguage)) {
  setObjectName(QStringLiteral("ScriptEditor"));
  setWindowTitle(designerText("Script - %1").arg(document.report()->scriptLanguage));
  setSizeGripEnabled(true);

  objects_ = new QComboBox;
  objects_->setObjectName(QStringLiteral("CboObject"));
  objects_->addItem(reportObjectName());
  for (const auto &section : document.report()->sections()->all())
    if (!section->name.isEmpty())
      objects_->addItem(section->name);
  objects_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  events_ = new QComboBox;
  events_->setObjectName(QStringLiteral("CboEvent"));
  events_->setPlaceholderText(designerText("(choose an event)"));
  events_->setMinimumContentsLength(16);
  auto *objectLabel = new QLabel(designerText("&Object:"));
  objectLabel->setBuddy(objects_);
  auto *eventLabel = new QLabel(designerText("&Event:"));
  eventLabel->setBuddy(events_);
  auto *checkButton = new QPushButton(designerText("Chec&k"));
  checkButton->setObjectName(QStringLiteral("CmdCheck"));
  checkButton->setAutoDefault(false);
  checkButton->setToolTip(designerText("Compiles the script without running it"));

  editor_ = new CodeEditor;
  editor_->setObjectName(QStringLiteral("TxtScript"));
  new ScriptHighlighter(language_, editor_->document());
  editor_->setPlainText(document.report()->script);
  shown_ = editor_->toPlainText();
  findBar_ = new FindBar(*editor_);

  checkOutcome_ = new QLabel;
  checkOutcome_->setObjectName(QStringLiteral("LblCheck"));
  checkOutcome_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("CmdOK"));
  buttons->button(QDialogButtonBox::Ok)->setText(designerText("OK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CmdCancel"));
  buttons->button(QDialogButtonBox::Cancel)->setText(designerText("Cancel"));

  auto *top = new QHBoxLayout;
  top->addWidget(objectLabel);
  top->addWidget(objects_);
  top->addSpacing(12);
  top->addWidget(eventLabel);
  top->addWidget(events_);
  top->addStretch(1);
  top->addWidget(checkButton);
  auto *bottom = new QHBoxLayout;
  bottom->addWidget(checkOutcome_, 1);
  bottom->addWidget(buttons);
  auto *layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(editor_, 1);
  layout->addWidget(findBar_);
  layout->addLayout(bottom);

  connect(objects_, &QComboBox::currentIndexChanged, this, &ScriptEditor::fillEvents);
  connect(events_, &QComboBox::activated, this, &ScriptEditor::eventChosen);
  connect(checkButton, &QPushButton::clicked, this, &ScriptEditor::check);
  connect(buttons, &QDialogButtonBox::accepted, this, &ScriptEditor::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &ScriptEditor::reject);
  addShortcut(*this, QStringLiteral("ActFind"), QKeySequence::Find, [this] { findBar_->open(false); });
  addShortcut(*this, QStringLiteral("ActReplace"), QKeySequence(Qt::CTRL | Qt::Key_H),
              [this] { findBar_->open(true); });
  addShortcut(*this, QStringLiteral("ActFindNext"), QKeySequence(Qt::Key_F3), [this] { findBar_->findNext(); });
  addShortcut(*this, QStringLiteral("ActFindPrevious"), QKeySequence(Qt::SHIFT | Qt::Key_F3),
              [this] { findBar_->findPrevious(); });

  fillEvents();
  resize(820, 560);
  editor_->setFocus();
}

void ScriptEditor::fillEvents() {
  const QSignalBlocker quiet(events_);
  events_->clear();
  // The report comes first, the sections after it.
  for (const ScriptEvent &event : objects_->currentIndex() == 0 ? reportEvents() : sectionEvents())
    events_->addItem(event.name);
  events_->setCurrentIndex(-1);
}

void ScriptEditor::eventChosen() {
  try {
    insertEvent(objects_->currentText(), events_->currentText());
  } catch (...) {
    showCheck(pendingError().description(), true);
  }
}

QString ScriptEditor::objectNamed(const QString &name) const {
  if (name.compare(reportObjectName(), Qt::CaseInsensitive) == 0)
    return reportObjectName();
  const auto section = document_.report()->sections()->find(name);
  if (!section)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ScriptEditor"),
               designerText("The layout has no section named '%1'").arg(name));
  return section->name;
}

void ScriptEditor::insertEvent(const QString &object, const QString &event) {
  const QString owner = objectNamed(object);
  const auto &events = eventsOf(owner);
  const auto found = std::find_if(events.begin(), events.end(), [&](const ScriptEvent &known) {
    return known.name.compare(event, Qt::CaseInsensitive) == 0;
  });
  if (found == events.end())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ScriptEditor"),
               designerText("%1 has no event named '%2'").arg(owner, event));
  const QString name = procedureName(owner, found->name);
  const QString text = editor_->toPlainText();
  QTextCursor cursor(editor_->document());
  if (const qsizetype at = findProcedure(language_, text, name); at >= 0) {
    cursor.setPosition(int(at));
  } else {
    const ProcedureStub stub =
        procedureStub(language_, name, found->parameters, QString(CodeEditor::indentWidth, u' '));
    // One empty line between the procedures.
    const QString gap = text.isEmpty() || text.endsWith(QLatin1String("\n\n")) ? QString()
                        : text.endsWith(u'\n')                                 ? QStringLiteral("\n")
                                                                               : QStringLiteral("\n\n");
    cursor.movePosition(QTextCursor::End);
    const int start = cursor.position() + int(gap.size());
    cursor.insertText(gap + stub.text);
    cursor.setPosition(start + stub.bodyOffset);
  }
  editor_->setTextCursor(cursor);
  editor_->centerCursor();
  editor_->setFocus();
  const QSignalBlocker quietObjects(objects_);
  objects_->setCurrentText(owner);
  fillEvents();
  events_->setCurrentText(found->name);
}

bool ScriptEditor::check() {
  bool passed = false;
  try {
    const auto engine = script::createScriptEngine(document_.report()->scriptLanguage);
    engine->checkSyntax(editor_->toPlainText());
    editor_->markErrorLine(0);
    showCheck(designerText("No errors found."), false);
    passed = true;
  } catch (const script::ScriptError &error) {
    editor_->markErrorLine(error.line());
    if (error.line() > 0) {
      editor_->goTo(error.line(), error.column());
      showCheck(designerText("Line %1, column %2: %3 (%4)")
                    .arg(error.line())
                    .arg(error.column())
                    .arg(error.description())
                    .arg(error.number()),
                true);
    } else {
      showCheck(QStringLiteral("%1 (%2)").arg(error.description()).arg(error.number()), true);
    }
  } catch (...) {
    editor_->markErrorLine(0);
    showCheck(pendingError().description(), true);
  }
  editor_->setFocus();
  return passed;
}

void ScriptEditor::showCheck(const QString &text, bool failed) {
  checkOutcome_->setText(text);
  QPalette colours = checkOutcome_->palette();
  colours.setColor(QPalette::WindowText, failed ? QColor(0xc6, 0x28, 0x28) : QColor(0x2e, 0x7d, 0x32));
  checkOutcome_->setPalette(colours);
}

void ScriptEditor::accept() {
  const QString text = editor_->toPlainText();
  if (text != shown_) {
    DesignerDocument::Edit edit(document_, designerText("Script"));
    document_.report()->script = text;
  }
  QDialog::accept();
}

void ScriptEditor::reject() {
  try {
    if (editor_->toPlainText() != shown_ &&
        tellUser(owner_, DesignMessage::DiscardScriptChanges) != hostapi::MsgBox::Yes)
      return;
  } catch (...) {
    return; // nobody could be asked: the changes stay, and so does the editor
  }
  QDialog::reject();
}

} // namespace kordel::engine
