#pragma once

// Reading one element of a layout file strictly: its attributes, its child
// elements and its text, with refusals that say which element is wrong.

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace kordel {
class XmlNode;
}

namespace kordel::engine::layoutformat {

// How messages name an element: <Field Name="Total">, or <Script> for one
// without a name.
QString describeElement(const QString &element, const std::optional<QString> &name);

// Raises 321 with "Not a valid layout: " and the problem.
[[noreturn]] void refuseLayout(const QString &problem);

class LayoutElement {
public:
  // The root has no parent; the messages for its descendants name the
  // chain of elements up to, not including, the root.
  LayoutElement(std::shared_ptr<XmlNode> node, const LayoutElement *parent);

  QString name() const;
  // The element and its ancestors, as messages name them.
  const QString &where() const { return where_; }

  std::optional<QString> attribute(const QString &name) const;
  // Refuses the element when it has an attribute the list lacks.
  void allowOnly(const QStringList &known) const;

  // The child elements in order. Whitespace between them, comments and
  // processing instructions are skipped; any other text is refused.
  std::vector<LayoutElement> children() const;
  // The text of an element that holds one text or CDATA section, or
  // nothing; anything else (pieces of text, CDATA and comments, elements)
  // is refused, since a reader that takes the first piece for the whole
  // would miss the rest.
  QString characterData() const;

  // Raises 321 naming this element.
  [[noreturn]] void refuse(const QString &problem) const;

private:
  std::shared_ptr<XmlNode> node_;
  QString where_;
  bool isRoot_;
};

} // namespace kordel::engine::layoutformat
