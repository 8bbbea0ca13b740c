#include "runtime/FormInput.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "hostapi/Ui.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace kordel::addin {

FormInput::FormInput() : PromptWindow(QStringLiteral("FormInput")), TbInput(new QLineEdit) {
  SetInput(TbInput);
  TbInput->setObjectName(QStringLiteral("TbInput"));
  LblPrompt->setWordWrap(true);
}

QString FormInput::QueryInput(const QString &prompt, const QString &title, const QString &text) {
  Form_Load();
  CmdOK->setText(GetMessage(QStringLiteral("FormInput.CmdOK")));
  CmdCancel->setText(GetMessage(QStringLiteral("FormInput.CmdCancel")));
  LblPrompt->setText(prompt);
  TbInput->setText(text);
  setWindowTitle(title.isEmpty() ? ApplicationTitle() : title);
  confirmed_ = false;
  hostapi::ui().showModal(*this);
  const QString result = confirmed_ ? TbInput->text() : QString();
  hide();
  return result;
}

void FormInput::Form_Load() { CenterForm(*this); }

void FormInput::Form_Activate() {
  TbInput->setFocus();
  TbInput->setSelection(0, int(TbInput->text().size()));
}

void FormInput::CmdOK_Click() {
  confirmed_ = true;
  hide();
}

void FormInput::CmdCancel_Click() { hide(); }

bool FormInput::event(QEvent *event) {
  if (event->type() == QEvent::WindowActivate)
    Form_Activate();
  return QDialog::event(event);
}

} // namespace kordel::addin
