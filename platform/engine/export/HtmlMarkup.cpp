#include "engine/export/HtmlMarkup.h"

namespace kordel::engine {

QString escapeHtml(const QString &text) {
  QString out;
  out.reserve(text.size() + text.size() / 8);
  for (const QChar c : text) {
    switch (c.unicode()) {
    case u'&': out += QLatin1String("&amp;"); break;
    case u'<': out += QLatin1String("&lt;"); break;
    case u'>': out += QLatin1String("&gt;"); break;
    case u'"': out += QLatin1String("&quot;"); break;
    case u'\'': out += QLatin1String("&#39;"); break;
    default:
      if (c.unicode() >= 0x20 || c == u'\t')
        out += c;
    }
  }
  return out;
}

QString cssPoints(Twips twips) {
  // Twentieths of a point: two decimals are exact, and trailing zeros go.
  QString number = QString::number(double(twips) / kTwipsPerPoint, 'f', 2);
  while (number.endsWith(QLatin1Char('0')))
    number.chop(1);
  if (number.endsWith(QLatin1Char('.')))
    number.chop(1);
  if (number == QLatin1String("-0"))
    number = QStringLiteral("0");
  return number + QLatin1String("pt");
}

QString cssColor(QRgb color) {
  if (qAlpha(color) == 255)
    return QStringLiteral("#%1").arg(color & RGB_MASK, 6, 16, QLatin1Char('0'));
  return QStringLiteral("rgba(%1,%2,%3,%4)")
      .arg(qRed(color))
      .arg(qGreen(color))
      .arg(qBlue(color))
      .arg(QString::number(qAlpha(color) / 255.0, 'f', 3));
}

QString cssString(const QString &text) {
  QString out = QStringLiteral("\"");
  for (const char32_t code : text.toUcs4()) {
    const bool plain = (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
                       (code >= u'0' && code <= u'9') || code == u' ';
    if (plain)
      out += QChar(char16_t(code));
    else if (code >= 0x20)
      out += QStringLiteral("\\%1 ").arg(quint32(code), 0, 16);
  }
  return out + QLatin1Char('"');
}

} // namespace kordel::engine
