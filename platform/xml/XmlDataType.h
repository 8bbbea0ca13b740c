#pragma once

// Internal to the XML service: typed element values. An element typed
// "bin.base64" carries the attribute dt:dt="bin.base64" in the data type
// namespace and holds its bytes as base64 text.

#include <QByteArray>
#include <QString>

#include <libxml/tree.h>

namespace kordel::xmlinternal {

inline constexpr char kDataTypeNamespace[] = "urn:schemas-microsoft-com:datatypes";
inline constexpr char kBase64Type[] = "bin.base64";

// The data type attribute of an element, or nullptr.
xmlAttrPtr findDataTypeAttribute(xmlNodePtr element);

// Types an element as base64: declares the data type namespace with the
// prefix "dt" on the element itself, unless the element already declares it,
// and sets the attribute. Raises 5 when the element uses "dt" for another
// namespace.
void annotateBase64(xmlNodePtr element, const QString &source);

// The bytes of base64 text. Blanks, tabs and line breaks anywhere are
// skipped, so text written in lines of 76 with CRLF reads back. Raises 13
// for text that is not base64.
QByteArray decodeBase64Text(const QString &text, const QString &source);

} // namespace kordel::xmlinternal
