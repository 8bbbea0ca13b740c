#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>

namespace kordel {
class XmlDocument;
class XmlNode;
} // namespace kordel

namespace kordel::addin {

// Finds the sections and properties of a report document by name without
// asking the XML service to search each time, which made every lookup walk
// all siblings and a document of many fields quadratic to read and write.
//
// The children of each section looked into are indexed by name on first
// use: per name the first in document order, as the XPath lookups the store
// stands for would find, and how many carry it. The store tells the index
// of each node it adds or removes, so the index follows the document
// without scanning it again; removing one of several namesakes, or a
// section with everything below it, drops the indexes concerned, which
// are made again when next needed.
class StorageIndex {
public:
  enum class Kind { Section, Property };

  // Forgets everything, for a new document.
  void clear();

  // The section at the levels (trimmed, none empty; none for the root);
  // nullptr when there is none.
  std::shared_ptr<XmlNode> section(XmlDocument &document, const QStringList &levels);
  // The first property named key in that section; nullptr when none.
  std::shared_ptr<XmlNode> property(XmlDocument &document, const QStringList &levels, const QString &key);

  // A node of that kind and name was appended to the section at the levels.
  void added(const QStringList &levels, Kind kind, const QString &name, const std::shared_ptr<XmlNode> &node);
  // A node of that kind and name was taken out of the section at the levels.
  void removed(const QStringList &levels, Kind kind, const QString &name);

private:
  struct Named {
    std::shared_ptr<XmlNode> first;
    int count = 0;
  };
  struct Children {
    QHash<QString, Named> sections;
    QHash<QString, Named> properties;
  };

  // The index of the children of the section at the levels, made on first
  // use; nullptr when there is no such section.
  Children *children(XmlDocument &document, const QStringList &levels);

  QHash<QString, Children> children_; // by the levels joined with '\'
  QHash<QString, std::shared_ptr<XmlNode>> sections_;
};

} // namespace kordel::addin
