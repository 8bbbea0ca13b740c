#pragma once

// Internal to the XML service: the one place where text becomes a tree.

#include "core/Error.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace kordel::xmlinternal {

class XmlTree;

enum class DeclaredEncoding {
  Honour, // bytes from a file or a byte array: the declaration or BOM says how to read them
  Ignore, // UTF-8 made from a QString: an encoding named in the declaration is not true any more
};

// The Error raised for text that is not a document, with the place of the
// first fault.
class XmlParseFailure : public Error {
public:
  XmlParseFailure(const QString &source, const QString &description, int line, int column)
      : Error(ErrorNumber::InvalidCall, source, description), line_(line), column_(column) {}
  int line() const { return line_; }
  int column() const { return column_; }

private:
  int line_;
  int column_;
};

// Parses a whole document. No network, no external files, no DTD: a
// document with a document type declaration is refused outright, which
// closes entity expansion (billion laughs) and external entities at the
// root; the system's documents never carry one. Raises 5 for malformed or
// refused input (an XmlParseFailure), with the line and column of the first
// error; nothing is printed.
std::shared_ptr<XmlTree> parseDocument(const QByteArray &bytes, DeclaredEncoding encoding, const QString &source);

} // namespace kordel::xmlinternal
