#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// ProgID of the host's list of printers: a collection whose For Each gives
// printer objects with a "Name".
inline constexpr const char *kPrintersProgId = "Orvex.Printers";

} // namespace kordel::hostapi
