#pragma once

#include <QCoreApplication>
#include <QString>

namespace kordel::engine {

class Control;

// Every text the designer shows is translated in one context, "Designer",
// so that a host's translator finds it under that context and its English
// text. Texts kept in tables are marked QT_TRANSLATE_NOOP("Designer", ...)
// and translated where they are shown. n fills "%n".
inline QString designerText(const char *english, int n = -1) {
  return QCoreApplication::translate("Designer", english, nullptr, n);
}
// A marked text kept as a string.
inline QString designerText(const QString &english) { return designerText(english.toUtf8().constData()); }

// The kind of a control as the user reads it: "Label", "Field" ...
QString kindText(const Control &control);

} // namespace kordel::engine
