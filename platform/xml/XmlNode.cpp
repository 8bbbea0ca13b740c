#include "xml/XmlNode.h"

#include "core/Error.h"
#include "xml/XmlDataType.h"
#include "xml/XmlErrorCapture.h"
#include "xml/XmlNodeList.h"
#include "xml/XmlSerializer.h"
#include "xml/XmlText.h"
#include "xml/XmlTree.h"

namespace kordel {

using namespace xmlinternal;

namespace {

QString kindName(xmlElementType type) {
  switch (type) {
  case XML_ELEMENT_NODE: return QStringLiteral("element");
  case XML_ATTRIBUTE_NODE: return QStringLiteral("attribute");
  case XML_TEXT_NODE: return QStringLiteral("text");
  case XML_CDATA_SECTION_NODE: return QStringLiteral("CDATA section");
  case XML_PI_NODE: return QStringLiteral("processing instruction");
  case XML_COMMENT_NODE: return QStringLiteral("comment");
  case XML_DOCUMENT_NODE: return QStringLiteral("document");
  default: return QStringLiteral("other");
  }
}

// Replaces the value of an attribute, whether it is on an element or was
// removed from one. Its old text nodes go: they are never handed out.
void replaceAttributeValue(xmlAttrPtr attribute, const QString &value) {
  const QByteArray utf8 = value.toUtf8();
  xmlNodePtr text = xmlNewDocText(attribute->doc, xmlChars(utf8));
  if (!text)
    throw std::bad_alloc();
  xmlFreeNodeList(attribute->children);
  text->parent = reinterpret_cast<xmlNodePtr>(attribute);
  attribute->children = attribute->last = text;
}

std::vector<xmlNodePtr> childrenOf(xmlNodePtr node) {
  std::vector<xmlNodePtr> children;
  if (node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE) {
    for (xmlNodePtr child = node->children; child; child = child->next)
      children.push_back(child);
  }
  return children;
}

Variant orNull(const std::optional<QString> &text) { return text ? Variant(*text) : Variant::null(); }

} // namespace

XmlNode::XmlNode(std::shared_ptr<XmlTree> tree, _xmlNode *node) : tree_(std::move(tree)), node_(node) {}

XmlNode::~XmlNode() = default;

QString XmlNode::typeName() const { return QStringLiteral("XmlNode"); }

QString XmlNode::sourceOf(const char *operation) const { return typeName() + u'.' + QString::fromLatin1(operation); }

std::shared_ptr<XmlNode> XmlNode::wrap(_xmlNode *node) const {
  return node ? std::make_shared<XmlNode>(tree_, node) : nullptr;
}

void XmlNode::requireElement(const char *operation) const {
  if (node_->type != XML_ELEMENT_NODE)
    raiseError(ErrorNumber::InvalidCall, sourceOf(operation),
               QStringLiteral("%1 needs an element, not a %2 node")
                   .arg(QString::fromLatin1(operation), kindName(node_->type)));
}

XmlNodeType XmlNode::nodeType() const { return XmlNodeType(node_->type); }

QString XmlNode::nodeName() const { return qualifiedName(node_); }

std::optional<QString> XmlNode::nodeValue() const {
  switch (node_->type) {
  case XML_ATTRIBUTE_NODE: return takeXmlChars(xmlNodeGetContent(node_));
  case XML_TEXT_NODE:
  case XML_CDATA_SECTION_NODE:
  case XML_COMMENT_NODE:
  case XML_PI_NODE: return fromXmlChars(node_->content);
  default: return std::nullopt;
  }
}

void XmlNode::setNodeValue(const QString &value) {
  const QString source = sourceOf("nodeValue");
  requireStorableText(value, source);
  switch (node_->type) {
  case XML_ATTRIBUTE_NODE: replaceAttributeValue(reinterpret_cast<xmlAttrPtr>(node_), value); return;
  case XML_COMMENT_NODE:
    if (value.contains(QStringLiteral("--")) || value.endsWith(u'-'))
      raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A comment cannot hold \"--\" or end with \"-\""));
    break;
  case XML_PI_NODE:
    if (value.contains(QStringLiteral("?>")))
      raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A processing instruction cannot hold \"?>\""));
    break;
  case XML_TEXT_NODE:
  case XML_CDATA_SECTION_NODE: break;
  default:
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("A %1 node has no value to set").arg(kindName(node_->type)));
  }
  const QByteArray utf8 = value.toUtf8();
  xmlNodeSetContent(node_, xmlChars(utf8));
}

QString XmlNode::text() const { return takeXmlChars(xmlNodeGetContent(node_)); }

