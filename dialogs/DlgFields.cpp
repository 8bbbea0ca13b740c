#include "dialogs/DlgFields.h"

#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "dialogs/DialogParts.h"
#include "dialogs/FieldsPage.h"
#include "dialogs/ScriptFieldsPage.h"
#include "document/StringCollection.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

DlgFields::DlgFields(QWidget *parent)
    : QDialog(parent), CtlFields(new FieldsPage(this)), CtlScriptFields(new ScriptFieldsPage(this)),
      CmdOK(NamedButton("CmdOK", this)), CmdCancel(NamedButton("CmdCancel", this)) {
  setObjectName(QStringLiteral("DlgFields"));
  setModal(true);
  CtlFields->setObjectName(QStringLiteral("CtlFields"));
  CtlScriptFields->setObjectName(QStringLiteral("CtlScriptFields"));
  CtlFields->hide();
  CtlScriptFields->hide();
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(CtlFields, 1);
  layout->addWidget(CtlScriptFields, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));

  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

QString DlgFields::FieldSection() const { return activePage_ ? activePage_->FieldSection() : QString(); }

QString DlgFields::LabelSection() const { return activePage_ ? activePage_->LabelSection() : QString(); }

QStringList DlgFields::NewFieldNames() const { return activePage_ ? activePage_->NewFieldNames() : QStringList(); }

void DlgFields::Form_Load() {
  try {
    SetBusyCursor();
    TranslateForm(*this);
    setWindowTitle(TranslateText(mode_ == 0 ? QStringLiteral("0") : QStringLiteral("1"), objectName()));
    FieldsPageBase *page = mode_ == 0 ? static_cast<FieldsPageBase *>(CtlFields) : CtlScriptFields;
    page->Activate();
    if (!activePage_)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The window has no active page"));
    page->show();
    activePage_->SetNuvoFields(nuvoFields_);
    activePage_->SetSectionNames(sectionNames_);
    activePage_->SetActiveSectionName(activeSectionName_);
    bool ok = false;
    activePage_->Initialize(ok);
    adjustSize();
    CenterForm(*this);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelectFields.Form_Load"));
  }
}

void DlgFields::CmdOK_Click() {
  try {
    if (!activePage_)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The window has no active page"));
    bool ok = false;
    activePage_->Validate(ok);
    if (!ok)
      return;
    status_ = true;
    QDialog::accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelectFields.CmdOK_Click"));
  }
}

void DlgFields::CmdCancel_Click() { QDialog::reject(); }

void DlgFields::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
