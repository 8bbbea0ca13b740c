#include "engine/designer/PropertyList.h"

#include "engine/designer/DesignDialogs.h"
#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/PropertyEditors.h"
#include "engine/designer/PropertyValues.h"
#include "engine/model/Controls.h"
#include "engine/model/Font.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PropertyList");

QString sectionTypeLabel(const Section &section) {
  if (const DesignProperty *type = findDesignProperty(QStringLiteral("Type"), section))
    return valueText(*type, Variant(int(section.type())), 0);
  return section.typeName();
}

} // namespace

PropertyList::PropertyList(DesignerDocument &document, QWidget *parent)
    : QWidget(parent), document_(document), applier_(document) {
  setObjectName(QStringLiteral("PropertyList"));
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);

  target_ = new QLabel(this);
  target_->setObjectName(QStringLiteral("LblPropertyTarget"));
  target_->setStyleSheet(QStringLiteral("font-weight: bold; padding: 3px 4px;"));
  layout->addWidget(target_);

  scroll_ = new QScrollArea(this);
  scroll_->setObjectName(QStringLiteral("ScrollProperties"));
  scroll_->setWidgetResizable(true);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  layout->addWidget(scroll_, 1);

  message_ = new QLabel(this);
  message_->setObjectName(QStringLiteral("LblPropertyMessage"));
  message_->setWordWrap(true);
  message_->setStyleSheet(QStringLiteral("color: #b00000; padding: 2px 4px;"));
  message_->hide();
  layout->addWidget(message_);

  help_ = new QLabel(this);
  help_->setObjectName(QStringLiteral("LblPropertyHelp"));
  help_->setWordWrap(true);
  help_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  help_->setFrameShape(QFrame::StyledPanel);
  help_->setMinimumHeight(help_->fontMetrics().lineSpacing() * 3 + 8);
  help_->setStyleSheet(QStringLiteral("padding: 3px 4px;"));
  help_->setText(designerText("<span style='color: gray'>Click a property to read what it does.</span>"));
  layout->addWidget(help_);

  connect(&document_, &DesignerDocument::selectionChanged, this, [this] {
    clearProblem();
    updateRows(true);
  });
  connect(&document_, &DesignerDocument::layoutChanged, this, [this] { updateRows(false); });
  focusWatch_ = connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { followFocus(now); });
  updateRows(true);
}

// The focus moves while the widget part of this object goes away, when no
// member of the list may run any more: the watch ends first.
PropertyList::~PropertyList() { disconnect(focusWatch_); }

void PropertyList::setRulerUnits(int units) {
  rulerUnits_ = units == RulerUnits::Centimetres ? RulerUnits::Centimetres : RulerUnits::Inches;
  updateRows(true);
}

// ---- Handlers ----

bool PropertyList::setValue(const QString &name, const QString &text) {
  try {
    const Row *row = findRow(name);
    if (!row)
      raiseError(ErrorNumber::InvalidCall, kSource, designerText("What is selected has no property %1").arg(name));
    const DesignProperty &property = *row->property;
    const auto outcome = applier_.apply(property, valueFromText(property, text, rulerUnits_));
    clearProblem();
    if (outcome == PropertyApplier::Outcome::Cancelled) {
      message_->setText(designerText("%1: the change was cancelled").arg(property.name));
      message_->show();
    }
    // The row as the layout has it now, also when the value was already so
    // and the text typed was another way of writing it.
    if (const Row *now = findRow(name))
      showRow(*now, true);
    return outcome != PropertyApplier::Outcome::Cancelled;
  } catch (...) {
    showProblem(name, pendingError().description());
    return false;
  }
}

bool PropertyList::chooseValue(const QString &name) {
  try {
    const Row *row = findRow(name);
    if (!row || !hasDialog(*row->property))
      raiseError(ErrorNumber::InvalidCall, kSource, designerText("%1 has no dialog to choose it with").arg(name));
    const DesignProperty &property = *row->property;
    const std::optional<Variant> value = commonValue(property);
    std::optional<QString> text;
    if (property.type == PropertyType::Color) {
      const QColor initial = value ? colorFromVb(value->toLong()) : QColor(Qt::black);
      if (const auto color = askColor(initial, property.name))
        text = color->name();
    } else if (property.type == PropertyType::Font) {
      const auto font = value ? objectAs<FontObject>(*value) : nullptr;
      if (const auto chosen = askFont(font ? font->font() : FontObject::defaultFont(), property.name))
        text = valueText(property, Variant(ObjectRef(std::make_shared<FontObject>(*chosen))), rulerUnits_);
    } else if (const auto path = askPictureFile()) {
      text = *path;
    }
    return text && setValue(name, *text);
  } catch (...) {
    showProblem(name, pendingError().description());
    return false;
  }
}

void PropertyList::refresh() { updateRows(false); }

// ---- What the list shows ----

QStringList PropertyList::propertyNames() const {
  QStringList names;
  for (const Row &row : rows_)
    names << row.property->name;
  return names;
}

QString PropertyList::shownText(const QString &property) const {
  const Row *row = findRow(property);
  return row ? row->editor->text() : QString();
}

PropertyEditor *PropertyList::editor(const QString &property) const {
  const Row *row = findRow(property);
  return row ? row->editor : nullptr;
}

QString PropertyList::message() const { return message_->text(); }

// ---- Rows ----

std::vector<const DesignProperty *> PropertyList::shownProperties() const {
  return commonProperties(applier_.targets());
}

