// The filter compiler, from the condition trees of saved filters as the
// database stores them. The input is JSON:
//
//   {"class": "company", "filters": {"name": [item, ...], ...}}
//
// with the items of the stored form ({"path", "op", "value"}, {"filter"},
// {"operator"}). Each filter is made as the class's saved filters are made,
// embedded filters included, and opens the class's records on a small demo
// database; every failure must be an Error.

#include "nuvo/Engine.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/SavedFilters.h"
#include "nuvo/demo/DemoDatabase.h"

#include "core/Error.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdint>
#include <memory>

using namespace kordel;
using namespace kordel::nuvo;

namespace {

// A demo database of a few companies in a folder that goes with the
// process; members end in reverse order, the database before its folder.
struct DemoDatabase {
  DemoDatabase(int &argc, char **argv) : application(argc, argv) {
    DatabaseAddress address;
    address.file = folder.filePath(QStringLiteral("demo.db"));
    demo::DemoOptions options;
    options.companies = 8;
    demo::createDemoDatabase(address, options);
    engine = Engine::open(address, QStringLiteral("en"));
  }

  QCoreApplication application;
  QTemporaryDir folder;
  std::shared_ptr<Engine> engine;
};

const DemoDatabase *opened = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
  static const DemoDatabase made(*argc, *argv);
  opened = &made;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QJsonObject input =
      QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size))).object();
  // The saved filters live in a class of their own, named as the real one,
  // so that they embed each other and nothing else.
  ClassDef saved;
  saved.name = input.value(QLatin1String("class")).toString(QStringLiteral("company"));
  const QJsonObject filters = input.value(QLatin1String("filters")).toObject();
  for (auto it = filters.begin(); it != filters.end(); ++it)
    saved.filters.push_back({it.key(), {}, it.value().toArray()});
  for (const FilterDef &def : saved.filters) {
    try {
      const auto filter = makeSavedFilter(saved, def, opened->engine->language());
      auto records = std::make_shared<RecordsObject>(opened->engine);
      records->open(saved.name, filter, nullptr, 0);
      (void)records->count();
    } catch (const Error &) {
      // A filter the class cannot have, or a class the database lacks.
    }
  }
  return 0;
}
