#include "dialogs/DlgPageProperties.h"

#include "common/Globals.h"
#include "common/ScriptExpression.h"
#include "dialogs/DialogParts.h"
#include "document/Page.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kordel::addin {

namespace {

const QString kScriptPrefix = QStringLiteral("vbscript:");
// Where a row keeps its sort order (sort list) or its field's name (defaults).
constexpr int kRowTag = Qt::UserRole;

QTreeWidget *newListView(const char *name, QWidget *parent) {
  auto *list = new QTreeWidget(parent);
  list->setObjectName(QString::fromLatin1(name));
  list->setColumnCount(2);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setAllColumnsShowFocus(true);
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  list->header()->setStretchLastSection(true);
  list->header()->setSectionsMovable(false);
  list->setColumnWidth(0, 220);
  return list;
}

QWidget *newPictureBox(const char *name, QWidget *parent) {
  auto *box = new QWidget(parent);
  box->setObjectName(QString::fromLatin1(name));
  // The boxes share one place; a hidden one keeps its room so that the
  // window does not change size with the tab.
  QSizePolicy policy = box->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  box->setSizePolicy(policy);
  return box;
}

std::shared_ptr<hostapi::Fields> classFields(const Page &page) {
  const auto pageClass = page.Class();
  if (!pageClass)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("DlgPageProperties"), QStringLiteral("The page has no class"));
  return pageClass->fields();
}

} // namespace

DlgPageProperties::DlgPageProperties(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgPageProperties"));
  setModal(true);
  TabProperties = named<QTabBar>("TabProperties", this);
  TabProperties->addTab(QString());
  TabProperties->addTab(QString());
  TabProperties->addTab(QString());
  TabProperties->setExpanding(false);
  auto *pages = new QGridLayout;
  PicLayout = newPictureBox("PicLayout", this);
  PicSorting = newPictureBox("PicSorting", this);
  PicDefaultValues = newPictureBox("PicDefaultValues", this);
  pages->addWidget(PicLayout, 0, 0);
  pages->addWidget(PicSorting, 0, 0);
  pages->addWidget(PicDefaultValues, 0, 0);
  buildLayoutTab();
  buildSortingTab();
  buildDefaultValuesTab();
  CmdOK = NamedButton("CmdOK", this);
  CmdCancel = NamedButton("CmdCancel", this);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(TabProperties);
  layout->addLayout(pages, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  resize(500, 400);

  connect(TabProperties, &QTabBar::currentChanged, this, [this] { TabProperties_Click(); });
  connect(ChkStripeDetail, &QCheckBox::clicked, this, [this] { ChkStripeDetail_Click(); });
  connect(CmdAddSortField, &QPushButton::clicked, this, [this] { CmdAddSortField_Click(); });
  connect(CmdRemoveSortField, &QPushButton::clicked, this, [this] { CmdRemoveSortField_Click(); });
  connect(CmdMoveUp, &QPushButton::clicked, this, [this] { CmdMoveUp_Click(); });
  connect(CmdMoveDown, &QPushButton::clicked, this, [this] { CmdMoveDown_Click(); });
  connect(LvwSortFields, &QTreeWidget::itemSelectionChanged, this, [this] { LvwSortFields_ItemClick(); });
  connect(LvwDefault, &QTreeWidget::currentItemChanged, this, [this] { LvwDefault_ItemClick(); });
  connect(LvwDefault, &QTreeWidget::itemClicked, this, [this] { LvwDefault_ItemClick(); });
  connect(CmdUseDefault, &QPushButton::clicked, this, [this] { CmdUseDefault_Click(); });
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
  PreviewKeys(*this, this);
}

void DlgPageProperties::buildLayoutTab() {
  FmeStripes = named<QGroupBox>("FmeStripes", PicLayout);
  ChkStripeDetail = named<QCheckBox>("ChkStripeDetail", FmeStripes);
  ChkStripeFirst = named<QCheckBox>("ChkStripeFirst", FmeStripes);
  auto *stripes = new QVBoxLayout(FmeStripes);
  stripes->addWidget(ChkStripeDetail);
  stripes->addWidget(ChkStripeFirst);
  FmeHidePage = named<QGroupBox>("FmeHidePage", PicLayout);
  ChkHideEmptyPage = named<QCheckBox>("ChkHideEmptyPage", FmeHidePage);
  auto *hide = new QVBoxLayout(FmeHidePage);
  hide->addWidget(ChkHideEmptyPage);
  auto *layout = new QVBoxLayout(PicLayout);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeStripes);
  layout->addWidget(FmeHidePage);
  layout->addStretch();
}

