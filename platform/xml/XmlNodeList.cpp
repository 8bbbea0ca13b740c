#include "xml/XmlNodeList.h"

#include "xml/XmlNode.h"
#include "xml/XmlText.h"
#include "xml/XmlTree.h"

namespace kordel {

XmlNodeList::XmlNodeList(std::shared_ptr<xmlinternal::XmlTree> tree, std::vector<_xmlNode *> nodes)
    : tree_(std::move(tree)), nodes_(std::move(nodes)) {}

XmlNodeList::~XmlNodeList() = default;

std::shared_ptr<XmlNode> XmlNodeList::item(int index) const {
  if (index < 0 || index >= length())
    return nullptr;
  return std::make_shared<XmlNode>(tree_, nodes_[std::size_t(index)]);
}

std::shared_ptr<XmlNode> XmlNodeList::getNamedItem(const QString &name) const {
  for (_xmlNode *node : nodes_) {
    if (xmlinternal::qualifiedName(node) == name)
      return std::make_shared<XmlNode>(tree_, node);
  }
  return nullptr;
}

std::shared_ptr<XmlNode> XmlNodeList::nextNode() {
  if (position_ >= nodes_.size())
    return nullptr;
  return std::make_shared<XmlNode>(tree_, nodes_[position_++]);
}

std::unique_ptr<Enumerator> XmlNodeList::enumerate() {
  std::vector<Variant> values;
  values.reserve(nodes_.size());
  for (_xmlNode *node : nodes_)
    values.emplace_back(std::make_shared<XmlNode>(tree_, node));
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &XmlNodeList::memberTable() const {
  static const MemberTable table{{
                                     property<XmlNodeList>("length", [](XmlNodeList &list) { return list.length(); }),
                                     indexedProperty<XmlNodeList>("item",
                                                                  [](XmlNodeList &list, Args &args) {
                                                                    expectArgs(args, 1, 1);
                                                                    return list.item(arg(args, 0).toLong());
                                                                  }),
                                     method<XmlNodeList>("getNamedItem",
                                                         [](XmlNodeList &list, Args &args) {
                                                           expectArgs(args, 1, 1);
                                                           return list.getNamedItem(arg(args, 0).toString());
                                                         }),
                                     method<XmlNodeList>("nextNode",
                                                         [](XmlNodeList &list, Args &args) {
                                                           expectArgs(args, 0, 0);
                                                           return list.nextNode();
                                                         }),
                                     method<XmlNodeList>("reset",
                                                         [](XmlNodeList &list, Args &args) {
                                                           expectArgs(args, 0, 0);
                                                           list.reset();
                                                           return Variant();
                                                         }),
                                 },
                                 nullptr,
                                 QStringLiteral("item")};
  return table;
}

} // namespace kordel
