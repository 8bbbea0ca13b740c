#include "script/vbscript/Lexer.h"

#include "core/Error.h"
#include "core/VbDate.h"
#include "script/vbscript/VbErrors.h"

#include <QHash>
#include <QRegularExpression>

#include <cctype>
#include <cmath>

namespace kordel::script::vb {

namespace {

constexpr int kMaxIdentifierLength = 255;

const QHash<QString, Tok> &reservedWords() {
  static const QHash<QString, Tok> words{
      {QStringLiteral("and"), Tok::KwAnd},
      {QStringLiteral("byref"), Tok::KwByRef},
      {QStringLiteral("byval"), Tok::KwByVal},
      {QStringLiteral("call"), Tok::KwCall},
      {QStringLiteral("case"), Tok::KwCase},
      {QStringLiteral("class"), Tok::KwClass},
      {QStringLiteral("const"), Tok::KwConst},
      {QStringLiteral("dim"), Tok::KwDim},
      {QStringLiteral("do"), Tok::KwDo},
      {QStringLiteral("else"), Tok::KwElse},
      {QStringLiteral("elseif"), Tok::KwElseIf},
      {QStringLiteral("empty"), Tok::KwEmpty},
      {QStringLiteral("end"), Tok::KwEnd},
      {QStringLiteral("eqv"), Tok::KwEqv},
      {QStringLiteral("erase"), Tok::KwErase},
      {QStringLiteral("exit"), Tok::KwExit},
      {QStringLiteral("false"), Tok::KwFalse},
      {QStringLiteral("for"), Tok::KwFor},
      {QStringLiteral("function"), Tok::KwFunction},
      {QStringLiteral("if"), Tok::KwIf},
      {QStringLiteral("imp"), Tok::KwImp},
      {QStringLiteral("is"), Tok::KwIs},
      {QStringLiteral("loop"), Tok::KwLoop},
      {QStringLiteral("me"), Tok::KwMe},
      {QStringLiteral("mod"), Tok::KwMod},
      {QStringLiteral("new"), Tok::KwNew},
      {QStringLiteral("next"), Tok::KwNext},
      {QStringLiteral("not"), Tok::KwNot},
      {QStringLiteral("nothing"), Tok::KwNothing},
      {QStringLiteral("null"), Tok::KwNull},
      {QStringLiteral("on"), Tok::KwOn},
      {QStringLiteral("option"), Tok::KwOption},
      {QStringLiteral("or"), Tok::KwOr},
      {QStringLiteral("private"), Tok::KwPrivate},
      {QStringLiteral("public"), Tok::KwPublic},
      {QStringLiteral("redim"), Tok::KwReDim},
      {QStringLiteral("select"), Tok::KwSelect},
      {QStringLiteral("set"), Tok::KwSet},
      {QStringLiteral("stop"), Tok::KwStop},
      {QStringLiteral("sub"), Tok::KwSub},
      {QStringLiteral("then"), Tok::KwThen},
      {QStringLiteral("to"), Tok::KwTo},
      {QStringLiteral("true"), Tok::KwTrue},
      {QStringLiteral("until"), Tok::KwUntil},
      {QStringLiteral("wend"), Tok::KwWend},
      {QStringLiteral("while"), Tok::KwWhile},
      {QStringLiteral("with"), Tok::KwWith},
      {QStringLiteral("xor"), Tok::KwXor},
  };
  return words;
}

bool isIdentifierStart(QChar c) { return c.isLetter(); }
bool isIdentifierPart(QChar c) { return c.isLetterOrNumber() || c == u'_'; }
bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == QChar(0xA0); }

// A date literal reads month first, whatever the regional settings say;
// other forms (ISO dates, month names, times) go through the general reader.
std::optional<Date> parseDateLiteral(const QString &text) {
  static const QRegularExpression usDate(
      QStringLiteral("^\\s*(\\d{1,2})[/-](\\d{1,2})[/-](\\d{1,4})(?:\\s+(.+))?\\s*$"));
  const auto m = usDate.match(text);
  if (!m.hasMatch())
    return parseVbDate(text);
  const int month = m.captured(1).toInt(), day = m.captured(2).toInt(), year = m.captured(3).toInt();
  if (month < 1 || month > 12 || day < 1 || day > 31)
    return std::nullopt;
  Date result;
  try {
    result = dateFromParts(year, month, day);
  } catch (const Error &) {
    return std::nullopt; // out of range: reported by the caller as a bad literal
  }
  if (calendarDate(result).day() != day)
    return std::nullopt; // 2/30 rolls over in DateSerial but is no literal
  if (m.captured(4).isEmpty())
    return result;
  const auto time = parseVbDate(m.captured(4));
  if (!time || std::trunc(time->serial) != 0)
    return std::nullopt;
  return combineDateTime(result, *time);
}

class Lexer {
public:
  explicit Lexer(const QString &text) : text_(text) {}