void DlgPageProperties::buildSortingTab() {
  FmeSorting = named<QGroupBox>("FmeSorting", PicSorting);
  CboSortFields = named<QComboBox>("CboSortFields", FmeSorting);
  CboSortFields->setMinimumContentsLength(16);
  CboSortFields->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  CboSorting = named<QComboBox>("CboSorting", FmeSorting);
  CboSorting->setMinimumContentsLength(10);
  CmdAddSortField = NamedButton("CmdAddSortField", FmeSorting);
  LvwSortFields = newListView("LvwSortFields", FmeSorting);
  CmdRemoveSortField = NamedButton("CmdRemoveSortField", FmeSorting);
  CmdMoveUp = NamedButton("CmdMoveUp", FmeSorting);
  CmdMoveDown = NamedButton("CmdMoveDown", FmeSorting);

  auto *choice = new QHBoxLayout;
  choice->addWidget(CboSortFields, 1);
  choice->addWidget(CboSorting);
  choice->addWidget(CmdAddSortField);
  auto *buttons = new QVBoxLayout;
  buttons->addWidget(CmdRemoveSortField);
  buttons->addWidget(CmdMoveUp);
  buttons->addWidget(CmdMoveDown);
  buttons->addStretch();
  auto *rows = new QHBoxLayout;
  rows->addWidget(LvwSortFields, 1);
  rows->addLayout(buttons);
  auto *sorting = new QVBoxLayout(FmeSorting);
  sorting->addLayout(choice);
  sorting->addLayout(rows, 1);
  auto *layout = new QVBoxLayout(PicSorting);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeSorting);
}

void DlgPageProperties::buildDefaultValuesTab() {
  FmeDefault = named<QGroupBox>("FmeDefault", PicDefaultValues);
  LvwDefault = newListView("LvwDefault", FmeDefault);
  TbDefault = named<QLineEdit>("TbDefault", FmeDefault);
  CmdUseDefault = NamedButton("CmdUseDefault", FmeDefault);
  auto *edit = new QHBoxLayout;
  edit->addWidget(TbDefault, 1);
  edit->addWidget(CmdUseDefault);
  auto *defaults = new QVBoxLayout(FmeDefault);
  defaults->addWidget(LvwDefault, 1);
  defaults->addLayout(edit);
  auto *layout = new QVBoxLayout(PicDefaultValues);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeDefault);
}

void DlgPageProperties::Form_Load() {
  try {
    SetBusyCursor();
    InitializeCaptions();
    InitializeCtrls();
    CenterForm(*this);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.Form_Load"));
  }
}

void DlgPageProperties::InitializeCaptions() {
  try {
    TranslateForm(*this);
    TabProperties->setTabText(0, GetMessage(QStringLiteral("DlgPageProperties.TabLayout")));
    TabProperties->setTabText(1, GetMessage(QStringLiteral("DlgPageProperties.TabSorting")));
    TabProperties->setTabText(2, GetMessage(QStringLiteral("DlgPageProperties.TabDefaultValues")));
    LvwSortFields->setHeaderLabels({GetMessage(QStringLiteral("DlgPageProperties.ColSortField")),
                                    GetMessage(QStringLiteral("DlgPageProperties.ColSorting"))});
    LvwDefault->setHeaderLabels({GetMessage(QStringLiteral("DlgPageProperties.ColField")),
                                 GetMessage(QStringLiteral("DlgPageProperties.ColDefault"))});
    sortAscending_ = GetMessage(QStringLiteral("DlgPageProperties.SortAsc"));
    sortDescending_ = GetMessage(QStringLiteral("DlgPageProperties.SortDesc"));
  } catch (...) {
    // Captions that cannot be had leave the controls as they are; the
    // dialog works without them.
  }
}

void DlgPageProperties::InitializeCtrls() {
  try {
    if (!page_)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The dialog has no page"));
    if (page_->IsTopPage()) {
      ChkHideEmptyPage->setEnabled(false);
      ChkHideEmptyPage->setChecked(false);
    } else {
      ChkHideEmptyPage->setChecked(page_->HideEmptyPage());
    }
    ChkStripeDetail->setChecked(page_->StripeDetail());
    ChkStripeFirst->setChecked(page_->StripeFirst());
    if (!ChkStripeDetail->isChecked())
      ChkStripeFirst->setEnabled(false);

    const auto fields = classFields(*page_);
    const auto pageFields = page_->Fields();
    for (int i = 1; i <= pageFields->Count(); ++i) {
      const QString name = pageFields->Item(i)->Name;
      if (!name.startsWith(kScriptPrefix, Qt::CaseInsensitive))
        CboSortFields->addItem(fields->translatePath(name, hostapi::PathDirection::ToLocal));
    }
    const auto sortFields = page_->SortFields();
    for (int i = 1; i <= sortFields->Count(); ++i) {
      const auto sortField = sortFields->Item(i);
      AddSortField(fields->translatePath(sortField->Name, hostapi::PathDirection::ToLocal), sortField->SortOrder);
    }
    UpdateSortControls();
    UpdateSortButtons();

    for (int i = 1; i <= pageFields->Count(); ++i) {
      const auto field = pageFields->Item(i);
      // Unlike the sort fields above, only the prefix as written marks a
      // script field here.
      const QString caption =
          field->Name.startsWith(kScriptPrefix)
              ? kScriptPrefix + ConvertScriptExpression(fields, field->Expression, hostapi::PathDirection::ToLocal)
              : fields->translatePath(field->Name, hostapi::PathDirection::ToLocal);
      auto *row = new QTreeWidgetItem(LvwDefault, {caption, field->DefaultValue});
      row->setData(0, kRowTag, field->Name);
    }
    TabProperties->setCurrentIndex(0);
    ShowTab(0);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.InitializeCtrls"));
  }
}

