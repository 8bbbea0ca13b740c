#include "dialogs/PrintSource.h"

#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Format.h"
#include "data/ContextManager.h"
#include "dialogs/DialogParts.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/StringCollection.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Filters.h"
#include "hostapi/ReportContext.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QRadioButton>
#include <QSet>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace kordel::addin {

namespace {

const QString kSection = QStringLiteral("PrintSource");
const QString kSubFilters = QStringLiteral("SubFilters");
constexpr int kTwipsPerPixel = 15;
// Where a row of LvwMappings keeps its page's guid.
constexpr int kRowKey = Qt::UserRole;

QString message(const char *item, const QString &arg = {}) {
  return GetMessage(kSection + u'.' + QLatin1String(item), arg);
}

QString countText(std::int32_t count) { return formatValue(Variant(count), QStringLiteral("#,0")); }

std::shared_ptr<hostapi::Filters> classFilters(const Page &page) {
  const auto pageClass = page.Class();
  return pageClass ? pageClass->filters() : nullptr;
}

[[noreturn]] void raiseUserError(const char *item) {
  raiseError(ErrorNumber::UserMessage, QStringLiteral("PrintSource.GetContext"), message(item));
}

} // namespace

PrintSource::PrintSource(QWidget *parent) : QWidget(parent) {
  setObjectName(kSection);
  TabPrintSource = named<QTabBar>("TabPrintSource", this);
  TabPrintSource->addTab(QString());
  TabPrintSource->addTab(QString());
  TabPrintSource->setExpanding(false);
  buildRowsTab();
  buildMappingsTab();
  // The two frames share one place; the tab shows one of them.
  auto *frames = new QGridLayout;
  frames->addWidget(FmePrint1, 0, 0);
  frames->addWidget(FmePrint2, 0, 0);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(TabPrintSource);
  layout->addLayout(frames, 1);
  FmePrint2->hide();

  connect(TabPrintSource, &QTabBar::currentChanged, this, [this] { TabPrintSource_Click(); });
  for (QRadioButton *option : {Opt1, Opt2, Opt3})
    connect(option, &QRadioButton::toggled, this, [this] { Opt_Click(); });
  connect(CboFilters1, &QComboBox::currentIndexChanged, this, [this] { CboFilters1_Click(); });
  connect(LvwMappings, &QTreeWidget::currentItemChanged, this, [this] { LvwMappings_ItemClick(); });
  connect(LvwMappings, &QTreeWidget::itemClicked, this, [this] { LvwMappings_ItemClick(); });
  connect(CboFilters2, &QComboBox::currentIndexChanged, this, [this] { CboFilters2_Click(); });
}

void PrintSource::buildRowsTab() {
  FmePrint1 = named<QGroupBox>("FmePrint1", this);
  PicPrint1 = named<QWidget>("PicPrint1", FmePrint1);
  Opt1 = named<QRadioButton>("Opt1", PicPrint1);
  Opt2 = named<QRadioButton>("Opt2", PicPrint1);
  Opt3 = named<QRadioButton>("Opt3", PicPrint1);
  CboFilters1 = named<QComboBox>("CboFilters1", PicPrint1);
  CboFilters1->setMinimumContentsLength(20);
  CboFilters1->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  lblContextName = named<QLabel>("lblContextName", PicPrint1);
  lblContextName->setBuddy(Opt1);

  rowsGrid_ = new QGridLayout(PicPrint1);
  rowsGrid_->setContentsMargins(0, 0, 0, 0);
  rowsGrid_->addWidget(Opt1, 0, 0);
  rowsGrid_->addWidget(lblContextName, 0, 1);
  rowsGrid_->addWidget(Opt2, 1, 0, 1, 2);
  rowsGrid_->addWidget(Opt3, 2, 0);
  rowsGrid_->addWidget(CboFilters1, 2, 1);
  rowsGrid_->setColumnStretch(1, 1);
  rowsGrid_->setRowStretch(3, 1);
  auto *frame = new QVBoxLayout(FmePrint1);
  frame->addWidget(PicPrint1);
}

