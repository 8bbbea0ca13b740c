#include "script/vbscript/RegExpPattern.h"

#include "script/vbscript/VbErrors.h"

#include <optional>

namespace kordel::script::vb {

namespace {

// The characters that end a line for ".", "^" and "$", as a class body.
const QString kLineBreaks = QStringLiteral("\\n\\r\\x{2028}\\x{2029}");

// Thrown inside the translator with the number the pattern raises.
struct PatternError {
  int number;
};

[[noreturn]] void fail(int number) { throw PatternError{number}; }

QString codeUnit(char32_t unit) { return QStringLiteral("\\x{%1}").arg(unsigned(unit), 0, 16); }

// One member of a bracketed class: a character, or a class escape such as
// \d that cannot end a range.
struct ClassAtom {
  char32_t unit = 0;
  QString escape;
};

class Translator {
public:
  Translator(const QString &pattern, bool multiline) : src_(pattern), multiline_(multiline) {}

  RegExpPattern run() {
    RegExpPattern result;
    groups_ = countGroups();
    try {
      translate();
      result.translated = out_;
    } catch (const PatternError &error) {
      result.error = error.number;
    }
    return result;
  }

private:
  enum class Last { Nothing, Atom, Assertion, Quantifier };

  bool atEnd() const { return pos_ >= src_.size(); }
  char16_t peek(qsizetype ahead = 0) const {
    return pos_ + ahead < src_.size() ? src_.at(pos_ + ahead).unicode() : char16_t(0);
  }
  static bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
  static int hexValue(char16_t c) {
    if (isDigit(c))
      return c - u'0';
    if (c >= u'a' && c <= u'f')
      return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
      return c - u'A' + 10;
    return -1;
  }

  // The capturing groups, counted before the translation so that \N knows
  // whether it refers to a group or is an octal escape.
  int countGroups() const {
    int count = 0;
    bool inClass = false;
    for (qsizetype i = 0; i < src_.size(); ++i) {
      const QChar c = src_.at(i);
      if (c == u'\\') {
        ++i;
      } else if (inClass) {
        inClass = c != u']';
      } else if (c == u'[') {
        inClass = true;
        if (i + 1 < src_.size() && src_.at(i + 1) == u'^')
          ++i;
        // "[]" is a complete, empty class: its "]" closes it.
        if (i + 1 < src_.size() && src_.at(i + 1) == u']') {
          ++i;
          inClass = false;
        }
      } else if (c == u'(' && (i + 1 >= src_.size() || src_.at(i + 1) != u'?')) {
        ++count;
      }
    }
    return count;
  }

  void literal(char16_t unit) {
    const bool plain = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || isDigit(unit) ||
                       (unit >= 0x80 && unit != 0x2028 && unit != 0x2029);
    out_ += plain ? QString(QChar(unit)) : codeUnit(unit);
  }

  // Exactly count hex digits as one character, or nothing.
  std::optional<char16_t> hexEscape(int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) {
      const int digit = hexValue(peek(i));
      if (digit < 0)
        return std::nullopt;
      value = value * 16 + digit;
    }
    pos_ += count;
    return char16_t(value);
  }

  // An octal escape of up to three digits whose value stays below 256.
  char16_t octalEscape() {
    int value = 0;
    for (int i = 0; i < 3 && peek() >= u'0' && peek() <= u'7'; ++i) {
      const int next = value * 8 + (peek() - u'0');
      if (next > 0377)
        break;
      value = next;
      ++pos_;
    }
    return char16_t(value);
  }

  // The escapes that mean one character in and out of classes; the
  // backslash is consumed, pos_ is on the letter. Anything else stands for
  // itself.
  char16_t characterEscape() {
    const char16_t c = peek();
    ++pos_;
    switch (c) {
    case u'f': return 0x0C;
    case u'n': return 0x0A;
    case u'r': return 0x0D;
    case u't': return 0x09;
    case u'v': return 0x0B;
    case u'x': return hexEscape(2).value_or(u'x');
    case u'u': return hexEscape(4).value_or(u'u');
    case u'c': {
      const char16_t letter = peek();
      if ((letter >= u'a' && letter <= u'z') || (letter >= u'A' && letter <= u'Z')) {
        ++pos_;
        return char16_t(letter % 32);
      }
      // Without a letter the backslash is a character of its own.
      --pos_;
      return u'\\';
    }
    default: return c;
    }
  }

