#pragma once

#include "hostapi/ReportContext.h"

#include <memory>

namespace kordel {
class Dictionary;
}

namespace kordel::hostapi {
class Filter;
}

namespace kordel::addin {

// How a context's range was chosen; informative only.
enum ContextTypeEnum {
  kdContextTypeFilter = 0,
  kdContextTypeSelected = 1,
  kdContextTypeAll = 2,
  kdContextTypeContext = 3,
};

// The add-in's own print context ("OrvexKordel.Context"): what one run
// prints and how. Its property bag is two maps: filters by page, which
// shadow the plain properties of the same name, and everything else. Keys
// are compared exactly. Late-bound: the context's members, and
// ContextType, ExtensionsProperties, SubFilters, AddExtensionsProperty,
// AddSubFilter.
class Context : public hostapi::ReportContext {
public:
  QString typeName() const override { return QStringLiteral("Context"); }

  QString name() const override { return name_; }
  void setName(const QString &name) override { name_ = name; }
  Variant range() const override { return range_; }
  void setRange(const Variant &range) override { range_ = range; }
  std::shared_ptr<hostapi::Class> contextClass() const override { return class_; }
  void setContextClass(const std::shared_ptr<hostapi::Class> &cls) override { class_ = cls; }
  Variant getProperty(const QString &name, const Variant &defaultValue = {}) const override;
  // An Empty value removes the name from the filters, or else from the
  // plain properties; a filter is added, and a second filter under one name
  // raises 457; anything else replaces or adds a plain property.
  void setProperty(const QString &name, const Variant &value) override;
  QString fileName() const override;
  void setFileName(const QString &path) override;
  QString printerName() const override;
  void setPrinterName(const QString &name) override;

  ContextTypeEnum ContextType() const { return contextType_; }
  void SetContextType(ContextTypeEnum type) { contextType_ = type; }
  // Made on first use; never nullptr.
  std::shared_ptr<Dictionary> ExtensionsProperties() const;
  void SetExtensionsProperties(std::shared_ptr<Dictionary> properties) {
    extensionsProperties_ = std::move(properties);
  }
  std::shared_ptr<Dictionary> SubFilters() const;
  void SetSubFilters(std::shared_ptr<Dictionary> filters) { subFilters_ = std::move(filters); }
  // Replace or add.
  void AddExtensionsProperty(const QString &name, const QString &value);
  void AddSubFilter(const QString &name, const std::shared_ptr<hostapi::Filter> &filter);

protected:
  const MemberTable &memberTable() const override;

private:
  QString name_;
  Variant range_;
  std::shared_ptr<hostapi::Class> class_;
  ContextTypeEnum contextType_ = kdContextTypeFilter;
  mutable std::shared_ptr<Dictionary> extensionsProperties_;
  mutable std::shared_ptr<Dictionary> subFilters_;
};

} // namespace kordel::addin