void XmlNode::setText(const QString &text) {
  if (node_->type == XML_DOCUMENT_NODE)
    raiseError(ErrorNumber::InvalidCall, sourceOf("text"), QStringLiteral("The text of a document cannot be set"));
  if (node_->type != XML_ELEMENT_NODE) {
    setNodeValue(text);
    return;
  }
  requireStorableText(text, sourceOf("text"));
  tree_->unlinkChildren(node_);
  if (text.isEmpty())
    return;
  const QByteArray utf8 = text.toUtf8();
  tree_->link(node_, tree_->adopt(xmlNewDocText(tree_->doc(), xmlChars(utf8))), nullptr);
}

QString XmlNode::xml() const { return QString::fromUtf8(serializeNode(node_)); }

std::shared_ptr<XmlNode> XmlNode::parentNode() const {
  return node_->type == XML_ATTRIBUTE_NODE ? nullptr : wrap(node_->parent);
}

std::shared_ptr<XmlNodeList> XmlNode::childNodes() const {
  return std::make_shared<XmlNodeList>(tree_, childrenOf(node_));
}

std::shared_ptr<XmlNode> XmlNode::firstChild() const {
  const std::vector<xmlNodePtr> children = childrenOf(node_);
  return children.empty() ? nullptr : wrap(children.front());
}

std::shared_ptr<XmlNode> XmlNode::lastChild() const {
  const std::vector<xmlNodePtr> children = childrenOf(node_);
  return children.empty() ? nullptr : wrap(children.back());
}

std::shared_ptr<XmlNode> XmlNode::nextSibling() const {
  return node_->type == XML_ATTRIBUTE_NODE ? nullptr : wrap(node_->next);
}

std::shared_ptr<XmlNode> XmlNode::previousSibling() const {
  return node_->type == XML_ATTRIBUTE_NODE ? nullptr : wrap(node_->prev);
}

bool XmlNode::hasChildNodes() const { return !childrenOf(node_).empty(); }

std::shared_ptr<XmlNodeList> XmlNode::attributes() const {
  if (node_->type != XML_ELEMENT_NODE)
    return nullptr;
  std::vector<xmlNodePtr> attributes;
  for (xmlAttrPtr attribute = node_->properties; attribute; attribute = attribute->next)
    attributes.push_back(reinterpret_cast<xmlNodePtr>(attribute));
  return std::make_shared<XmlNodeList>(tree_, std::move(attributes));
}

_xmlNode *XmlNode::findAttribute(const QString &name) const {
  if (node_->type != XML_ELEMENT_NODE)
    return nullptr;
  for (xmlAttrPtr attribute = node_->properties; attribute; attribute = attribute->next) {
    auto *node = reinterpret_cast<xmlNodePtr>(attribute);
    if (qualifiedName(node) == name)
      return node;
  }
  return nullptr;
}

std::optional<QString> XmlNode::getAttribute(const QString &name) const {
  if (xmlNodePtr attribute = findAttribute(name))
    return takeXmlChars(xmlNodeGetContent(attribute));
  return std::nullopt;
}

std::shared_ptr<XmlNode> XmlNode::getAttributeNode(const QString &name) const { return wrap(findAttribute(name)); }

void XmlNode::setAttribute(const QString &name, const QString &value) {
  const QString source = sourceOf("setAttribute");
  requireElement("setAttribute");
  requireStorableText(value, source);
  if (xmlNodePtr existing = findAttribute(name)) {
    replaceAttributeValue(reinterpret_cast<xmlAttrPtr>(existing), value);
    return;
  }

  const qsizetype colon = name.indexOf(u':');
  const QString prefix = colon < 0 ? QString() : name.left(colon);
  const QString localName = colon < 0 ? name : name.mid(colon + 1);
  if (name == u"xmlns" || prefix == u"xmlns")
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("Namespace declarations cannot be set as attributes (\"%1\")").arg(name));
  requirePlainName(localName, source);
  xmlNsPtr ns = nullptr;
  if (colon >= 0) {
    requirePlainName(prefix, source);
    const QByteArray prefixUtf8 = prefix.toUtf8();
    ns = xmlSearchNs(tree_->doc(), node_, xmlChars(prefixUtf8));
    if (!ns)
      raiseError(ErrorNumber::InvalidCall, source,
                 QStringLiteral("The prefix of the attribute \"%1\" is not declared").arg(name));
  }
  XmlErrorCapture quiet;
  const QByteArray nameUtf8 = localName.toUtf8();
  const QByteArray valueUtf8 = value.toUtf8();
  if (!xmlSetNsProp(node_, ns, xmlChars(nameUtf8), xmlChars(valueUtf8)))
    throw std::bad_alloc();
}

