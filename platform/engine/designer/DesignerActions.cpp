#include "engine/designer/DesignerActions.h"

#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/LayoutClipboard.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kordel::engine {

namespace {

constexpr float kNewSectionHeight = 360;
// A pasted control that would cover one of the same place moves by this
// much, as often as it takes.
constexpr float kPasteOffset = 180;

const QClipboard *clipboard() { return QApplication::clipboard(); }

std::vector<std::shared_ptr<Section>> sectionsOfType(const LayoutReport &report, SectionType type) {
  std::vector<std::shared_ptr<Section>> found;
  for (const auto &section : report.sections()->all())
    if (section->type() == type)
      found.push_back(section);
  return found;
}

int indexOf(const LayoutReport &report, const Section &section) {
  const auto &all = report.sections()->all();
  for (std::size_t i = 0; i < all.size(); ++i)
    if (all[i].get() == &section)
      return int(i);
  return -1;
}

// A section name of the form stem + number, from 1, that no section has;
// the plain stem when it is free and plain is asked for.
QString freeSectionName(const LayoutReport &report, const QString &stem, bool plain) {
  if (plain && !report.sections()->find(stem))
    return stem;
  int number = 1;
  while (report.sections()->find(stem + QString::number(number)))
    ++number;
  return stem + QString::number(number);
}

// The footer paired with a header: group footers stand innermost first
// after the detail, so the n-th header from the outside pairs with the n-th
// footer from the end.
std::shared_ptr<Section> pairedFooter(const LayoutReport &report, const Section &header) {
  const auto headers = sectionsOfType(report, SectionType::GroupHeader);
  const auto footers = sectionsOfType(report, SectionType::GroupFooter);
  for (std::size_t i = 0; i < headers.size(); ++i)
    if (headers[i].get() == &header)
      return i < footers.size() ? footers[footers.size() - 1 - i] : nullptr;
  return nullptr;
}

std::shared_ptr<Section> pairedHeader(const LayoutReport &report, const Section &footer) {
  const auto headers = sectionsOfType(report, SectionType::GroupHeader);
  const auto footers = sectionsOfType(report, SectionType::GroupFooter);
  for (std::size_t i = 0; i < footers.size(); ++i)
    if (footers[i].get() == &footer)
      return footers.size() - 1 - i < headers.size() ? headers[footers.size() - 1 - i] : nullptr;
  return nullptr;
}

QString stepLabel(int action) {
  switch (action) {
  case DesignAction::Cut: return designerText("Cut");
  case DesignAction::Paste: return designerText("Paste");
  case DesignAction::Delete: return designerText("Delete");
  case DesignAction::DeleteSection: return designerText("Delete section");
  case DesignAction::ReportHeaderFooter: return designerText("Report header and footer");
  case DesignAction::PageHeaderFooter: return designerText("Page header and footer");
  case DesignAction::GroupHeaderFooter: return designerText("Group header and footer");
  case DesignAction::ReorderGroups: return designerText("Reorder groups");
  case DesignAction::Border: return designerText("Border");
  case DesignAction::SameWidth:
  case DesignAction::SameHeight:
  case DesignAction::SameSize: return designerText("Size");
  case DesignAction::SpaceHorizontally:
  case DesignAction::SpaceVertically: return designerText("Spacing");
  default: return designerText("Align");
  }
}

} // namespace

DesignerActions::DesignerActions(DesignerDocument &document, DesignerEvents &events)
    : document_(document), events_(events) {}

std::shared_ptr<Section> DesignerActions::currentSection() const {
  const auto sections = document_.selectedSections();
  if (!sections.empty())
    return sections.front();
  const auto controls = document_.selectedControls();
  if (!controls.empty())
    return controls.front()->section();
  return document_.report()->detail();
}

