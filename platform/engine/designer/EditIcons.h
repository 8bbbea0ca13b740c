#pragma once

#include <QIcon>

namespace kordel::engine {

// The pictures of the designer's standard commands (undo, redo, cut, copy,
// paste, delete) by their action numbers (DesignerActions.h), drawn in code
// as the layout commands' are, so that the standard bar looks the same
// whatever icon theme the desktop has; a null icon for other actions.
QIcon editActionIcon(int action);

} // namespace kordel::engine
