#pragma once

#include "xml/XmlNode.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace kordel {

class XmlParseError;

// An XML document in memory: load, save, make nodes, query with XPath.
//
// Text form. What xml gives and save writes is UTF-8 with no indentation
// added: the declaration <?xml version="1.0"?> (never an encoding
// attribute), a line feed, then each top-level node followed by a line feed.
// The declaration a loaded file had is not kept; any declaration is read,
// ours is written. Loading a file this class wrote and saving it again gives
// the same bytes. Line feeds, carriage returns and tabs in attribute values
// and carriage returns in text are written as character references, so they
// read back as they were. An empty document (no nodes) has empty xml.
//
// Loading. No network access, no external files, no DTD: a document with
// a document type declaration is refused, so entity tricks cannot work.
// A failed load raises an Error, records it in parseError, and leaves the
// document as it was. Nodes of the document before a load stay usable;
// they belong to the old tree and cannot be appended to the new one.
//
// Scripts see the node members and documentElement, loadXML, load, save,
// createElement, createTextNode, createCDATASection,
// createProcessingInstruction, parseError, async, validateOnParse,
// setProperty and getProperty. For scripts load and loadXML return True or
// False, as the DOM has them, instead of raising.
class XmlDocument : public XmlNode {
  struct Token {};

public:
  // A new empty document, without declaration node or root element.
  static std::shared_ptr<XmlDocument> create();
  explicit XmlDocument(Token);
  ~XmlDocument() override;

  QString typeName() const override { return QStringLiteral("XmlDocument"); }

  // Parses text; an encoding named in its declaration is ignored, since
  // the text is already characters. Raises 5 for text that is not a
  // well-formed, namespace-correct document, naming line and column.
  void loadXML(const QString &text);
  // Reads a file. Raises 53 for a missing file, 70 for one that cannot be
  // read, 5 for contents as loadXML.
  void load(const QString &path);
  // Parses bytes; the declaration or a byte order mark gives the encoding,
  // UTF-8 by default.
  void load(const QByteArray &bytes);
  // Writes xml to a file through a temporary file beside it that then
  // replaces the target, so a failed save leaves the old file or none.
  // Raises 76 when the folder does not exist, 70 when the file cannot be
  // written, 5 for a document without a root element.
  void save(const QString &path) const;

  std::shared_ptr<XmlNode> documentElement() const;

  // New nodes of this document, not yet in its tree. Names are XML names
  // without prefix; text must be storable in XML (else 5).
  std::shared_ptr<XmlNode> createElement(const QString &name);
  std::shared_ptr<XmlNode> createTextNode(const QString &text);
  std::shared_ptr<XmlNode> createCDATASection(const QString &text);
  // With target "xml" this makes a declaration node: it may be appended to
  // the document, where it stands for the declaration that is always
  // written (its pseudo-attributes are not used).
  std::shared_ptr<XmlNode> createProcessingInstruction(const QString &target, const QString &data);

  // The outcome of the last load; errorCode 0 after a successful one or
  // before any.
  std::shared_ptr<XmlParseError> parseError() const { return parseError_; }

  // Kept for callers that set them. Loading is always synchronous, and
  // there is no DTD to validate against.
  bool async() const { return async_; }
  void setAsync(bool async) { async_ = async; }
  bool validateOnParse() const { return validateOnParse_; }
  void setValidateOnParse(bool validate) { validateOnParse_ = validate; }

  // "SelectionLanguage" is "XPath" and can only be set to it; other names
  // raise 5.
  Variant getProperty(const QString &name) const;
  void setProperty(const QString &name, const Variant &value);

protected:
  const MemberTable &memberTable() const override;

private:
  // Runs a load; on success the new tree replaces the old one, on failure
  // the error is recorded and raised again.
  void replaceTree(const std::function<std::shared_ptr<xmlinternal::XmlTree>()> &load);
  // load and loadXML as scripts call them: True or False.
  bool loadForScript(const Variant &source);
  bool loadXMLForScript(const QString &text);

  std::shared_ptr<XmlParseError> parseError_;
  bool async_ = true;
  bool validateOnParse_ = true;
};

} // namespace kordel