int DesignerActions::query(int action) const {
  const LayoutReport &report = *document_.report();
  const std::size_t controls = document_.selectedControls().size();
  const auto on = [](bool enabled) { return enabled ? ActionState::Enabled : 0; };
  switch (action) {
  case DesignAction::Undo: return on(document_.canUndo());
  case DesignAction::Redo: return on(document_.canRedo());
  case DesignAction::Cut:
  case DesignAction::Copy:
  case DesignAction::Delete:
  case DesignAction::AlignToGrid:
  case DesignAction::CenterInSection:
  case DesignAction::Border: return on(controls >= 1);
  case DesignAction::Paste: return on(mimeHasControls(clipboard()->mimeData()) && currentSection());
  case DesignAction::SelectAll: return ActionState::Enabled;
  case DesignAction::DeleteSection: {
    const auto sections = document_.selectedSections();
    return on(sections.size() == 1 && sections.front()->type() != SectionType::Detail);
  }
  case DesignAction::ReportHeaderFooter:
    return ActionState::Enabled |
           (sectionsOfType(report, SectionType::ReportHeader).empty() ? 0 : ActionState::Checked);
  case DesignAction::PageHeaderFooter:
    return ActionState::Enabled | (sectionsOfType(report, SectionType::PageHeader).empty() ? 0 : ActionState::Checked);
  case DesignAction::GroupHeaderFooter: return on(report.detail() != nullptr);
  case DesignAction::ReorderGroups: return on(sectionsOfType(report, SectionType::GroupHeader).size() >= 2);
  case DesignAction::ScriptEditor: return on(bool(openScriptEditor));
  case DesignAction::AlignLeft:
  case DesignAction::AlignRight:
  case DesignAction::AlignCenter:
  case DesignAction::AlignTop:
  case DesignAction::AlignMiddle:
  case DesignAction::AlignBottom:
  case DesignAction::SameWidth:
  case DesignAction::SameHeight:
  case DesignAction::SameSize: return on(controls >= 2);
  case DesignAction::SpaceHorizontally:
  case DesignAction::SpaceVertically: return on(controls >= 3);
  default: return 0;
  }
}

void DesignerActions::execute(int action) {
  static const std::vector<int> known{DesignAction::Undo,
                                      DesignAction::Redo,
                                      DesignAction::Cut,
                                      DesignAction::Paste,
                                      DesignAction::Copy,
                                      DesignAction::SelectAll,
                                      DesignAction::Delete,
                                      DesignAction::DeleteSection,
                                      DesignAction::ReportHeaderFooter,
                                      DesignAction::PageHeaderFooter,
                                      DesignAction::GroupHeaderFooter,
                                      DesignAction::ReorderGroups,
                                      DesignAction::ScriptEditor,
                                      DesignAction::AlignLeft,
                                      DesignAction::AlignRight,
                                      DesignAction::AlignCenter,
                                      DesignAction::AlignTop,
                                      DesignAction::AlignMiddle,
                                      DesignAction::AlignBottom,
                                      DesignAction::AlignToGrid,
                                      DesignAction::CenterInSection,
                                      DesignAction::SameWidth,
                                      DesignAction::SameHeight,
                                      DesignAction::SameSize,
                                      DesignAction::SpaceVertically,
                                      DesignAction::SpaceHorizontally,
                                      DesignAction::Border};
  if (std::find(known.begin(), known.end(), action) == known.end())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ARDesigner.ExecuteAction"),
               QStringLiteral("The designer has no action %1").arg(action));
  if (!enabled(action))
    return;
  switch (action) {
  case DesignAction::Undo: document_.undo(); return;
  case DesignAction::Redo: document_.redo(); return;
  case DesignAction::SelectAll: document_.selectAll(); return;
  case DesignAction::Copy:
    QApplication::clipboard()->setMimeData(controlsToMime(*document_.report(), document_.selectedControls()));
    return;
  case DesignAction::ScriptEditor: openScriptEditor(); return;
  case DesignAction::ReorderGroups: reorderGroups(); return;
  default: break;
  }
  DesignerDocument::Edit edit(document_, stepLabel(action));
  switch (action) {
  case DesignAction::Cut:
    QApplication::clipboard()->setMimeData(controlsToMime(*document_.report(), document_.selectedControls()));
    deleteControls(true);
    break;
  case DesignAction::Delete: deleteControls(true); break;
  case DesignAction::Paste: paste(); break;
  case DesignAction::DeleteSection: deleteSection(); break;
  case DesignAction::ReportHeaderFooter:
    togglePair(int(SectionType::ReportHeader), int(SectionType::ReportFooter));
    break;
  case DesignAction::PageHeaderFooter: togglePair(int(SectionType::PageHeader), int(SectionType::PageFooter)); break;
  case DesignAction::GroupHeaderFooter: addGroupPair(); break;
  case DesignAction::Border: toggleBorder(); break;
  case DesignAction::SpaceHorizontally: space(true); break;
  case DesignAction::SpaceVertically: space(false); break;
  default: align(action); break;
  }
}

