#pragma once

#include "core/Object.h"

#include <QStringList>

#include <memory>

namespace kordel::hostapi {

class Class;

inline constexpr const char *kReportContextProgId = "Nuvo.ReportContext";

// IReportContext: what one report run prints and how. Range is an object
// (Filter, Pool, Selection, Explorer, Inspector, Record) or a plain value
// (one id). The property bag holds named values and objects.
// Late-bound: Name, Range, Class, GetProperty(name, [default]),
// SetProperty(name, value), FileName, PrinterName.
class ReportContext : public Object {
public:
  virtual QString name() const = 0;
  virtual void setName(const QString &name) = 0;
  virtual Variant range() const = 0;
  virtual void setRange(const Variant &range) = 0;
  virtual std::shared_ptr<Class> contextClass() const = 0;
  virtual void setContextClass(const std::shared_ptr<Class> &cls) = 0;
  // The property's value, or the default when there is none.
  virtual Variant getProperty(const QString &name, const Variant &defaultValue = {}) const = 0;
  // Replaces or adds; an Empty value removes the property.
  virtual void setProperty(const QString &name, const Variant &value) = 0;
  // Views on "sysprop__exportfile" and "sysprop__printername".
  virtual QString fileName() const = 0;
  virtual void setFileName(const QString &path) = 0;
  virtual QString printerName() const = 0;
  virtual void setPrinterName(const QString &name) = 0;
};

} // namespace kordel::hostapi
