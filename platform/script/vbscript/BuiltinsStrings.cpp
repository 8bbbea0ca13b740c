// The string functions of the library.

#include "core/Compare.h"
#include "core/Error.h"
#include "script/vbscript/Builtins.h"
#include "script/vbscript/Interpreter.h"

#include <algorithm>
#include <cctype>

namespace kordel::script::vb {

namespace {

[[noreturn]] void invalidCall() { raiseError(ErrorNumber::InvalidCall); }

Qt::CaseSensitivity caseArg(const BuiltinArgs &args, int index) {
  const int mode = intArg(args, index, 0);
  if (mode < 0 || mode > 2)
    invalidCall();
  return mode == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

int nonNegative(const BuiltinArgs &args, int index) {
  requireNotNull(args[index]);
  const int value = args[index].toLong();
  if (value < 0)
    invalidCall();
  return value;
}

Variant fnLen(BuiltinArgs &a) {
  if (a[0].isNull())
    return Variant::null();
  return Variant(int(a[0].toString().size()));
}

Variant fnLeft(BuiltinArgs &a) {
  const int n = nonNegative(a, 1);
  if (a[0].isNull())
    return Variant::null();
  return Variant(a[0].toString().left(n));
}

Variant fnRight(BuiltinArgs &a) {
  const int n = nonNegative(a, 1);
  if (a[0].isNull())
    return Variant::null();
  return Variant(a[0].toString().right(n));
}

Variant fnMid(BuiltinArgs &a) {
  requireNotNull(a[1]);
  const int start = a[1].toLong();
  if (start < 1)
    invalidCall();
  const int length = a.has(2) ? nonNegative(a, 2) : -1;
  if (a[0].isNull())
    return Variant::null();
  const QString text = a[0].toString();
  if (start > text.size())
    return Variant(QString());
  return Variant(text.mid(start - 1, length));
}

Variant fnInStr(BuiltinArgs &a) {
  // InStr(s1, s2) or InStr(start, s1, s2 [, compare])
  int start = 1;
  int first = 0;
  Qt::CaseSensitivity cs = Qt::CaseSensitive;
  if (a.count >= 3) {
    requireNotNull(a[0]);
    start = a[0].toLong();
    first = 1;
    cs = caseArg(a, 3);
  }
  if (start < 1)
    invalidCall();
  if (a[first].isNull() || a[first + 1].isNull())
    return Variant::null();
  const QString text = a[first].toString(), wanted = a[first + 1].toString();
  if (start > text.size() && !(wanted.isEmpty() && start == text.size() + 1))
    return Variant(0);
  if (wanted.isEmpty())
    return Variant(start);
  return Variant(int(text.indexOf(wanted, start - 1, cs) + 1));
}

Variant fnInStrRev(BuiltinArgs &a) {
  const int start = intArg(a, 2, -1);
  if (start == 0 || start < -1)
    invalidCall();
  const Qt::CaseSensitivity cs = caseArg(a, 3);
  if (a[0].isNull() || a[1].isNull())
    return Variant::null();
  const QString text = a[0].toString(), wanted = a[1].toString();
  const int end = start == -1 ? int(text.size()) : start;
  if (end > text.size())
    return Variant(0);
  if (wanted.isEmpty())
    return Variant(end);
  const qsizetype from = end - wanted.size();
  if (from < 0)
    return Variant(0);
  return Variant(int(text.lastIndexOf(wanted, from, cs) + 1));
}

Variant fnReplace(BuiltinArgs &a) {
  requireNotNull(a[0]);
  requireNotNull(a[1]);
  requireNotNull(a[2]);
  const int start = intArg(a, 3, 1);
  const int count = intArg(a, 4, -1);
  if (start < 1 || count < -1)
    invalidCall();
  const Qt::CaseSensitivity cs = caseArg(a, 5);
  // The result begins at start: what precedes it is dropped.
  const QString text = a[0].toString().mid(start - 1);
  const QString find = a[1].toString(), with = a[2].toString();
  if (find.isEmpty() || count == 0)
    return Variant(text);
  QString out;
  qsizetype from = 0;
  int done = 0;
  while (count < 0 || done < count) {
    const qsizetype at = text.indexOf(find, from, cs);
    if (at < 0)
      break;
    out += QStringView(text).mid(from, at - from);
    out += with;
    from = at + find.size();
    ++done;
    a.interpreter.checkStringLength(out.size());
  }
  out += QStringView(text).mid(from);
  a.interpreter.checkStringLength(out.size());
  return Variant(out);
}

Variant fnSplit(BuiltinArgs &a) {
  requireNotNull(a[0]);
  const QString text = a[0].toString();
  const QString delimiter = a.has(1) ? a[1].toString() : QStringLiteral(" ");
  const int count = intArg(a, 2, -1);
  if (count < -1)
    invalidCall();
  const Qt::CaseSensitivity cs = caseArg(a, 3);
  std::vector<Variant> parts;
  if (text.isEmpty() || count == 0)
    return Variant(VariantArray::fromValues({}));
  if (delimiter.isEmpty()) {
    parts.push_back(Variant(text));
  } else {
    qsizetype from = 0;
    while (count < 0 || int(parts.size()) < count - 1) {
      const qsizetype at = text.indexOf(delimiter, from, cs);
      if (at < 0)
        break;
      parts.push_back(Variant(text.mid(from, at - from)));
      from = at + delimiter.size();
      a.interpreter.checkArraySize(parts.size());
    }
    parts.push_back(Variant(text.mid(from)));
  }
  return Variant(VariantArray::fromValues(std::move(parts)));
}

Variant fnJoin(BuiltinArgs &a) {
  if (!a[0].isArray())
    raiseError(ErrorNumber::TypeMismatch);
  const VariantArray &list = a[0].array();
  if (list.dimensions() > 1)
    invalidCall();
  const QString delimiter = a.has(1) ? a[1].toString() : QStringLiteral(" ");
  QString out;
  bool first = true;
  for (const Variant &element : list.elements()) {
    if (!first)
      out += delimiter;
    first = false;
    out += element.toString();
    a.interpreter.checkStringLength(out.size());
  }
  return Variant(out);
}

QString trimmed(const QString &text, bool left, bool right) {
  qsizetype begin = 0, end = text.size();
  if (left) {
    while (begin < end && text[begin] == u' ')
      ++begin;
  }
  if (right) {
    while (end > begin && text[end - 1] == u' ')
      --end;
  }
  return text.mid(begin, end - begin);
}

Variant fnTrim(BuiltinArgs &a) {
  return a[0].isNull() ? Variant::null() : Variant(trimmed(a[0].toString(), true, true));
}
Variant fnLTrim(BuiltinArgs &a) {
  return a[0].isNull() ? Variant::null() : Variant(trimmed(a[0].toString(), true, false));
}
Variant fnRTrim(BuiltinArgs &a) {
  return a[0].isNull() ? Variant::null() : Variant(trimmed(a[0].toString(), false, true));
}
// Case changes go character by character, so the length stays ("ß" stays
// "ß" in UCase, as VBScript has it, where a full mapping gives "SS").
QString mappedCase(QString text, bool upper) {
  for (QChar &c : text)
    c = upper ? c.toUpper() : c.toLower();
  return text;
}

Variant fnUCase(BuiltinArgs &a) { return a[0].isNull() ? Variant::null() : Variant(mappedCase(a[0].toString(), true)); }
Variant fnLCase(BuiltinArgs &a) {
  return a[0].isNull() ? Variant::null() : Variant(mappedCase(a[0].toString(), false));
}

Variant fnSpace(BuiltinArgs &a) {
  const int n = nonNegative(a, 0);
  a.interpreter.checkStringLength(n);
  return Variant(QString(n, u' '));
}

Variant fnString(BuiltinArgs &a) {
  if (a[0].isNull() || a[1].isNull())
    return Variant::null();
  const int n = nonNegative(a, 0);
  QChar fill;
  if (a[1].isString()) {
    if (a[1].rawString().isEmpty())
      invalidCall();
    fill = a[1].rawString()[0];
  } else {
    fill = QChar(char16_t(a[1].toLong() & 0xFF));
  }
  a.interpreter.checkStringLength(n);
  return Variant(QString(n, fill));
}

Variant fnStrComp(BuiltinArgs &a) {
  const Qt::CaseSensitivity cs = caseArg(a, 2);
  if (a[0].isNull() || a[1].isNull())
    return Variant::null();
  const int order = compareStrings(a[0].toString(), a[1].toString(),
                                   cs == Qt::CaseSensitive ? CompareMode::Binary : CompareMode::Text);
  return Variant(std::int16_t(order));
}

Variant fnStrReverse(BuiltinArgs &a) {
  requireNotNull(a[0]);
  QString text = a[0].toString();
  std::reverse(text.begin(), text.end());
  return Variant(text);
}

QChar firstChar(const BuiltinArgs &a) {
  requireNotNull(a[0]);
  const QString text = a[0].toString();
  if (text.isEmpty())
    invalidCall();
  return text[0];
}

Variant fnAsc(BuiltinArgs &a) {
  const char16_t code = firstChar(a).unicode();
  return Variant(std::int16_t(code < 256 ? code : u'?'));
}

Variant fnAscW(BuiltinArgs &a) { return Variant(std::int16_t(firstChar(a).unicode())); }

Variant fnChr(BuiltinArgs &a) {
  requireNotNull(a[0]);
  const int code = a[0].toLong();
  if (code < 0 || code > 255)
    invalidCall();
  return Variant(QString(QChar(char16_t(code))));
}

Variant fnChrW(BuiltinArgs &a) {
  requireNotNull(a[0]);
  const int code = a[0].toLong();
  if (code < -32768 || code > 65535)
    invalidCall();
  return Variant(QString(QChar(char16_t(std::uint16_t(code)))));
}

Variant fnFilter(BuiltinArgs &a) {
  if (!a[0].isArray() || a[0].array().dimensions() != 1)
    raiseError(ErrorNumber::TypeMismatch);
  requireNotNull(a[1]);
  const QString match = a[1].toString();
  const bool include = a.has(2) ? a[2].toBool() : true;
  const Qt::CaseSensitivity cs = caseArg(a, 3);
  std::vector<Variant> kept;
  for (const Variant &element : a[0].array().elements()) {
    const QString text = element.toString();
    if (text.contains(match, cs) == include)
      kept.push_back(Variant(text));
  }
  return Variant(VariantArray::fromValues(std::move(kept)));
}

// Escape and Unescape: %XX for characters below 256, %uXXXX above; letters,
// digits and @*_+-./ stay as they are.
Variant fnEscape(BuiltinArgs &a) {
  if (a[0].isNull())
    return Variant::null();
  const QString text = a[0].toString();
  QString out;
  for (QChar c : text) {
    const char16_t u = c.unicode();
    if ((u < 128 && (std::isalnum(int(u)) || QStringLiteral("@*_+-./").contains(c))))
      out += c;
    else if (u < 256)
      out += u'%' + QStringLiteral("%1").arg(int(u), 2, 16, QChar(u'0')).toUpper();
    else
      out += QStringLiteral("%u") + QStringLiteral("%1").arg(int(u), 4, 16, QChar(u'0')).toUpper();
  }
  return Variant(out);
}

Variant fnUnescape(BuiltinArgs &a) {
  if (a[0].isNull())
    return Variant::null();
  const QString text = a[0].toString();
  QString out;
  for (qsizetype i = 0; i < text.size(); ++i) {
    bool ok = false;
    if (text[i] == u'%' && i + 5 < text.size() && text[i + 1] == u'u') {
      const int code = text.mid(i + 2, 4).toInt(&ok, 16);
      if (ok) {
        out += QChar(char16_t(code));
        i += 5;
        continue;
      }
    }
    if (text[i] == u'%' && i + 2 < text.size()) {
      const int code = text.mid(i + 1, 2).toInt(&ok, 16);
      if (ok) {
        out += QChar(char16_t(code));
        i += 2;
        continue;
      }
    }
    out += text[i];
  }
  return Variant(out);
}

constexpr BuiltinDef kStringBuiltins[] = {
    {"Len", fnLen, 1, 1},         {"Left", fnLeft, 2, 2},       {"Right", fnRight, 2, 2},
    {"Mid", fnMid, 2, 3},         {"InStr", fnInStr, 2, 4},     {"InStrRev", fnInStrRev, 2, 4},
    {"Replace", fnReplace, 3, 6}, {"Split", fnSplit, 1, 4},     {"Join", fnJoin, 1, 2},
    {"Trim", fnTrim, 1, 1},       {"LTrim", fnLTrim, 1, 1},     {"RTrim", fnRTrim, 1, 1},
    {"UCase", fnUCase, 1, 1},     {"LCase", fnLCase, 1, 1},     {"Space", fnSpace, 1, 1},
    {"String", fnString, 2, 2},   {"StrComp", fnStrComp, 2, 3}, {"StrReverse", fnStrReverse, 1, 1},
    {"Asc", fnAsc, 1, 1},         {"AscB", fnAsc, 1, 1},        {"AscW", fnAscW, 1, 1},
    {"Chr", fnChr, 1, 1},         {"ChrB", fnChr, 1, 1},        {"ChrW", fnChrW, 1, 1},
    {"Filter", fnFilter, 2, 4},   {"Escape", fnEscape, 1, 1},   {"Unescape", fnUnescape, 1, 1},
};

} // namespace

std::span<const BuiltinDef> stringBuiltins() { return kStringBuiltins; }

} // namespace kordel::script::vb
