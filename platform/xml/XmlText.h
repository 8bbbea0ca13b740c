#pragma once

// Internal to the XML service: conversions between Qt strings and the UTF-8
// strings of libxml2, and the checks that keep what callers store readable
// when the document is loaded again.

#include <QByteArray>
#include <QString>

#include <libxml/tree.h>

namespace kordel::xmlinternal {

// A libxml2 string as a QString; a null pointer gives the empty string.
QString fromXmlChars(const xmlChar *text);
// The same for a string that libxml2 allocated for the caller; frees it.
QString takeXmlChars(xmlChar *text);

// The name of a node as the DOM gives it: elements and attributes with
// their prefix ("dt:dt"), "#text", "#cdata-section", "#comment",
// "#document", and a processing instruction's target.
QString qualifiedName(const xmlNode *node);

// Whether a node is a processing instruction with the target "xml", which
// a script makes to give a new document its declaration.
bool isDeclarationNode(const xmlNode *node);

// The UTF-8 bytes handed to libxml2. Keep the QByteArray alive while the
// pointer is in use.
inline const xmlChar *xmlChars(const QByteArray &utf8) { return reinterpret_cast<const xmlChar *>(utf8.constData()); }

// Raises 5 when text holds a character that XML 1.0 cannot carry (control
// characters other than tab, line feed and carriage return, U+FFFE, U+FFFF,
// unpaired surrogates). Such text would save but never load again.
void requireStorableText(const QString &text, const QString &source);

// Raises 5 unless name is a valid XML name without a namespace prefix.
void requirePlainName(const QString &name, const QString &source);

} // namespace kordel::xmlinternal
