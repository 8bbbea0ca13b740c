#pragma once

#include "core/Dictionary.h"

#include <memory>

namespace kordel::addin {

// One field of a page: its internal path or "vbscript:" expression as
// name, the expression, and the default value shown for an empty value.
class ReportField : public Object {
public:
  QString typeName() const override { return QStringLiteral("ReportField"); }

  QString Expression;
  QString Name;
  QString DefaultValue;
};

// The fields of a page by name, in insertion order, indexed from 1. A name
// added twice raises 457; a missing name read by Field fails.
class ReportFields : public Object {
public:
  QString typeName() const override { return QStringLiteral("ReportFields"); }

  std::int16_t Count() const { return std::int16_t(fields_.count()); }
  bool Exists(const QString &name) const { return fields_.exists(name); }
  std::shared_ptr<ReportField> Field(const QString &name) const;
  std::shared_ptr<ReportField> Item(int index) const;
  std::shared_ptr<ReportField> Add(const QString &name, const QString &expression, const QString &defaultValue);
  void AddField(const std::shared_ptr<ReportField> &field);
  void Remove(const QString &name) { fields_.remove(name); }
  void RemoveAll() { fields_.removeAll(); }

private:
  Dictionary fields_;
};

} // namespace kordel::addin
