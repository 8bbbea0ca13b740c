#include "dialogs/DlgSelectSubPage.h"

#include "common/Globals.h"
#include "dialogs/DialogParts.h"
#include "dialogs/FieldSelector.h"
#include "document/StringCollection.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/Ui.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

namespace FT = hostapi::FieldType;

DlgSelectSubPage::DlgSelectSubPage(QWidget *parent)
    : QDialog(parent), FmeSelectField(new QGroupBox(this)), FieldCtrl(new FieldSelector(FmeSelectField)),
      LblField(new QLabel(FmeSelectField)), LblName(new QLabel(FmeSelectField)), TbName(new QLineEdit(FmeSelectField)),
      FmePageSection(new QGroupBox(this)), CboPageSection(new QComboBox(FmePageSection)),
      CmdOK(NamedButton("CmdOK", this)), CmdCancel(NamedButton("CmdCancel", this)) {
  setObjectName(QStringLiteral("DlgSelectSubPage"));
  setModal(true);
  FmeSelectField->setObjectName(QStringLiteral("FmeSelectField"));
  FieldCtrl->setObjectName(QStringLiteral("FieldCtrl"));
  LblField->setObjectName(QStringLiteral("LblField"));
  LblField->setTextInteractionFlags(Qt::TextSelectableByMouse);
  LblName->setObjectName(QStringLiteral("LblName"));
  LblName->setBuddy(TbName);
  TbName->setObjectName(QStringLiteral("TbName"));
  FmePageSection->setObjectName(QStringLiteral("FmePageSection"));
  CboPageSection->setObjectName(QStringLiteral("CboPageSection"));

  auto *name = new QHBoxLayout;
  name->addWidget(LblName);
  name->addWidget(TbName, 1);
  auto *selectField = new QVBoxLayout(FmeSelectField);
  selectField->addWidget(FieldCtrl, 1);
  selectField->addWidget(LblField);
  selectField->addLayout(name);
  auto *pageSection = new QVBoxLayout(FmePageSection);
  pageSection->addWidget(CboPageSection);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(FmeSelectField, 1);
  layout->addWidget(FmePageSection);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  setMinimumSize(320, 400);
  resize(380, 500);

  connect(FieldCtrl, &FieldSelector::FieldSelected, this,
          Guarded(QStringLiteral("DlgSelectSubPage.FieldCtrl_FieldSelected"), [this] { FieldCtrl_FieldSelected(); }));
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

void DlgSelectSubPage::Form_Load() {
  try {
    SetBusyCursor();
    status_ = false;
    InitializeCtrls();
    const int count = sectionNames_ ? sectionNames_->Count() : 0;
    for (int i = 1; i <= count; ++i)
      CboPageSection->addItem(sectionNames_->Item(i));
    CboPageSection->setCurrentIndex(-1);
    SelectComboItem(*CboPageSection, activeSectionName_, activeSectionName_.isEmpty() ? 0 : -1);
    TranslateForm(*this);
    LblField->clear();
    CenterForm(*this);
    FieldCtrl->setFocus();
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelectSubPage.Form_Load"));
  }
}

void DlgSelectSubPage::InitializeCtrls() {
  try {
    FieldCtrl->SetFields(fields_);
    FieldCtrl->SetIncludeFieldTypes(VariantArray::fromValues({FT::RelationToMany, FT::RelationToOne}));
    FieldCtrl->SetLinkStyle(1);
    FieldCtrl->SetLinkSelect(2);
    FieldCtrl->SetSingleClick(true);
    FieldCtrl->ShowFields();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelectSubPage.InitializeCtrls"));
  }
}

void DlgSelectSubPage::FieldCtrl_FieldSelected() {
  LblField->setText(FieldCtrl->FullLocalPath());
  const auto field = FieldCtrl->Field();
  const auto related = field ? field->relatedField() : nullptr;
  if (!related)
    raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The chosen field is no relation"));
  TbName->setText(GetUniquePageName(related->fieldClass()->localName()));
}

QString DlgSelectSubPage::GetUniquePageName(const QString &name) const {
  QString candidate = name;
  for (int number = 2; subPageNames_ && subPageNames_->Exists(candidate).toBool(); ++number)
    candidate = name + u' ' + QString::number(number);
  return candidate;
}

void DlgSelectSubPage::CmdOK_Click() {
  try {
    SetBusyCursor();
    if (LblField->text().isEmpty()) {
      ShowMessage(GetMessage(QStringLiteral("DlgSelectSubPage.NoField")), hostapi::MsgBox::Information);
      ResetCursor();
      return;
    }
    if (!fields_)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The dialog has no fields"));
    newPageSource_ = fields_->translatePath(LblField->text(), hostapi::PathDirection::ToInternal);
    newPageName_ = TbName->text();
    if (newPageName_.isEmpty()) {
      const auto field = fields_->lookup(newPageSource_, hostapi::LookupMode::Either);
      if (!field)
        raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("No field at '%1'").arg(newPageSource_));
      newPageName_ = GetUniquePageName(field->localName());
    }
    pageSectionName_ = CboPageSection->currentText();
    status_ = true;
    ResetCursor();
    QDialog::accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelectSubPage.CmdOK_Click"));
  }
}

void DlgSelectSubPage::CmdCancel_Click() { QDialog::reject(); }

void DlgSelectSubPage::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
