#include "runtime/ExtOption.h"

#include "common/Globals.h"
#include "hostapi/Ui.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

QStringList OptionTexts(const Variant &options) {
  if (!options.isArray())
    return {options.toString()};
  const VariantArray &array = options.array();
  QStringList texts;
  for (std::int32_t i = array.lowerBound(); i <= array.upperBound(); ++i)
    texts << array.at(i).toString();
  return texts;
}

ExtOption::ExtOption() {
  setObjectName(QStringLiteral("ExtOption"));
  setModal(true);
  LblPrompt = new QLabel(QStringLiteral("#Caption"), this);
  LblPrompt->setObjectName(QStringLiteral("LblPrompt"));
  CboOptions = new QComboBox(this);
  CboOptions->setObjectName(QStringLiteral("CboOptions"));
  CboOptions->setEditable(false);
  CboOptions->setMinimumContentsLength(24);
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
  layout->addWidget(CboOptions);
  layout->addLayout(buttons);

  connect(CmdOK, &QPushButton::clicked, this, [this] {
    try {
      CmdOK_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("ExtOption.CmdOK_Click"));
    }
  });
  connect(CmdCancel, &QPushButton::clicked, this, [this] {
    try {
      CmdCancel_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("ExtOption.CmdCancel_Click"));
    }
  });
}

void ExtOption::Show() {
  Form_Load();
  hostapi::ui().showModal(*this);
}

void ExtOption::Form_Load() {
  SetBusyCursor();
  TranslateForm(*this);
  CenterForm(*this);
  if (title_.isEmpty())
    title_ = GetMessage(QStringLiteral("Addin.Name"));
  setWindowTitle(title_);
  CboOptions->addItems(OptionTexts(options_));
  // A list box chooses nothing by itself: only the default, or the first
  // item when there is no default.
  CboOptions->setCurrentIndex(-1);
  if (!default_.isEmpty()) {
    const int match = CboOptions->findText(default_, Qt::MatchFixedString);
    if (match >= 0)
      CboOptions->setCurrentIndex(match);
  } else if (CboOptions->count() > 0) {
    CboOptions->setCurrentIndex(0);
  }
  ResetCursor();
}

void ExtOption::CmdOK_Click() {
  SetBusyCursor();
  result_ = CboOptions->currentText();
  accept();
  ResetCursor();
}

void ExtOption::CmdCancel_Click() { reject(); }

} // namespace kordel::addin