  std::vector<Token> run() {
    while (pos_ < text_.size())
      next();
    tokenLine_ = line_;
    tokenColumn_ = column();
    push(Tok::Newline);
    push(Tok::End);
    return std::move(tokens_);
  }

private:
  QChar at(qsizetype offset = 0) const {
    const qsizetype p = pos_ + offset;
    return p < text_.size() ? text_[p] : QChar();
  }
  int column() const { return int(pos_ - lineStart_) + 1; }

  void push(Tok kind, QString text = {}, Variant value = {}) {
    tokens_.push_back(Token{kind, tokenLine_, tokenColumn_, std::move(text), std::move(value), blankBefore_});
    blankBefore_ = false;
  }

  [[noreturn]] void fail(int number) { raiseCompileError(number, line_, column()); }

  void newline() {
    ++line_;
    lineStart_ = pos_;
  }

  void skipToLineEnd() {
    while (pos_ < text_.size() && text_[pos_] != u'\n' && text_[pos_] != u'\r')
      ++pos_;
  }

  void next() {
    const QChar c = at();
    tokenLine_ = line_;
    tokenColumn_ = column();
    if (isBlank(c)) {
      ++pos_;
      blankBefore_ = true;
      return;
    }
    if (c == u'\r' || c == u'\n') {
      pos_ += (c == u'\r' && at(1) == u'\n') ? 2 : 1;
      push(Tok::Newline);
      newline();
      return;
    }
    if (c == u'\'') {
      skipToLineEnd();
      return;
    }
    if (c == u'_') {
      lineContinuation();
      return;
    }
    if (c == u'"') {
      stringLiteral();
      return;
    }
    if (c == u'#') {
      dateLiteral();
      return;
    }
    if (c == u'[') {
      bracketIdentifier();
      return;
    }
    if (c.isDigit() || (c == u'.' && at(1).isDigit() && !previousEndsOperand())) {
      number();
      return;
    }
    if (c == u'&' && startsRadixNumber()) {
      radixNumber();
      return;
    }
    if (isIdentifierStart(c)) {
      word();
      return;
    }
    symbol(c);
  }

  // "&H" with a hex digit, "&O" with an octal one, or "&" with one: else
  // the "&" joins strings ("x" &hi is "x" & hi).
  bool startsRadixNumber() const {
    const QChar kind = at(1);
    const auto octal = [](QChar c) { return c >= u'0' && c <= u'7'; };
    if (kind == u'H' || kind == u'h')
      return std::isxdigit(at(2).toLatin1()) != 0;
    if (kind == u'O' || kind == u'o')
      return octal(at(2));
    return octal(kind);
  }

  // After an identifier or ")" a "." is member access, never a number.
  bool previousEndsOperand() const {
    if (tokens_.empty())
      return false;
    const Tok kind = tokens_.back().kind;
    return kind == Tok::Identifier || kind == Tok::RParen || kind == Tok::KwMe;
  }

