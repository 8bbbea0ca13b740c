#include "dialogs/FieldSelector.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "hostapi/FieldTypes.h"

#include <QCollator>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace kordel::addin {

namespace FT = hostapi::FieldType;

const QString FieldSelector::kPlaceholder = QStringLiteral("dummy_node");

namespace {

const QString kSource = QStringLiteral("FieldSelector");

// The local path of a node: the texts from the root down, joined by ".".
QString NodePath(const QTreeWidgetItem *node) {
  QStringList steps;
  for (const QTreeWidgetItem *step = node; step; step = step->parent())
    steps.prepend(step->text(0));
  return steps.join(u'.');
}

bool HoldsPlaceholder(const QTreeWidgetItem *node) {
  return node->childCount() == 1 && node->child(0)->text(0) == FieldSelector::kPlaceholder;
}

// Sorts as the user's language orders words, without regard to case, so
// that a Swedish list ends with Å, Ä and Ö.
void SortAlphabetically(QStringList &entries) {
  const auto application = CurrentApplication();
  const QString language = application ? application->language() : QString();
  QCollator collator(language.isEmpty() ? QLocale() : QLocale(language));
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  std::stable_sort(entries.begin(), entries.end(), collator);
}

// Whether a relation type is one of those a value of the two tables of
// LinkStyle and LinkSelect names: 0 both, 1 to one, 2 to many.
bool RelationMatches(std::int32_t value, int type) {
  switch (value) {
  case 0: return true;
  case 1: return type == FT::RelationToOne;
  case 2: return type == FT::RelationToMany;
  default: return false;
  }
}

} // namespace

FieldSelector::FieldSelector(QWidget *parent) : QWidget(parent), TvwFields(new QTreeWidget(this)) {
  TvwFields->setObjectName(QStringLiteral("TvwFields"));
  TvwFields->setHeaderHidden(true);
  TvwFields->setColumnCount(1);
  TvwFields->setUniformRowHeights(true);
  TvwFields->setSelectionMode(QAbstractItemView::SingleSelection);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(TvwFields);
  setFocusProxy(TvwFields);

  connect(TvwFields, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem *node) { TvwFields_Expand(node); });
  connect(TvwFields, &QTreeWidget::itemClicked, this, [this] { TvwFields_NodeClick(); });
  TvwFields->installEventFilter(this);
  TvwFields->viewport()->installEventFilter(this);
}

void FieldSelector::SetFields(std::shared_ptr<hostapi::Fields> fields) { fields_ = std::move(fields); }

void FieldSelector::SetExcludeFieldTypes(const Variant &array) {
  includeTypes_.clear();
  CopyFieldTypes(array, excludeTypes_);
}

void FieldSelector::SetIncludeFieldTypes(const Variant &array) {
  excludeTypes_.clear();
  CopyFieldTypes(array, includeTypes_);
}

