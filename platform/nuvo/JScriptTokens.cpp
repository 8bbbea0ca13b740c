// Reading a JScript text into tokens the way the script engine does. What
// matters for safety is where strings, comments, templates and regular
// expressions begin and end, since code taken for one of them is not
// checked: so line ends are all of the language's, names are read with
// their \u escapes, the code in template placeholders is read as code, and
// a "/" is told apart as a regular expression or a division from what
// stands before it, which needs to know what each bracket holds.

#include "nuvo/ScriptTokens.h"

#include <QSet>

#include <optional>

namespace kordel::nuvo::scripttokens {

namespace {

bool isLineTerminator(QChar c) { return c == u'\n' || c == u'\r' || c.unicode() == 0x2028 || c.unicode() == 0x2029; }
bool isBlank(QChar c) { return !isLineTerminator(c) && (c.isSpace() || c.unicode() == 0xFEFF); }

int hexDigit(QChar c) {
  if (c >= u'0' && c <= u'9')
    return c.unicode() - u'0';
  const char16_t lower = c.toLower().unicode();
  return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

bool isNameStart(char32_t c) { return QChar::isLetter(c) || c == U'_' || c == U'$'; }
bool isNamePart(char32_t c) {
  if (QChar::isLetterOrNumber(c) || c == U'_' || c == U'$' || c == 0x200C || c == 0x200D)
    return true;
  const QChar::Category category = QChar::category(c);
  return category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
         category == QChar::Punctuation_Connector;
}

} // namespace

bool beginsJScriptExpression(const QString &word) {
  static const QSet<QString> words{
      QStringLiteral("return"),  QStringLiteral("typeof"), QStringLiteral("instanceof"), QStringLiteral("in"),
      QStringLiteral("of"),      QStringLiteral("new"),    QStringLiteral("delete"),     QStringLiteral("void"),
      QStringLiteral("throw"),   QStringLiteral("case"),   QStringLiteral("yield"),      QStringLiteral("await"),
      QStringLiteral("extends"), QStringLiteral("do"),     QStringLiteral("else"),
  };
  return words.contains(word);
}

namespace {

bool ownsControlParentheses(const QString &word) {
  static const QSet<QString> words{QStringLiteral("if"),   QStringLiteral("for"),    QStringLiteral("while"),
                                   QStringLiteral("with"), QStringLiteral("switch"), QStringLiteral("catch")};
  return words.contains(word);
}

enum class Bracket { Paren, Square, Brace, Placeholder };

// What a pair of braces holds. It decides what a "/" or "[" after the
// closing brace is: after a block or a declaration a new statement
// begins; after an object or a function or class expression the
// expression goes on.
enum class Braces { Block, FunctionExpression, Object, ClassDeclaration, ClassExpression };

bool holdsStatements(Braces braces) { return braces == Braces::Block || braces == Braces::FunctionExpression; }
bool endsOperand(Braces braces) {
  return braces == Braces::FunctionExpression || braces == Braces::Object || braces == Braces::ClassExpression;
}

// Whose parentheses they are: a statement's condition, a function's
// parameters, or anything else (calls, grouping, method parameters).
enum class Owner { Control, FunctionDeclaration, FunctionExpression, Other };

struct Context {
  Bracket bracket;
  Braces braces = Braces::Block;
  Owner owner = Owner::Other;
  int openTernaries = 0;
};

class JsLexer {
public:
  explicit JsLexer(const QString &text) : text_(text) { contexts_.push_back({Bracket::Brace}); }

  Tokens run() {
    while (at_ < text_.size())
      step();
    if (contexts_.size() != 1)
      wellFormed_ = false;
    return {std::move(tokens_), wellFormed_};
  }

private:
  QChar peek(qsizetype offset = 0) const { return at_ + offset < text_.size() ? text_[at_ + offset] : QChar(); }
  Context &top() { return contexts_.back(); }

