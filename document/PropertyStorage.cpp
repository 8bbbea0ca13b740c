#include "document/PropertyStorage.h"

#include "core/Error.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNode.h"
#include "xml/XmlNodeList.h"

namespace kordel::addin {

namespace {

const QString kTemplate = QStringLiteral("<?xml version=\"1.0\" ?><application/>");
const QString kCarriageReturnMarker = QStringLiteral("\\C013\\");
const QString kCacheSeparator = QStringLiteral("$@$-$@$");
const QString kResources = QStringLiteral("resources");

} // namespace

// ---- The document ----

XmlDocument &PropertyStorage::GetDocument() {
  if (!document_)
    ResetDocument();
  return *document_;
}

void PropertyStorage::ResetDocument() {
  index_.clear();
  document_ = XmlDocument::create();
  document_->setAsync(false);
  document_->setValidateOnParse(true);
  document_->loadXML(kTemplate);
  document_->setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
}

Dictionary &PropertyStorage::cache() {
  if (!cache_)
    cache_ = std::make_unique<Dictionary>();
  return *cache_;
}

void PropertyStorage::Clear() {
  document_.reset();
  index_.clear();
  if (cache_)
    cache_->removeAll();
}

void PropertyStorage::Load(const Variant &source) {
  document_.reset();
  index_.clear();
  document_ = XmlDocument::create();
  document_->setAsync(false);
  document_->setValidateOnParse(true);
  try {
    if (source.isByteArray())
      document_->load(source.rawBytes());
    else
      document_->load(source.toString());
  } catch (const Error &) {
    // The store does not look at the result of the load: a source that does
    // not parse leaves a document without a root, in which reads find
    // nothing and writes fail.
  }
  document_->setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
  modified_ = false;
}

void PropertyStorage::Save(const QString &destination) {
  GetDocument().save(destination);
  modified_ = false;
}

// ---- Paths and nodes ----

void PropertyStorage::CheckSectionName(const QString &section) {
  for (const QString &part : section.split(u'\\')) {
    if (part.contains(u'\r'))
      raiseError(ErrorNumber::CarriageReturnInPath, QStringLiteral("PropertyStorage"),
                 QStringLiteral("Invalid character was found in section name."));
  }
}

QString PropertyStorage::GetSectionPath(const QString &section) {
  // The levels go into the XPath as they stand: an apostrophe in a level
  // makes the path invalid and the lookup fails with the XML service's error.
  QString path = QStringLiteral("/application");
  for (const QString &part : section.split(u'\\')) {
    const QString level = part.trimmed();
    if (!level.isEmpty())
      path += QStringLiteral("/section[attribute::name='") + level + QStringLiteral("']");
  }
  return path;
}

std::optional<QStringList> PropertyStorage::SectionLevels(const QString &section) {
  QStringList levels;
  for (const QString &part : section.split(u'\\')) {
    const QString level = part.trimmed();
    if (level.contains(u'\''))
      return std::nullopt;
    if (!level.isEmpty())
      levels << level;
  }
  return levels;
}

std::shared_ptr<XmlNode> PropertyStorage::GetSectionNode(const QString &section) {
  if (const auto levels = SectionLevels(section))
    return index_.section(GetDocument(), *levels);
  return GetDocument().selectSingleNode(GetSectionPath(section));
}

std::shared_ptr<XmlNode> PropertyStorage::GetPropertyNode(const QString &section, const QString &key) {
  if (const auto levels = SectionLevels(section); levels && !key.contains(u'\''))
    return index_.property(GetDocument(), *levels, key);
  return GetDocument().selectSingleNode(GetSectionPath(section) + QStringLiteral("/property[attribute::name='") + key +
                                        QStringLiteral("']"));
}

std::shared_ptr<XmlNode> PropertyStorage::CreateSection(const QString &section) {
  QString walked;
  std::shared_ptr<XmlNode> current;
  for (const QString &part : section.split(u'\\')) {
    const QString level = part.trimmed();
    if (level.isEmpty())
      continue;
    const QString path = walked.isEmpty() ? level : walked + u'\\' + level;
    current = GetSectionNode(path);
    if (!current) {
      auto element = GetDocument().createElement(QStringLiteral("section"));
      auto parent = GetSectionNode(walked);
      if (!parent)
        raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("PropertyStorage"),
                   QStringLiteral("The document has no root element"));
      current = parent->appendChild(element);
      current->setAttribute(QStringLiteral("name"), level);
      if (const auto levels = SectionLevels(walked))
        index_.added(*levels, StorageIndex::Kind::Section, level, current);
    }
    walked = path;
  }
  return current;
}

std::shared_ptr<XmlNode> PropertyStorage::CreateProperty(const QString &section, const QString &key) {
  auto parent = GetSectionNode(section);
  if (!parent)
    parent = CreateSection(section);
  if (!parent)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("PropertyStorage"),
               QStringLiteral("The document has no root element"));
  auto property = parent->appendChild(GetDocument().createElement(QStringLiteral("property")));
  property->setAttribute(QStringLiteral("name"), key);
  property->setAttribute(QStringLiteral("value"), QString());
  if (const auto levels = SectionLevels(section))
    index_.added(*levels, StorageIndex::Kind::Property, key, property);
  return property;
}

// ---- Values ----

QString PropertyStorage::EncodeValue(const QString &text) {
  QString encoded = text;
  return encoded.replace(u'\r', kCarriageReturnMarker);
}