void FieldSelector::CopyFieldTypes(const Variant &value, QHash<QString, int> &types) {
  try {
    if (!value.isArray())
      return;
    types.clear();
    for (const Variant &element : value.array().elements()) {
      const QString key = element.toString();
      if (!types.contains(key))
        types.insert(key, element.toLong());
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.CopyFieldTypes"));
  }
}

QTreeWidgetItem *FieldSelector::SelectedNode() const {
  const QList<QTreeWidgetItem *> selected = TvwFields->selectedItems();
  return selected.isEmpty() ? nullptr : selected.first();
}

std::shared_ptr<hostapi::Field> FieldSelector::FieldOfNode(const QTreeWidgetItem *node) const {
  const QString path = NodePath(node);
  if (path.isEmpty() || !fields_)
    return nullptr;
  return fields_->lookup(path, hostapi::LookupMode::Either);
}

std::shared_ptr<hostapi::Field> FieldSelector::Field() const {
  const QTreeWidgetItem *node = SelectedNode();
  return node ? FieldOfNode(node) : nullptr;
}

QString FieldSelector::FullLocalPath() const {
  const QTreeWidgetItem *node = SelectedNode();
  return node ? NodePath(node) : QString();
}

QString FieldSelector::FullPath() const {
  const QTreeWidgetItem *node = SelectedNode();
  if (!node || !fields_)
    return QString();
  return fields_->translatePath(NodePath(node), hostapi::PathDirection::ToInternal);
}

bool FieldSelector::IsShown(const hostapi::Field &field) const {
  if (field.hidden())
    return false;
  if (excludeTypes_.isEmpty() && includeTypes_.isEmpty())
    return true;
  const QString type = QString::number(field.type());
  if (excludeTypes_.isEmpty())
    return includeTypes_.contains(type);
  return !excludeTypes_.contains(type);
}

bool FieldSelector::Opens(const hostapi::Field &field) const {
  return hostapi::isRelationType(field.type()) && RelationMatches(linkStyle_, field.type());
}

bool FieldSelector::MayChoose(const hostapi::Field &field) const {
  return !hostapi::isRelationType(field.type()) || RelationMatches(linkSelect_, field.type());
}

void FieldSelector::SortLevel(hostapi::Fields &level) {
  LbFields.clear();
  LbLinkFields.clear();
  const auto fields = level.enumerate();
  Variant value;
  while (fields->next(value)) {
    const auto field = objectAs<hostapi::Field>(value);
    if (!field || !IsShown(*field))
      continue;
    (Opens(*field) ? LbLinkFields : LbFields) << field->localName();
  }
  SortAlphabetically(LbFields);
  SortAlphabetically(LbLinkFields);
}

void FieldSelector::AddLevel(QTreeWidgetItem *parent) {
  QList<QTreeWidgetItem *> nodes;
  nodes.reserve(LbFields.size() + LbLinkFields.size());
  for (const QString &text : std::as_const(LbFields))
    nodes << new QTreeWidgetItem(QStringList{text});
  for (const QString &text : std::as_const(LbLinkFields)) {
    auto *node = new QTreeWidgetItem(QStringList{text});
    node->addChild(new QTreeWidgetItem(QStringList{kPlaceholder}));
    nodes << node;
  }
  if (parent)
    parent->addChildren(nodes);
  else
    TvwFields->addTopLevelItems(nodes);
}

void FieldSelector::ShowFields() {
  try {
    if (!fields_)
      raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The field tree has no fields to show"));
    SortLevel(*fields_);
    AddLevel(nullptr);
    if (TvwFields->topLevelItemCount() > 0)
      TvwFields->setCurrentItem(TvwFields->topLevelItem(0));
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.ShowFields"));
  }
}

void FieldSelector::ListLinkedFields(QTreeWidgetItem *node) {
  try {
    const auto field = FieldOfNode(node);
    const auto related = field ? field->relatedField() : nullptr;
    if (!related)
      raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No relation at '%1'").arg(NodePath(node)));
    SortLevel(*related->fieldClass()->fields());
    AddLevel(node);
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.ShowFields"));
  }
}

void FieldSelector::TvwFields_Expand(QTreeWidgetItem *node) {
  try {
    SetBusyCursor();
    if (HoldsPlaceholder(node))
      delete node->takeChild(0);
    if (node->childCount() == 0)
      ListLinkedFields(node);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.TvwFields_Expand"));
  }
}

std::shared_ptr<Dictionary> FieldSelector::GetFieldsOnCurrentPath(bool includeLinks) {
  auto result = std::make_shared<Dictionary>();
  try {
    QTreeWidgetItem *node = SelectedNode();
    if (!node)
      raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No node is selected"));
    // The level to list: the node's children, or, for a node without, the
    // level the node stands in.
    QTreeWidgetItem *level = node;
    if (node->childCount() > 0) {
      if (HoldsPlaceholder(node)) {
        delete node->takeChild(0);
        ListLinkedFields(node);
      }
    } else {
      level = node->parent();
    }
    const int count = level ? level->childCount() : TvwFields->topLevelItemCount();
    for (int i = 0; i < count; ++i) {
      const QTreeWidgetItem *entry = level ? level->child(i) : TvwFields->topLevelItem(i);
      const auto field = FieldOfNode(entry);
      if (!field)
        raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No field at '%1'").arg(NodePath(entry)));
      if (hostapi::isRelationType(field->type()) && !includeLinks)
        continue;
      result->add(field->name(), NodePath(entry));
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.GetFieldsOnCurrentPath"));
  }
  return result;
}

bool FieldSelector::TestFieldBeforeEvent() {
  try {
    const auto field = Field();
    if (!field)
      raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("No field is selected"));
    return MayChoose(*field);
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.TestFieldBeforeEvent"));
    return false;
  }
}

void FieldSelector::Choose() {
  if (TestFieldBeforeEvent())
    emit FieldSelected();
}

void FieldSelector::OnSelect(const QPoint &point) {
  try {
    if (TvwFields->itemAt(point))
      Choose();
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.OnSelect"));
  }
}

bool FieldSelector::TvwFields_KeyDown(int key) {
  switch (key) {
  case Qt::Key_Space:
    if (SelectedNode())
      Choose();
    return true;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    // Without a node Enter goes on to the window's default button.
    if (!SelectedNode())
      return false;
    Choose();
    return true;
  case Qt::Key_Asterisk:
    // The tree would open every level below the node, and relations that
    // lead back to their class never end.
    return true;
  default: return false;
  }
}

void FieldSelector::TvwFields_NodeClick() { emit FieldSelChange(); }

bool FieldSelector::eventFilter(QObject *watched, QEvent *event) {
  try {
    if (watched == TvwFields && event->type() == QEvent::KeyPress) {
      const auto *key = static_cast<QKeyEvent *>(event);
      if ((key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier)
        return TvwFields_KeyDown(key->key());
    } else if (watched == TvwFields->viewport() &&
               (event->type() == QEvent::MouseButtonDblClick || event->type() == QEvent::MouseButtonRelease)) {
      const auto *mouse = static_cast<QMouseEvent *>(event);
      if (event->type() == QEvent::MouseButtonDblClick && mouse->button() == Qt::LeftButton) {
        releaseEndsDoubleClick_ = true;
        OnSelect(mouse->position().toPoint());
      } else if (event->type() == QEvent::MouseButtonRelease && mouse->button() == Qt::LeftButton) {
        // The release that ends a double click is no click of its own.
        if (releaseEndsDoubleClick_)
          releaseEndsDoubleClick_ = false;
        else if (singleClick_)
          OnSelect(mouse->position().toPoint());
      }
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("FieldSelector.OnSelect"));
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace kordel::addin