void XmlNode::removeAttribute(const QString &name) {
  requireElement("removeAttribute");
  if (xmlNodePtr attribute = findAttribute(name))
    tree_->unlink(attribute);
}

void XmlNode::checkNewChild(const XmlNode &child, const char *operation) const {
  const QString source = sourceOf(operation);
  if (child.tree_ != tree_)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The node belongs to another document"));
  if (node_->type != XML_ELEMENT_NODE && node_->type != XML_DOCUMENT_NODE)
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("A %1 node cannot have children").arg(kindName(node_->type)));
  const xmlElementType childType = child.node_->type;
  if (childType == XML_ATTRIBUTE_NODE || childType == XML_DOCUMENT_NODE)
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("A %1 node cannot be a child").arg(kindName(childType)));
  for (xmlNodePtr above = node_; above; above = above->parent) {
    if (above == child.node_)
      raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A node cannot be put below itself"));
  }
  if (isDeclarationNode(child.node_) && node_->type != XML_DOCUMENT_NODE)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The XML declaration can only stand in a document"));
  if (node_->type == XML_DOCUMENT_NODE) {
    if (childType == XML_TEXT_NODE || childType == XML_CDATA_SECTION_NODE)
      raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A document cannot hold text outside its element"));
    xmlNodePtr root = xmlDocGetRootElement(tree_->doc());
    if (childType == XML_ELEMENT_NODE && root && root != child.node_)
      raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A document can have only one root element"));
  }
}

std::shared_ptr<XmlNode> XmlNode::appendChild(const std::shared_ptr<XmlNode> &child) {
  return insertBefore(child, nullptr);
}

std::shared_ptr<XmlNode> XmlNode::insertBefore(const std::shared_ptr<XmlNode> &child,
                                               const std::shared_ptr<XmlNode> &reference) {
  const char *operation = reference ? "insertBefore" : "appendChild";
  if (!child)
    raiseError(ErrorNumber::ObjectRequired, sourceOf(operation));
  checkNewChild(*child, operation);
  if (reference &&
      (reference->tree_ != tree_ || reference->node_->type == XML_ATTRIBUTE_NODE || reference->node_->parent != node_))
    raiseError(ErrorNumber::InvalidCall, sourceOf(operation),
               QStringLiteral("The reference node is not a child of this node"));
  tree_->link(node_, child->node_, reference ? reference->node_ : nullptr);
  return child;
}

std::shared_ptr<XmlNode> XmlNode::removeChild(const std::shared_ptr<XmlNode> &child) {
  if (!child)
    raiseError(ErrorNumber::ObjectRequired, sourceOf("removeChild"));
  if (child->tree_ != tree_ || child->node_->type == XML_ATTRIBUTE_NODE || child->node_->parent != node_)
    raiseError(ErrorNumber::InvalidCall, sourceOf("removeChild"),
               QStringLiteral("The node is not a child of this node"));
  tree_->unlink(child->node_);
  return child;
}

std::shared_ptr<XmlNode> XmlNode::selectSingleNode(const QString &path) const {
  const std::vector<xmlNodePtr> nodes = tree_->select(node_, path, sourceOf("selectSingleNode"));
  return nodes.empty() ? nullptr : wrap(nodes.front());
}

std::shared_ptr<XmlNodeList> XmlNode::selectNodes(const QString &path) const {
  return std::make_shared<XmlNodeList>(tree_, tree_->select(node_, path, sourceOf("selectNodes")));
}

QString XmlNode::dataType() const {
  if (node_->type != XML_ELEMENT_NODE)
    return {};
  xmlAttrPtr attribute = findDataTypeAttribute(node_);
  return attribute ? takeXmlChars(xmlNodeGetContent(reinterpret_cast<xmlNodePtr>(attribute))) : QString();
}

void XmlNode::setDataType(const QString &type) {
  requireElement("dataType");
  if (type == QLatin1String(kBase64Type)) {
    annotateBase64(node_, sourceOf("dataType"));
  } else if (type.isEmpty()) {
    if (xmlAttrPtr attribute = findDataTypeAttribute(node_))
      tree_->unlink(reinterpret_cast<xmlNodePtr>(attribute));
  } else {
    raiseError(ErrorNumber::InvalidCall, sourceOf("dataType"),
               QStringLiteral("The data type \"%1\" is not supported; only bin.base64 is").arg(type));
  }
}

Variant XmlNode::nodeTypedValue() const {
  if (dataType() == QLatin1String(kBase64Type))
    return Variant(decodeBase64Text(text(), sourceOf("nodeTypedValue")));
  return Variant(text());
}

