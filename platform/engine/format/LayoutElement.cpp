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
  QString text;
  for (const auto &child : childNodesOf(*node_)) {
    switch (child->nodeType()) {
    case XmlNodeType::Text:
    case XmlNodeType::CDataSection: text += child->text(); break;
    case XmlNodeType::Element:
      refuse(QStringLiteral("it holds the element <%1> where only text belongs").arg(child->nodeName()));
    default: break;
    }
  }
  return text;
}

void LayoutElement::refuse(const QString &problem) const {
  refuseLayout(QStringLiteral("%1: %2").arg(where_, problem));
}

} // namespace kordel::engine::layoutformat
