#include "engine/designer/DesignerDocument.h"

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <algorithm>

namespace kordel::engine {

namespace {

// What a new layout is made of: page header, detail and page footer.
constexpr float kNewSectionHeight = 360;

QString nameOf(const Object &object) {
  if (const auto *section = dynamic_cast<const Section *>(&object))
    return section->name;
  if (const auto *control = dynamic_cast<const Control *>(&object))
    return control->name;
  return QString();
}

} // namespace

DesignerDocument::DesignerDocument() : report_(LayoutReport::create()) {
  // Sections and controls added or removed through the layout object (the
  // add-in inserting fields) come back here as a step of the history; a
  // layout loaded through it starts a new history, as one opened here.
  report_->setChangeListener([this](LayoutReport::OutsideChange change) {
    if (change == LayoutReport::OutsideChange::Refreshed) {
      noteOutsideChange();
      return;
    }
    selection_.clear();
    startHistory();
    emit selectionChanged();
    emit layoutChanged();
  });
  newReport();
}

DesignerDocument::~DesignerDocument() = default;

void DesignerDocument::newReport() {
  const auto fresh = LayoutReport::create();
  fresh->sections()->add(QStringLiteral("PageHeader"), 0, SectionType::PageHeader, kNewSectionHeight);
  fresh->sections()->add(QStringLiteral("Detail"), 1, SectionType::Detail, kNewSectionHeight);
  fresh->sections()->add(QStringLiteral("PageFooter"), 2, SectionType::PageFooter, kNewSectionHeight);
  // The same report object stays: callers hold it.
  loadLayout(*report_, saveLayout(*fresh));
  selection_.clear();
  startHistory();
  emit selectionChanged();
  emit layoutChanged();
}

void DesignerDocument::load(const QByteArray &layout) {
  loadLayout(*report_, layout);
  selection_.clear();
  startHistory();
  emit selectionChanged();
  emit layoutChanged();
}

QByteArray DesignerDocument::save() const { return saveLayout(*report_); }

void DesignerDocument::startHistory() {
  current_ = saveLayout(*report_);
  states_.clear();
  states_.push_back({qCompress(current_), QString()});
  position_ = 0;
  savedPosition_ = 0;
  emit historyChanged();
}

void DesignerDocument::setDirty(bool dirty) {
  savedPosition_ = dirty ? -1 : position_;
  emit historyChanged();
}

// ---- the history ----

DesignerDocument::Edit::Edit(DesignerDocument &document, QString label)
    : document_(document), label_(std::move(label)) {
  ++document_.openEdits_;
}

DesignerDocument::Edit::~Edit() {
  if (--document_.openEdits_ > 0)
    return;
  try {
    document_.commit(label_);
  } catch (...) {
    // A layout that cannot be saved (a text XML cannot hold) stays as it
    // is on the screen; the step is taken with the next edit that saves.
  }
}

void DesignerDocument::commit(const QString &label) {
  QByteArray now = saveLayout(*report_);
  if (now == current_)
    return;
  states_.resize(std::size_t(position_) + 1);
  if (savedPosition_ > position_)
    savedPosition_ = -1; // the saved state was in the redo steps, now gone
  states_.push_back({qCompress(now), label});
  current_ = std::move(now);
  position_ = int(states_.size()) - 1;
  emit historyChanged();
  emit layoutChanged();
}

void DesignerDocument::noteOutsideChange() {
  if (!editing())
    commit(QString());
}

QString DesignerDocument::undoLabel() const { return canUndo() ? states_[std::size_t(position_)].label : QString(); }

QString DesignerDocument::redoLabel() const {
  return canRedo() ? states_[std::size_t(position_) + 1].label : QString();
}

void DesignerDocument::undo() {
  if (canUndo())
    goTo(position_ - 1);
}

void DesignerDocument::redo() {
  if (canRedo())
    goTo(position_ + 1);
}

void DesignerDocument::goTo(int position) {
  const QStringList names = selectedNames();
  QByteArray layout = qUncompress(states_[std::size_t(position)].compressed);
  loadLayout(*report_, layout);
  current_ = std::move(layout);
  position_ = position;
  selectByNames(names);
  emit historyChanged();
  emit layoutChanged();
}

// ---- the selection ----

bool DesignerDocument::isSelected(const Object &object) const {
  return std::any_of(selection_.begin(), selection_.end(), [&](const ObjectRef &o) { return o.get() == &object; });
}

void DesignerDocument::select(std::vector<ObjectRef> objects) {
  // Sections and controls are not selected together: the first decides.
  const bool sections = !objects.empty() && dynamic_cast<const Section *>(objects.front().get());
  std::vector<ObjectRef> kept;
  for (auto &object : objects) {
    if (!object || bool(dynamic_cast<const Section *>(object.get())) != sections)
      continue;
    if (std::none_of(kept.begin(), kept.end(), [&](const ObjectRef &o) { return o == object; }))
      kept.push_back(std::move(object));
  }
  if (kept == selection_)
    return;
  selection_ = std::move(kept);
  emit selectionChanged();
}

void DesignerDocument::toggle(const ObjectRef &object) {
  std::vector<ObjectRef> next = selection_;
  const auto found = std::find(next.begin(), next.end(), object);
  if (found != next.end())
    next.erase(found);
  else
    next.push_back(object);
  select(std::move(next));
}

void DesignerDocument::selectAll() {
  std::vector<ObjectRef> all;
  for (const auto &section : report_->sections()->all())
    for (const auto &control : section->controls()->all())
      all.push_back(control);
  select(std::move(all));
}

std::vector<std::shared_ptr<Control>> DesignerDocument::selectedControls() const {
  std::vector<std::shared_ptr<Control>> controls;
  for (const auto &section : report_->sections()->all())
    for (const auto &control : section->controls()->all())
      if (isSelected(*control))
        controls.push_back(control);
  return controls;
}

std::vector<std::shared_ptr<Section>> DesignerDocument::selectedSections() const {
  std::vector<std::shared_ptr<Section>> sections;
  for (const auto &section : report_->sections()->all())
    if (isSelected(*section))
      sections.push_back(section);
  return sections;
}

QStringList DesignerDocument::selectedNames() const {
  QStringList names;
  for (const auto &object : selection_)
    names << nameOf(*object);
  return names;
}

void DesignerDocument::selectByNames(const QStringList &names) {
  std::vector<ObjectRef> found;
  for (const QString &name : names) {
    if (const auto section = report_->sections()->find(name)) {
      found.push_back(section);
      continue;
    }
    for (const auto &section : report_->sections()->all())
      if (const auto control = section->controls()->find(name))
        found.push_back(control);
  }
  selection_.clear();
  select(std::move(found));
  if (selection_.empty())
    emit selectionChanged();
}

} // namespace kordel::engine