void PrintSource::buildMappingsTab() {
  FmePrint2 = named<QGroupBox>("FmePrint2", this);
  LvwMappings = named<QTreeWidget>("LvwMappings", FmePrint2);
  LvwMappings->setColumnCount(2);
  LvwMappings->setRootIsDecorated(false);
  LvwMappings->setUniformRowHeights(true);
  LvwMappings->setAllColumnsShowFocus(true);
  LvwMappings->setSelectionMode(QAbstractItemView::SingleSelection);
  LvwMappings->header()->setSectionsMovable(false);
  LvwMappings->header()->setStretchLastSection(false);
  CboFilters2 = named<QComboBox>("CboFilters2", FmePrint2);
  auto *frame = new QVBoxLayout(FmePrint2);
  frame->addWidget(LvwMappings, 1);
  frame->addWidget(CboFilters2);
}

void PrintSource::Activate(std::shared_ptr<addin::Report> report, std::shared_ptr<addin::ContextManager> manager) {
  report_ = std::move(report);
  contextManager_ = std::move(manager);
  translateCaptions();
  TabPrintSource->setCurrentIndex(0);
  TabPrintSource_Click();

  for (QRadioButton *option : {Opt1, Opt2, Opt3}) {
    option->setVisible(false);
    option->setEnabled(false);
  }
  CboFilters1->setVisible(false);
  lblContextName->setVisible(false);

  switch (contextManager_->RangeType()) {
  case RangeExplorer: SetupExplorerRange(); break;
  case RangeFilter:
  case RangeInspector:
  case RangePool:
    // A fixed range: one choice, named by the label beside it.
    Opt1->setText(QString());
    Opt1->setFixedWidth(195 / kTwipsPerPixel);
    lblContextName->setText(contextManager_->Name());
    lblContextName->setVisible(true);
    Opt1->setVisible(true);
    Opt1->setEnabled(true);
    Opt1->setChecked(true);
    break;
  default: break;
  }
  loadMappings();
}

void PrintSource::translateCaptions() {
  TranslateControls(kSection, findChildren<QObject *>());
  TabPrintSource->setTabText(0, message("Tab1"));
  TabPrintSource->setTabText(1, message("Tab2"));
  FmePrint1->setTitle(message("FmePrint"));
  FmePrint2->setTitle(message("FmePrint"));
  LvwMappings->setHeaderLabels({message("PageColumn"), message("FilterColumn")});
  noFilterText_ = message("NoFilter");
}

void PrintSource::SetupExplorerRange() {
  filterNames_.clear();
  {
    // Filling the list is no choice; the choice comes below.
    const QSignalBlocker quiet(CboFilters1);
    CboFilters1->clear();
    if (const auto filters = contextManager_->RangeFilters()) {
      const auto walk = filters->enumerate();
      Variant entry;
      while (walk->next(entry)) {
        const auto filter = std::dynamic_pointer_cast<hostapi::Filter>(entry.rawObject());
        if (!filter || filterNames_.contains(filter->localName()))
          continue;
        CboFilters1->addItem(filter->localName());
        filterNames_.insert(filter->localName(), filter->name());
      }
    }
    CboFilters1->setCurrentIndex(-1);
  }

  if (contextManager_->IsRangeActiveExplorer()) {
    const std::int32_t selected = contextManager_->GetRangeCount(RangeCountSelected);
    Opt1->setText(message("Selected", countText(selected)));
    Opt1->setVisible(true);
    if (selected > 0) {
      Opt1->setEnabled(true);
      Opt1->setChecked(true);
    }
    const std::int32_t all = contextManager_->GetRangeCount(RangeCountAll);
    Opt2->setText(message("All", countText(all)));
    Opt2->setVisible(true);
    if (all > 0) {
      Opt2->setEnabled(true);
      if (!Opt1->isEnabled())
        Opt2->setChecked(true);
    }
    Opt3->setText(message("Filter"));
    Opt3->setVisible(true);
    if (CboFilters1->count() > 0) {
      Opt3->setEnabled(true);
      if (!Opt1->isEnabled() && !Opt2->isEnabled())
        Opt3->setChecked(true);
      CboFilters1->setVisible(true);
    }
    CboFilters1->setEnabled(Opt3->isEnabled() && Opt3->isChecked());
    // The window's filter by its stored name, which the list holds only
    // where it matches a shown name; otherwise the first.
    QString activeName;
    try {
      const auto window = std::dynamic_pointer_cast<hostapi::Explorer>(contextManager_->Range());
      if (const auto active = window ? window->activeFilter() : nullptr)
        activeName = active->name();
    } catch (...) {
      // Offering the filters matters more than which one comes first.
    }
    SelectComboItem(*CboFilters1, activeName, 0);
    return;
  }

  // Another window than the active one: only its filters, on the first row.
  placeRowControl(Opt3, 0, 0);
  placeRowControl(CboFilters1, 0, 1);
  Opt3->setText(message("Filter"));
  Opt3->setVisible(true);
  Opt3->setEnabled(true);
  Opt3->setChecked(true);
  CboFilters1->setVisible(true);
  CboFilters1->setEnabled(true);
  if (CboFilters1->count() > 0)
    CboFilters1->setCurrentIndex(0);
}

