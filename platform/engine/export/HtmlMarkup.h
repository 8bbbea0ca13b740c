#pragma once

#include "engine/render/Page.h"

#include <QString>

namespace kordel::engine {

// Text for HTML element content and attribute values: &, <, >, " and '
// become character references, so nothing in the text can open a tag, end
// an attribute or start an entity. Control characters other than the tab
// are left out.
QString escapeHtml(const QString &text);

// A length in twips as a CSS length in points, such as "595.3pt".
QString cssPoints(Twips twips);

// A colour as CSS: "#rrggbb", or rgba() when it is not opaque.
QString cssColor(QRgb color);

// A CSS string in double quotes in which every character but letters,
// digits and blanks is a CSS escape, so it can neither end the string nor
// the style sheet.
QString cssString(const QString &text);

} // namespace kordel::engine
