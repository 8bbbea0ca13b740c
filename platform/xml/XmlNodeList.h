#pragma once

#include "core/Object.h"

#include <memory>
#include <vector>

struct _xmlNode;

namespace kordel {

namespace xmlinternal {
class XmlTree;
}

class XmlNode;

// The nodes of a query, of a node's children or of an element's attributes,
// as they were when the list was made: later changes to the document do not
// change the list, and its nodes stay usable.
//
// Scripts see length, item (the default member), nextNode, reset,
// getNamedItem and For Each.
class XmlNodeList : public Object {
public:
  XmlNodeList(std::shared_ptr<xmlinternal::XmlTree> tree, std::vector<_xmlNode *> nodes);
  ~XmlNodeList() override;

  QString typeName() const override { return QStringLiteral("XmlNodeList"); }

  int length() const { return int(nodes_.size()); }
  // The node at index from 0; nullptr out of range.
  std::shared_ptr<XmlNode> item(int index) const;
  // The first node whose nodeName is name, or nullptr; for attribute lists
  // this finds an attribute by name.
  std::shared_ptr<XmlNode> getNamedItem(const QString &name) const;

  // Walks the list: the next node, nullptr after the last; reset starts over.
  std::shared_ptr<XmlNode> nextNode();
  void reset() { position_ = 0; }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<xmlinternal::XmlTree> tree_;
  std::vector<_xmlNode *> nodes_;
  std::size_t position_ = 0;
};

} // namespace kordel
