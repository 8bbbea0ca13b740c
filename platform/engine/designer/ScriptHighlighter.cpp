#include "engine/designer/ScriptHighlighter.h"

#include <QSet>

#include <algorithm>

namespace kordel::engine {

namespace {

const QSet<QString> &vbKeywords() {
  static const QSet<QString> words{
      "and",      "as",       "boolean", "byref",    "byte",    "byval",     "call",  "case",   "class",    "const",
      "currency", "date",     "default", "dim",      "do",      "double",    "each",  "else",   "elseif",   "empty",
      "end",      "eqv",      "erase",   "error",    "exit",    "explicit",  "false", "for",    "function", "get",
      "goto",     "if",       "imp",     "in",       "integer", "is",        "let",   "like",   "long",     "loop",
      "me",       "mod",      "new",     "next",     "not",     "nothing",   "null",  "on",     "option",   "optional",
      "or",       "preserve", "private", "property", "public",  "randomize", "redim", "resume", "select",   "set",
      "single",   "step",     "stop",    "string",   "sub",     "then",      "to",    "true",   "until",    "variant",
      "wend",     "while",    "with",    "xor"};
  return words;
}

const QSet<QString> &jsKeywords() {
  static const QSet<QString> words{
      "break",      "case",   "catch",     "class", "const",   "continue", "debugger", "default", "delete", "do",
      "else",       "export", "extends",   "false", "finally", "for",      "function", "if",      "import", "in",
      "instanceof", "let",    "new",       "null",  "return",  "super",    "switch",   "this",    "throw",  "true",
      "try",        "typeof", "undefined", "var",   "void",    "while",    "with",     "yield"};
  return words;
}

bool isWordStart(QChar c) { return c.isLetter() || c == u'_' || c == u'$'; }
bool isWordPart(QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'$'; }

// The end of a JScript template string whose text begins at from: just
// past its closing backtick, or -1 when it runs on past the line.
qsizetype templateEnd(const QString &text, qsizetype from) {
  for (qsizetype i = from; i < text.size(); ++i) {
    if (text.at(i) == u'\\')
      ++i;
    else if (text.at(i) == u'`')
      return i + 1;
  }
  return -1;
}

} // namespace

ScriptHighlighter::ScriptHighlighter(ScriptLanguage language, QTextDocument *document)
    : QSyntaxHighlighter(document), language_(language) {}

QTextCharFormat ScriptHighlighter::format(Kind kind) {
  QTextCharFormat format;
  switch (kind) {
  case Kind::Keyword:
    format.setForeground(QColor(0x1a, 0x4f, 0xb3));
    format.setFontWeight(QFont::Bold);
    break;
  case Kind::String: format.setForeground(QColor(0xa3, 0x15, 0x15)); break;
  case Kind::Comment:
    format.setForeground(QColor(0x2e, 0x7d, 0x32));
    format.setFontItalic(true);
    break;
  case Kind::Number: format.setForeground(QColor(0x7b, 0x3f, 0xa0)); break;
  }
  return format;
}

void ScriptHighlighter::highlightBlock(const QString &text) {
  if (language_ == ScriptLanguage::JScript)
    highlightJsLine(text);
  else
    highlightVbLine(text);
}

qsizetype ScriptHighlighter::word(const QString &text, qsizetype at, bool caseSensitive,
                                  const QSet<QString> &keywords) {
  qsizetype end = at + 1;
  while (end < text.size() && isWordPart(text.at(end)))
    ++end;
  const QString found = text.mid(at, end - at);
  if (keywords.contains(caseSensitive ? found : found.toLower()))
    setFormat(int(at), int(end - at), format(Kind::Keyword));
  return end;
}

// A number from at: digits, a point and letters run on (hex digits, an
// exponent, a BigInt's n), and a sign after a decimal exponent's e, so that
// "1abc" is not half a number. In VBScript a type suffix may follow.
qsizetype ScriptHighlighter::number(const QString &text, qsizetype at, bool hex) {
  qsizetype end = at + 1;
  while (end < text.size()) {
    const QChar c = text.at(end);
    const bool sign = (c == u'+' || c == u'-') && !hex && text.at(end - 1).toLower() == u'e';
    if (!c.isLetterOrNumber() && c != u'.' && !sign)
      break;
    ++end;
  }
  if (language_ == ScriptLanguage::VBScript && end < text.size() && QStringLiteral("&!#@%").contains(text.at(end)))
    ++end;
  setFormat(int(at), int(end - at), format(Kind::Number));
  return end;
}

void ScriptHighlighter::highlightVbLine(const QString &text) {
  const qsizetype n = text.size();
  qsizetype i = 0;
  while (i < n) {
    const QChar c = text.at(i);
    const QChar next = i + 1 < n ? text.at(i + 1) : QChar();
    if (c == u'"') {
      qsizetype end = i + 1;
      while (end < n && !(text.at(end) == u'"' && (end + 1 >= n || text.at(end + 1) != u'"')))
        end += text.at(end) == u'"' ? 2 : 1;
      end = std::min(end + 1, n);
      setFormat(int(i), int(end - i), format(Kind::String));
      i = end;
    } else if (c == u'\'') {
      setFormat(int(i), int(n - i), format(Kind::Comment));
      return;
    } else if (c == u'#') {
      // A date literal, when it closes on the line.
      const qsizetype close = text.indexOf(u'#', i + 1);
      if (close < 0) {
        ++i;
        continue;
      }
      setFormat(int(i), int(close + 1 - i), format(Kind::Number));
      i = close + 1;
    } else if (c == u'&' && (next.toLower() == u'h' || next.toLower() == u'o')) {
      i = number(text, i, true);
    } else if (isWordStart(c) && c != u'$') {
      const qsizetype end = word(text, i, false, vbKeywords());
      if (end - i == 3 && text.mid(i, 3).compare(QLatin1String("rem"), Qt::CaseInsensitive) == 0 &&
          (end == n || text.at(end).isSpace())) {
        setFormat(int(i), int(n - i), format(Kind::Comment));
        return;
      }
      i = end;
    } else if (c.isDigit() || (c == u'.' && next.isDigit())) {
      i = number(text, i, false);
    } else if (c == u'[') {
      // A name in brackets may hold anything but the closing bracket.
      const qsizetype close = text.indexOf(u']', i + 1);
      i = close < 0 ? n : close + 1;
    } else {
      ++i;
    }
  }
}

void ScriptHighlighter::highlightJsLine(const QString &text) {
  const qsizetype n = text.size();
  qsizetype i = 0;
  setCurrentBlockState(Normal);
  if (previousBlockState() == InBlockComment) {
    const qsizetype close = text.indexOf(QLatin1String("*/"));
    i = close < 0 ? n : close + 2;
    setFormat(0, int(i), format(Kind::Comment));
    if (close < 0) {
      setCurrentBlockState(InBlockComment);
      return;
    }
  } else if (previousBlockState() == InTemplate) {
    const qsizetype end = templateEnd(text, 0);
    i = end < 0 ? n : end;
    setFormat(0, int(i), format(Kind::String));
    if (end < 0) {
      setCurrentBlockState(InTemplate);
      return;
    }
  }
  while (i < n) {
    const QChar c = text.at(i);
    const QChar next = i + 1 < n ? text.at(i + 1) : QChar();
    if (c == u'/' && next == u'/') {
      setFormat(int(i), int(n - i), format(Kind::Comment));
      return;
    }
    if (c == u'/' && next == u'*') {
      const qsizetype close = text.indexOf(QLatin1String("*/"), i + 2);
      const qsizetype end = close < 0 ? n : close + 2;
      setFormat(int(i), int(end - i), format(Kind::Comment));
      if (close < 0) {
        setCurrentBlockState(InBlockComment);
        return;
      }
      i = end;
    } else if (c == u'"' || c == u'\'') {
      qsizetype end = i + 1;
      while (end < n && text.at(end) != c)
        end += text.at(end) == u'\\' ? 2 : 1;
      end = std::min(end + 1, n);
      setFormat(int(i), int(end - i), format(Kind::String));
      i = end;
    } else if (c == u'`') {
      const qsizetype end = templateEnd(text, i + 1);
      setFormat(int(i), int((end < 0 ? n : end) - i), format(Kind::String));
      if (end < 0) {
        setCurrentBlockState(InTemplate);
        return;
      }
      i = end;
    } else if (isWordStart(c)) {
      i = word(text, i, true, jsKeywords());
    } else if (c.isDigit() || (c == u'.' && next.isDigit())) {
      i = number(text, i, c == u'0' && next.toLower() == u'x');
    } else {
      ++i;
    }
  }
}

} // namespace kordel::engine
