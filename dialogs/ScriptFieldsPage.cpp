#include "dialogs/ScriptFieldsPage.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "dialogs/DialogParts.h"
#include "hostapi/ActiveUser.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/HostDialog.h"
#include "hostapi/Records.h"
#include "hostapi/Ui.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

namespace kordel::addin {

namespace {

// The user's own coworker record; nullptr when the user has none or no
// database is open.
std::shared_ptr<hostapi::Record> CoworkerRecord() {
  const auto application = CurrentApplication();
  const auto user = application ? application->activeUser() : nullptr;
  return user ? user->record() : nullptr;
}

QVBoxLayout *ButtonColumn(std::initializer_list<QPushButton *> buttons) {
  auto *column = new QVBoxLayout;
  for (QPushButton *button : buttons)
    column->addWidget(button);
  column->addStretch();
  return column;
}

} // namespace

ScriptFieldsPage::ScriptFieldsPage(QWidget *parent)
    : FieldsPageBase(QStringLiteral("ScriptFieldsPage"), parent), TbEditor(new QPlainTextEdit(this)),
      CmdInsertField(NamedButton("CmdInsertField", this)),
      CmdInsertCoworkerField(NamedButton("CmdInsertCoworkerField", this)), CmdUse(NamedButton("CmdUse", this)),
      LbScripts(new QListWidget(this)), CmdEdit(NamedButton("CmdEdit", this)),
      CmdRemove(NamedButton("CmdRemove", this)), LblSections(new QLabel(this)), CboSections(new QComboBox(this)) {
  TbEditor->setObjectName(QStringLiteral("TbEditor"));
  TbEditor->setTabChangesFocus(true);
  LbScripts->setObjectName(QStringLiteral("LbScripts"));
  LblSections->setObjectName(QStringLiteral("LblSections"));
  LblSections->setBuddy(CboSections);
  CboSections->setObjectName(QStringLiteral("CboSections"));

  auto *grid = new QGridLayout;
  grid->addWidget(TbEditor, 0, 0);
  grid->addLayout(ButtonColumn({CmdInsertField, CmdInsertCoworkerField, CmdUse}), 0, 1);
  grid->addWidget(LbScripts, 1, 0);
  grid->addLayout(ButtonColumn({CmdEdit, CmdRemove}), 1, 1);
  grid->setColumnStretch(0, 1);
  auto *sections = new QHBoxLayout;
  sections->addWidget(LblSections);
  sections->addWidget(CboSections, 1);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(grid, 1);
  layout->addLayout(sections);

  connect(CmdInsertField, &QPushButton::clicked, this, [this] { CmdInsertField_Click(); });
  connect(CmdInsertCoworkerField, &QPushButton::clicked, this, [this] { CmdInsertCoworkerField_Click(); });
  connect(TbEditor, &QPlainTextEdit::textChanged, this, [this] { TbEditor_Change(); });
  connect(CmdUse, &QPushButton::clicked, this,
          Guarded(QStringLiteral("ScriptFieldsPage.CmdUse_Click"), [this] { CmdUse_Click(); }));
  connect(CmdEdit, &QPushButton::clicked, this,
          Guarded(QStringLiteral("ScriptFieldsPage.CmdEdit_Click"), [this] { CmdEdit_Click(); }));
  connect(CmdRemove, &QPushButton::clicked, this,
          Guarded(QStringLiteral("ScriptFieldsPage.CmdRemove_Click"), [this] { CmdRemove_Click(); }));
  connect(LbScripts, &QListWidget::itemDoubleClicked, this,
          Guarded(QStringLiteral("ScriptFieldsPage.CmdRemove_Click"), [this] { CmdRemove_Click(); }));
  LbScripts->installEventFilter(this);
}

void ScriptFieldsPage::Initialize(bool &ok) {
  ok = false;
  try {
    TranslateCaptions();
    CmdUse->setEnabled(false);
    CmdRemove->setEnabled(false);
    CmdEdit->setEnabled(false);
    if (!CoworkerRecord())
      CmdInsertCoworkerField->setEnabled(false);
    AddSectionNames(*CboSections);
    SelectComboItem(*CboSections, activeSectionName_, activeSectionName_.isEmpty() ? 0 : -1);
    ok = true;
  } catch (...) {
    ErrorMessage(QStringLiteral("ScriptFieldsPage.IFormFieldsPage_Initialize"));
  }
}

void ScriptFieldsPage::Validate(bool &ok) {
  ok = false;
  try {
    ok = TakeAnswer(*LbScripts, *CboSections, QStringLiteral("ScriptFieldsPage.NoFields"));
  } catch (...) {
    ErrorMessage(QStringLiteral("ScriptFieldsPage.IFormFieldsPage_Validate"));
  }
}

bool ScriptFieldsPage::ChooseHostField(const std::shared_ptr<hostapi::Fields> &fields, QString &path, int &type) const {
  const ObjectRef dialog = CreateObject(QString::fromLatin1(hostapi::kHostDialogProgId));
  if (!dialog)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("ScriptFieldsPage"),
               QStringLiteral("The host has no field dialog"));
  dialog->set(QStringLiteral("ExcludeFieldTypes"), TypesNotToInsert());
  dialog->set(QStringLiteral("Fields"), Variant(ObjectRef(fields)));
  if (dialog->invoke(QStringLiteral("Show"), {hostapi::HostDialogNumber::Field}).toLong() !=
      hostapi::ShowResult::Confirmed)
    return false;
  const ObjectRef field = dialog->get(QStringLiteral("Field")).toObject();
  if (!field)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("ScriptFieldsPage"),
               QStringLiteral("The field dialog gave no field"));
  type = field->get(QStringLiteral("Type")).toLong();
  path = dialog->get(QStringLiteral("Path")).toString();
  return true;
}

