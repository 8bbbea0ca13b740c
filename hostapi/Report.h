#pragma once

#include "core/Object.h"

#include <cstdint>
#include <memory>

namespace kordel::hostapi {

class Class;
class Database;
class Picture;

// Capabilities the host asks a report about with IReport_Supports. They
// are exact numbers, not bits; their meaning is the host's.
namespace ReportCapability {
constexpr int AppliesToClass = 16; // the argument names a class, or Empty for the class in view
} // namespace ReportCapability

// A report object as the host sees it. Setters of name, category, policy
// and GUID mark the object modified; the database does not.
class IReport {
public:
  virtual ~IReport() = default;
  virtual QString IReport_Name() const = 0;
  virtual void IReport_SetName(const QString &name) = 0;
  // The report type's 16×16 icon.
  virtual std::shared_ptr<Picture> IReport_Icon() = 0;
  virtual QString IReport_Category() const = 0;
  virtual void IReport_SetCategory(const QString &category) = 0;
  // Never raises.
  virtual bool IReport_Supports(std::int32_t capability, const Variant &argument) = 0;
  virtual bool IReport_Modified() const = 0;
  virtual void IReport_SetModified(bool modified) = 0;
  // Fills the object from its host file, read again from the database when
  // reload is true.
  virtual void IReport_Refresh(bool reload) = 0;
  // Stores the object in its host file.
  virtual void IReport_Update() = 0;
  virtual std::int32_t IReport_Policy() const = 0;
  virtual void IReport_SetPolicy(std::int32_t policy) = 0;
  virtual std::shared_ptr<Database> IReport_Database() const = 0;
  virtual void IReport_SetDatabase(std::shared_ptr<Database> database) = 0;
  // Made on first read when the object has none; it sticks.
  virtual QString IReport_GUID() = 0;
  virtual void IReport_SetGUID(const QString &guid) = 0;
  virtual QString IReport_Type() const = 0;
  // Prints the report for the context (the add-in's own context or the
  // host's), asking the user first when showDialog is true or the context
  // leaves the range or the printer open. A context with an export file
  // exports instead. Failures are reported to the user, not raised.
  virtual void IReport_PrintOut(bool showDialog, const ObjectRef &context) = 0;
  // Shows the report for the context in the preview window.
  virtual void IReport_PrintPreview(const ObjectRef &context) = 0;
  // Opens the report's designer, modally; cancel comes back true when the
  // report was not completed. reportClass is the class in view, or none.
  virtual void IReport_Configure(bool &cancel, const std::shared_ptr<Class> &reportClass) = 0;
};

} // namespace kordel::hostapi
