#pragma once

#include "core/Dictionary.h"
#include "document/StringCollection.h"

#include <QByteArray>
#include <QString>

#include "document/StorageIndex.h"

#include <memory>
#include <optional>

namespace kordel {
class XmlDocument;
class XmlNode;
} // namespace kordel

namespace kordel::addin {

// The one container of everything a report persists: string settings in
// nested sections and binary resources, kept as an XML document
// (<application>, <section name>, <property name value>, resources as
// base64 <property> elements in the section "resources"). Section paths
// use "\" between levels; blank levels are ignored and levels are trimmed.
// A carriage return in a value is stored as "\C013\".
//
// A read cache keyed by the path as written sits in front of the tree: a
// stored value once read is answered from it, a write refreshes an entry
// that is there but never adds one, and the cache survives Load. The store
// reports nothing itself: every failure goes to the caller.
class PropertyStorage : public Object {
public:
  QString typeName() const override { return QStringLiteral("PropertyStorage"); }

  bool Modified() const { return modified_; }
  void SetModified(bool modified) { modified_ = modified; }

  // Drops the document and empties the cache; Modified stays.
  void Clear();
  void DeleteSection(const QString &section);
  void DeleteSetting(const QString &section, const QString &key);
  // Reads the tree, never the cache, and does not check the path.
  bool Exists(const QString &section, const QString &key);
  // The values of the section's settings, in document order.
  std::shared_ptr<StringCollection> GetSection(const QString &section);
  std::shared_ptr<StringCollection> GetSectionNames(const QString &section);
  // The names of the section's settings, not decoded.
  std::shared_ptr<StringCollection> GetSettingNames(const QString &section);
  QString GetSetting(const QString &section, const QString &key, const QString &defaultValue = {});
  // Replaces the document with one read from a file path or a byte array.
  // A source that does not parse leaves an empty document without a root.
  void Load(const Variant &source);
  void PutSetting(const QString &section, const QString &key, const QString &value);
  void Save(const QString &destination);
  void DeleteResource(const QString &name);
  // The bytes of the first resource of that name; Empty when there is none.
  Variant GetResource(const QString &name);
  // Adds a resource even when one of that name exists.
  void PutResource(const QString &name, const QByteArray &data);

private:
  XmlDocument &GetDocument();
  void ResetDocument();
  static QString GetSectionPath(const QString &section);
  // The section's levels, trimmed, empty ones left out; nothing when a
  // level cannot stand in an XPath literal, which the XML service then
  // refuses as the store always did.
  static std::optional<QStringList> SectionLevels(const QString &section);
  std::shared_ptr<XmlNode> GetSectionNode(const QString &section);
  std::shared_ptr<XmlNode> GetPropertyNode(const QString &section, const QString &key);
  std::shared_ptr<XmlNode> CreateSection(const QString &section);
  std::shared_ptr<XmlNode> CreateProperty(const QString &section, const QString &key);
  static void CheckSectionName(const QString &section);
  static QString EncodeValue(const QString &text);
  static QString DecodeValue(const QString &text);
  static QString CacheKey(const QString &section, const QString &key);
  std::shared_ptr<StringCollection> collect(const QString &section, const QString &element, const QString &attribute,
                                            bool decode);
  Dictionary &cache();

  bool modified_ = false;
  std::shared_ptr<XmlDocument> document_;
  std::unique_ptr<Dictionary> cache_;
  StorageIndex index_;
};

} // namespace kordel::addin
