#include "document/SortFields.h"

#include "document/StringCollection.h"

namespace kordel::addin {

Dictionary &SortFields::dictionary() {
  if (!fields_)
    fields_ = std::make_unique<Dictionary>();
  return *fields_;
}

bool SortFields::Add(const QString &name, std::int16_t sortOrder) {
  if (Exists(name))
    return false;
  auto field = std::make_shared<addin::SortField>();
  field->Name = name;
  field->SortOrder = sortOrder;
  dictionary().add(name, field);
  return true;
}

std::shared_ptr<SortField> SortFields::SortField(const QString &name) const {
  if (!Exists(name))
    return nullptr;
  return objectAs<addin::SortField>(fields_->value(name));
}

std::shared_ptr<SortField> SortFields::Item(int index) const {
  if (index > Count())
    return nullptr;
  static const Dictionary empty;
  return objectAs<addin::SortField>(itemAtPosition(fields_ ? *fields_ : empty, index));
}

void SortFields::Remove(const QString &name) {
  if (Exists(name))
    fields_->remove(name);
}

} // namespace kordel::addin