const PropertyList::Row *PropertyList::findRow(const QString &property) const {
  for (const Row &row : rows_)
    if (row.property->name.compare(property, Qt::CaseInsensitive) == 0)
      return &row;
  return nullptr;
}

void PropertyList::updateRows(bool evenWhileEditing) {
  try {
    const std::vector<const DesignProperty *> properties = shownProperties();
    bool same = properties.size() == rows_.size();
    for (std::size_t i = 0; same && i < rows_.size(); ++i)
      same = rows_[i].property == properties[i];
    if (!same)
      rebuild(properties);
    for (const Row &row : rows_)
      showRow(row, evenWhileEditing);
    target_->setText(describeTargets());
  } catch (...) {
    showProblem(QString(), pendingError().description());
  }
}

void PropertyList::rebuild(const std::vector<const DesignProperty *> &properties) {
  // The row being edited stays the one being edited where the new rows
  // have it.
  QString focused;
  for (const Row &row : rows_)
    if (row.editor->isAncestorOf(QApplication::focusWidget()))
      focused = row.property->name;
  rows_.clear();
  // The old rows may be in the middle of handling an event: they go once
  // it has ended.
  if (QWidget *old = scroll_->takeWidget()) {
    old->hide();
    old->deleteLater();
  }
  rowsHost_ = new QWidget;
  rowsHost_->setObjectName(QStringLiteral("PropertyRows"));
  auto *grid = new QGridLayout(rowsHost_);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(1, 1);
  QString category;
  int line = 0;
  for (const DesignProperty *property : properties) {
    if (property->category != category) {
      category = property->category;
      auto *header = new QLabel(designerText(category), rowsHost_);
      header->setObjectName(QStringLiteral("LblCategory") + category);
      header->setStyleSheet(QStringLiteral("font-weight: bold; background: palette(midlight); padding: 2px 4px;"));
      grid->addWidget(header, line++, 0, 1, 2);
    }
    auto *label = new QLabel(property->name, rowsHost_);
    label->setObjectName(QStringLiteral("LblProp") + property->name);
    const QString description = designerText(property->description);
    label->setToolTip(description);
    label->setContentsMargins(8, 0, 0, 0);
    label->setEnabled(!property->readOnly);
    PropertyEditor *editor = PropertyEditor::create(*property, rowsHost_);
    editor->setToolTip(description);
    label->setBuddy(editor);
    const QString name = property->name;
    editor->commit = [this, name](const QString &text) { setValue(name, text); };
    if (hasDialog(*property))
      editor->choose = [this, name] { chooseValue(name); };
    editor->reverted = [this] { clearProblem(); };
    grid->addWidget(label, line, 0);
    grid->addWidget(editor, line++, 1);
    rows_.push_back({property, label, editor});
  }
  grid->setRowStretch(line, 1);
  scroll_->setWidget(rowsHost_);
  if (const Row *row = findRow(focused))
    row->editor->setFocus();
}

void PropertyList::showRow(const Row &row, bool evenWhileEditing) {
  if (row.editor->isEditing() && !evenWhileEditing)
    return;
  std::optional<QString> text;
  Variant value;
  try {
    if (const auto common = commonValue(*row.property)) {
      value = *common;
      text = valueText(*row.property, value, rulerUnits_);
    }
  } catch (...) {
    // A value that cannot be read is shown blank, as values that differ.
  }
  row.editor->setRefused(false);
  row.editor->showValue(text, value);
  if (row.property->suggestions)
    row.editor->setSuggestions(row.property->suggestions(*document_.report()));
}

std::optional<Variant> PropertyList::commonValue(const DesignProperty &property) const {
  std::optional<Variant> common;
  for (const ObjectRef &object : applier_.targets()) {
    if (!property.appliesToObject(*object))
      continue;
    Variant value = property.read(*object);
    if (!common)
      common = std::move(value);
    else if (!sameValue(property, *common, value))
      return std::nullopt;
  }
  return common ? common : std::optional<Variant>(Variant());
}

QString PropertyList::describeTargets() const {
  const auto sections = document_.selectedSections();
  const auto controls = document_.selectedControls();
  if (controls.size() == 1)
    return QStringLiteral("%1 (%2)").arg(controls.front()->name, kindText(*controls.front()));
  if (sections.size() == 1)
    return QStringLiteral("%1 (%2)").arg(sections.front()->name, sectionTypeLabel(*sections.front()));
  if (!controls.empty())
    return designerText("%n controls", int(controls.size()));
  if (!sections.empty())
    return designerText("%n sections", int(sections.size()));
  return designerText("Report");
}

// ---- Messages and help ----

void PropertyList::showProblem(const QString &property, const QString &problem) {
  message_->setText(property.isEmpty() ? problem : QStringLiteral("%1: %2").arg(property, problem));
  message_->show();
  if (const Row *row = findRow(property))
    row->editor->setRefused(true);
}

void PropertyList::clearProblem() {
  message_->clear();
  message_->hide();
  for (const Row &row : rows_)
    row.editor->setRefused(false);
}

void PropertyList::followFocus(QWidget *now) {
  for (const Row &row : rows_)
    if (now && (row.editor == now || row.editor->isAncestorOf(now))) {
      help_->setText(QStringLiteral("<b>%1</b><br>%2")
                         .arg(row.property->name, designerText(row.property->description).toHtmlEscaped()));
      return;
    }
}

} // namespace kordel::engine
