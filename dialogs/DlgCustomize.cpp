#include "dialogs/DlgCustomize.h"

#include "common/Globals.h"
#include "common/Settings.h"
#include "dialogs/DialogParts.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

namespace kordel::addin {

namespace {

struct Toolbar {
  const char *name;
  std::int16_t bit;
};

// The designer's toolbars in the order of the list. Bit 64 belongs to
// none of them, so a save drops it.
constexpr std::array<Toolbar, 7> kToolbars{{{"ddTBMenu", 1},
                                            {"ddTBToolBox", 2},
                                            {"ddTBStandard", 4},
                                            {"ddTBAlignment", 8},
                                            {"ddTBFormat", 16},
                                            {"ddTBExplorer", 32},
                                            {"ddTBPropertyToolbox", 128}}};

} // namespace

DlgCustomize::DlgCustomize(QWidget *parent)
    : QDialog(parent), LblToolBars(new QLabel(this)), LbToolbars(new QListWidget(this)),
      CmdOK(NamedButton("CmdOK", this)), CmdCancel(NamedButton("CmdCancel", this)) {
  setObjectName(QStringLiteral("DlgCustomize"));
  setModal(true);
  LblToolBars->setObjectName(QStringLiteral("LblToolBars"));
  LblToolBars->setBuddy(LbToolbars);
  LbToolbars->setObjectName(QStringLiteral("LbToolbars"));
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(LblToolBars);
  layout->addWidget(LbToolbars, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  resize(300, 280);

  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
}

void DlgCustomize::Form_Load() {
  try {
    SetBusyCursor();
    status_ = false;
    TranslateForm(*this);
    InitializeCtrls();
    CenterForm(*this);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.Form_Load"));
  }
}

void DlgCustomize::InitializeCtrls() {
  try {
    for (const Toolbar &toolbar : kToolbars) {
      auto *entry =
          new QListWidgetItem(GetMessage(objectName() + u'.' + QString::fromLatin1(toolbar.name)), LbToolbars);
      entry->setData(Qt::UserRole, int(toolbar.bit));
      entry->setFlags(entry->flags() | Qt::ItemIsUserCheckable);
      entry->setCheckState((toolBars_ & toolbar.bit) == toolbar.bit ? Qt::Checked : Qt::Unchecked);
    }
    LbToolbars->setCurrentRow(0);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.InitializeCtrls"));
  }
}

void DlgCustomize::SaveCustomizations() {
  int mask = 0;
  for (int i = 0; i < LbToolbars->count(); ++i) {
    const QListWidgetItem *entry = LbToolbars->item(i);
    if (entry->checkState() == Qt::Checked)
      mask += entry->data(Qt::UserRole).toInt();
  }
  WriteSetting(kSettingsRoot + QStringLiteral("\\Designer"), QStringLiteral("ShowToolbars"), QString::number(mask));
}

void DlgCustomize::CmdOK_Click() {
  try {
    SetBusyCursor();
    SaveCustomizations();
    status_ = true;
    QDialog::accept();
    ResetCursor();
  } catch (...) {
    // The dialog stays open for another try.
    ErrorMessage(QStringLiteral("DlgCustomize.SaveCustomizations"));
  }
}

void DlgCustomize::CmdCancel_Click() { QDialog::reject(); }

void DlgCustomize::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
