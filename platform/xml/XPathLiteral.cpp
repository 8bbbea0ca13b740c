#include "xml/XPathLiteral.h"

#include <QStringList>

namespace kordel {

QString xpathLiteral(const QString &text) {
  if (!text.contains(u'\''))
    return u'\'' + text + u'\'';
  if (!text.contains(u'"'))
    return u'"' + text + u'"';
  // XPath 1.0 literals have no escapes: cut at the apostrophes and put each
  // one back as a literal of its own.
  QStringList pieces;
  for (const QString &part : text.split(u'\''))
    pieces.append(u'\'' + part + u'\'');
  return QStringLiteral("concat(") + pieces.join(QStringLiteral(", \"'\", ")) + u')';
}

} // namespace kordel
