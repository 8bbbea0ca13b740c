#include "runtime/ExtSet.h"

#include "common/Globals.h"
#include "hostapi/Ui.h"
#include "runtime/ExtOption.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace kordel::addin {

ExtSet::ExtSet() : PromptWindow(QStringLiteral("ExtSet")), LbSet(new QListWidget) {
  SetInput(LbSet);
  LbSet->setObjectName(QStringLiteral("LbSet"));
  LbSet->setSelectionMode(QAbstractItemView::MultiSelection);
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
