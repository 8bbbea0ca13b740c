#pragma once

#include "hostapi/ReportContext.h"

#include <utility>
#include <vector>

namespace kordel::nuvo {

// Nuvo.ReportContext: the data engine's own IReportContext. Its property
// bag keeps names in the order they were first set; a value replaces the
// one before, whatever its kind, and Empty removes the name.
class ReportContextObject : public hostapi::ReportContext {
public:
  QString typeName() const override { return QStringLiteral("ReportContext"); }

  QString name() const override { return name_; }
  void setName(const QString &name) override { name_ = name; }
  Variant range() const override { return range_; }
  void setRange(const Variant &range) override { range_ = range; }
  std::shared_ptr<hostapi::Class> contextClass() const override { return class_; }
  void setContextClass(const std::shared_ptr<hostapi::Class> &cls) override { class_ = cls; }
  Variant getProperty(const QString &name, const Variant &defaultValue = {}) const override;
  void setProperty(const QString &name, const Variant &value) override;
  QString fileName() const override;
  void setFileName(const QString &path) override;
  QString printerName() const override;
  void setPrinterName(const QString &name) override;

  // The names in the bag, in order.
  QStringList propertyNames() const;

protected:
  const MemberTable &memberTable() const override;

private:
  QString name_;
  Variant range_;
  std::shared_ptr<hostapi::Class> class_;
  std::vector<std::pair<QString, Variant>> properties_;
};

} // namespace kordel::nuvo
