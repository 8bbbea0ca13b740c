#include "host/HostDialogObject.h"

#include "host/FieldDialogWindow.h"

#include "hostapi/HostDialog.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

namespace kordel::host {

void HostDialogObject::setExcludeFieldTypes(const Variant &types) {
  excludeFieldTypes_ = types;
  excludedTypes_.clear();
  if (!types.isArray())
    return;
  for (const Variant &type : types.array().elements())
    excludedTypes_.insert(type.toLong());
}

int HostDialogObject::show(int number) {
  if (number != hostapi::HostDialogNumber::Field)
    raiseError(ErrorNumber::InvalidCall, typeName(),
               QStringLiteral("The host has no dialog number %1; the field dialog is number %2")
                   .arg(number)
                   .arg(hostapi::HostDialogNumber::Field));
  if (!fields_)
    raiseError(ErrorNumber::ObjectNotSet, typeName(), QStringLiteral("Set Fields before showing the field dialog"));
  field_.reset();
  path_.clear();
  FieldDialogWindow window(fields_, excludedTypes_, language_);
  hostapi::ui().showModal(window);
  if (window.chosenPath().isEmpty())
    return hostapi::ShowResult::Cancelled;
  path_ = window.chosenPath();
  field_ = fields_->lookup(path_, hostapi::LookupMode::Either);
  return hostapi::ShowResult::Confirmed;
}

const MemberTable &HostDialogObject::memberTable() const {
  static const MemberTable table{{
      property<HostDialogObject>(
          "Fields", [](HostDialogObject &d) { return Variant(ObjectRef(d.fields_)); },
          [](HostDialogObject &d, const Variant &v) {
            const auto fields = objectAs<hostapi::Fields>(v);
            if (!fields && !v.isNothing())
              raiseError(ErrorNumber::TypeMismatch, d.typeName(), QStringLiteral("Fields takes the fields of a class"));
            d.setFields(fields);
          }),
      property<HostDialogObject>(
          "ExcludeFieldTypes", [](HostDialogObject &d) { return d.excludeFieldTypes_; },
          [](HostDialogObject &d, const Variant &v) { d.setExcludeFieldTypes(v); }),
      method<HostDialogObject>("Show",
                               [](HostDialogObject &d, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return d.show(a[0].toLong());
                               }),
      property<HostDialogObject>("Field", [](HostDialogObject &d) { return Variant(ObjectRef(d.field())); }),
      property<HostDialogObject>("Path", [](HostDialogObject &d) { return d.path(); }),
  }};
  return table;
}

} // namespace kordel::host