QString PropertyStorage::DecodeValue(const QString &text) {
  QString decoded = text;
  return decoded.replace(kCarriageReturnMarker, QStringLiteral("\r"));
}

QString PropertyStorage::CacheKey(const QString &section, const QString &key) {
  QString path = section;
  return path.replace(u'\\', kCacheSeparator) + kCacheSeparator + key;
}

namespace {

QString requiredAttribute(const XmlNode &node, const QString &name) {
  const auto value = node.getAttribute(name);
  if (!value)
    raiseError(ErrorNumber::ObjectRequired, QStringLiteral("PropertyStorage"),
               QStringLiteral("The element has no attribute '%1'").arg(name));
  return *value;
}

} // namespace

QString PropertyStorage::GetSetting(const QString &section, const QString &key, const QString &defaultValue) {
  CheckSectionName(section);
  const QString cacheKey = CacheKey(section, key);
  Dictionary &cached = cache();
  if (cached.exists(cacheKey))
    return cached.value(cacheKey).toString();
  const auto node = GetPropertyNode(section, key);
  if (!node)
    return defaultValue;
  const QString value = DecodeValue(requiredAttribute(*node, QStringLiteral("value")));
  cached.add(cacheKey, value);
  return value;
}

void PropertyStorage::PutSetting(const QString &section, const QString &key, const QString &value) {
  CheckSectionName(section);
  auto node = GetPropertyNode(section, key);
  if (!node)
    node = CreateProperty(section, key);
  node->setAttribute(QStringLiteral("value"), EncodeValue(value));
  const QString cacheKey = CacheKey(section, key);
  if (cache_ && cache_->exists(cacheKey))
    cache_->setItem(cacheKey, value);
  modified_ = true;
}

void PropertyStorage::DeleteSetting(const QString &section, const QString &key) {
  CheckSectionName(section);
  if (const auto node = GetPropertyNode(section, key)) {
    node->parentNode()->removeChild(node);
    if (const auto levels = SectionLevels(section))
      index_.removed(*levels, StorageIndex::Kind::Property, key);
  }
  const QString cacheKey = CacheKey(section, key);
  if (cache_ && cache_->exists(cacheKey))
    cache_->remove(cacheKey);
  modified_ = true;
}

void PropertyStorage::DeleteSection(const QString &section) {
  CheckSectionName(section);
  if (const auto node = GetSectionNode(section)) {
    node->parentNode()->removeChild(node);
    const auto levels = SectionLevels(section);
    if (levels && !levels->isEmpty())
      index_.removed(levels->first(levels->size() - 1), StorageIndex::Kind::Section, levels->last());
    else
      index_.clear();
  }
  QString prefix = section;
  prefix.replace(u'\\', kCacheSeparator);
  prefix += kCacheSeparator;
  // Unlike the rest of the store, this match ignores case.
  if (cache_)
    cache_->removeIf([&](const Variant &key) { return key.toString().startsWith(prefix, Qt::CaseInsensitive); });
  modified_ = true;
}

bool PropertyStorage::Exists(const QString &section, const QString &key) {
  return GetPropertyNode(section, key) != nullptr;
}

std::shared_ptr<StringCollection> PropertyStorage::collect(const QString &section, const QString &element,
                                                           const QString &attribute, bool decode) {
  CheckSectionName(section);
  auto result = std::make_shared<StringCollection>();
  const auto nodes = GetDocument().selectNodes(GetSectionPath(section) + u'/' + element);
  for (int i = 0; i < nodes->length(); ++i) {
    const QString text = requiredAttribute(*nodes->item(i), attribute);
    result->Add(decode ? DecodeValue(text) : text);
  }
  return result;
}

std::shared_ptr<StringCollection> PropertyStorage::GetSection(const QString &section) {
  return collect(section, QStringLiteral("property"), QStringLiteral("value"), true);
}

std::shared_ptr<StringCollection> PropertyStorage::GetSectionNames(const QString &section) {
  return collect(section, QStringLiteral("section"), QStringLiteral("name"), true);
}

std::shared_ptr<StringCollection> PropertyStorage::GetSettingNames(const QString &section) {
  return collect(section, QStringLiteral("property"), QStringLiteral("name"), false);
}

// ---- Resources ----

void PropertyStorage::PutResource(const QString &name, const QByteArray &data) {
  auto section = GetSectionNode(kResources);
  if (!section)
    section = CreateSection(kResources);
  if (!section)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("PropertyStorage"),
               QStringLiteral("The document has no root element"));
  auto property = section->appendChild(GetDocument().createElement(QStringLiteral("property")));
  property->setAttribute(QStringLiteral("name"), name);
  index_.added({kResources}, StorageIndex::Kind::Property, name, property);
  property->setDataType(QStringLiteral("bin.base64"));
  property->setNodeTypedValue(Variant(data));
  modified_ = true;
}

Variant PropertyStorage::GetResource(const QString &name) {
  const auto node = GetPropertyNode(kResources, name);
  if (!node)
    return Variant();
  return node->nodeTypedValue();
}

void PropertyStorage::DeleteResource(const QString &name) {
  if (const auto node = GetPropertyNode(kResources, name)) {
    node->parentNode()->removeChild(node);
    index_.removed({kResources}, StorageIndex::Kind::Property, name);
  }
  modified_ = true;
}

} // namespace kordel::addin
