#pragma once

#include "nuvo/Catalog.h"
#include "nuvo/FilterObject.h"

#include <memory>

namespace kordel::nuvo {

class Engine;

// The saved filters of a class. Each read gives a new Filter, which the
// caller may change without touching the saved one.
class SavedFilters : public hostapi::Filters {
public:
  SavedFilters(std::shared_ptr<Engine> engine, const ClassDef &cls) : engine_(std::move(engine)), class_(cls) {}

  QString typeName() const override { return QStringLiteral("Filters"); }
  int count() const override { return int(class_.filters.size()); }
  std::shared_ptr<hostapi::Filter> item(const QString &name) const override;
  std::shared_ptr<hostapi::Filter> at(int index) const;
  std::shared_ptr<hostapi::Filter> lookup(const QString &text, int mode) const override;

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
};

// A Filter from a saved definition; embedded saved filters are read too.
// Raises 5 for a definition that names a filter the class lacks.
std::shared_ptr<FilterObject> makeSavedFilter(const ClassDef &cls, const FilterDef &def, const QString &language);

} // namespace kordel::nuvo
