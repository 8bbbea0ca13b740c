#include "xml/XPathEvaluator.h"

#include "core/Error.h"
#include "xml/XmlDataType.h"
#include "xml/XmlErrorCapture.h"
#include "xml/XmlText.h"

#include <libxml/xpathInternals.h>

#include <memory>

namespace kordel::xmlinternal {

XPathEvaluator::XPathEvaluator(xmlDocPtr doc) : context_(nullptr) {
  XmlErrorCapture quiet;
  context_ = xmlXPathNewContext(doc);
  if (!context_)
    throw std::bad_alloc();
  xmlXPathRegisterNs(context_, reinterpret_cast<const xmlChar *>("dt"),
                     reinterpret_cast<const xmlChar *>(kDataTypeNamespace));
}

XPathEvaluator::~XPathEvaluator() { xmlXPathFreeContext(context_); }

std::vector<xmlNodePtr> XPathEvaluator::select(xmlNodePtr context, const QString &path, const QString &source) {
  XmlErrorCapture capture;
  context_->node = context;
  context_->error = &XmlErrorCapture::onStructured;
  context_->userData = &capture;
  const QByteArray utf8 = path.toUtf8();
  std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> result(
      xmlXPathEvalExpression(xmlChars(utf8), context_), &xmlXPathFreeObject);
  context_->error = nullptr;
  context_->userData = nullptr;
  context_->node = nullptr;

  if (capture.failed() || !result) {
    const XmlIssue &issue = capture.issue();
    const QString reason =
        capture.failed() ? QStringLiteral("%1 at character %2").arg(issue.message, QString::number(issue.column + 1))
                         : QStringLiteral("invalid expression");
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("Invalid XPath expression \"%1\": %2").arg(path, reason));
  }
  if (result->type != XPATH_NODESET)
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("The XPath expression \"%1\" gives a value, not nodes").arg(path));

  std::vector<xmlNodePtr> nodes;
  if (const xmlNodeSet *set = result->nodesetval) {
    nodes.reserve(std::size_t(set->nodeNr));
    for (int i = 0; i < set->nodeNr; ++i) {
      if (set->nodeTab[i]->type != XML_NAMESPACE_DECL)
        nodes.push_back(set->nodeTab[i]);
    }
  }
  return nodes;
}

} // namespace kordel::xmlinternal