  // The code point at the current place and how many UTF-16 units it takes.
  char32_t codePoint(int *units) const {
    const QChar c = peek();
    if (c.isHighSurrogate() && peek(1).isLowSurrogate()) {
      *units = 2;
      return QChar::surrogateToUcs4(c, peek(1));
    }
    *units = 1;
    return c.unicode();
  }

  void push(Kind kind, qsizetype start, QString text, QString name = {}) {
    tokens_.push_back({kind, start, at_, std::move(text), std::move(name)});
  }

  // Records the token just pushed as the one before whatever comes next.
  void accept(bool operand) {
    const Token &token = tokens_.back();
    statementStartBeforePrevious_ = statementStart();
    hasPrevious_ = true;
    previousKind_ = token.kind;
    previous_ = token.kind == Kind::Word ? token.name : token.text;
    previousOperand_ = operand;
    previousMember_ = false;
    previousTernaryColon_ = false;
    lineEndSincePrevious_ = false;
  }

  bool previousIs(Kind kind, const char *text) const {
    return hasPrevious_ && previousKind_ == kind && previous_ == QLatin1String(text);
  }

  // Whether a statement may begin here, as far as a "function" or "class"
  // keyword, a "{" or a "/" needs to know.
  bool statementStart() const {
    if (!hasPrevious_ || (lineEndSincePrevious_ && previousOperand_))
      return true;
    if (previousKind_ == Kind::Word)
      return !previousMember_ && (previous_ == QLatin1String("else") || previous_ == QLatin1String("do"));
    if (previousKind_ != Kind::Symbol)
      return false;
    if (previous_ == QLatin1String(";"))
      return true;
    if (previous_ == QLatin1String("{"))
      return contexts_.back().bracket == Bracket::Brace && holdsStatements(contexts_.back().braces);
    if (previous_ == QLatin1String("}"))
      return !previousOperand_;
    if (previous_ == QLatin1String(")"))
      return previousOwner_ == Owner::Control;
    if (previous_ == QLatin1String(":"))
      return !previousTernaryColon_ && contexts_.back().bracket == Bracket::Brace &&
             holdsStatements(contexts_.back().braces);
    return false;
  }

  Braces openingBraces() {
    if (pendingClass_ && pendingClassDepth_ == contexts_.size()) {
      const Braces braces = *pendingClass_;
      pendingClass_.reset();
      return braces;
    }
    if (!hasPrevious_)
      return Braces::Block;
    const bool inObjectOrClass = top().bracket == Bracket::Brace && !holdsStatements(top().braces);
    if (previousKind_ == Kind::Symbol) {
      if (previous_ == QLatin1String(")")) {
        if (previousOwner_ == Owner::Control || previousOwner_ == Owner::FunctionDeclaration)
          return Braces::Block;
        if (previousOwner_ == Owner::FunctionExpression || inObjectOrClass)
          return Braces::FunctionExpression; // a function's or a method's body
        return Braces::Block;                // a call, then a block on the next line
      }
      if (previous_ == QLatin1String("=>"))
        return Braces::Block;
      if (statementStart())
        return Braces::Block;
      return Braces::Object;
    }
    if (previousKind_ == Kind::Word) {
      static const QSet<QString> blockWords{QStringLiteral("else"), QStringLiteral("do"), QStringLiteral("try"),
                                            QStringLiteral("finally"), QStringLiteral("catch")};
      if (!previousMember_ && blockWords.contains(previous_))
        return Braces::Block;
      if (!previousOperand_ || previous_ == QLatin1String("var") || previous_ == QLatin1String("let") ||
          previous_ == QLatin1String("const"))
        return Braces::Object;
    }
    // After a value only a new statement can begin.
    return Braces::Block;
  }

  void lineEnd() {
    const qsizetype start = at_;
    at_ += peek() == u'\r' && peek(1) == u'\n' ? 2 : 1;
    push(Kind::LineEnd, start, {});
    lineEndSincePrevious_ = true;
  }

