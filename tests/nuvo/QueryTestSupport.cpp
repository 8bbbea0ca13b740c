#include "QueryTestSupport.h"

#include "hostapi/Records.h"

namespace kordel::test {

void QueryTest::SetUp() {
  DatabaseTest::SetUp();
  if (IsSkipped())
    return;
  createDemo(40, 11);
  engine = open();
}

std::shared_ptr<nuvo::RecordsObject>
QueryTest::openRecords(const QString &cls, const std::shared_ptr<hostapi::Filter> &filter, const QStringList &view) {
  auto records = std::make_shared<nuvo::RecordsObject>(engine);
  std::shared_ptr<nuvo::ViewObject> paths;
  if (!view.isEmpty()) {
    paths = std::make_shared<nuvo::ViewObject>();
    for (const QString &path : view)
      paths->add(path, 0, -1, QString());
  }
  records->open(cls, filter, paths, 0);
  return records;
}

std::vector<int> QueryTest::idsOf(const QString &cls, const std::shared_ptr<hostapi::Filter> &filter) {
  return openRecords(cls, filter)->pool()->ids();
}

std::vector<int> QueryTest::idsWhere(const QString &cls, const std::function<bool(hostapi::Record &)> &test) {
  auto all = openRecords(cls);
  std::vector<int> ids;
  for (int i = 0; i < all->count(); ++i) {
    auto record = all->at(i);
    if (test(*record))
      ids.push_back(record->id());
  }
  return ids;
}

} // namespace kordel::test
