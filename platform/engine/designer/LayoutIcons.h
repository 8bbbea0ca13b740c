#pragma once

#include <QIcon>

namespace kordel::engine {

// The pictures of the designer's layout commands (align, size, spacing,
// border) by their action numbers (DesignerActions.h), drawn in code so
// that they look the same on every desktop; a null icon for other actions.
QIcon layoutActionIcon(int action);

} // namespace kordel::engine
