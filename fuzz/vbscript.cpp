// The VBScript interpreter: any text is lexed, parsed and resolved, and what
// compiles runs under a small budget, so that endless loops, deep recursion
// and huge strings or arrays end with a script error, never a hang.

#include "script/ScriptRunner.h"

#include <cstdint>

using namespace kordel;
using namespace kordel::script;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  ScriptRunOptions options;
  options.scriptName = QStringLiteral("fuzz.vbs");
  options.budget.milliseconds = 2000;
  options.budget.statements = 10000;
  options.budget.recursionDepth = 100;
  options.budget.maxStringLength = 1 << 16;
  options.budget.maxArrayElements = 1 << 14;
  const QString code = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
  (void)runScript(code, options, [](const QString &) {});
  return 0;
}
