#pragma once

#include "NuvoFixture.h"

#include "nuvo/FilterObject.h"
#include "nuvo/PoolObject.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/ViewObject.h"

#include "hostapi/Filters.h"

#include <functional>
#include <vector>

namespace kordel::test {

// A demo database with helpers to run queries and to find the expected
// answer the slow way, by reading every record.
class QueryTest : public DatabaseTest {
protected:
  void SetUp() override;

  std::shared_ptr<nuvo::RecordsObject> openRecords(const QString &cls,
                                                   const std::shared_ptr<hostapi::Filter> &filter = nullptr,
                                                   const QStringList &view = {});
  std::vector<int> idsOf(const QString &cls, const std::shared_ptr<hostapi::Filter> &filter);
  // The ids of the records for which the test holds, reading the given
  // paths of every record.
  std::vector<int> idsWhere(const QString &cls, const std::function<bool(hostapi::Record &)> &test);
  std::shared_ptr<nuvo::FilterObject> filter() { return std::make_shared<nuvo::FilterObject>(); }

  std::shared_ptr<nuvo::Engine> engine;
};

} // namespace kordel::test