// ---- controls ----

void DesignerActions::deleteControls(bool askFirst) {
  std::vector<std::shared_ptr<Control>> deleted;
  for (const auto &control : document_.selectedControls()) {
    if (askFirst && !events_.validateChange(control, DesignChange::ControlDeleting))
      continue;
    if (const auto section = control->section())
      section->controls()->remove(Variant(control->name));
    deleted.push_back(control);
  }
  std::vector<ObjectRef> kept;
  for (const auto &object : document_.selection())
    if (std::find(deleted.begin(), deleted.end(), object) == deleted.end())
      kept.push_back(object);
  document_.select(std::move(kept));
}

void DesignerActions::paste() {
  const auto target = currentSection();
  std::vector<std::shared_ptr<Control>> pasted = controlsFromMime(clipboard()->mimeData());
  LayoutReport &report = *document_.report();
  std::vector<ObjectRef> selection;
  for (const auto &control : pasted) {
    if (report.hasControlNamed(control->name))
      control->name = report.uniqueControlName(control->typeName());
    // A control pasted where one stands already moves down and right.
    const auto taken = [&] {
      for (const auto &other : target->controls()->all())
        if (std::abs(other->left - control->left) < 1 && std::abs(other->top - control->top) < 1)
          return true;
      return false;
    };
    while (taken()) {
      control->left += kPasteOffset;
      control->top += kPasteOffset;
    }
    target->controls()->append(control);
    selection.push_back(control);
  }
  document_.select(std::move(selection));
  for (const auto &control : pasted)
    events_.layoutChanged(control, DesignChange::ControlAdded);
}

void DesignerActions::movedAll(const std::vector<std::shared_ptr<Control>> &controls, int kind) {
  for (const auto &control : controls)
    events_.layoutChanged(control, kind);
}

void DesignerActions::align(int action) {
  const auto controls = document_.selectedControls();
  // The control selected first is the one the others follow.
  std::shared_ptr<Control> reference;
  for (const auto &object : document_.selection())
    if ((reference = std::dynamic_pointer_cast<Control>(object)))
      break;
  const QPointF grid = gridStep();
  const float printWidth = document_.report()->printWidth;
  bool resized = false;
  for (const auto &control : controls) {
    Control &c = *control;
    switch (action) {
    case DesignAction::AlignLeft: c.left = reference->left; break;
    case DesignAction::AlignRight: c.left = reference->left + reference->width - c.width; break;
    case DesignAction::AlignCenter: c.left = reference->left + (reference->width - c.width) / 2; break;
    case DesignAction::AlignTop: c.top = reference->top; break;
    case DesignAction::AlignMiddle: c.top = reference->top + (reference->height - c.height) / 2; break;
    case DesignAction::AlignBottom: c.top = reference->top + reference->height - c.height; break;
    case DesignAction::AlignToGrid:
      c.left = float(std::round(c.left / grid.x()) * grid.x());
      c.top = float(std::round(c.top / grid.y()) * grid.y());
      break;
    case DesignAction::CenterInSection: c.left = (printWidth - c.width) / 2; break;
    case DesignAction::SameWidth: c.width = reference->width; break;
    case DesignAction::SameHeight: c.height = reference->height; break;
    case DesignAction::SameSize:
      c.width = reference->width;
      c.height = reference->height;
      break;
    default: break;
    }
    resized =
        action == DesignAction::SameWidth || action == DesignAction::SameHeight || action == DesignAction::SameSize;
  }
  movedAll(controls, resized ? DesignChange::ControlResized : DesignChange::ControlMoved);
}