void XmlNode::setNodeTypedValue(const Variant &value) {
  if (dataType() == QLatin1String(kBase64Type)) {
    if (!value.isByteArray())
      raiseError(ErrorNumber::TypeMismatch, sourceOf("nodeTypedValue"),
                 QStringLiteral("A bin.base64 node takes a byte array"));
    setText(QString::fromLatin1(value.rawBytes().toBase64()));
    return;
  }
  if (value.isByteArray())
    raiseError(ErrorNumber::TypeMismatch, sourceOf("nodeTypedValue"),
               QStringLiteral("Bytes need the data type bin.base64 on the node"));
  setText(value.toString());
}

bool XmlNode::isSameNode(const XmlNode &other) const { return node_ == other.node_; }

std::shared_ptr<XmlNode> nodeArgument(const Variant &value, const QString &source) {
  auto node = objectAs<XmlNode>(value);
  if (!node)
    raiseError(ErrorNumber::ObjectRequired, source, QStringLiteral("A node is required"));
  return node;
}

const MemberTable &XmlNode::memberTable() const {
  static const MemberTable table{{
      property<XmlNode>("nodeName", [](XmlNode &n) { return n.nodeName(); }),
      property<XmlNode>("nodeType", [](XmlNode &n) { return int(n.nodeType()); }),
      property<XmlNode>(
          "nodeValue", [](XmlNode &n) { return orNull(n.nodeValue()); },
          [](XmlNode &n, const Variant &v) { n.setNodeValue(v.toString()); }),
      property<XmlNode>(
          "text", [](XmlNode &n) { return n.text(); }, [](XmlNode &n, const Variant &v) { n.setText(v.toString()); }),
      property<XmlNode>("xml", [](XmlNode &n) { return n.xml(); }),
      property<XmlNode>("parentNode", [](XmlNode &n) { return n.parentNode(); }),
      property<XmlNode>("childNodes", [](XmlNode &n) { return n.childNodes(); }),
      property<XmlNode>("firstChild", [](XmlNode &n) { return n.firstChild(); }),
      property<XmlNode>("lastChild", [](XmlNode &n) { return n.lastChild(); }),
      property<XmlNode>("nextSibling", [](XmlNode &n) { return n.nextSibling(); }),
      property<XmlNode>("previousSibling", [](XmlNode &n) { return n.previousSibling(); }),
      method<XmlNode>("hasChildNodes",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 0, 0);
                        return n.hasChildNodes();
                      }),
      property<XmlNode>("attributes", [](XmlNode &n) { return n.attributes(); }),
      method<XmlNode>("getAttribute",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return orNull(n.getAttribute(arg(a, 0).toString()));
                      }),
      method<XmlNode>("getAttributeNode",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return n.getAttributeNode(arg(a, 0).toString());
                      }),
      method<XmlNode>("setAttribute",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 2, 2);
                        n.setAttribute(arg(a, 0).toString(), arg(a, 1).toString());
                        return Variant();
                      }),
      method<XmlNode>("removeAttribute",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        n.removeAttribute(arg(a, 0).toString());
                        return Variant();
                      }),
      method<XmlNode>("appendChild",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return n.appendChild(nodeArgument(arg(a, 0), n.sourceOf("appendChild")));
                      }),
      method<XmlNode>("insertBefore",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 2);
                        const Variant &reference = arg(a, 1);
                        const bool atEnd = reference.isEmpty() || reference.isNull() || reference.isNothing();
                        return n.insertBefore(nodeArgument(arg(a, 0), n.sourceOf("insertBefore")),
                                              atEnd ? nullptr : nodeArgument(reference, n.sourceOf("insertBefore")));
                      }),
      method<XmlNode>("removeChild",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return n.removeChild(nodeArgument(arg(a, 0), n.sourceOf("removeChild")));
                      }),
      method<XmlNode>("selectSingleNode",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return n.selectSingleNode(arg(a, 0).toString());
                      }),
      method<XmlNode>("selectNodes",
                      [](XmlNode &n, Args &a) {
                        expectArgs(a, 1, 1);
                        return n.selectNodes(arg(a, 0).toString());
                      }),
      property<XmlNode>(
          "dataType",
          [](XmlNode &n) {
            const QString type = n.dataType();
            return type.isEmpty() ? Variant::null() : Variant(type);
          },
          [](XmlNode &n, const Variant &v) { n.setDataType(v.isNull() ? QString() : v.toString()); }),
      property<XmlNode>(
          "nodeTypedValue", [](XmlNode &n) { return n.nodeTypedValue(); },
          [](XmlNode &n, const Variant &v) { n.setNodeTypedValue(v); }),
  }};
  return table;
}

} // namespace kordel
