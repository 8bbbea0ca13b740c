#include "xml/XmlDataType.h"

#include "core/Error.h"
#include "xml/XmlErrorCapture.h"
#include "xml/XmlText.h"

namespace kordel::xmlinternal {

namespace {

const xmlChar *chars(const char *text) { return reinterpret_cast<const xmlChar *>(text); }

} // namespace

xmlAttrPtr findDataTypeAttribute(xmlNodePtr element) {
  for (xmlAttrPtr attribute = element->properties; attribute; attribute = attribute->next) {
    if (attribute->ns && xmlStrEqual(attribute->ns->href, chars(kDataTypeNamespace)) &&
        xmlStrEqual(attribute->name, chars("dt")))
      return attribute;
  }
  return nullptr;
}

void annotateBase64(xmlNodePtr element, const QString &source) {
  XmlErrorCapture quiet;
  xmlNsPtr ns = nullptr;
  for (xmlNsPtr declared = element->nsDef; declared && !ns; declared = declared->next) {
    if (xmlStrEqual(declared->href, chars(kDataTypeNamespace)))
      ns = declared;
  }
  if (!ns)
    ns = xmlNewNs(element, chars(kDataTypeNamespace), chars("dt"));
  if (!ns)
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("The element <%1> declares the prefix dt for another namespace")
                   .arg(fromXmlChars(element->name)));
  if (!xmlSetNsProp(element, ns, chars("dt"), chars(kBase64Type)))
    throw std::bad_alloc();
}

QByteArray decodeBase64Text(const QString &text, const QString &source) {
  QByteArray compact;
  compact.reserve(text.size());
  for (const QChar c : text) {
    if (c == u' ' || c == u'\t' || c == u'\r' || c == u'\n')
      continue;
    if (c.unicode() > 0x7F)
      raiseError(ErrorNumber::TypeMismatch, source, QStringLiteral("The text of a bin.base64 node is not base64"));
    compact.append(char(c.unicode()));
  }
  auto decoded = QByteArray::fromBase64Encoding(compact, QByteArray::AbortOnBase64DecodingErrors);
  if (!decoded)
    raiseError(ErrorNumber::TypeMismatch, source, QStringLiteral("The text of a bin.base64 node is not base64"));
  return decoded.decoded;
}

} // namespace kordel::xmlinternal
