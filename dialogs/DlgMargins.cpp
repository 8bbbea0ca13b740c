#include "dialogs/DlgMargins.h"

#include "common/Globals.h"
#include "core/Variant.h"
#include "dialogs/DialogParts.h"
#include "dialogs/MarginBox.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kordel::addin {

namespace {

constexpr int kExclamation = 48;

MarginBox *newMarginBox(const char *name, QLabel *label, QWidget *parent) {
  auto *box = new MarginBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  label->setBuddy(box->TextBox());
  return box;
}

QLabel *newLabel(const char *name, QWidget *parent) {
  auto *label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

} // namespace

DlgMargins::DlgMargins(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgMargins"));
  setModal(true);
  FmeMargins = new QGroupBox(this);
  FmeMargins->setObjectName(QStringLiteral("FmeMargins"));
  LblMarginTop = newLabel("LblMarginTop", FmeMargins);
  MbMarginTop = newMarginBox("MbMarginTop", LblMarginTop, FmeMargins);
  LblMarginBottom = newLabel("LblMarginBottom", FmeMargins);
  MbMarginBottom = newMarginBox("MbMarginBottom", LblMarginBottom, FmeMargins);
  LblMarginLeft = newLabel("LblMarginLeft", FmeMargins);
  MbMarginLeft = newMarginBox("MbMarginLeft", LblMarginLeft, FmeMargins);
  LblMarginRight = newLabel("LblMarginRight", FmeMargins);
  MbMarginRight = newMarginBox("MbMarginRight", LblMarginRight, FmeMargins);
  CmdOK = NamedButton("CmdOK", this);
  CmdCancel = NamedButton("CmdCancel", this);

  // Top and bottom in the first column, left and right in the second;
  // the tab order follows the reading order.
  auto *grid = new QGridLayout(FmeMargins);
  grid->addWidget(LblMarginTop, 0, 0);
  grid->addWidget(MbMarginTop, 0, 1);
  grid->addWidget(LblMarginLeft, 0, 2);
  grid->addWidget(MbMarginLeft, 0, 3);
  grid->addWidget(LblMarginBottom, 1, 0);
  grid->addWidget(MbMarginBottom, 1, 1);
  grid->addWidget(LblMarginRight, 1, 2);
  grid->addWidget(MbMarginRight, 1, 3);
  grid->setColumnMinimumWidth(1, 90);
  grid->setColumnMinimumWidth(3, 90);
  setTabOrder(MbMarginTop->TextBox(), MbMarginBottom->TextBox());
  setTabOrder(MbMarginBottom->TextBox(), MbMarginLeft->TextBox());
  setTabOrder(MbMarginLeft->TextBox(), MbMarginRight->TextBox());
  setTabOrder(MbMarginRight->TextBox(), CmdOK);
  setTabOrder(CmdOK, CmdCancel);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(FmeMargins);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  layout->setSizeConstraint(QLayout::SetFixedSize);

  connect(CmdOK, &QPushButton::clicked, this,
          Guarded(QStringLiteral("DlgMargins.CmdOK_Click"), [this] { CmdOK_Click(); }));
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

void DlgMargins::Form_Load() {
  try {
    status_ = false;
    InitializeCaptions();
    CenterForm(*this);
    MbMarginTop->SetValue(Variant(marginTop_).toLong());
    MbMarginBottom->SetValue(Variant(marginBottom_).toLong());
    MbMarginLeft->SetValue(Variant(marginLeft_).toLong());
    MbMarginRight->SetValue(Variant(marginRight_).toLong());
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgMargins.Form_Load"));
  }
}

void DlgMargins::InitializeCaptions() { TranslateForm(*this); }

void DlgMargins::ValidateMargins(bool &valid) {
  valid = true;
  for (MarginBox *box : {MbMarginTop, MbMarginBottom, MbMarginLeft, MbMarginRight}) {
    if (box->Validate())
      continue;
    valid = false;
    box->setFocus();
    ShowMessage(GetMessage(QStringLiteral("DlgMargins.Invalid")), kExclamation);
    return;
  }
}

void DlgMargins::CmdOK_Click() {
  bool valid = false;
  ValidateMargins(valid);
  if (!valid)
    return;
  marginTop_ = float(MbMarginTop->Value());
  marginBottom_ = float(MbMarginBottom->Value());
  marginLeft_ = float(MbMarginLeft->Value());
  marginRight_ = float(MbMarginRight->Value());
  status_ = true;
  QDialog::accept();
}

void DlgMargins::CmdCancel_Click() { QDialog::reject(); }

void DlgMargins::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
