#pragma once

// Internal to the XML service: the one place where a tree becomes text.

#include <QByteArray>

#include <libxml/tree.h>

namespace kordel::xmlinternal {

// The declaration that starts every serialised document.
inline constexpr char kXmlDeclaration[] = "<?xml version=\"1.0\"?>\n";

// A node as UTF-8 XML, with no indentation added. A document is the
// declaration above followed by its top-level nodes, each ended by a line
// feed; a declaration node made by a caller is not written twice; a
// document without nodes gives nothing. An attribute gives
// name="value". Line feeds, carriage returns and tabs in attribute values
// and carriage returns in text are written as character references, so
// they read back as they were.
QByteArray serializeNode(xmlNodePtr node);

} // namespace kordel::xmlinternal
