#include "document/ReportFields.h"

#include "core/Error.h"
#include "document/StringCollection.h"

namespace kordel::addin {

namespace {

// The dictionary's item as a field; an absent key reads as Empty, which is
// no object, as a missing field always failed.
std::shared_ptr<ReportField> asField(const Variant &item) {
  auto field = objectAs<ReportField>(item);
  if (!field)
    raiseError(ErrorNumber::ObjectRequired, QStringLiteral("ReportFields"));
  return field;
}

} // namespace

std::shared_ptr<ReportField> ReportFields::Field(const QString &name) const { return asField(fields_.value(name)); }

std::shared_ptr<ReportField> ReportFields::Item(int index) const { return asField(itemAtPosition(fields_, index)); }

std::shared_ptr<ReportField> ReportFields::Add(const QString &name, const QString &expression,
                                               const QString &defaultValue) {
  auto field = std::make_shared<ReportField>();
  field->Name = name;
  field->Expression = expression;
  field->DefaultValue = defaultValue;
  AddField(field);
  return field;
}

void ReportFields::AddField(const std::shared_ptr<ReportField> &field) { fields_.add(field->Name, field); }

} // namespace kordel::addin
