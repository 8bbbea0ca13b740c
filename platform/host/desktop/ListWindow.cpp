#include "desktop/ListWindow.h"

#include "desktop/DesktopFeedback.h"
#include "desktop/DesktopText.h"
#include "desktop/RecordListModel.h"
#include "desktop/ReportsMenu.h"

#include "host/HostApplication.h"
#include "host/SettingsObject.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/ExplorerObject.h"

#include "hostapi/Classes.h"
#include "hostapi/Filters.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace kordel::host::desktop {

namespace {} // namespace

ListWindow::ListWindow(HostApplication &application, ReportActions &actions, const QString &className, QWidget *parent)
    : QWidget(parent), application_(application) {
  setObjectName(QStringLiteral("ListWindow"));
  {
    WaitCursor busy;
    explorer_ = std::make_shared<nuvo::ExplorerObject>(nuvo::engineOf(ObjectRef(application.database())), className);
  }
  explorer_->setSettings(std::make_shared<SettingsObject>(
      application.settings(), QStringLiteral("Explorers\\") + explorer_->explorerClass()->name()));
  setWindowTitle(explorer_->explorerClass()->localName());

  MenuBar = new QMenuBar(this);
  MenuBar->setObjectName(QStringLiteral("MenuBar"));
  MnuReports = new ReportsMenu(
      actions,
      [this] {
        return ReportScope{explorer_->explorerClass(), explorer_, nullptr};
      },
      MenuBar);
  MenuBar->addMenu(MnuReports);

  auto *filterLabel = new QLabel(desktopText("&Filter:"), this);
  CboFilter = new QComboBox(this);
  CboFilter->setObjectName(QStringLiteral("CboFilter"));
  CboFilter->setMinimumContentsLength(20);
  filterLabel->setBuddy(CboFilter);
  auto *searchLabel = new QLabel(desktopText("&Search:"), this);
  TxtSearch = new QLineEdit(this);
  TxtSearch->setObjectName(QStringLiteral("TxtSearch"));
  TxtSearch->setClearButtonEnabled(true);
  TxtSearch->setPlaceholderText(desktopText("Text in any column"));
  searchLabel->setBuddy(TxtSearch);

  model_ = new RecordListModel(explorer_, this);
  GridRecords = new QTableView(this);
  GridRecords->setObjectName(QStringLiteral("GridRecords"));
  GridRecords->setModel(model_);
  GridRecords->setSelectionBehavior(QAbstractItemView::SelectRows);
  GridRecords->setSelectionMode(QAbstractItemView::ExtendedSelection);
  GridRecords->setEditTriggers(QAbstractItemView::NoEditTriggers);
  GridRecords->setAlternatingRowColors(true);
  GridRecords->setWordWrap(false);
  // Rows of one height: the view then needs no texts to lay itself out.
  GridRecords->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  GridRecords->verticalHeader()->setDefaultSectionSize(GridRecords->fontMetrics().height() + 6);
  GridRecords->verticalHeader()->hide();
  GridRecords->horizontalHeader()->setSectionsClickable(true);
  GridRecords->horizontalHeader()->setSortIndicatorShown(true);
  GridRecords->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
  GridRecords->horizontalHeader()->setDefaultSectionSize(140);
  GridRecords->horizontalHeader()->setStretchLastSection(true);
  LblCount = new QLabel(this);
  LblCount->setObjectName(QStringLiteral("LblCount"));

  auto *bar = new QHBoxLayout;
  bar->addWidget(filterLabel);
  bar->addWidget(CboFilter);
  bar->addSpacing(12);
  bar->addWidget(searchLabel);
  bar->addWidget(TxtSearch, 1);
  auto *layout = new QVBoxLayout(this);
  layout->setMenuBar(MenuBar);
  layout->addLayout(bar);
  layout->addWidget(GridRecords, 1);
  layout->addWidget(LblCount);

  searchDelay_ = new QTimer(this);
  searchDelay_->setSingleShot(true);
  searchDelay_->setInterval(250);
  fillFilters();
  showCount();

  connect(CboFilter, &QComboBox::activated, this, [this] { CboFilter_Click(); });
  connect(TxtSearch, &QLineEdit::textEdited, searchDelay_, qOverload<>(&QTimer::start));
  connect(searchDelay_, &QTimer::timeout, this, [this] { TxtSearch_Change(); });
  connect(GridRecords->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
          [this](int column, Qt::SortOrder order) {
            try {
              WaitCursor busy;
              model_->sort(column, order);
              showCount();
            } catch (...) {
              tellFailure(desktopText("The list could not be sorted."), windowTitle());
            }
          });
  connect(GridRecords->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { GridRecords_SelectionChanged(); });
  connect(GridRecords, &QTableView::doubleClicked, this, [this] { GridRecords_DblClick(); });
  connect(GridRecords, &QTableView::activated, this, [this] { GridRecords_DblClick(); });
}

ListWindow::~ListWindow() = default;

QString ListWindow::className() const { return explorer_->explorerClass()->name(); }

void ListWindow::fillFilters() {
  CboFilter->clear();
  CboFilter->addItem(desktopText("All records"), QString());
  const auto filters = explorer_->filters();
  const auto walk = filters->enumerate();
  for (Variant item; walk->next(item);)
    if (const auto filter = objectAs<hostapi::Filter>(item))
      CboFilter->addItem(filter->localName(), filter->name());
}

void ListWindow::showCount() {
  const std::size_t listed = explorer_->listedIds().size();
  const std::size_t selected = explorer_->selectedIds().size();
  QString text = desktopText("%1 records").arg(QLocale().toString(qulonglong(listed)));
  if (selected > 0)
    text += QStringLiteral(", ") + desktopText("%1 selected").arg(QLocale().toString(qulonglong(selected)));
  LblCount->setText(text);
}

void ListWindow::CboFilter_Click() {
  try {
    WaitCursor busy;
    const QString name = CboFilter->currentData().toString();
    std::shared_ptr<hostapi::Filter> filter;
    if (!name.isEmpty())
      filter = explorer_->filters()->lookup(name, hostapi::FilterLookup::ByName);
    explorer_->setActiveFilter(filter);
    model_->reload();
    showCount();
  } catch (...) {
    tellFailure(desktopText("The filter could not be applied."), windowTitle());
  }
}

void ListWindow::TxtSearch_Change() {
  try {
    WaitCursor busy;
    model_->search(TxtSearch->text().trimmed());
    showCount();
  } catch (...) {
    tellFailure(desktopText("The list could not be searched."), windowTitle());
  }
}

void ListWindow::GridRecords_SelectionChanged() {
  try {
    std::vector<int> ids;
    for (const QModelIndex &row : GridRecords->selectionModel()->selectedRows())
      ids.push_back(model_->recordId(row.row()));
    explorer_->select(ids);
    showCount();
  } catch (...) {
    tellFailure(desktopText("The selection could not be read."), windowTitle());
  }
}

void ListWindow::GridRecords_DblClick() {
  const QModelIndex current = GridRecords->currentIndex();
  if (current.isValid())
    emit openRecord(className(), model_->recordId(current.row()));
}

void ListWindow::SelectRecords(const std::vector<int> &ids) {
  QItemSelection selection;
  for (const int id : ids) {
    const int row = model_->rowOf(id);
    if (row >= 0)
      selection.select(model_->index(row, 0), model_->index(row, model_->columnCount() - 1));
  }
  GridRecords->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

} // namespace kordel::host::desktop