void DesignerActions::space(bool horizontally) {
  auto controls = document_.selectedControls();
  const auto start = [horizontally](const Control &c) { return horizontally ? c.left : c.top; };
  const auto extent = [horizontally](const Control &c) { return horizontally ? c.width : c.height; };
  std::stable_sort(controls.begin(), controls.end(),
                   [&](const auto &a, const auto &b) { return start(*a) < start(*b); });
  // The first and the last stay; the gaps between all become equal.
  float occupied = 0;
  for (const auto &control : controls)
    occupied += extent(*control);
  const Control &first = *controls.front();
  const Control &last = *controls.back();
  const float span = start(last) + extent(last) - start(first);
  const float gap = (span - occupied) / float(controls.size() - 1);
  float at = start(first) + extent(first) + gap;
  for (std::size_t i = 1; i + 1 < controls.size(); ++i) {
    (horizontally ? controls[i]->left : controls[i]->top) = at;
    at += extent(*controls[i]) + gap;
  }
  movedAll(controls, DesignChange::ControlMoved);
}

void DesignerActions::toggleBorder() {
  const auto controls = document_.selectedControls();
  const bool allHave = std::all_of(controls.begin(), controls.end(), [](const auto &c) { return c->borderStyle != 0; });
  for (const auto &control : controls)
    control->borderStyle = allHave ? 0 : 1;
  movedAll(controls, DesignChange::PropertyChanged);
}

// ---- sections ----

void DesignerActions::deleteSection() {
  LayoutReport &report = *document_.report();
  const auto section = document_.selectedSections().front();
  // Headers and footers go in pairs.
  std::vector<std::shared_ptr<Section>> doomed{section};
  switch (section->type()) {
  case SectionType::ReportHeader:
  case SectionType::ReportFooter:
  case SectionType::PageHeader:
  case SectionType::PageFooter: {
    const bool report = section->type() == SectionType::ReportHeader || section->type() == SectionType::ReportFooter;
    const SectionType other =
        report ? (section->type() == SectionType::ReportHeader ? SectionType::ReportFooter : SectionType::ReportHeader)
               : (section->type() == SectionType::PageHeader ? SectionType::PageFooter : SectionType::PageHeader);
    for (const auto &partner : sectionsOfType(*document_.report(), other))
      doomed.push_back(partner);
    break;
  }
  case SectionType::GroupHeader:
    if (const auto footer = pairedFooter(report, *section))
      doomed.push_back(footer);
    break;
  case SectionType::GroupFooter:
    if (const auto header = pairedHeader(report, *section))
      doomed.push_back(header);
    break;
  default: break;
  }
  for (const auto &one : doomed)
    if (!events_.validateChange(one, DesignChange::SectionDeleted))
      return;
  document_.clearSelection();
  for (const auto &one : doomed) {
    const int index = indexOf(report, *one);
    if (index >= 0)
      report.sections()->remove(index);
    events_.layoutChanged(one, DesignChange::SectionDeleted);
  }
}

