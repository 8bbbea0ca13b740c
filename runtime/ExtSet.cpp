#include "runtime/ExtSet.h"

#include "common/Globals.h"
#include "hostapi/Ui.h"
#include "runtime/ExtOption.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

ExtSet::ExtSet() {
  setObjectName(QStringLiteral("ExtSet"));
  setModal(true);
  LblPrompt = new QLabel(QStringLiteral("#Caption"), this);
  LblPrompt->setObjectName(QStringLiteral("LblPrompt"));
  LbSet = new QListWidget(this);
  LbSet->setObjectName(QStringLiteral("LbSet"));
  LbSet->setSelectionMode(QAbstractItemView::MultiSelection);
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
  layout->addWidget(LbSet);
  layout->addLayout(buttons);

  connect(CmdOK, &QPushButton::clicked, this, [this] {
    try {
      CmdOK_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("ExtSet.CmdOK_Click"));
    }
  });
  connect(CmdCancel, &QPushButton::clicked, this, [this] {
    try {
      CmdCancel_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("ExtSet.CmdCancel_Click"));
    }
  });
}

void ExtSet::Show() {
  Form_Load();
  hostapi::ui().showModal(*this);
}

void ExtSet::Form_Load() {
  SetBusyCursor();
  TranslateForm(*this);
  CenterForm(*this);
  result_ = Variant();
  if (title_.isEmpty())
    title_ = GetMessage(QStringLiteral("Addin.Name"));
  setWindowTitle(title_);
  for (const QString &text : OptionTexts(options_)) {
    LbSet->addItem(text);
    LbSet->item(LbSet->count() - 1)->setSelected(true);
  }
  // The first item becomes the current one without touching the
  // selection, which a plain current-row change would toggle.
  if (options_.isArray() && LbSet->count() > 0)
    LbSet->setCurrentRow(0, QItemSelectionModel::NoUpdate);
  ResetCursor();
}

void ExtSet::CmdOK_Click() {
  SetBusyCursor();
  std::vector<Variant> chosen;
  for (int row = 0; row < LbSet->count(); ++row) {
    if (LbSet->item(row)->isSelected())
      chosen.emplace_back(LbSet->item(row)->text());
  }
  if (!chosen.empty())
    result_ = Variant(VariantArray::fromValues(std::move(chosen)));
  accept();
  ResetCursor();
}

void ExtSet::CmdCancel_Click() { reject(); }

} // namespace kordel::addin
