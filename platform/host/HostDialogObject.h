#pragma once

#include "hostapi/Classes.h"

#include "core/Object.h"

#include <QSet>

#include <memory>

namespace kordel::host {

// The host's dialogs by number ("Orvex.Dialog"). Number 12 is the field
// dialog: set Fields, and ExcludeFieldTypes to leave types out, call
// Show(12), which gives 1 when the user chose a field and 0 when not; then
// Field is the chosen field and Path its local path. The dialog shows
// through the Ui seam. Late-bound: Fields, ExcludeFieldTypes, Show, Field,
// Path.
class HostDialogObject : public Object {
public:
  explicit HostDialogObject(QString language) : language_(std::move(language)) {}

  QString typeName() const override { return QStringLiteral("Dialog"); }

  void setFields(std::shared_ptr<hostapi::Fields> fields) { fields_ = std::move(fields); }
  // An array of type codes; any other value leaves no type out.
  void setExcludeFieldTypes(const Variant &types);
  // Raises 5 for a number that is no dialog of the host, 91 for the field
  // dialog without fields.
  int show(int number);
  std::shared_ptr<hostapi::Field> field() const { return field_; }
  QString path() const { return path_; }

protected:
  const MemberTable &memberTable() const override;

private:
  QString language_;
  std::shared_ptr<hostapi::Fields> fields_;
  Variant excludeFieldTypes_; // as it was set
  QSet<int> excludedTypes_;
  std::shared_ptr<hostapi::Field> field_;
  QString path_;
};

} // namespace kordel::host
