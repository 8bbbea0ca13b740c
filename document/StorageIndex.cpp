#include "document/StorageIndex.h"

#include "xml/XmlDocument.h"
#include "xml/XmlNode.h"

namespace kordel::addin {

namespace {

QString joined(const QStringList &levels) { return levels.join(u'\\'); }

bool isBelow(const QString &path, const QString &section) {
  return path == section || path.startsWith(section + u'\\');
}

} // namespace

void StorageIndex::clear() {
  children_.clear();
  sections_.clear();
}

std::shared_ptr<XmlNode> StorageIndex::section(XmlDocument &document, const QStringList &levels) {
  const QString path = joined(levels);
  if (const auto found = sections_.constFind(path); found != sections_.cend())
    return *found;
  std::shared_ptr<XmlNode> node;
  if (levels.isEmpty()) {
    node = document.selectSingleNode(QStringLiteral("/application"));
  } else if (Children *parent = children(document, levels.first(levels.size() - 1))) {
    node = parent->sections.value(levels.last()).first;
  }
  if (node)
    sections_.insert(path, node);
  return node;
}

std::shared_ptr<XmlNode> StorageIndex::property(XmlDocument &document, const QStringList &levels, const QString &key) {
  Children *parent = children(document, levels);
  return parent ? parent->properties.value(key).first : nullptr;
}

StorageIndex::Children *StorageIndex::children(XmlDocument &document, const QStringList &levels) {
  const QString path = joined(levels);
  if (const auto found = children_.find(path); found != children_.end())
    return &*found;
  const std::shared_ptr<XmlNode> parent = section(document, levels);
  if (!parent)
    return nullptr;
  Children index;
  for (auto child = parent->firstChild(); child; child = child->nextSibling()) {
    if (child->nodeType() != XmlNodeType::Element)
      continue;
    const QString element = child->nodeName();
    const bool isSection = element == QLatin1String("section");
    if (!isSection && element != QLatin1String("property"))
      continue;
    const std::optional<QString> name = child->getAttribute(QStringLiteral("name"));
    if (!name)
      continue;
    Named &named = (isSection ? index.sections : index.properties)[*name];
    if (!named.first)
      named.first = child;
    ++named.count;
  }
  return &*children_.insert(path, std::move(index));
}

void StorageIndex::added(const QStringList &levels, Kind kind, const QString &name,
                         const std::shared_ptr<XmlNode> &node) {
  const auto found = children_.find(joined(levels));
  if (found == children_.end())
    return; // made with the node in it when first needed
  Named &named = (kind == Kind::Section ? found->sections : found->properties)[name];
  if (!named.first)
    named.first = node;
  ++named.count;
}

void StorageIndex::removed(const QStringList &levels, Kind kind, const QString &name) {
  const QString path = joined(levels);
  if (kind == Kind::Section) {
    const QString gone = levels.isEmpty() ? name : path + u'\\' + name;
    children_.removeIf([&](QHash<QString, Children>::iterator entry) { return isBelow(entry.key(), gone); });
    sections_.removeIf(
        [&](QHash<QString, std::shared_ptr<XmlNode>>::iterator entry) { return isBelow(entry.key(), gone); });
  }
  const auto found = children_.find(path);
  if (found == children_.end())
    return;
  QHash<QString, Named> &names = kind == Kind::Section ? found->sections : found->properties;
  const auto named = names.find(name);
  if (named == names.end())
    return;
  if (named->count > 1)
    children_.erase(found); // the next namesake is found by looking again
  else
    names.erase(named);
}

} // namespace kordel::addin
