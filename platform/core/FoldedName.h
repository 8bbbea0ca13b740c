#pragma once

#include <QString>

namespace kordel {

// The name in lower case, for a lookup among names kept in lower case,
// made before the next call on the same thread: the result may be a buffer
// that the thread reuses. ASCII names, which nearly all are, are lowered
// into that buffer instead of a new string, as names that nobody declares
// (events that no script handles) are looked up for every row of a report.
const QString &foldedForLookup(const QString &name);

} // namespace kordel