QString DlgPageProperties::sortCaption(int sortOrder) const {
  return sortOrder == kSortAscending ? sortAscending_ : sortDescending_;
}

QTreeWidgetItem *DlgPageProperties::selectedRow(QTreeWidget &list) const {
  const QList<QTreeWidgetItem *> selected = list.selectedItems();
  return selected.isEmpty() ? nullptr : selected.first();
}

void DlgPageProperties::AddSortField(const QString &name, int sortOrder) {
  try {
    auto *row = new QTreeWidgetItem(LvwSortFields, {name, sortCaption(sortOrder)});
    row->setData(0, kRowTag, sortOrder);
    if (CboSortFields->currentText() == name) {
      CboSortFields->removeItem(CboSortFields->currentIndex());
    } else {
      const int at = CboSortFields->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
      if (at >= 0)
        CboSortFields->removeItem(at);
    }
    LvwSortFields->setCurrentItem(row);
    UpdateSortButtons();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.AddSortField"));
  }
}

void DlgPageProperties::CmdAddSortField_Click() {
  AddSortField(CboSortFields->currentText(), CboSorting->currentData().toInt());
  UpdateSortControls();
}

void DlgPageProperties::CmdRemoveSortField_Click() {
  try {
    QTreeWidgetItem *row = selectedRow(*LvwSortFields);
    if (!row)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("No sort field is selected"));
    const QString name = row->text(0);
    const QString direction = row->text(1);
    CboSortFields->addItem(name);
    UpdateSortControls();
    SelectComboItem(*CboSortFields, name, 0);
    SelectComboItem(*CboSorting, direction, 0);
    delete row;
    UpdateSortButtons();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.CmdRemoveSortField_Click"));
  }
}

void DlgPageProperties::UpdateSortControls() {
  try {
    const bool state = CboSortFields->count() > 0;
    CboSortFields->setEnabled(state);
    CboSorting->setEnabled(state);
    CmdAddSortField->setEnabled(state);
    if (state) {
      if (CboSorting->count() == 0) {
        CboSorting->addItem(sortAscending_, int(kSortAscending));
        CboSorting->addItem(sortDescending_, int(kSortDescending));
      }
      CboSortFields->setCurrentIndex(0);
      CboSorting->setCurrentIndex(CboSorting->findText(sortAscending_));
    } else {
      CboSorting->clear();
    }
  } catch (...) {
    // Left as they were, the controls still let the user go on.
  }
}

void DlgPageProperties::UpdateSortButtons() {
  try {
    QTreeWidgetItem *row = selectedRow(*LvwSortFields);
    const int count = LvwSortFields->topLevelItemCount();
    if (count == 0 || !row) {
      CmdRemoveSortField->setEnabled(false);
      CmdMoveDown->setEnabled(false);
      CmdMoveUp->setEnabled(false);
      return;
    }
    // The place of the row counted from 1.
    const int index = LvwSortFields->indexOfTopLevelItem(row) + 1;
    CmdRemoveSortField->setEnabled(true);
    CmdMoveDown->setEnabled(index < count);
    CmdMoveUp->setEnabled(index >= 2);
  } catch (...) {
    // Left as they were, the buttons still let the user go on.
  }
}

void DlgPageProperties::MoveListItem(int delta) {
  try {
    QTreeWidgetItem *row = selectedRow(*LvwSortFields);
    if (!row)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("No sort field is selected"));
    const int index = LvwSortFields->indexOfTopLevelItem(row);
    const int target = index + delta;
    if (target < 0 || target >= LvwSortFields->topLevelItemCount())
      raiseError(ErrorNumber::SubscriptOutOfRange, objectName(), QStringLiteral("The row cannot move further"));
    const QString text = row->text(0);
    const QString subItem = row->text(1);
    const QVariant tag = row->data(0, kRowTag);
    delete LvwSortFields->takeTopLevelItem(index);
    auto *moved = new QTreeWidgetItem({text, subItem});
    moved->setData(0, kRowTag, tag);
    LvwSortFields->insertTopLevelItem(target, moved);
    LvwSortFields->setCurrentItem(moved);
    UpdateSortButtons();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.MoveListItem"));
  }
}