  static QString classEscape(char16_t c) {
    switch (c) {
    case u'd':
    case u'D':
    case u'w':
    case u'W':
    case u's':
    case u'S': return QStringLiteral("\\") + QChar(c);
    default: return {};
    }
  }

  Last escape() {
    ++pos_; // the backslash
    if (atEnd())
      fail(VbError::RegExpSyntax);
    const char16_t c = peek();
    if (const QString cls = classEscape(c); !cls.isEmpty()) {
      ++pos_;
      out_ += cls;
      return Last::Atom;
    }
    if (c == u'b' || c == u'B') {
      ++pos_;
      out_ += QStringLiteral("\\") + QChar(c);
      return Last::Assertion;
    }
    if (isDigit(c)) {
      digitEscape();
      return Last::Atom;
    }
    literal(characterEscape());
    return Last::Atom;
  }

  // \N: a back reference when that group exists, two digits before one,
  // else an octal escape; \8 and \9 without such a group are the digits.
  // A reference to a group that has not taken part matches the empty
  // string, so it is written as a condition on the group.
  void digitEscape() {
    const int first = peek() - u'0';
    const int two = isDigit(peek(1)) ? first * 10 + (peek(1) - u'0') : -1;
    const int group = two >= 1 && two <= groups_ ? two : first >= 1 && first <= groups_ ? first : 0;
    if (group > 0) {
      pos_ += group == two ? 2 : 1;
      out_ += QStringLiteral("(?(%1)\\g{%1})").arg(group);
      return;
    }
    if (first >= 8) {
      ++pos_;
      literal(char16_t(u'0' + first));
      return;
    }
    literal(octalEscape());
  }

  ClassAtom classAtom() {
    if (peek() != u'\\') {
      const char16_t c = peek();
      ++pos_;
      if (QChar::isHighSurrogate(c) && QChar::isLowSurrogate(peek())) {
        const char16_t low = peek();
        ++pos_;
        return {QChar::surrogateToUcs4(c, low), {}};
      }
      return {c, {}};
    }
    ++pos_;
    if (atEnd())
      fail(VbError::RegExpExpectedBracket);
    const char16_t c = peek();
    if (const QString cls = classEscape(c); !cls.isEmpty()) {
      ++pos_;
      return {0, cls};
    }
    if (c == u'b') {
      ++pos_;
      return {0x08, {}};
    }
    if (isDigit(c)) {
      if (c == u'8' || c == u'9') {
        ++pos_;
        return {c, {}};
      }
      return {octalEscape(), {}};
    }
    return {characterEscape(), {}};
  }

  void characterClass() {
    ++pos_; // [
    const bool negated = peek() == u'^';
    if (negated)
      ++pos_;
    QString body;
    while (true) {
      if (atEnd())
        fail(VbError::RegExpExpectedBracket);
      if (peek() == u']')
        break;
      const ClassAtom from = classAtom();
      if (peek() == u'-' && pos_ + 1 < src_.size() && peek(1) != u']') {
        ++pos_;
        const ClassAtom to = classAtom();
        if (!from.escape.isEmpty() || !to.escape.isEmpty()) {
          // A class escape cannot bound a range: the hyphen is literal.
          body += from.escape.isEmpty() ? codeUnit(from.unit) : from.escape;
          body += codeUnit(u'-');
          body += to.escape.isEmpty() ? codeUnit(to.unit) : to.escape;
        } else {
          if (from.unit > to.unit)
            fail(VbError::RegExpInvalidRange);
          body += codeUnit(from.unit) + u'-' + codeUnit(to.unit);
        }
        continue;
      }
      body += from.escape.isEmpty() ? codeUnit(from.unit) : from.escape;
    }
    ++pos_; // ]
    if (body.isEmpty())
      out_ += negated ? QStringLiteral("[\\s\\S]") : QStringLiteral("(?!)");
    else
      out_ += (negated ? QStringLiteral("[^") : QStringLiteral("[")) + body + u']';
  }