  void blockComment() {
    const qsizetype close = text_.indexOf(QLatin1String("*/"), at_ + 2);
    const qsizetype end = close < 0 ? text_.size() : close + 2;
    if (close < 0)
      wellFormed_ = false;
    for (qsizetype i = at_; i < end; ++i)
      if (isLineTerminator(text_[i]))
        lineEndSincePrevious_ = true;
    at_ = end;
  }

  void string(QChar quote) {
    const qsizetype start = at_++;
    QString value;
    bool escaped = false;
    bool closed = false;
    while (at_ < text_.size()) {
      const QChar c = text_[at_];
      if (isLineTerminator(c))
        break;
      ++at_;
      if (c == u'\\') {
        escaped = true;
        if (at_ < text_.size()) {
          // A backslash before a line end continues the string on the next line.
          if (!isLineTerminator(text_[at_]))
            value += text_[at_];
          at_ += text_[at_] == u'\r' && peek(1) == u'\n' ? 2 : 1;
        }
        continue;
      }
      if (c == quote) {
        closed = true;
        break;
      }
      value += c;
    }
    if (!closed)
      wellFormed_ = false;
    push(Kind::String, start, value);
    tokens_.back().escaped = escaped;
    accept(true);
  }

  // One piece of a template literal, from its start or from the "}" that
  // closes a placeholder, up to the closing "`" or the next "${".
  void templatePiece(qsizetype start) {
    QString value;
    bool escaped = false;
    while (at_ < text_.size()) {
      const QChar c = text_[at_];
      if (c == u'\\') {
        escaped = true;
        at_ = std::min(at_ + 2, text_.size());
        continue;
      }
      if (c == u'`') {
        ++at_;
        push(Kind::String, start, value);
        tokens_.back().escaped = escaped;
        accept(true);
        return;
      }
      if (c == u'$' && peek(1) == u'{') {
        at_ += 2;
        push(Kind::String, start, value);
        tokens_.back().escaped = escaped;
        accept(false);
        contexts_.push_back({Bracket::Placeholder});
        return;
      }
      value += c;
      ++at_;
    }
    wellFormed_ = false;
    push(Kind::String, start, value);
    accept(true);
  }

  void regularExpression() {
    const qsizetype start = at_++;
    bool inClass = false;
    while (at_ < text_.size() && !isLineTerminator(text_[at_])) {
      const QChar c = text_[at_++];
      if (c == u'\\') {
        if (at_ < text_.size() && !isLineTerminator(text_[at_]))
          ++at_;
      } else if (c == u'[') {
        inClass = true;
      } else if (c == u']') {
        inClass = false;
      } else if (c == u'/' && !inClass) {
        int units = 1;
        while (at_ < text_.size() && isNamePart(codePoint(&units)))
          at_ += units;
        push(Kind::Regex, start, text_.mid(start, at_ - start));
        accept(true);
        return;
      }
    }
    wellFormed_ = false;
    push(Kind::Regex, start, text_.mid(start, at_ - start));
    accept(true);
  }

  // A \u escape in a name, \uXXXX or \u{X...}; nothing when it is not one.
  std::optional<char32_t> unicodeEscape() {
    qsizetype p = at_ + 2;
    const bool braced = p < text_.size() && text_[p] == u'{';
    if (braced)
      ++p;
    const qsizetype first = p;
    char32_t value = 0;
    while (p < text_.size() && (braced || p - first < 4) && value <= 0x10FFFF) {
      const int digit = hexDigit(text_[p]);
      if (digit < 0)
        break;
      value = value * 16 + char32_t(digit);
      ++p;
    }
    const bool complete = braced ? p > first && p < text_.size() && text_[p] == u'}' : p - first == 4;
    if (!complete || value > 0x10FFFF)
      return std::nullopt;
    at_ = braced ? p + 1 : p;
    return value;
  }

