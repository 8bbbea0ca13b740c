// The script interchange reader: any file of tagged script lines is read
// into its document of pages and sections, or refused with a message;
// nothing else may happen. No host is connected: the reader's last step,
// reading the setting that asks for a copy of the document, then fails and
// is reported as any failure of the reader is, after the whole file was
// read.

#include "scriptio/ScriptIO.h"
#include "scriptio/ScriptTextFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>

namespace kordel::test {

// The reader's own friend, as in the add-in's tests.
class ScriptIOTest {
public:
  static bool convert(addin::ScriptIO &io, addin::ScriptTextFile &stream) { return io.Convert(stream); }
};

} // namespace kordel::test

using namespace kordel;

namespace {

// The file the reader reads, in a folder that goes with the process.
struct Scratch {
  Scratch(int &argc, char **argv) : application(argc, argv) {}

  QCoreApplication application;
  QTemporaryDir folder;
  QString file = folder.filePath(QStringLiteral("scripts.vbs"));
};

const Scratch *scratch = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
  static const Scratch made(*argc, *argv);
  scratch = &made;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  {
    QFile out(scratch->file);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        out.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
      qFatal("Cannot write %s", qPrintable(scratch->file));
  }
  addin::ScriptTextFile stream(scratch->file, addin::ScriptTextFile::Mode::Read);
  addin::ScriptIO io;
  (void)test::ScriptIOTest::convert(io, stream);
  return 0;
}