void PrintSource::placeRowControl(QWidget *control, int row, int column) {
  rowsGrid_->removeWidget(control);
  rowsGrid_->addWidget(control, row, column);
}

void PrintSource::Opt_Click() {
  if (!Opt3->isHidden())
    CboFilters1->setEnabled(Opt3->isChecked());
}

void PrintSource::CboFilters1_Click() {
  try {
    if (CboFilters1->currentIndex() < 0)
      return;
    SetBusyCursor();
    const QString name = filterNames_.value(CboFilters1->currentText());
    const std::int32_t count = contextManager_->GetFilterHitCount(name);
    Opt3->setText(message("FilterAndCount", countText(count)));
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("PrintSource.CboFilters1_Click"));
  }
}

void PrintSource::loadMappings() {
  CboFilters2->setEnabled(false);
  LvwMappings->clear();
  providedFilters_.clear();
  LvwMappings->setFocusPolicy(Qt::NoFocus);
  const auto guids = report_->PageGuids();
  if (!guids || guids->Count() == 0)
    return;
  const auto top = report_->Page();
  for (int i = 1; i <= guids->Count(); ++i) {
    const auto page = report_->LookupPage(guids->Item(i));
    if (!page || page == top)
      continue;
    auto *row = new QTreeWidgetItem(LvwMappings, {page->Name(), mappedFilterText(*page)});
    row->setData(0, kRowKey, page->Guid());
  }
  // Only a list with rows takes the focus.
  LvwMappings->setFocusPolicy(Qt::StrongFocus);
  CboFilters2->setEnabled(false);
}

std::shared_ptr<hostapi::Filter> PrintSource::providedFilter(const Page &page) const {
  for (const QString &name : {page.Guid(), page.Name()}) {
    const Variant value = contextManager_->GetProperty(name);
    if (value.isObject())
      if (auto filter = std::dynamic_pointer_cast<hostapi::Filter>(value.rawObject()))
        return filter;
  }
  return nullptr;
}

QString PrintSource::mappedFilterText(const Page &page) {
  QString text;
  if (const auto provided = providedFilter(page)) {
    text = provided->localName();
    if (text.isEmpty())
      text = message("ProvidedSubFilter");
    providedFilters_.insert(page.Guid(), text);
  } else {
    const QString stored = ReadReportSetting(report_->Name(), kSubFilters, page.Guid(), QString()).toString();
    const auto filters = stored.isEmpty() ? nullptr : classFilters(page);
    if (filters) {
      auto filter = filters->lookup(stored, hostapi::FilterLookup::ByName);
      if (!filter)
        filter = filters->lookup(stored, hostapi::FilterLookup::ByLocalName);
      if (filter)
        text = filter->localName();
    }
  }
  return text.isEmpty() ? noFilterText_ : text;
}

