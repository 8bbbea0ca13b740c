#pragma once

// Internal to the XML service: the owner of one libxml2 document.

#include <QString>

#include <libxml/tree.h>

#include <memory>
#include <unordered_set>
#include <vector>

namespace kordel::xmlinternal {

class XPathEvaluator;

// Owns a libxml2 document together with every node of it that is not, or no
// longer, linked into it: nodes made by the document and not yet appended,
// and subtrees taken out with removeChild. All of them are freed exactly
// once, when the last XmlDocument or XmlNode that refers to the tree goes.
// Nothing in the tree is freed before that, so a node handle never dangles.
class XmlTree {
public:
  // Takes ownership of doc.
  explicit XmlTree(xmlDocPtr doc);
  ~XmlTree();
  XmlTree(const XmlTree &) = delete;
  XmlTree &operator=(const XmlTree &) = delete;

  // A tree with an empty document: no declaration node, no root element.
  static std::shared_ptr<XmlTree> createEmpty();

  xmlDocPtr doc() const { return doc_; }
  xmlNodePtr docNode() const { return reinterpret_cast<xmlNodePtr>(doc_); }

  // Records a node made for this document that has no parent yet.
  xmlNodePtr adopt(xmlNodePtr node);
  // Links child into parent before reference (at the end for nullptr),
  // taking it out of wherever it was. Adjacent text nodes are not merged.
  // The caller has checked that the link is allowed.
  void link(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr reference);
  // Takes a node or attribute out of its parent and keeps it.
  void unlink(xmlNodePtr node);
  // Takes out all children of a node and keeps them.
  void unlinkChildren(xmlNodePtr node);

  // The nodes an XPath 1.0 expression selects from a context node, in
  // document order. Raises 5 for an invalid expression or one that does
  // not give nodes; source names the caller in the error.
  std::vector<xmlNodePtr> select(xmlNodePtr context, const QString &path, const QString &source);

private:
  xmlDocPtr doc_;
  std::unordered_set<xmlNodePtr> detached_;
  std::unique_ptr<XPathEvaluator> xpath_;
};

} // namespace kordel::xmlinternal
