#include "xml/XmlSerializer.h"

#include "core/Error.h"
#include "xml/XmlErrorCapture.h"
#include "xml/XmlText.h"

#include <libxml/xmlsave.h>

#include <memory>

namespace kordel::xmlinternal {

namespace {

void appendNode(QByteArray &text, xmlNodePtr node) {
  std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(), &xmlBufferFree);
  if (!buffer)
    throw std::bad_alloc();
  xmlSaveCtxtPtr save = xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_NO_DECL);
  if (!save)
    throw std::bad_alloc();
  xmlSaveTree(save, node);
  xmlSaveClose(save);
  const auto *content = reinterpret_cast<const char *>(xmlBufferContent(buffer.get()));
  const int length = xmlBufferLength(buffer.get());
  // An attribute comes out as ' name="value"'.
  const int skip = node->type == XML_ATTRIBUTE_NODE && length > 0 && content[0] == ' ' ? 1 : 0;
  text.append(content + skip, length - skip);
}

} // namespace

QByteArray serializeNode(xmlNodePtr node) {
  if (node->type == XML_DOCUMENT_NODE && !node->children)
    return {};

  XmlErrorCapture capture;
  QByteArray text;
  if (node->type == XML_DOCUMENT_NODE) {
    // The declaration is ours: libxml2 writes one either with an encoding
    // attribute or, without one, with all non-ASCII text escaped. A
    // declaration node that a caller made stands for this one.
    text = kXmlDeclaration;
    for (xmlNodePtr child = node->children; child; child = child->next) {
      if (isDeclarationNode(child))
        continue;
      appendNode(text, child);
      text.append('\n');
    }
  } else {
    appendNode(text, node);
  }
  if (capture.failed())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("XmlNode.xml"),
               QStringLiteral("The XML text could not be written: %1").arg(capture.issue().message));
  return text;
}

} // namespace kordel::xmlinternal
