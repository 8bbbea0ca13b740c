#include "xml/XmlText.h"

#include "core/Error.h"

namespace kordel::xmlinternal {

QString fromXmlChars(const xmlChar *text) {
  return text ? QString::fromUtf8(reinterpret_cast<const char *>(text)) : QString();
}

QString takeXmlChars(xmlChar *text) {
  const QString result = fromXmlChars(text);
  xmlFree(text);
  return result;
}

QString qualifiedName(const xmlNode *node) {
  switch (node->type) {
  case XML_ELEMENT_NODE:
  case XML_ATTRIBUTE_NODE: {
    const QString name = fromXmlChars(node->name);
    if (node->ns && node->ns->prefix)
      return fromXmlChars(node->ns->prefix) + u':' + name;
    return name;
  }
  case XML_TEXT_NODE: return QStringLiteral("#text");
  case XML_CDATA_SECTION_NODE: return QStringLiteral("#cdata-section");
  case XML_COMMENT_NODE: return QStringLiteral("#comment");
  case XML_DOCUMENT_NODE: return QStringLiteral("#document");
  default: return fromXmlChars(node->name);
  }
}

bool isDeclarationNode(const xmlNode *node) {
  return node->type == XML_PI_NODE && fromXmlChars(node->name).toLower() == u"xml";
}

namespace {

// The position (from 0) of the first character XML cannot carry, or -1.
qsizetype firstUnstorable(const QString &text) {
  for (qsizetype i = 0; i < text.size(); ++i) {
    const char16_t c = text.at(i).unicode();
    if (QChar::isHighSurrogate(c)) {
      if (i + 1 < text.size() && QChar::isLowSurrogate(text.at(i + 1).unicode())) {
        ++i;
        continue;
      }
      return i;
    }
    if (QChar::isLowSurrogate(c) || c == 0xFFFE || c == 0xFFFF)
      return i;
    if (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r')
      return i;
  }
  return -1;
}

} // namespace

void requireStorableText(const QString &text, const QString &source) {
  const qsizetype at = firstUnstorable(text);
  if (at < 0)
    return;
  raiseError(ErrorNumber::InvalidCall, source,
             QStringLiteral("The text holds the character U+%1 at position %2, which an XML document cannot store")
                 .arg(QString::number(text.at(at).unicode(), 16).toUpper().rightJustified(4, QLatin1Char('0')))
                 .arg(at + 1));
}

void requirePlainName(const QString &name, const QString &source) {
  const QByteArray utf8 = name.toUtf8();
  if (name.isEmpty() || xmlValidateNCName(xmlChars(utf8), 0) != 0)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("\"%1\" is not a valid XML name").arg(name));
}

} // namespace kordel::xmlinternal
