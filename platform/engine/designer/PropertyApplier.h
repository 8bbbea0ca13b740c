#pragma once

#include "core/Object.h"

#include <QString>

#include <functional>
#include <vector>

namespace kordel::engine {

class DesignerDocument;
class DesignerEvents;
struct DesignProperty;

// Gives properties of the selection new values, or the report's when
// nothing is selected: the one road by which the property list and the
// format bar change the layout.
class PropertyApplier {
public:
  explicit PropertyApplier(DesignerDocument &document) : document_(document) {}

  // The owner's events: validateChange before a change that has a kind
  // of its own (the print width), layoutChanged after each change of an
  // object. nullptr for none.
  void setEvents(DesignerEvents *events) { events_ = events; }
  // Called after every change that was made.
  void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

  // The objects edits go to: the selection, or the report when nothing is
  // selected.
  std::vector<ObjectRef> targets() const;

  // A property and its new value from its value now, for each object.
  struct Change {
    const DesignProperty *property;
    std::function<Variant(const Variant &now)> value;
  };

  enum class Outcome { Changed, Unchanged, Cancelled };

  // Makes the changes on every target the property applies to, as one step
  // of the history under the label. Unchanged when every value was already
  // so; Cancelled when the owner refused the change. A value that a target
  // refuses (a name taken, a value the model will not hold) raises with
  // the reason for the user, and then nothing has changed.
  Outcome apply(const QString &label, const std::vector<Change> &changes);
  // One property given one value.
  Outcome apply(const DesignProperty &property, const Variant &value);

private:
  struct Planned {
    ObjectRef object;
    const DesignProperty *property;
    Variant before;
    Variant after;
  };

  std::vector<Planned> plan(const std::vector<Change> &changes) const;
  bool ownerAllows(const std::vector<Planned> &planned) const;
  void tellOwner(const std::vector<Planned> &planned) const;

  DesignerDocument &document_;
  DesignerEvents *events_ = nullptr;
  std::function<void()> changed_;
};

} // namespace kordel::engine
