#include "xml/XmlTree.h"

#include "xml/XPathEvaluator.h"
#include "xml/XmlErrorCapture.h"

#include <libxml/parser.h>

namespace kordel::xmlinternal {

XmlTree::XmlTree(xmlDocPtr doc) : doc_(doc) {
  // Attribute values are escaped by the serialiser according to the
  // document's encoding: with none set, every non-ASCII character would
  // become a character reference. The text we write is always UTF-8.
  if (doc_->encoding)
    xmlFree(const_cast<xmlChar *>(doc_->encoding));
  doc_->encoding = xmlStrdup(reinterpret_cast<const xmlChar *>("UTF-8"));
}

XmlTree::~XmlTree() {
  xpath_.reset();
  // Detached nodes may hold names from the document's dictionary: free them
  // while the document still exists.
  for (xmlNodePtr node : detached_)
    xmlFreeNode(node);
  xmlFreeDoc(doc_);
}

std::shared_ptr<XmlTree> XmlTree::createEmpty() {
  xmlInitParser();
  xmlDocPtr doc = xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0"));
  if (!doc)
    throw std::bad_alloc();
  return std::make_shared<XmlTree>(doc);
}

xmlNodePtr XmlTree::adopt(xmlNodePtr node) {
  if (!node)
    throw std::bad_alloc();
  detached_.insert(node);
  return node;
}

void XmlTree::link(xmlNodePtr parent, xmlNodePtr child, xmlNodePtr reference) {
  if (child == reference)
    return;
  XmlErrorCapture quiet;
  if (child->parent)
    xmlUnlinkNode(child);
  detached_.erase(child);

  child->parent = parent;
  child->next = reference;
  child->prev = reference ? reference->prev : parent->last;
  if (child->prev)
    child->prev->next = child;
  else
    parent->children = child;
  if (reference)
    reference->prev = child;
  else
    parent->last = child;

  // A moved element may use a namespace declared on its old ancestors.
  if (child->type == XML_ELEMENT_NODE)
    xmlReconciliateNs(doc_, child);
}

void XmlTree::unlink(xmlNodePtr node) {
  XmlErrorCapture quiet;
  xmlUnlinkNode(node);
  detached_.insert(node);
  // Keep the namespaces it uses declared, so that it still serialises.
  if (node->type == XML_ELEMENT_NODE)
    xmlReconciliateNs(doc_, node);
}

void XmlTree::unlinkChildren(xmlNodePtr node) {
  while (node->children)
    unlink(node->children);
}

std::vector<xmlNodePtr> XmlTree::select(xmlNodePtr context, const QString &path, const QString &source) {
  if (!xpath_)
    xpath_ = std::make_unique<XPathEvaluator>(doc_);
  return xpath_->select(context, path, source);
}

} // namespace kordel::xmlinternal
