#pragma once

// Internal to the XML service: XPath 1.0 over one document.

#include <QString>

#include <libxml/xpath.h>

#include <vector>

namespace kordel::xmlinternal {

// One libxml2 XPath context, made once per document and reused for every
// query. The prefix "dt" is bound to the data type namespace.
class XPathEvaluator {
public:
  explicit XPathEvaluator(xmlDocPtr doc);
  ~XPathEvaluator();
  XPathEvaluator(const XPathEvaluator &) = delete;
  XPathEvaluator &operator=(const XPathEvaluator &) = delete;

  // The nodes that path selects from context, in document order. Namespace
  // nodes are left out: libxml2 makes them for the query only. Raises 5
  // when the expression is invalid or gives a value instead of nodes.
  std::vector<xmlNodePtr> select(xmlNodePtr context, const QString &path, const QString &source);

private:
  xmlXPathContextPtr context_;
};

} // namespace kordel::xmlinternal