  void word() {
    const qsizetype start = at_;
    QString name;
    bool escaped = false;
    while (at_ < text_.size()) {
      if (peek() == u'\\') {
        const auto decoded = peek(1) == u'u' ? unicodeEscape() : std::nullopt;
        if (!decoded) {
          wellFormed_ = false;
          break;
        }
        name += QString::fromUcs4(&*decoded, 1);
        escaped = true;
        continue;
      }
      int units = 1;
      const char32_t c = codePoint(&units);
      if (name.isEmpty() ? !isNameStart(c) : !isNamePart(c))
        break;
      name += text_.mid(at_, units);
      at_ += units;
    }
    if (at_ == start) {
      ++at_;
      push(Kind::Symbol, start, text_.mid(start, 1));
      accept(false);
      return;
    }
    const bool member = previousIs(Kind::Symbol, ".") || previousIs(Kind::Symbol, "?.");
    const bool declarationPlace =
        previousIs(Kind::Word, "async") && !lineEndSincePrevious_ ? statementStartBeforePrevious_ : statementStart();
    push(Kind::Word, start, name.toLower(), name);
    Token &token = tokens_.back();
    token.escaped = escaped;
    token.inClassBody = top().bracket == Bracket::Brace &&
                        (top().braces == Braces::ClassDeclaration || top().braces == Braces::ClassExpression);
    if (!member && name == QLatin1String("function")) {
      pendingFunction_ = declarationPlace ? Owner::FunctionDeclaration : Owner::FunctionExpression;
    } else if (!member && name == QLatin1String("class")) {
      pendingClass_ = declarationPlace ? Braces::ClassDeclaration : Braces::ClassExpression;
      pendingClassDepth_ = contexts_.size();
    }
    accept(member || !beginsJScriptExpression(name));
    previousMember_ = member;
  }

  void number() {
    const qsizetype start = at_;
    const auto digits = [this] {
      while (at_ < text_.size() && (text_[at_].isDigit() || text_[at_] == u'_'))
        ++at_;
    };
    const QChar radix = peek(1).toLower();
    if (peek() == u'0' && (radix == u'x' || radix == u'o' || radix == u'b')) {
      at_ += 2;
      while (at_ < text_.size() && (text_[at_].isLetterOrNumber() || text_[at_] == u'_'))
        ++at_;
    } else {
      digits();
      if (peek() == u'.') {
        ++at_;
        digits();
      }
      const bool sign = peek(1) == u'+' || peek(1) == u'-';
      if ((peek() == u'e' || peek() == u'E') && peek(sign ? 2 : 1).isDigit()) {
        at_ += sign ? 2 : 1;
        digits();
      }
      if (peek() == u'n')
        ++at_;
    }
    push(Kind::Number, start, text_.mid(start, at_ - start));
    accept(true);
  }

  void symbol(QString text, bool operand = false) {
    const qsizetype start = at_;
    at_ += text.size();
    push(Kind::Symbol, start, std::move(text));
    accept(operand);
  }

  void open(Bracket bracket, const QString &text, Braces braces = Braces::Block, Owner owner = Owner::Other) {
    symbol(text);
    contexts_.push_back({bracket, braces, owner});
  }

  // Takes the innermost bracket when it is of the kind given.
  std::optional<Context> close(Bracket bracket) {
    if (contexts_.size() < 2 || top().bracket != bracket) {
      wellFormed_ = false;
      return std::nullopt;
    }
    const Context context = top();
    contexts_.pop_back();
    return context;
  }

  void openParenthesis() {
    Owner owner = Owner::Other;
    if (hasPrevious_ && previousKind_ == Kind::Word && !previousMember_ && ownsControlParentheses(previous_))
      owner = Owner::Control;
    else if (pendingFunction_)
      owner = *pendingFunction_;
    pendingFunction_.reset();
    open(Bracket::Paren, QStringLiteral("("), Braces::Block, owner);
  }

  void openSquare() {
    const bool computed = (hasPrevious_ && previousOperand_) || previousIs(Kind::Symbol, "?.") ||
                          ((previousIs(Kind::Symbol, "{") || previousIs(Kind::Symbol, ",")) &&
                           top().bracket == Bracket::Brace && top().braces == Braces::Object);
    open(Bracket::Square, QStringLiteral("["));
    tokens_.back().computedKey = computed;
  }

