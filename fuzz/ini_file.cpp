// The INI reader: any bytes either read or raise an Error. What was read
// writes out as text that reads back to the same sections, names and
// values, and writes out the same again.

#include "host/IniFile.h"

#include "core/Error.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace kordel;
using kordel::host::IniFile;

namespace {

[[noreturn]] void fail(const char *what, const QByteArray &text) {
  std::fprintf(stderr, "%s:\n%s\n", what, text.constData());
  std::abort();
}

bool sameContents(const IniFile &one, const IniFile &other) {
  if (one.sections() != other.sections())
    return false;
  for (const QString &section : one.sections()) {
    if (one.names(section) != other.names(section))
      return false;
    for (const QString &name : one.names(section))
      if (one.value(section, name) != other.value(section, name))
        return false;
  }
  return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const QString origin = QStringLiteral("fuzz.ini");
  IniFile file;
  try {
    file = IniFile::parse(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)), origin);
  } catch (const Error &) {
    return 0;
  }
  const QByteArray text = file.serialize();
  IniFile again;
  try {
    again = IniFile::parse(text, origin);
  } catch (const Error &) {
    fail("What the reader read does not read back", text);
  }
  if (!sameContents(file, again))
    fail("What the reader read reads back otherwise", text);
  if (again.serialize() != text)
    fail("What the reader read writes out otherwise the second time", text);
  return 0;
}
