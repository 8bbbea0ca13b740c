#include "dialogs/FieldsPage.h"

#include "common/Globals.h"
#include "dialogs/DialogParts.h"
#include "dialogs/FieldSelector.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSet>
#include <QVBoxLayout>

namespace kordel::addin {

FieldsPage::FieldsPage(QWidget *parent)
    : FieldsPageBase(QStringLiteral("FieldsPage"), parent), FieldCtrl(new FieldSelector(this)),
      CmdInsert(NamedButton("CmdInsert", this)), CmdInsertAll(NamedButton("CmdInsertAll", this)),
      CmdRemove(NamedButton("CmdRemove", this)), CmdRemoveAll(NamedButton("CmdRemoveAll", this)),
      LbFields(new QListWidget(this)), LblFieldSections(new QLabel(this)), CboFieldSections(new QComboBox(this)),
      ChkInsertLabels(new QCheckBox(this)), CboLabelSections(new QComboBox(this)) {
  FieldCtrl->setObjectName(QStringLiteral("FieldCtrl"));
  LbFields->setObjectName(QStringLiteral("LbFields"));
  LblFieldSections->setObjectName(QStringLiteral("LblFieldSections"));
  LblFieldSections->setBuddy(CboFieldSections);
  CboFieldSections->setObjectName(QStringLiteral("CboFieldSections"));
  ChkInsertLabels->setObjectName(QStringLiteral("ChkInsertLabels"));
  CboLabelSections->setObjectName(QStringLiteral("CboLabelSections"));

  auto *buttons = new QVBoxLayout;
  buttons->addStretch();
  for (QPushButton *button : {CmdInsert, CmdInsertAll, CmdRemove, CmdRemoveAll})
    buttons->addWidget(button);
  buttons->addStretch();
  auto *lists = new QHBoxLayout;
  lists->addWidget(FieldCtrl, 1);
  lists->addLayout(buttons);
  lists->addWidget(LbFields, 1);
  auto *sections = new QGridLayout;
  sections->addWidget(LblFieldSections, 0, 0);
  sections->addWidget(CboFieldSections, 0, 1);
  sections->addWidget(ChkInsertLabels, 1, 0);
  sections->addWidget(CboLabelSections, 1, 1);
  sections->setColumnStretch(1, 1);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(lists, 1);
  layout->addLayout(sections);

  connect(FieldCtrl, &FieldSelector::FieldSelected, this,
          Guarded(QStringLiteral("FieldsPage.FieldCtrl_FieldSelected"), [this] { CmdInsert_Click(); }));
  connect(CmdInsert, &QPushButton::clicked, this,
          Guarded(QStringLiteral("FieldsPage.CmdInsert_Click"), [this] { CmdInsert_Click(); }));
  connect(CmdInsertAll, &QPushButton::clicked, this, [this] { CmdInsertAll_Click(); });
  connect(CmdRemove, &QPushButton::clicked, this, [this] { CmdRemove_Click(); });
  connect(CmdRemoveAll, &QPushButton::clicked, this, [this] { CmdRemoveAll_Click(); });
  connect(LbFields, &QListWidget::itemDoubleClicked, this, [this] { CmdRemove_Click(); });
  connect(ChkInsertLabels, &QCheckBox::toggled, this, [this] { ChkInsertLabels_Click(); });
  LbFields->installEventFilter(this);
}

void FieldsPage::Initialize(bool &ok) {
  ok = false;
  try {
    TranslateCaptions();
    FieldCtrl->SetFields(nuvoFields_);
    FieldCtrl->SetExcludeFieldTypes(TypesNotToInsert());
    FieldCtrl->SetLinkSelect(1);
    FieldCtrl->ShowFields();
    EnableRemoving(false);
    AddSectionNames(*CboFieldSections);
    AddSectionNames(*CboLabelSections);
    if (!activeSectionName_.isEmpty()) {
      // A section the boxes do not hold leaves them without a choice.
      SelectComboItem(*CboFieldSections, activeSectionName_, -1);
      SelectComboItem(*CboLabelSections, activeSectionName_, -1);
      ChkInsertLabels->setChecked(true);
    } else {
      SelectComboItem(*CboFieldSections, QString(), 0);
      SelectComboItem(*CboLabelSections, QString(), 0);
      CboLabelSections->setEnabled(false);
      ChkInsertLabels->setChecked(false);
    }
    ok = true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Fields.IFormFieldsPage_Initialize"));
  }
}

void FieldsPage::Validate(bool &ok) {
  ok = false;
  try {
    if (!TakeAnswer(*LbFields, *CboFieldSections, QStringLiteral("FieldsPage.NoFields")))
      return;
    labelSection_ =
        ChkInsertLabels->isEnabled() && ChkInsertLabels->isChecked() ? CboLabelSections->currentText() : QString();
    ok = true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Fields.IFormFieldsPage_Validate"));
  }
}

void FieldsPage::EnableRemoving(bool enabled) {
  CmdRemove->setEnabled(enabled);
  CmdRemoveAll->setEnabled(enabled);
}

void FieldsPage::CmdInsert_Click() {
  LbFields->addItem(FieldCtrl->FullLocalPath());
  LbFields->setCurrentRow(LbFields->count() - 1);
  EnableRemoving(true);
}

void FieldsPage::CmdInsertAll_Click() {
  try {
    SetBusyCursor();
    const auto onPath = FieldCtrl->GetFieldsOnCurrentPath(false);
    if (onPath->count() == 0) {
      ResetCursor();
      return;
    }
    QSet<QString> listed;
    for (int i = 0; i < LbFields->count(); ++i)
      listed.insert(LbFields->item(i)->text());
    for (int i = 0; i < onPath->count(); ++i) {
      const QString localPath = onPath->itemAt(i).toString();
      if (!listed.contains(localPath))
        LbFields->addItem(localPath);
    }
    EnableRemoving(true);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldsPage.CmdInsertAll_Click"));
  }
}

void FieldsPage::CmdRemove_Click() {
  try {
    if (QListWidgetItem *current = LbFields->currentItem())
      delete current;
    if (LbFields->count() == 0)
      EnableRemoving(false);
  } catch (...) {
    ErrorMessage(QStringLiteral("Fields.RemoveField"));
  }
}

void FieldsPage::CmdRemoveAll_Click() {
  LbFields->clear();
  EnableRemoving(false);
}

void FieldsPage::ChkInsertLabels_Click() { CboLabelSections->setEnabled(ChkInsertLabels->isChecked()); }

bool FieldsPage::eventFilter(QObject *watched, QEvent *event) {
  if (watched == LbFields && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Space || key == Qt::Key_Delete) {
      CmdRemove_Click();
      return true;
    }
  }
  return FieldsPageBase::eventFilter(watched, event);
}

} // namespace kordel::addin
