#include "runtime/PromptWindow.h"

#include "common/Globals.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

PromptWindow::PromptWindow(const QString &name) {
  setObjectName(name);
  setModal(true);
  LblPrompt = new QLabel(QStringLiteral("#Caption"), this);
  LblPrompt->setObjectName(QStringLiteral("LblPrompt"));
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
  layout->addLayout(buttons);

  connect(CmdOK, &QPushButton::clicked, this, [this] {
    try {
      CmdOK_Click();
    } catch (...) {
      ErrorMessage(objectName() + QStringLiteral(".CmdOK_Click"));
    }
  });
  connect(CmdCancel, &QPushButton::clicked, this, [this] {
    try {
      CmdCancel_Click();
    } catch (...) {
      ErrorMessage(objectName() + QStringLiteral(".CmdCancel_Click"));
    }
  });
}

void PromptWindow::SetInput(QWidget *input) {
  input->setParent(this);
  static_cast<QVBoxLayout *>(layout())->insertWidget(1, input);
}

} // namespace kordel::addin
