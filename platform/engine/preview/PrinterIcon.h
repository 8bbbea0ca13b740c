#pragma once

#include <QIcon>

namespace kordel::engine {

// The icon of a print command: the desktop theme's printer, else a
// printer drawn here, as Qt's own styles have no printer among their icons.
QIcon printerIcon();

} // namespace kordel::engine