  void lineContinuation() {
    qsizetype p = pos_ + 1;
    while (p < text_.size() && isBlank(text_[p]))
      ++p;
    if (p < text_.size() && text_[p] != u'\r' && text_[p] != u'\n')
      fail(VbError::InvalidCharacter);
    pos_ = p;
    if (pos_ < text_.size()) {
      pos_ += (text_[pos_] == u'\r' && at(1) == u'\n') ? 2 : 1;
      newline();
    }
    blankBefore_ = true;
  }

  void stringLiteral() {
    ++pos_;
    QString value;
    while (true) {
      if (pos_ >= text_.size() || at() == u'\r' || at() == u'\n')
        raiseCompileError(VbError::UnterminatedString, tokenLine_, tokenColumn_);
      const QChar c = text_[pos_++];
      if (c == u'"') {
        if (at() != u'"')
          break;
        ++pos_;
      }
      value += c;
    }
    push(Tok::String, {}, Variant(value));
  }

  void dateLiteral() {
    const qsizetype start = ++pos_;
    while (pos_ < text_.size() && at() != u'#' && at() != u'\r' && at() != u'\n')
      ++pos_;
    if (at() != u'#')
      raiseCompileError(VbError::SyntaxError, tokenLine_, tokenColumn_);
    const QString body = text_.mid(start, pos_ - start);
    ++pos_;
    const auto date = parseDateLiteral(body);
    if (!date)
      raiseCompileError(VbError::SyntaxError, tokenLine_, tokenColumn_, QStringLiteral("Invalid date literal"));
    push(Tok::DateValue, body, Variant(*date));
  }

  void bracketIdentifier() {
    const qsizetype start = ++pos_;
    while (pos_ < text_.size() && at() != u']' && at() != u'\r' && at() != u'\n')
      ++pos_;
    if (at() != u']')
      raiseCompileError(VbError::ExpectedIdentifier, tokenLine_, tokenColumn_);
    QString name = text_.mid(start, pos_ - start);
    ++pos_;
    if (name.size() > kMaxIdentifierLength)
      raiseCompileError(VbError::IdentifierTooLong, tokenLine_, tokenColumn_);
    push(Tok::Identifier, std::move(name));
  }

  void number() {
    const qsizetype start = pos_;
    while (at().isDigit())
      ++pos_;
    bool isFloat = false;
    if (at() == u'.' && at(1).isDigit()) {
      isFloat = true;
      ++pos_;
      while (at().isDigit())
        ++pos_;
    } else if (at() == u'.' && !isIdentifierStart(at(1))) {
      isFloat = true; // "1." is a Double
      ++pos_;
    }
    if ((at() == u'e' || at() == u'E') && (at(1).isDigit() || ((at(1) == u'+' || at(1) == u'-') && at(2).isDigit()))) {
      isFloat = true;
      pos_ += 2;
      while (at().isDigit())
        ++pos_;
    }
    if (isIdentifierPart(at()))
      fail(VbError::ExpectedEndOfStatement);
    const QString digits = text_.mid(start, pos_ - start);
    bool ok = false;
    double value = digits.toDouble(&ok);
    // An exponent too small for a Double reads as 0, as natively; one too
    // large is no number.
    if (!ok && digits.contains(QLatin1String("e-"), Qt::CaseInsensitive)) {
      value = 0;
      ok = true;
    }
    if (!ok || !std::isfinite(value))
      raiseCompileError(VbError::InvalidNumber, tokenLine_, tokenColumn_);
    if (!isFloat && value <= 32767.0)
      push(Tok::Number, digits, Variant(std::int16_t(value)));
    else if (!isFloat && value <= 2147483647.0)
      push(Tok::Number, digits, Variant(int(value)));
    else
      push(Tok::Number, digits, Variant(value));
  }

