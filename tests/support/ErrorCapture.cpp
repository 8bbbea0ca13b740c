#include "support/ErrorCapture.h"

namespace kordel::test {

Error errorOf(const std::function<void()> &action) {
  try {
    action();
  } catch (const Error &error) {
    return error;
  }
  return Error(0, {}, QStringLiteral("no error was raised"));
}

int errorNumber(const std::function<void()> &action) { return errorOf(action).number(); }

} // namespace kordel::test