void PrintSource::LvwMappings_ItemClick() {
  try {
    QTreeWidgetItem *row = LvwMappings->currentItem();
    if (!row)
      return;
    SetBusyCursor();
    const QSignalBlocker quiet(CboFilters2);
    CboFilters2->clear();
    const QString guid = row->data(0, kRowKey).toString();
    if (providedFilters_.contains(guid)) {
      CboFilters2->addItem(row->text(1));
      CboFilters2->setCurrentIndex(0);
      CboFilters2->setEnabled(false);
    } else {
      CboFilters2->addItem(noFilterText_);
      const auto page = report_->LookupPage(guid);
      const auto filters = page ? classFilters(*page) : nullptr;
      if (filters) {
        QSet<QString> listed;
        const auto walk = filters->enumerate();
        Variant entry;
        while (walk->next(entry)) {
          const auto filter = std::dynamic_pointer_cast<hostapi::Filter>(entry.rawObject());
          if (!filter || listed.contains(filter->localName()))
            continue;
          listed.insert(filter->localName());
          CboFilters2->addItem(filter->localName());
        }
      }
      CboFilters2->setEnabled(true);
      SelectComboItem(*CboFilters2, row->text(1), -1);
    }
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("PrintSource.LvwMappings_ItemClick"));
  }
}

void PrintSource::CboFilters2_Click() {
  try {
    QTreeWidgetItem *row = LvwMappings->currentItem();
    if (row && CboFilters2->currentIndex() >= 0)
      row->setText(1, CboFilters2->currentText());
  } catch (...) {
    ErrorMessage(QStringLiteral("FilterSelector.CboFilters_Change"));
  }
}

std::shared_ptr<hostapi::ReportContext> PrintSource::GetContext() {
  int kind = 0;
  QString filterName;
  if (contextManager_->RangeType() == RangeExplorer) {
    if (Opt1->isChecked()) {
      if (contextManager_->GetRangeCount(RangeCountSelected) == 0)
        raiseUserError("EmptySelection");
      kind = ContextFromSelection;
    } else if (Opt2->isChecked()) {
      kind = ContextFromAll;
    } else if (Opt3->isChecked()) {
      if (CboFilters1->currentIndex() < 0)
        raiseUserError("NoFilterSelected");
      filterName = filterNames_.value(CboFilters1->currentText());
      if (contextManager_->GetFilterHitCount(filterName) == 0)
        raiseUserError("EmptyFilter");
      kind = ContextFromFilter;
    }
  }
  storeMappings();
  return contextManager_->CreateContext(kind, filterName);
}

void PrintSource::storeMappings() {
  for (int i = 0; i < LvwMappings->topLevelItemCount(); ++i) {
    const QTreeWidgetItem *row = LvwMappings->topLevelItem(i);
    const QString guid = row->data(0, kRowKey).toString();
    const QString text = row->text(1);
    // No filter chosen leaves whatever the page had: on the context and
    // among the stored choices.
    if (providedFilters_.contains(guid) || text.isEmpty() || text.compare(noFilterText_, Qt::CaseInsensitive) == 0)
      continue;
    const auto page = report_->LookupPage(guid);
    const auto filters = page ? classFilters(*page) : nullptr;
    const auto filter = filters ? filters->lookup(text, hostapi::FilterLookup::ByLocalName) : nullptr;
    if (filter) {
      contextManager_->SetProperty(guid, Variant(ObjectRef(filter)));
      WriteReportSetting(report_->Name(), kSubFilters, guid, filter->name());
    } else {
      contextManager_->SetProperty(guid, Variant());
    }
  }
}

void PrintSource::TabPrintSource_Click() {
  const int tab = TabPrintSource->currentIndex();
  FmePrint1->setVisible(tab == 0);
  FmePrint2->setVisible(tab == 1);
  arrangeControls();
}

void PrintSource::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  arrangeControls();
}

void PrintSource::arrangeControls() {
  // The layouts fill the tab; the two columns share the list's width.
  const int width = LvwMappings->width() * kTwipsPerPixel;
  const int column = std::max(0, (width - 100) / 2 / kTwipsPerPixel);
  LvwMappings->setColumnWidth(0, column);
  LvwMappings->setColumnWidth(1, column);
}

} // namespace kordel::addin
