// The layout reader: any bytes either read into a report or raise an Error
// and leave the report as it was. What was read saves, and the saved bytes
// read again and save to the same bytes.

#include "engine/format/LayoutFormat.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace kordel;
using namespace kordel::engine;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto report = LayoutReport::create();
  const QByteArray empty = saveLayout(*report);
  try {
    loadLayout(*report, QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
  } catch (const Error &) {
    if (saveLayout(*report) != empty) {
      std::fprintf(stderr, "A refused layout changed the report\n");
      std::abort();
    }
    return 0;
  }
  QByteArray saved;
  try {
    saved = saveLayout(*report);
  } catch (const Error &) {
    // A text read from the file that the writer cannot store (5) is refused
    // cleanly at the save.
    return 0;
  }
  const auto again = LayoutReport::create();
  try {
    loadLayout(*again, saved);
  } catch (const Error &error) {
    std::fprintf(stderr, "A saved layout does not read again: %s\n%s\n", qPrintable(error.description()),
                 saved.constData());
    std::abort();
  }
  if (saveLayout(*again) != saved) {
    std::fprintf(stderr, "Saving a read layout twice gives two files:\n%s\n%s\n", saved.constData(),
                 saveLayout(*again).constData());
    std::abort();
  }
  return 0;
}
