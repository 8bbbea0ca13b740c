#include "runtime/FormInput.h"

#include "addin/ApplicationManager.h"
#include "common/Globals.h"
#include "hostapi/Ui.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

FormInput::FormInput() {
  setObjectName(QStringLiteral("FormInput"));
  setModal(true);
  LblPrompt = new QLabel(this);
  LblPrompt->setObjectName(QStringLiteral("LblPrompt"));
  LblPrompt->setWordWrap(true);
  TbInput = new QLineEdit(this);
  TbInput->setObjectName(QStringLiteral("TbInput"));
  CmdOK = new QPushButton(QStringLiteral("#OK"), this);
  CmdOK->setObjectName(QStringLiteral("CmdOK"));
  CmdOK->setDefault(true);
  CmdCancel = new QPushButton(QStringLiteral("#Cancel"), this);
  CmdCancel->setObjectName(QStringLiteral("CmdCancel"));

  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(CmdOK);
  buttons->addWidget(CmdCancel);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(LblPrompt);
  layout->addWidget(TbInput);
  layout->addLayout(buttons);

  // Neither handler can fail: they only set a flag and close the window.
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
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