  void radixNumber() {
    const qsizetype start = pos_;
    ++pos_;
    int radix = 8;
    if (at() == u'H' || at() == u'h') {
      radix = 16;
      ++pos_;
    } else if (at() == u'O' || at() == u'o') {
      ++pos_;
    }
    const qsizetype digitsStart = pos_;
    while (pos_ < text_.size() && (radix == 16 ? std::isxdigit(at().toLatin1()) : (at() >= u'0' && at() <= u'7')))
      ++pos_;
    const QString digits = text_.mid(digitsStart, pos_ - digitsStart);
    // The Long suffix keeps four hex digits from reading as a negative
    // Integer: &HFFFF is -1, &HFFFF& is 65535.
    const bool longSuffix = at() == u'&' && !startsRadixNumber();
    if (longSuffix)
      ++pos_;
    bool ok = false;
    const qulonglong raw = digits.toULongLong(&ok, radix);
    // What follows the digits is the next token, even a word (&H01Or&H02).
    if (!ok || raw > 0xFFFFFFFFull)
      raiseCompileError(VbError::InvalidNumber, tokenLine_, tokenColumn_);
    const QString text = text_.mid(start, pos_ - start);
    if (!longSuffix && raw <= 0xFFFF && (radix == 16 ? digits.size() <= 4 : raw <= 0xFFFF))
      push(Tok::Number, text, Variant(std::int16_t(std::uint16_t(raw))));
    else
      push(Tok::Number, text, Variant(int(std::int32_t(std::uint32_t(raw)))));
  }

  void word() {
    const qsizetype start = pos_;
    while (pos_ < text_.size() && isIdentifierPart(at()))
      ++pos_;
    QString name = text_.mid(start, pos_ - start);
    if (name.size() > kMaxIdentifierLength)
      raiseCompileError(VbError::IdentifierTooLong, tokenLine_, tokenColumn_);
    const QString folded = name.toLower();
    // After a "." every word is a member name, reserved or not.
    const bool afterDot = !tokens_.empty() && tokens_.back().kind == Tok::Dot;
    if (folded == QLatin1String("rem") && !afterDot) {
      skipToLineEnd();
      return;
    }
    const auto it = reservedWords().constFind(folded);
    if (it != reservedWords().constEnd() && !afterDot)
      push(*it, std::move(name));
    else
      push(Tok::Identifier, std::move(name));
  }

  void symbol(QChar c) {
    ++pos_;
    switch (c.unicode()) {
    case u':': push(Tok::Colon); return;
    case u'(': push(Tok::LParen); return;
    case u')': push(Tok::RParen); return;
    case u',': push(Tok::Comma); return;
    case u'.': push(Tok::Dot); return;
    case u'+': push(Tok::Plus); return;
    case u'-': push(Tok::Minus); return;
    case u'*': push(Tok::Star); return;
    case u'/': push(Tok::Slash); return;
    case u'\\': push(Tok::Backslash); return;
    case u'^': push(Tok::Caret); return;
    case u'&': push(Tok::Ampersand); return;
    case u'=':
      // "=>" and "=<" are read as ">=" and "<=", as natively.
      if (at() == u'>' || at() == u'<') {
        push(at() == u'>' ? Tok::GreaterEqual : Tok::LessEqual);
        ++pos_;
      } else {
        push(Tok::Equal);
      }
      return;
    case u'<':
      if (at() == u'>') {
        ++pos_;
        push(Tok::NotEqual);
      } else if (at() == u'=') {
        ++pos_;
        push(Tok::LessEqual);
      } else {
        push(Tok::Less);
      }
      return;
    case u'>':
      if (at() == u'=') {
        ++pos_;
        push(Tok::GreaterEqual);
      } else if (at() == u'<') {
        ++pos_;
        push(Tok::NotEqual); // "><" is "<>"
      } else {
        push(Tok::Greater);
      }
      return;
    default: raiseCompileError(VbError::InvalidCharacter, tokenLine_, tokenColumn_);
    }
  }

  const QString &text_;
  qsizetype pos_ = 0;
  qsizetype lineStart_ = 0;
  int line_ = 1;
  int tokenLine_ = 1;
  int tokenColumn_ = 1;
  bool blankBefore_ = false;
  std::vector<Token> tokens_;
};

} // namespace

std::vector<Token> tokenize(const QString &text) { return Lexer(text).run(); }

} // namespace kordel::script::vb