  void closeBrace() {
    if (top().bracket == Bracket::Placeholder && contexts_.size() > 1) {
      contexts_.pop_back();
      const qsizetype start = at_++;
      templatePiece(start);
      return;
    }
    const auto closed = close(Bracket::Brace);
    const Braces braces = closed ? closed->braces : Braces::Block;
    symbol(QStringLiteral("}"), endsOperand(braces));
  }

  void punctuation(QChar c) {
    switch (c.unicode()) {
    case u'(': openParenthesis(); return;
    case u')': {
      const auto closed = close(Bracket::Paren);
      const Owner owner = closed ? closed->owner : Owner::Other;
      symbol(QStringLiteral(")"), owner != Owner::Control);
      previousOwner_ = owner;
      return;
    }
    case u'[': openSquare(); return;
    case u']':
      close(Bracket::Square);
      symbol(QStringLiteral("]"), true);
      return;
    case u'{': open(Bracket::Brace, QStringLiteral("{"), openingBraces()); return;
    case u'}': closeBrace(); return;
    case u'?':
      if (peek(1) == u'.' && !peek(2).isDigit()) {
        symbol(QStringLiteral("?."));
      } else if (peek(1) == u'?') {
        symbol(QStringLiteral("??"));
      } else {
        ++top().openTernaries;
        symbol(QStringLiteral("?"));
      }
      return;
    case u':': {
      const bool ternary = top().openTernaries > 0;
      if (ternary)
        --top().openTernaries;
      symbol(QStringLiteral(":"));
      previousTernaryColon_ = ternary;
      return;
    }
    case u'=': symbol(peek(1) == u'>' ? QStringLiteral("=>") : QStringLiteral("=")); return;
    case u'+':
    case u'-':
      if (peek(1) == c)
        symbol(QString(2, c), true);
      else
        symbol(QString(c));
      return;
    default: symbol(QString(c)); return;
    }
  }

  void step() {
    const QChar c = text_[at_];
    if (isLineTerminator(c)) {
      lineEnd();
      return;
    }
    if (isBlank(c)) {
      ++at_;
      return;
    }
    if (c == u'/' && peek(1) == u'/') {
      while (at_ < text_.size() && !isLineTerminator(text_[at_]))
        ++at_;
      return;
    }
    if (c == u'/' && peek(1) == u'*') {
      blockComment();
      return;
    }
    if (c == u'/' && !(hasPrevious_ && previousOperand_)) {
      regularExpression();
      return;
    }
    if (c == u'"' || c == u'\'') {
      string(c);
      return;
    }
    if (c == u'`') {
      const qsizetype start = at_++;
      templatePiece(start);
      return;
    }
    if (c.isDigit() || (c == u'.' && peek(1).isDigit())) {
      number();
      return;
    }
    int units = 1;
    if (isNameStart(codePoint(&units)) || (c == u'\\' && peek(1) == u'u')) {
      word();
      return;
    }
    punctuation(c);
  }

  const QString &text_;
  qsizetype at_ = 0;
  std::vector<Token> tokens_;
  bool wellFormed_ = true;
  std::vector<Context> contexts_;

  // What stands before the current place.
  bool hasPrevious_ = false;
  Kind previousKind_ = Kind::Symbol;
  QString previous_;
  bool previousOperand_ = false;
  bool previousMember_ = false; // a word after "." names a member, even a keyword
  Owner previousOwner_ = Owner::Other;
  bool previousTernaryColon_ = false;
  bool lineEndSincePrevious_ = false;
  bool statementStartBeforePrevious_ = true;

  std::optional<Owner> pendingFunction_;
  std::optional<Braces> pendingClass_;
  std::size_t pendingClassDepth_ = 0;
};

} // namespace

Tokens jScriptTokens(const QString &text) { return JsLexer(text).run(); }

} // namespace kordel::nuvo::scripttokens
