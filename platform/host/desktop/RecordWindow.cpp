#include "desktop/RecordWindow.h"

#include "desktop/DesktopText.h"
#include "desktop/ReportsMenu.h"

#include "host/HostApplication.h"

#include "nuvo/Catalog.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/ExplorerObject.h"
#include "nuvo/FilterObject.h"
#include "nuvo/ListQuery.h"

#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/Filters.h"
#include "hostapi/Records.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollArea>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace kordel::host::desktop {

namespace {

namespace FT = hostapi::FieldType;

// A related list shows this many rows and says how many more there are.
constexpr int kRelatedRowsShown = 1000;
constexpr int kRecordId = Qt::UserRole;

QString localNameOf(const nuvo::LocalTexts &texts, const QString &language, const QString &fallback) {
  const QString local = texts.get(language);
  return local.isEmpty() ? fallback : local;
}

} // namespace

RecordWindow::RecordWindow(HostApplication &application, ReportActions &actions, const QString &className, int id,
                           QWidget *parent)
    : QWidget(parent), application_(application), id_(id) {
  setObjectName(QStringLiteral("RecordWindow"));
  inspector_ =
      std::make_shared<nuvo::InspectorObject>(nuvo::engineOf(ObjectRef(application.database())), className, id);
  const auto cls = inspector_->inspectorClass();
  setWindowTitle(QStringLiteral("%1 - %2").arg(inspector_->record()->description(), cls->localName()));

  MenuBar = new QMenuBar(this);
  MenuBar->setObjectName(QStringLiteral("MenuBar"));
  MnuReports = new ReportsMenu(
      actions,
      [this] {
        return ReportScope{inspector_->inspectorClass(), nullptr, inspector_};
      },
      MenuBar);
  MenuBar->addMenu(MnuReports);

  TabRecord = new QTabWidget(this);
  TabRecord->setObjectName(QStringLiteral("TabRecord"));
  auto *scroll = new QScrollArea(TabRecord);
  scroll->setWidgetResizable(true);
  auto *page = new QWidget(scroll);
  fields_ = new QFormLayout(page);
  scroll->setWidget(page);
  TabRecord->addTab(scroll, desktopText("&Fields"));

  auto *layout = new QVBoxLayout(this);
  layout->setMenuBar(MenuBar);
  layout->addWidget(TabRecord);
  fillFields();
  fillRelations();
}

RecordWindow::~RecordWindow() = default;

void RecordWindow::fillFields() {
  const auto engine = nuvo::engineOf(ObjectRef(application_.database()));
  const nuvo::ClassDef &cls = engine->classNamed(inspector_->inspectorClass()->name());
  const auto record = inspector_->record();
  for (const auto &field : cls.fields) {
    if (field->hidden || field->type == FT::RelationToMany)
      continue;
    auto *value = new QLineEdit(record->text(field->name));
    value->setReadOnly(true);
    value->setObjectName(QStringLiteral("Txt_") + field->name);
    auto *label = new QLabel(localNameOf(field->localNames, engine->language(), field->name) + u':');
    label->setBuddy(value);
    fields_->addRow(label, value);
  }
}

void RecordWindow::fillRelations() {
  const auto engine = nuvo::engineOf(ObjectRef(application_.database()));
  const nuvo::ClassDef &cls = engine->classNamed(inspector_->inspectorClass()->name());
  for (const auto &field : cls.fields) {
    if (field->hidden || field->type != FT::RelationToMany || !field->relatedClass || !field->relatedField)
      continue;
    const nuvo::ListQuery related(engine, field->relatedClass->name);
    auto filter = std::make_shared<nuvo::FilterObject>();
    filter->addCondition(field->relatedField->name, Variant(id_), hostapi::ConditionOp::Equal, 0);
    const std::vector<int> ids = related.ids(filter);
    const std::vector<int> shown(ids.begin(), ids.begin() + std::min<std::ptrdiff_t>(ids.size(), kRelatedRowsShown));

    auto *list = new QTreeWidget(TabRecord);
    list->setObjectName(QStringLiteral("LvwRelated_") + field->name);
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->setUniformRowHeights(true);
    QStringList heads;
    for (int column = 0; column < related.columnCount(); ++column)
      heads << related.columnTitle(column);
    list->setHeaderLabels(heads);
    const std::vector<QStringList> texts = related.texts(shown);
    for (std::size_t i = 0; i < shown.size(); ++i) {
      auto *row = new QTreeWidgetItem(list, texts[i]);
      row->setData(0, kRecordId, shown[i]);
    }
    list->header()->resizeSections(QHeaderView::ResizeToContents);
    connect(list, &QTreeWidget::itemActivated, this, [this, list] { LvwRelated_DblClick(*list); });

    QWidget *tab = list;
    if (ids.size() > shown.size()) {
      tab = new QWidget(TabRecord);
      auto *column = new QVBoxLayout(tab);
      column->addWidget(list);
      column->addWidget(new QLabel(desktopText("The first %1 of %2 are listed.").arg(shown.size()).arg(ids.size())));
    }
    const QString title = localNameOf(field->localNames, engine->language(), field->name);
    TabRecord->addTab(tab, QStringLiteral("%1 (%2)").arg(title).arg(ids.size()));
    list->setProperty("relatedClass", field->relatedClass->name);
  }
}

void RecordWindow::LvwRelated_DblClick(QTreeWidget &list) {
  const QTreeWidgetItem *row = list.currentItem();
  if (row)
    emit openRecord(list.property("relatedClass").toString(), row->data(0, kRecordId).toInt());
}

} // namespace kordel::host::desktop