void ScriptFieldsPage::InsertAtCursor(const QString &text) {
  QTextCursor cursor = TbEditor->textCursor();
  cursor.insertText(text);
  TbEditor->setTextCursor(cursor);
  TbEditor->setFocus();
}

void ScriptFieldsPage::CmdInsertField_Click() {
  try {
    QString path;
    int type = 0;
    if (!ChooseHostField(nuvoFields_, path, type))
      return;
    // A relation and a choice show a display text, so they are read as text.
    const bool shownAsText = type == hostapi::FieldType::RelationToOne || type == hostapi::FieldType::Choice;
    InsertAtCursor(shownAsText ? QStringLiteral("Text(\"%1\")").arg(path) : u'[' + path + u']');
  } catch (...) {
    ErrorMessage(QStringLiteral("ScriptFieldsPage.CmdInsertField_Click"));
  }
}

void ScriptFieldsPage::CmdInsertCoworkerField_Click() {
  try {
    const auto record = CoworkerRecord();
    if (!record) {
      ShowMessage(QStringLiteral("No ActiveUser.Record"), hostapi::MsgBox::OkOnly);
      return;
    }
    QString path;
    int type = 0;
    if (ChooseHostField(record->fields(), path, type))
      InsertAtCursor(QStringLiteral("ActiveUser.Record.Text(\"%1\")").arg(path));
  } catch (...) {
    ErrorMessage(QStringLiteral("ScriptFieldsPage.CmdInsertCoworkerField_Click"));
  }
}

void ScriptFieldsPage::TbEditor_Change() { CmdUse->setEnabled(!TbEditor->toPlainText().isEmpty()); }

void ScriptFieldsPage::EnableListButtons() {
  const bool any = LbScripts->count() > 0;
  CmdRemove->setEnabled(any);
  CmdEdit->setEnabled(any);
}

void ScriptFieldsPage::CmdUse_Click() {
  const QString text = TbEditor->toPlainText();
  if (text.isEmpty())
    return;
  LbScripts->addItem(text);
  LbScripts->setCurrentRow(LbScripts->count() - 1);
  EnableListButtons();
  TbEditor->clear();
}

void ScriptFieldsPage::CmdEdit_Click() {
  QListWidgetItem *current = LbScripts->currentItem();
  if (!current)
    return;
  TbEditor->setPlainText(current->text());
  delete current;
  EnableListButtons();
}

void ScriptFieldsPage::CmdRemove_Click() {
  delete LbScripts->currentItem();
  EnableListButtons();
}

bool ScriptFieldsPage::eventFilter(QObject *watched, QEvent *event) {
  if (watched == LbScripts && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Delete:
      Guarded(QStringLiteral("ScriptFieldsPage.CmdRemove_Click"), [this] { CmdRemove_Click(); })();
      return true;
    case Qt::Key_Space:
      Guarded(QStringLiteral("ScriptFieldsPage.CmdEdit_Click"), [this] { CmdEdit_Click(); })();
      return true;
    default: break;
    }
  }
  return FieldsPageBase::eventFilter(watched, event);
}

} // namespace kordel::addin
