#include "engine/designer/PropertyApplier.h"

#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/PropertyValues.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PropertyList");

// Each object once per kind of change, in the order of the changes.
template <class Planned, class Visit>
void eachObjectAndKind(const std::vector<Planned> &planned, int (*kindOf)(const DesignProperty &), Visit visit) {
  std::set<std::pair<const Object *, int>> seen;
  for (const auto &change : planned) {
    const int kind = kindOf(*change.property);
    if (kind >= 0 && seen.insert({change.object.get(), kind}).second)
      visit(change.object, kind);
  }
}

int changingKind(const DesignProperty &property) { return property.changingKind; }
int changedKind(const DesignProperty &property) { return property.changedKind; }

} // namespace

std::vector<ObjectRef> PropertyApplier::targets() const {
  if (!document_.selection().empty())
    return document_.selection();
  return {document_.report()};
}

std::vector<PropertyApplier::Planned> PropertyApplier::plan(const std::vector<Change> &changes) const {
  const std::vector<ObjectRef> objects = targets();
  std::vector<Planned> planned;
  for (const Change &change : changes) {
    const DesignProperty &property = *change.property;
    if (property.readOnly)
      raiseError(ErrorNumber::InvalidCall, kSource, designerText("%1 cannot be changed").arg(property.name));
    if (property.singleObject && objects.size() > 1)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 designerText("%1 is given to one object at a time").arg(property.name));
    for (const ObjectRef &object : objects) {
      if (!property.appliesToObject(*object))
        continue;
      Variant before = property.read(*object);
      Variant after = change.value(before);
      if (sameValue(property, before, after))
        continue;
      if (property.check) {
        const QString problem = property.check(*object, after, *document_.report());
        if (!problem.isEmpty())
          raiseError(ErrorNumber::InvalidCall, kSource, problem);
      }
      planned.push_back({object, &property, std::move(before), std::move(after)});
    }
  }
  return planned;
}

bool PropertyApplier::ownerAllows(const std::vector<Planned> &planned) const {
  if (!events_)
    return true;
  bool allowed = true;
  eachObjectAndKind(planned, changingKind, [&](const ObjectRef &object, int kind) {
    allowed = allowed && events_->validateChange(object, kind);
  });
  return allowed;
}

void PropertyApplier::tellOwner(const std::vector<Planned> &planned) const {
  if (events_)
    eachObjectAndKind(planned, changedKind,
                      [&](const ObjectRef &object, int kind) { events_->layoutChanged(object, kind); });
  if (changed_)
    changed_();
}

PropertyApplier::Outcome PropertyApplier::apply(const QString &label, const std::vector<Change> &changes) {
  const std::vector<Planned> planned = plan(changes);
  if (planned.empty())
    return Outcome::Unchanged;
  if (!ownerAllows(planned))
    return Outcome::Cancelled;
  {
    DesignerDocument::Edit edit(document_, label);
    std::size_t done = 0;
    try {
      for (; done < planned.size(); ++done)
        planned[done].property->write(*planned[done].object, planned[done].after);
    } catch (...) {
      const Error error = pendingError();
      // Back to the values read a moment ago, the failed one included: the
      // edit then ends with the layout as it was, and leaves no step.
      for (std::size_t i = std::min(done + 1, planned.size()); i-- > 0;) {
        try {
          planned[i].property->write(*planned[i].object, planned[i].before);
        } catch (...) {
          // A value the object held a moment ago: it takes it back.
        }
      }
      throw error;
    }
  }
  tellOwner(planned);
  return Outcome::Changed;
}

PropertyApplier::Outcome PropertyApplier::apply(const DesignProperty &property, const Variant &value) {
  return apply(designerText("Change %1").arg(property.name),
               {{&property, [&value](const Variant &) { return value; }}});
}

} // namespace kordel::engine
