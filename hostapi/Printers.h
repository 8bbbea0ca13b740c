#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// ProgID of the host's list of printers: a collection whose For Each gives
// printer objects with a "Name". The built-in PDF printer is always its
// last entry.
inline constexpr const char *kPrintersProgId = "Orvex.Printers";

// The printer every machine has, with or without a print system: it writes
// each job as a PDF file into the user's documents folder. It is the
// default printer when the print system marks none.
inline constexpr const char *kBuiltInPdfPrinterName = "Orvex PDF";

} // namespace kordel::hostapi
