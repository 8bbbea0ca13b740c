#include "runtime/ExtOption.h"

#include "common/Globals.h"
#include "hostapi/Ui.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

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

ExtOption::ExtOption() : PromptWindow(QStringLiteral("ExtOption")), CboOptions(new QComboBox) {
  SetInput(CboOptions);
  CboOptions->setObjectName(QStringLiteral("CboOptions"));
  CboOptions->setEditable(false);
  CboOptions->setMinimumContentsLength(24);
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
