#pragma once

#include "nuvo/RecordSet.h"

#include "hostapi/Filters.h"
#include "hostapi/Records.h"

#include <memory>
#include <vector>

namespace kordel::nuvo {

class Engine;
class RecordObject;

// Nuvo.Records: the records of one class under a filter, fetched with the
// paths of a view by one SELECT, whatever the filter holds.
class RecordsObject : public hostapi::Records {
public:
  // engine may be nullptr when no database is open; Open then raises 91.
  explicit RecordsObject(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

  QString typeName() const override { return QStringLiteral("Records"); }

  void open(const Variant &classOrName, const std::shared_ptr<hostapi::Filter> &filter,
            const std::shared_ptr<hostapi::View> &view, int flags) override;
  int count() const override { return set_ ? set_->rowCount() : 0; }
  std::shared_ptr<hostapi::Record> at(int index) const override;
  int idAt(int index) const override;
  std::shared_ptr<hostapi::Pool> pool() const override;
  std::shared_ptr<hostapi::Filter> source() const override { return source_; }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  std::shared_ptr<const RecordSet> set_;
  std::shared_ptr<hostapi::Filter> source_;
};

// The default view of a class: each field that has a value of its own.
std::vector<FieldPath> plainPaths(const ClassDef &cls);

} // namespace kordel::nuvo
