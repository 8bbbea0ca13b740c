#include "engine/format/LayoutElement.h"

#include "core/Error.h"
#include "xml/XmlNode.h"
#include "xml/XmlNodeList.h"

namespace kordel::engine::layoutformat {

namespace {

bool isWhitespace(const QString &text) {
  for (const QChar c : text)
    if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r')
      return false;
  return true;
}

std::vector<std::shared_ptr<XmlNode>> childNodesOf(const XmlNode &node) {
  const auto list = node.childNodes();
  std::vector<std::shared_ptr<XmlNode>> nodes;
  for (int i = 0; i < list->length(); ++i)
    nodes.push_back(list->item(i));
  return nodes;
}

// "a CDATA section, text, a comment": what the nodes of an element are.
QString describePieces(const std::vector<std::shared_ptr<XmlNode>> &nodes) {
  QStringList kinds;
  for (const auto &node : nodes) {
    switch (node->nodeType()) {
    case XmlNodeType::Text: kinds << QStringLiteral("text"); break;
    case XmlNodeType::CDataSection: kinds << QStringLiteral("a CDATA section"); break;
    case XmlNodeType::Comment: kinds << QStringLiteral("a comment"); break;
    case XmlNodeType::ProcessingInstruction: kinds << QStringLiteral("a processing instruction"); break;
    default: kinds << node->nodeName(); break;
    }
  }
  return kinds.join(QStringLiteral(", "));
}

} // namespace

QString describeElement(const QString &element, const std::optional<QString> &name) {
  if (!name)
    return QStringLiteral("<%1>").arg(element);
  return QStringLiteral("<%1 Name=\"%2\">").arg(element, *name);
}

void refuseLayout(const QString &problem) {
  raiseError(ErrorNumber::InvalidFileFormat, QStringLiteral("LoadLayout"),
             QStringLiteral("Not a valid layout: %1").arg(problem));
}

LayoutElement::LayoutElement(std::shared_ptr<XmlNode> node, const LayoutElement *parent)
    : node_(std::move(node)), isRoot_(parent == nullptr) {
  where_ = describeElement(node_->nodeName(), node_->getAttribute(QStringLiteral("Name")));
  if (parent && !parent->isRoot_)
    where_ += QStringLiteral(" in ") + parent->where_;
}

QString LayoutElement::name() const { return node_->nodeName(); }

std::optional<QString> LayoutElement::attribute(const QString &name) const { return node_->getAttribute(name); }

void LayoutElement::allowOnly(const QStringList &known) const {
  const auto attributes = node_->attributes();
  for (int i = 0; i < attributes->length(); ++i) {
    const QString name = attributes->item(i)->nodeName();
    if (!known.contains(name))
      refuse(
          QStringLiteral("it has an unknown attribute %1 (known are %2)").arg(name, known.join(QStringLiteral(", "))));
  }
}

std::vector<LayoutElement> LayoutElement::children() const {
  std::vector<LayoutElement> elements;
  for (const auto &child : childNodesOf(*node_)) {
    switch (child->nodeType()) {
    case XmlNodeType::Element: elements.emplace_back(child, this); break;
    case XmlNodeType::Text:
      if (!isWhitespace(child->text()))
        refuse(QStringLiteral("it holds the text \"%1\" where only elements belong").arg(child->text().trimmed()));
      break;
    case XmlNodeType::CDataSection: refuse(QStringLiteral("it holds a CDATA section where only elements belong"));
    default: break;
    }
  }
  return elements;
}

QString LayoutElement::characterData() const {
  const auto nodes = childNodesOf(*node_);
  if (nodes.empty())
    return {};
  const auto &node = nodes.front();
  if (nodes.size() == 1 && (node->nodeType() == XmlNodeType::Text || node->nodeType() == XmlNodeType::CDataSection))
    return node->text();
  for (const auto &child : nodes)
    if (child->nodeType() == XmlNodeType::Element)
      refuse(QStringLiteral("it holds the element <%1> where only text belongs").arg(child->nodeName()));
  refuse(QStringLiteral("it holds %1 where one text or CDATA section belongs").arg(describePieces(nodes)));
}

void LayoutElement::refuse(const QString &problem) const {
  refuseLayout(QStringLiteral("%1: %2").arg(where_, problem));
}

} // namespace kordel::engine::layoutformat
