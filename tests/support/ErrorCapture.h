#pragma once

#include "core/Error.h"

#include <functional>

namespace kordel::test {

// The error that the action raises; number 0 when it raises none.
Error errorOf(const std::function<void()> &action);
// The number of the error that the action raises; 0 when it raises none.
int errorNumber(const std::function<void()> &action);

} // namespace kordel::test
