#pragma once

#include <QString>

namespace kordel {

// Quotes text as an XPath 1.0 string literal, so that data can go into an
// expression safely: 'text' when it has no apostrophe, "text" when it has
// no double quote, and concat('…', "'", '…') when it holds both.
//
//   "/application/section[@name=" + xpathLiteral(name) + "]"
QString xpathLiteral(const QString &text);

} // namespace kordel
