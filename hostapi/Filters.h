#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

inline constexpr const char *kFilterProgId = "Nuvo.Filter";

// Filter.AddCondition: how the field is compared with the value.
namespace ConditionOp {
constexpr int Equal = 0;          // a Null value asks for no value
constexpr int NotEqual = 1;       // a Null value asks for any value
constexpr int EmbeddedFilter = 2; // no field; the value is a Filter whose conditions hold
constexpr int InPool = 3;         // the value is a Pool (or Selection) that holds the field's id
constexpr int Less = 4;
constexpr int LessOrEqual = 5;
constexpr int Greater = 6;
constexpr int GreaterOrEqual = 7;
constexpr int Like = 8; // text with * for any run and ? for one character, without regard to case
} // namespace ConditionOp

// Filter.AddOperator: joins what precedes it.
namespace FilterOperator {
constexpr int And = 9;  // the two preceding conditions both hold
constexpr int Or = 10;  // either of the two preceding conditions holds
constexpr int Not = 11; // the preceding condition does not hold
} // namespace FilterOperator

// Filters.Lookup: which name to look for.
namespace FilterLookup {
constexpr int ByName = 1;
constexpr int ByLocalName = 2;
} // namespace FilterLookup

// A condition tree over the records of a class, written in postfix order:
// each condition is pushed, and an operator joins the conditions before it.
// Conditions left unjoined at the end must all hold. A filter made with
// CreateObject belongs to no class until it is used with one.
// Late-bound: Name, LocalName, Empty, Count, AddCondition, AddOperator,
// Clear, Class.
class Filter : public Object {
public:
  // The stable name that is stored; LocalName is the one that is shown.
  virtual QString name() const = 0;
  virtual void setName(const QString &name) = 0;
  virtual QString localName() const = 0;
  virtual void setLocalName(const QString &name) = 0;
  // True when the filter has no effect: no condition, or only embedded
  // filters that themselves have none.
  virtual bool empty() const = 0;
  // The number of conditions and operators.
  virtual int count() const = 0;
  // field is a field path in either form (an empty one for
  // EmbeddedFilter); op a ConditionOp; flags are reserved and must be 0.
  virtual void addCondition(const QString &field, const Variant &value, int op, int flags) = 0;
  // op a FilterOperator; raises 5 when too few conditions precede it.
  virtual void addOperator(int op) = 0;
  // The class of a saved filter; "" for one made with CreateObject.
  virtual QString className() const = 0;
};

// The saved filters of a class. Late-bound: Count, Item(name or 1-based
// index) (default), Lookup, and For Each.
class Filters : public Object {
public:
  virtual int count() const = 0;
  // Raises 9 for a name that no filter has.
  virtual std::shared_ptr<Filter> item(const QString &name) const = 0;
  // A filter by Name (mode 1) or LocalName (mode 2); nullptr when none.
  virtual std::shared_ptr<Filter> lookup(const QString &text, int mode) const = 0;
};

} // namespace kordel::hostapi
