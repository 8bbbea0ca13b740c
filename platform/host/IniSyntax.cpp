#include "host/IniSyntax.h"

namespace kordel::host::ini {

QString quoted(const QString &text) {
  QString out;
  out.reserve(text.size() + 2);
  out += u'"';
  for (const QChar c : text) {
    switch (c.unicode()) {
    case u'\\': out += QStringLiteral("\\\\"); break;
    case u'"': out += QStringLiteral("\\\""); break;
    case u'\n': out += QStringLiteral("\\n"); break;
    case u'\r': out += QStringLiteral("\\r"); break;
    case u'\t': out += QStringLiteral("\\t"); break;
    case u'\0': out += QStringLiteral("\\0"); break;
    default: out += c;
    }
  }
  out += u'"';
  return out;
}

bool needsQuotes(const QString &name) {
  if (name.isEmpty() || name.front().isSpace() || name.back().isSpace())
    return true;
  for (const QChar c : name) {
    const char16_t u = c.unicode();
    if (u == u'=' || u == u'[' || u == u']' || u == u'"' || u == u';' || u < 0x20 || u == 0x7f)
      return true;
  }
  return false;
}

QString nameText(const QString &name) { return needsQuotes(name) ? quoted(name) : name; }

bool readQuoted(QStringView line, qsizetype &pos, QString &value) {
  if (pos >= line.size() || line[pos] != u'"')
    return false;
  QString text;
  for (qsizetype i = pos + 1; i < line.size(); ++i) {
    const QChar c = line[i];
    if (c == u'"') {
      value = text;
      pos = i + 1;
      return true;
    }
    if (c != u'\\') {
      text += c;
      continue;
    }
    if (++i >= line.size())
      return false;
    switch (line[i].unicode()) {
    case u'\\': text += u'\\'; break;
    case u'"': text += u'"'; break;
    case u'n': text += u'\n'; break;
    case u'r': text += u'\r'; break;
    case u't': text += u'\t'; break;
    case u'0': text += QChar(0); break;
    default: return false;
    }
  }
  return false;
}

} // namespace kordel::host::ini
