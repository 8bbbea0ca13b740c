#pragma once

#include "core/Object.h"

#include <QString>

#include <memory>
#include <optional>

struct _xmlNode;

namespace kordel {

namespace xmlinternal {
class XmlTree;
}

class XmlNodeList;

// The kinds of node, numbered as the DOM numbers them.
enum class XmlNodeType {
  Element = 1,
  Attribute = 2,
  Text = 3,
  CDataSection = 4,
  ProcessingInstruction = 7,
  Comment = 8,
  Document = 9,
};

// One node of an XML document: element, attribute, text, CDATA section,
// comment, processing instruction, or the document itself. A node keeps its
// document alive; a node taken out with removeChild stays usable, and can be
// appended again, for as long as anybody holds it.
//
// Scripts reach the DOM members by their usual names (nodeName, nodeType,
// nodeValue, text, xml, parentNode, childNodes, firstChild, lastChild,
// nextSibling, previousSibling, hasChildNodes, attributes, getAttribute,
// getAttributeNode, setAttribute, removeAttribute, appendChild,
// insertBefore, removeChild, selectSingleNode, selectNodes, dataType,
// nodeTypedValue). There, a missing attribute, a node's absent value and an
// untyped node's dataType read as Null, as the DOM has them.
class XmlNode : public Object {
public:
  // Made by the service; callers get nodes from a document.
  XmlNode(std::shared_ptr<xmlinternal::XmlTree> tree, _xmlNode *node);
  ~XmlNode() override;

  QString typeName() const override;

  XmlNodeType nodeType() const;
  // Element and attribute names with their prefix; "#text",
  // "#cdata-section", "#comment", "#document"; a PI's target.
  QString nodeName() const;
  // The value of an attribute, text, CDATA section, comment or PI; none for
  // elements and documents.
  std::optional<QString> nodeValue() const;
  // Raises 5 on elements and documents.
  void setNodeValue(const QString &value);

  // All text below the node, concatenated; an attribute's value.
  QString text() const;
  // Replaces all children of an element with one text node; sets the value
  // of other nodes. Raises 5 on a document.
  void setText(const QString &text);
  // The node serialised as UTF-8 XML text (see XmlDocument for the form of
  // a whole document).
  QString xml() const;

  // The parent; nullptr for documents, attributes and nodes not in a tree.
  std::shared_ptr<XmlNode> parentNode() const;
  std::shared_ptr<XmlNodeList> childNodes() const;
  std::shared_ptr<XmlNode> firstChild() const;
  std::shared_ptr<XmlNode> lastChild() const;
  std::shared_ptr<XmlNode> nextSibling() const;
  std::shared_ptr<XmlNode> previousSibling() const;
  bool hasChildNodes() const;

  // The attributes of an element in the order they were made or read;
  // nullptr for other nodes. Namespace declarations are not among them.
  std::shared_ptr<XmlNodeList> attributes() const;
  // Attributes by qualified name ("name", "dt:dt"). Nothing when missing.
  std::optional<QString> getAttribute(const QString &name) const;
  std::shared_ptr<XmlNode> getAttributeNode(const QString &name) const;
  // Sets or adds an attribute; a new one goes after the existing ones. A
  // prefixed name needs its prefix declared on the element or above.
  void setAttribute(const QString &name, const QString &value);
  // Does nothing when the attribute is missing.
  void removeAttribute(const QString &name);

  // Moves child to the end of this node's children (or before reference)
  // and returns it. The child must come from the same document and must
  // not contain this node; a document takes one element at most.
  std::shared_ptr<XmlNode> appendChild(const std::shared_ptr<XmlNode> &child);
  std::shared_ptr<XmlNode> insertBefore(const std::shared_ptr<XmlNode> &child,
                                        const std::shared_ptr<XmlNode> &reference);
  // Takes a child out and returns it; raises 5 if it is not a child.
  std::shared_ptr<XmlNode> removeChild(const std::shared_ptr<XmlNode> &child);

  // XPath 1.0 from this node as context. selectSingleNode gives the first
  // node in document order, or nullptr. Raises 5 for an invalid
  // expression, with the reason and its position. Build expressions from
  // data with xpathLiteral() (XPathLiteral.h). The prefix dt stands for the
  // data type namespace, so "@dt:dt" works without declaring it.
  std::shared_ptr<XmlNode> selectSingleNode(const QString &path) const;
  std::shared_ptr<XmlNodeList> selectNodes(const QString &path) const;

  // The data type of an element: "bin.base64", or empty for an untyped one.
  QString dataType() const;
  // "bin.base64" types an element (adds xmlns:dt and dt:dt="bin.base64");
  // the empty string removes the type. Other types raise 5.
  void setDataType(const QString &type);
  // bin.base64 elements: the bytes of the base64 text. Other nodes: text.
  Variant nodeTypedValue() const;
  // bin.base64 elements take a byte array and store it as base64 text on
  // one line; other nodes take their text. Bytes for an untyped node raise 13.
  void setNodeTypedValue(const Variant &value);

  // Whether both refer to the same node of the same document.
  bool isSameNode(const XmlNode &other) const;

protected:
  const MemberTable &memberTable() const override;

  // A node of the same document as this one; nullptr for nullptr.
  std::shared_ptr<XmlNode> wrap(_xmlNode *node) const;
  // Raises 5 with this node's kind in the text unless it is an element.
  void requireElement(const char *operation) const;
  QString sourceOf(const char *operation) const;

  std::shared_ptr<xmlinternal::XmlTree> tree_;
  _xmlNode *node_;

private:
  void checkNewChild(const XmlNode &child, const char *operation) const;
  _xmlNode *findAttribute(const QString &name) const;
};

// Late-bound arguments that must be nodes: the node, or raises 424.
std::shared_ptr<XmlNode> nodeArgument(const Variant &value, const QString &source);

} // namespace kordel
