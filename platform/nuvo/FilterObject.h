#pragma once

#include "hostapi/Filters.h"

#include <vector>

namespace kordel::nuvo {

// One entry of a filter in postfix order: a condition or an operator.
struct FilterItem {
  bool isOperator = false;
  QString path;  // conditions: the field path as given
  int op = 0;    // a ConditionOp, or a FilterOperator for operators
  Variant value; // conditions: the value, a Pool, or an embedded Filter
};

// Nuvo.Filter: a condition tree kept as its postfix list. The tree is
// checked as it grows; the paths are resolved when a query uses the filter
// with a class.
class FilterObject : public hostapi::Filter {
public:
  FilterObject() = default;
  // A saved filter of a class.
  FilterObject(QString className, QString name, QString localName);

  QString typeName() const override { return QStringLiteral("Filter"); }

  QString name() const override { return name_; }
  void setName(const QString &name) override { name_ = name; }
  QString localName() const override { return localName_; }
  void setLocalName(const QString &name) override { localName_ = name; }
  bool empty() const override;
  int count() const override { return int(items_.size()); }
  void addCondition(const QString &field, const Variant &value, int op, int flags) override;
  void addOperator(int op) override;
  QString className() const override { return className_; }
  void clear();

  const std::vector<FilterItem> &items() const { return items_; }

protected:
  const MemberTable &memberTable() const override;

private:
  // Whether this filter is the target or embeds it at any depth.
  bool reaches(const hostapi::Filter *target) const;

  QString className_;
  QString name_;
  QString localName_;
  std::vector<FilterItem> items_;
  int depth_ = 0; // conditions on the stack the operators work on
};

} // namespace kordel::nuvo
