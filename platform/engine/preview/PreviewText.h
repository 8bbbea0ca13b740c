#pragma once

#include <QCoreApplication>
#include <QString>

namespace kordel::engine {

// A text of the preview window as the user reads it, in the language the
// host installed (the "Preview" entries of its translation file).
inline QString previewText(const char *english) { return QCoreApplication::translate("Preview", english); }

} // namespace kordel::engine