  // {n}, {n,} or {n,m} at pos_, consumed and written out; false, with
  // nothing consumed, when the brace starts no such quantifier.
  bool braceQuantifier() {
    qsizetype i = pos_ + 1;
    const auto number = [&](qint64 &value) {
      const qsizetype start = i;
      value = 0;
      while (i < src_.size() && isDigit(src_.at(i).unicode())) {
        value = std::min<qint64>(value * 10 + (src_.at(i).unicode() - u'0'), 1'000'000);
        ++i;
      }
      return i > start;
    };
    qint64 low = 0, high = -1;
    if (!number(low))
      return false;
    bool open = false;
    if (i < src_.size() && src_.at(i) == u',') {
      ++i;
      open = !number(high);
    } else {
      high = low;
    }
    if (i >= src_.size() || src_.at(i) != u'}')
      return false;
    if (!open && high < low)
      fail(VbError::RegExpSyntax);
    pos_ = i + 1;
    out_ += open ? QStringLiteral("{%1,}").arg(low) : QStringLiteral("{%1,%2}").arg(low).arg(high);
    return true;
  }

  void translate() {
    int depth = 0;
    Last last = Last::Nothing;
    while (!atEnd()) {
      const char16_t c = peek();
      switch (c) {
      case u'\\': last = escape(); break;
      case u'^':
        ++pos_;
        out_ += multiline_ ? QStringLiteral("(?<![^%1])").arg(kLineBreaks) : QStringLiteral("\\A");
        last = Last::Assertion;
        break;
      case u'$':
        ++pos_;
        out_ += multiline_ ? QStringLiteral("(?![^%1])").arg(kLineBreaks) : QStringLiteral("\\z");
        last = Last::Assertion;
        break;
      case u'.':
        ++pos_;
        out_ += QStringLiteral("[^%1]").arg(kLineBreaks);
        last = Last::Atom;
        break;
      case u'[':
        characterClass();
        last = Last::Atom;
        break;
      case u'(':
        ++pos_;
        if (peek() == u'?') {
          const char16_t kind = peek(1);
          if (kind != u':' && kind != u'=' && kind != u'!')
            fail(VbError::RegExpSyntax);
          pos_ += 2;
          out_ += QStringLiteral("(?") + QChar(kind);
        } else {
          out_ += u'(';
        }
        ++depth;
        last = Last::Nothing;
        break;
      case u')':
        if (depth == 0)
          fail(VbError::RegExpSyntax);
        ++pos_;
        --depth;
        out_ += u')';
        last = Last::Atom;
        break;
      case u'|':
        ++pos_;
        out_ += u'|';
        last = Last::Nothing;
        break;
      case u'*':
      case u'+':
      case u'?':
      case u'{': {
        const bool isQuantifier = c != u'{' || braceQuantifierAhead();
        if (!isQuantifier) {
          ++pos_;
          literal(c);
          last = Last::Atom;
          break;
        }
        if (last != Last::Atom)
          fail(VbError::RegExpUnexpectedQuantifier);
        if (c == u'{') {
          braceQuantifier();
        } else {
          ++pos_;
          out_ += QChar(c);
        }
        if (peek() == u'?') {
          ++pos_;
          out_ += u'?';
        }
        last = Last::Quantifier;
        break;
      }
      default:
        ++pos_;
        literal(c);
        last = Last::Atom;
        break;
      }
    }
    if (depth > 0)
      fail(VbError::RegExpExpectedParen);
  }

  // Whether the brace at pos_ starts a quantifier, without consuming it.
  bool braceQuantifierAhead() {
    const qsizetype savedPos = pos_;
    const qsizetype savedOut = out_.size();
    const bool found = braceQuantifier();
    pos_ = savedPos;
    out_.truncate(savedOut);
    return found;
  }

  const QString &src_;
  bool multiline_;
  qsizetype pos_ = 0;
  int groups_ = 0;
  QString out_;
};

} // namespace

RegExpPattern translateRegExpPattern(const QString &pattern, bool multiline) {
  return Translator(pattern, multiline).run();
}

} // namespace kordel::script::vb
