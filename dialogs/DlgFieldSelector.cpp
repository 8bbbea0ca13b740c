#include "dialogs/DlgFieldSelector.h"

#include "common/Globals.h"
#include "dialogs/DialogParts.h"
#include "dialogs/FieldSelector.h"
#include "hostapi/FieldTypes.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

DlgFieldSelector::DlgFieldSelector(QWidget *parent)
    : QDialog(parent), FieldsCtrl(new FieldSelector(this)), CmdOK(NamedButton("CmdOK", this)),
      CmdCancel(NamedButton("CmdCancel", this)) {
  setObjectName(QStringLiteral("DlgFieldSelector"));
  setModal(true);
  FieldsCtrl->setObjectName(QStringLiteral("FieldsCtrl"));
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(FieldsCtrl, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  setMinimumSize(280, 320);
  resize(340, 440);

  connect(FieldsCtrl, &FieldSelector::FieldSelected, this, [this] { CmdOK_Click(); });
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

std::shared_ptr<hostapi::Field> DlgFieldSelector::Field() const {
  return fields_ ? fields_->lookup(fullPath_, hostapi::LookupMode::Either) : nullptr;
}

void DlgFieldSelector::Form_Load() {
  try {
    status_ = false;
    FieldsCtrl->SetFields(fields_);
    FieldsCtrl->SetExcludeFieldTypes(VariantArray::fromValues({hostapi::FieldType::RelationToMany}));
    FieldsCtrl->SetLinkSelect(1);
    FieldsCtrl->ShowFields();
    TranslateForm(*this);
    FieldsCtrl->setFocus();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgFieldSelector.Form_Load"));
  }
}

void DlgFieldSelector::CmdOK_Click() {
  try {
    fullLocalPath_ = FieldsCtrl->FullLocalPath();
    fullPath_ = FieldsCtrl->FullPath();
    status_ = true;
    QDialog::accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgFieldSelector.CmdOK_Click"));
  }
}

void DlgFieldSelector::CmdCancel_Click() { QDialog::reject(); }

void DlgFieldSelector::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