void DesignerActions::togglePair(int headerType, int footerType) {
  LayoutReport &report = *document_.report();
  const auto headers = sectionsOfType(report, SectionType(headerType));
  const auto footers = sectionsOfType(report, SectionType(footerType));
  if (!headers.empty() || !footers.empty()) {
    std::vector<std::shared_ptr<Section>> doomed = headers;
    doomed.insert(doomed.end(), footers.begin(), footers.end());
    for (const auto &one : doomed)
      if (!events_.validateChange(one, DesignChange::SectionDeleted))
        return;
    document_.clearSelection();
    for (const auto &one : doomed) {
      report.sections()->remove(indexOf(report, *one));
      events_.layoutChanged(one, DesignChange::SectionDeleted);
    }
    return;
  }
  const bool reportPair = SectionType(headerType) == SectionType::ReportHeader;
  // The report header stands first and its footer last; the page header
  // follows the report header and the page footer precedes the report
  // footer.
  int headerAt = 0;
  int footerAt = report.sections()->count();
  if (!reportPair) {
    for (const auto &section : sectionsOfType(report, SectionType::ReportHeader))
      headerAt = std::max(headerAt, indexOf(report, *section) + 1);
    for (const auto &section : sectionsOfType(report, SectionType::ReportFooter))
      footerAt = std::min(footerAt, indexOf(report, *section));
  }
  const QString headerName = reportPair ? QStringLiteral("ReportHeader") : QStringLiteral("PageHeader");
  const QString footerName = reportPair ? QStringLiteral("ReportFooter") : QStringLiteral("PageFooter");
  const auto header = report.sections()->add(freeSectionName(report, headerName, true), headerAt,
                                             SectionType(headerType), kNewSectionHeight);
  const auto footer = report.sections()->add(freeSectionName(report, footerName, true), footerAt + 1,
                                             SectionType(footerType), kNewSectionHeight);
  events_.layoutChanged(header, DesignChange::SectionAdded);
  events_.layoutChanged(footer, DesignChange::SectionAdded);
}

void DesignerActions::addGroupPair() {
  LayoutReport &report = *document_.report();
  const auto detail = report.detail();
  const int at = indexOf(report, *detail);
  // The new group is the innermost: its header right above the detail, its
  // footer right below.
  const auto header = report.sections()->add(freeSectionName(report, QStringLiteral("GroupHeader"), false), at,
                                             SectionType::GroupHeader, kNewSectionHeight);
  const auto footer = report.sections()->add(freeSectionName(report, QStringLiteral("GroupFooter"), false), at + 2,
                                             SectionType::GroupFooter, kNewSectionHeight);
  document_.select({header});
  events_.layoutChanged(header, DesignChange::SectionAdded);
  events_.layoutChanged(footer, DesignChange::SectionAdded);
}

void DesignerActions::reorderGroups() {
  LayoutReport &report = *document_.report();
  const auto headers = sectionsOfType(report, SectionType::GroupHeader);
  QStringList names;
  for (const auto &header : headers)
    names << header->name;
  if (!askGroupOrder)
    return;
  const std::optional<QStringList> order = askGroupOrder(names);
  if (!order || *order == names)
    return;
  // Each header keeps its footer: the pairs are taken out and put back in
  // the new order, headers outermost first above the detail, footers
  // innermost first below it.
  std::vector<std::pair<std::shared_ptr<Section>, std::shared_ptr<Section>>> pairs;
  for (const QString &name : *order) {
    const auto header = report.sections()->find(name);
    if (!header || header->type() != SectionType::GroupHeader)
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("ARDesigner.ReorderGroups"),
                 QStringLiteral("There is no group header \"%1\"").arg(name));
    pairs.emplace_back(header, pairedFooter(report, *header));
  }
  if (pairs.size() != headers.size())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ARDesigner.ReorderGroups"),
               QStringLiteral("The new order must name every group once"));
  DesignerDocument::Edit edit(document_, stepLabel(DesignAction::ReorderGroups));
  std::vector<std::shared_ptr<Section>> rest;
  for (const auto &section : report.sections()->all())
    if (section->type() != SectionType::GroupHeader && section->type() != SectionType::GroupFooter)
      rest.push_back(section);
  std::vector<std::shared_ptr<Section>> ordered;
  for (const auto &section : rest) {
    if (section->type() == SectionType::Detail) {
      for (const auto &pair : pairs)
        ordered.push_back(pair.first);
      ordered.push_back(section);
      for (auto it = pairs.rbegin(); it != pairs.rend(); ++it)
        if (it->second)
          ordered.push_back(it->second);
    } else {
      ordered.push_back(section);
    }
  }
  // Sections are moved by taking them out and adding them back with their
  // own objects, so that nothing of them is lost.
  Sections &sections = *report.sections();
  while (sections.count() > 0)
    sections.remove(sections.count() - 1);
  for (const auto &section : ordered)
    sections.insert(section, sections.count());
}

} // namespace kordel::engine
