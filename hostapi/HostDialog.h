#pragma once

namespace kordel::hostapi {

// ProgID of the host's dialog object. Late-bound: Fields and
// ExcludeFieldTypes (write), Show(number) giving ShowResult, and after a
// confirmed field dialog Field (the chosen field) and Path (its local
// path).
inline constexpr const char *kHostDialogProgId = "Orvex.Dialog";

// The dialogs Show knows by number.
namespace HostDialogNumber {
constexpr int Field = 12; // picks one field of a class, through its relations
} // namespace HostDialogNumber

namespace ShowResult {
constexpr int Cancelled = 0;
constexpr int Confirmed = 1;
} // namespace ShowResult

} // namespace kordel::hostapi
