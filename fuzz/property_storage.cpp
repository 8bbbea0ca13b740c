// The report document store: any bytes load (a document that does not parse
// loads as an empty one), and every getter, over every section and setting
// the document holds, answers or raises an Error.

#include "document/PropertyStorage.h"

#include "core/Error.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace kordel;
using kordel::addin::PropertyStorage;

namespace {

// Names may hold "\" or be blank, so a child's path can address its parent
// again; the walk stops at a depth no store of ours reaches.
constexpr int kDeepestSection = 24;

template <class Read> void ignoringError(Read read) {
  try {
    read();
  } catch (const Error &) {
    // A refused path or name is a clean answer.
  }
}

void walk(PropertyStorage &store, const QString &section, int depth) {
  ignoringError([&] {
    const auto values = store.GetSection(section);
    for (int i = 1; i <= values->Count(); ++i)
      (void)values->Item(i);
  });
  ignoringError([&] {
    const auto names = store.GetSettingNames(section);
    for (int i = 1; i <= names->Count(); ++i) {
      const QString name = names->Item(i);
      (void)store.Exists(section, name);
      ignoringError([&] {
        const QString first = store.GetSetting(section, name, QStringLiteral("-"));
        // A second read comes from the cache and must agree with the first.
        if (store.GetSetting(section, name, QStringLiteral("-")) != first) {
          std::fprintf(stderr, "The cache answers another value for [%s] %s\n", qPrintable(section), qPrintable(name));
          std::abort();
        }
      });
      if (section == u"resources")
        ignoringError([&] { (void)store.GetResource(name); });
    }
  });
  if (depth == kDeepestSection)
    return;
  ignoringError([&] {
    const auto children = store.GetSectionNames(section);
    for (int i = 1; i <= children->Count(); ++i) {
      const QString child = children->Item(i);
      walk(store, section.isEmpty() ? child : section + u'\\' + child, depth + 1);
    }
  });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  PropertyStorage store;
  store.Load(Variant(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size))));
  walk(store, QString(), 0);
  return 0;
}
