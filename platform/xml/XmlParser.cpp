#include "xml/XmlParser.h"

#include "xml/XmlErrorCapture.h"
#include "xml/XmlTree.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <limits>

namespace kordel::xmlinternal {

namespace {

XmlErrorCapture &captureOf(void *parserContext) {
  return *static_cast<XmlErrorCapture *>(static_cast<xmlParserCtxtPtr>(parserContext)->_private);
}

void onParserError(void *parserContext, LibxmlError error) { captureOf(parserContext).record(error); }

// Called at "<!DOCTYPE", before anything inside it is read.
void refuseDocumentType(void *parserContext, const xmlChar *, const xmlChar *, const xmlChar *) {
  auto *context = static_cast<xmlParserCtxtPtr>(parserContext);
  captureOf(parserContext)
      .fail(XmlIssue{context->input ? context->input->line : 0, context->input ? context->input->col : 0,
                     QStringLiteral("Document type declarations are not accepted")});
  xmlStopParser(context);
}

struct ParserContextDeleter {
  void operator()(xmlParserCtxtPtr context) const { xmlFreeParserCtxt(context); }
};

} // namespace

std::shared_ptr<XmlTree> parseDocument(const QByteArray &bytes, DeclaredEncoding encoding, const QString &source) {
  if (bytes.size() > std::numeric_limits<int>::max())
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The document is too large to load"));

  xmlInitParser();
  XmlErrorCapture capture;
  std::unique_ptr<xmlParserCtxt, ParserContextDeleter> context(xmlNewParserCtxt());
  if (!context)
    throw std::bad_alloc();
  context->_private = &capture;
  context->sax->serror = &onParserError;
  context->sax->internalSubset = &refuseDocumentType;

  // Without a DTD no entity can be declared, so lifting the size limits of
  // huge text nodes (large base64 resources) opens no expansion attack.
  int options = XML_PARSE_NONET | XML_PARSE_HUGE;
  if (encoding == DeclaredEncoding::Ignore)
    options |= XML_PARSE_IGNORE_ENC;
  xmlDocPtr doc = xmlCtxtReadMemory(context.get(), bytes.constData(), int(bytes.size()), nullptr,
                                    encoding == DeclaredEncoding::Ignore ? "UTF-8" : nullptr, options);
  // A stopped parse can still hand back the part it read.
  if (doc && (capture.failed() || !xmlDocGetRootElement(doc))) {
    xmlFreeDoc(doc);
    doc = nullptr;
  }
  if (!doc) {
    if (!capture.failed())
      capture.fail(XmlIssue{0, 0, QStringLiteral("The document is empty")});
    const XmlIssue &issue = capture.issue();
    const QString where =
        issue.line > 0 ? QStringLiteral("Line %1, column %2: ").arg(issue.line).arg(issue.column) : QString();
    throw XmlParseFailure(source, QStringLiteral("Not a valid XML document. %1%2").arg(where, issue.message),
                          issue.line, issue.column);
  }
  return std::make_shared<XmlTree>(doc);
}

} // namespace kordel::xmlinternal
