#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class Class;
class Filter;
class Filters;
class Record;
class Records;
class Selection;

// A list window of the host: the records of one class under the active
// filter, the items it lists of them, and those the user selected.
// Late-bound: Class, Items, Selection, Records, Filters, ActiveFilter.
class Explorer : public Object {
public:
  virtual std::shared_ptr<Class> explorerClass() const = 0;
  // The records listed; fewer than Records holds when the list is narrowed.
  virtual std::shared_ptr<Selection> items() const = 0;
  virtual std::shared_ptr<Selection> selection() const = 0;
  // The records of the active filter; Source is that filter.
  virtual std::shared_ptr<Records> records() const = 0;
  // The filters offered for the class.
  virtual std::shared_ptr<Filters> filters() const = 0;
  // The filter in force; nullptr when the window shows all records.
  virtual std::shared_ptr<Filter> activeFilter() const = 0;
};

// The open list windows, one per class at most. Late-bound: Count,
// Exists(class name), Item(class name) (default), Current, and For Each.
class Explorers : public Object {
public:
  virtual int count() const = 0;
  virtual bool exists(const QString &className) const = 0;
  // Raises 9 when no window shows the class.
  virtual std::shared_ptr<Explorer> item(const QString &className) const = 0;
  // The window the host counts as current; nullptr when none is open.
  virtual std::shared_ptr<Explorer> current() const = 0;
};

// A record window of the host. Late-bound: Class, Record.
class Inspector : public Object {
public:
  virtual std::shared_ptr<Class> inspectorClass() const = 0;
  // nullptr when the window shows no record.
  virtual std::shared_ptr<Record> record() const = 0;
};

} // namespace kordel::hostapi
