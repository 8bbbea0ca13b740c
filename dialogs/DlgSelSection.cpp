#include "dialogs/DlgSelSection.h"

#include "common/Globals.h"
#include "dialogs/DialogParts.h"
#include "document/StringCollection.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

DlgSelSection::DlgSelSection(QWidget *parent)
    : QDialog(parent), LblSection(new QLabel(this)), CboSection(new QComboBox(this)), CmdOK(NamedButton("CmdOK", this)),
      CmdCancel(NamedButton("CmdCancel", this)) {
  setObjectName(QStringLiteral("DlgSelSection"));
  setModal(true);
  LblSection->setObjectName(QStringLiteral("LblSection"));
  LblSection->setBuddy(CboSection);
  CboSection->setObjectName(QStringLiteral("CboSection"));
  CboSection->setMinimumContentsLength(24);
  setMinimumWidth(280);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(LblSection);
  layout->addWidget(CboSection);
  layout->addStretch();
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));

  connect(CmdOK, &QPushButton::clicked, this,
          Guarded(QStringLiteral("DlgSelSection.CmdOK_Click"), [this] { CmdOK_Click(); }));
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

void DlgSelSection::Form_Load() {
  try {
    status_ = false;
    TranslateForm(*this);
    CenterForm(*this);
    const int count = sectionNames_ ? sectionNames_->Count() : 0;
    for (int i = 1; i <= count; ++i)
      CboSection->addItem(sectionNames_->Item(i));
    CboSection->setCurrentIndex(CboSection->count() > 0 ? 0 : -1);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgSelSections.Form_Load"));
  }
}

void DlgSelSection::CmdOK_Click() {
  if (CboSection->currentIndex() < 0)
    return;
  status_ = true;
  sectionName_ = CboSection->currentText();
  QDialog::accept();
}

void DlgSelSection::CmdCancel_Click() { QDialog::reject(); }

void DlgSelSection::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