void DlgPageProperties::LvwDefault_ItemClick() {
  try {
    if (QTreeWidgetItem *row = LvwDefault->currentItem())
      TbDefault->setText(row->text(1));
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.LvwDefault_ItemClick"));
  }
}

void DlgPageProperties::CmdUseDefault_Click() {
  try {
    if (QTreeWidgetItem *row = selectedRow(*LvwDefault))
      row->setText(1, TbDefault->text());
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.CmdUseDefault_Click"));
  }
}

void DlgPageProperties::ChkStripeDetail_Click() { ChkStripeFirst->setEnabled(ChkStripeDetail->isChecked()); }

void DlgPageProperties::Form_KeyDown(int keyCode, int shift) {
  constexpr int kTabKey = 9;
  if (keyCode != kTabKey)
    return;
  const int current = TabProperties->currentIndex();
  if (shift == 2)
    TabProperties->setCurrentIndex(CycledTab(current, TabProperties->count(), false));
  else if (shift == 3)
    TabProperties->setCurrentIndex(CycledTab(current, TabProperties->count(), true));
}

bool DlgPageProperties::eventFilter(QObject *watched, QEvent *event) {
  const int shift = TabKeyShift(*event);
  if (shift >= 0 && (shift & 2)) {
    Form_KeyDown(9, shift);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

void DlgPageProperties::TabProperties_Click() { ShowTab(TabProperties->currentIndex()); }

void DlgPageProperties::ShowTab(int index) {
  PicLayout->hide();
  PicSorting->hide();
  PicDefaultValues->hide();
  switch (index) {
  case 0: PicLayout->show(); break;
  case 1: PicSorting->show(); break;
  case 2: PicDefaultValues->show(); break;
  default: break;
  }
}

QString DlgPageProperties::GetFieldName(const QString &localPath) const {
  return classFields(*page_)->translatePath(localPath, hostapi::PathDirection::ToInternal);
}

bool DlgPageProperties::HasChanges() {
  if (!page_->IsTopPage() && page_->HideEmptyPage() != ChkHideEmptyPage->isChecked())
    return true;
  if (page_->StripeDetail() != ChkStripeDetail->isChecked() || page_->StripeFirst() != ChkStripeFirst->isChecked())
    return true;
  const auto sortFields = page_->SortFields();
  const int rows = LvwSortFields->topLevelItemCount();
  if (sortFields->Count() != rows)
    return true;
  for (int i = 0; i < rows; ++i) {
    const QTreeWidgetItem *row = LvwSortFields->topLevelItem(i);
    const auto stored = sortFields->Item(i + 1);
    if (GetFieldName(row->text(0)) != stored->Name || row->data(0, kRowTag).toInt() != stored->SortOrder)
      return true;
  }
  const auto fields = page_->Fields();
  for (int i = 0; i < LvwDefault->topLevelItemCount(); ++i) {
    const QTreeWidgetItem *row = LvwDefault->topLevelItem(i);
    if (fields->Field(row->data(0, kRowTag).toString())->DefaultValue != row->text(1))
      return true;
  }
  return false;
}

void DlgPageProperties::CmdOK_Click() {
  try {
    SetBusyCursor();
    if (HasChanges()) {
      if (!page_->IsTopPage())
        page_->SetHideEmptyPage(ChkHideEmptyPage->isChecked());
      page_->SetStripeDetail(ChkStripeDetail->isChecked());
      page_->SetStripeFirst(ChkStripeFirst->isChecked());
      const auto sortFields = page_->SortFields();
      sortFields->RemoveAll();
      for (int i = 0; i < LvwSortFields->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = LvwSortFields->topLevelItem(i);
        sortFields->Add(GetFieldName(row->text(0)), std::int16_t(row->data(0, kRowTag).toInt()));
      }
      const auto fields = page_->Fields();
      for (int i = 0; i < LvwDefault->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = LvwDefault->topLevelItem(i);
        fields->Field(row->data(0, kRowTag).toString())->DefaultValue = row->text(1);
      }
      page_->SetModified(true);
    }
    ResetCursor();
    QDialog::accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageProperties.CmdOK_Click"));
  }
}

void DlgPageProperties::CmdCancel_Click() { QDialog::reject(); }

void DlgPageProperties::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
