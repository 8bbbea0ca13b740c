#include "nuvo/ScriptSafety.h"

#include <QStringList>

#include <algorithm>
#include <vector>

namespace kordel::nuvo {

namespace {

// The objects a layout script may make: in-memory helpers and read-only
// queries of the data engine.
const QStringList kAllowedProgIds{
    QStringLiteral("Scripting.Dictionary"), QStringLiteral("Nuvo.Pool"),
    QStringLiteral("Nuvo.Filter"),          QStringLiteral("Nuvo.View"),
    QStringLiteral("Nuvo.Records"),         QStringLiteral("Nuvo.RecordQuery"),
    QStringLiteral("Nuvo.Properties"),      QStringLiteral("Nuvo.ReportContext"),
};

enum class Kind { Word, String, Symbol, LineEnd };

struct Token {
  Kind kind;
  qsizetype start;
  qsizetype end;
  QString text; // words folded to lower case; strings without quotes
};

bool isWordStart(QChar c) { return c.isLetter() || c == u'_' || c == u'$'; }
bool isWordPart(QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'$'; }

class Lexer {
public:
  Lexer(const QString &text, ScriptLanguage language) : text_(text), vb_(language == ScriptLanguage::VBScript) {}

  std::vector<Token> tokens() {
    while (at_ < text_.size())
      step();
    return std::move(tokens_);
  }

private:
  QChar peek(qsizetype offset = 0) const { return at_ + offset < text_.size() ? text_[at_ + offset] : QChar(); }

  void skipToLineEnd() {
    while (at_ < text_.size() && text_[at_] != u'\n')
      ++at_;
  }

  bool atStatementStart() const {
    if (tokens_.empty())
      return true;
    const Token &last = tokens_.back();
    return last.kind == Kind::LineEnd || (last.kind == Kind::Symbol && last.text == QLatin1String(":")) ||
           (last.kind == Kind::Word && (last.text == QLatin1String("then") || last.text == QLatin1String("else")));
  }

  void string(QChar quote) {
    const qsizetype start = at_++;
    QString value;
    while (at_ < text_.size()) {
      const QChar c = text_[at_];
      if (c == u'\n')
        break;
      if (vb_ && c == quote && peek(1) == quote) {
        value += c;
        at_ += 2;
        continue;
      }
      if (!vb_ && c == u'\\') {
        value += peek(1);
        at_ += 2;
        continue;
      }
      ++at_;
      if (c == quote)
        break;
      value += c;
    }
    tokens_.push_back({Kind::String, start, at_, value});
  }

  void step() {
    const QChar c = text_[at_];
    if (c == u'\n') {
      // A VBScript line ending in " _" goes on.
      const bool continued =
          vb_ && !tokens_.empty() && tokens_.back().kind == Kind::Word && tokens_.back().text == QLatin1String("_");
      if (continued)
        tokens_.pop_back();
      else
        tokens_.push_back({Kind::LineEnd, at_, at_ + 1, {}});
      ++at_;
      return;
    }
    if (c.isSpace()) {
      ++at_;
      return;
    }
    if (vb_ && c == u'\'') {
      skipToLineEnd();
      return;
    }
    if (!vb_ && c == u'/' && peek(1) == u'/') {
      skipToLineEnd();
      return;
    }
    if (!vb_ && c == u'/' && peek(1) == u'*') {
      const qsizetype close = text_.indexOf(QLatin1String("*/"), at_ + 2);
      at_ = close < 0 ? text_.size() : close + 2;
      return;
    }
    if (c == u'"' || (!vb_ && (c == u'\'' || c == u'`'))) {
      string(c);
      return;
    }
    if (vb_ && c == u'[') {
      const qsizetype close = text_.indexOf(u']', at_);
      const qsizetype end = close < 0 ? text_.size() : close + 1;
      tokens_.push_back({Kind::Word, at_, end, text_.mid(at_ + 1, end - at_ - 2).toLower()});
      at_ = end;
      return;
    }
    if (isWordStart(c)) {
      const qsizetype start = at_;
      while (at_ < text_.size() && isWordPart(text_[at_]))
        ++at_;
      const QString word = text_.mid(start, at_ - start).toLower();
      if (vb_ && word == QLatin1String("rem") && atStatementStart()) {
        skipToLineEnd();
        return;
      }
      tokens_.push_back({Kind::Word, start, at_, word});
      return;
    }
    if (c.isDigit()) {
      while (at_ < text_.size() && (text_[at_].isLetterOrNumber() || text_[at_] == u'.'))
        ++at_;
      return;
    }
    tokens_.push_back({Kind::Symbol, at_, at_ + 1, QString(c)});
    ++at_;
  }

  const QString &text_;
  bool vb_;
  qsizetype at_ = 0;
  std::vector<Token> tokens_;
};

struct Replacement {
  qsizetype start;
  qsizetype end;
  QString with;
};

// Finds the unsafe calls of a text read by the rules of one language,
// and says what replaces them in the language the text is written in.
class Checker {
public:
  Checker(const QString &text, ScriptLanguage lexing, ScriptLanguage writing)
      : text_(text), vb_(lexing == ScriptLanguage::VBScript), writeVb_(writing == ScriptLanguage::VBScript),
        tokens_(Lexer(text, lexing).tokens()) {}

  std::vector<Replacement> run() {
    for (std::size_t i = 0; i < tokens_.size(); ++i)
      if (tokens_[i].kind == Kind::Word && tokens_[i].start >= doneUntil_)
        check(i);
    return std::move(replacements_);
  }

  // Whether the tokens show a JScript text: VBScript has no braces and no
  // semicolons outside strings and comments. Read by JScript's rules, a
  // VBScript comment is a string, so what it holds does not count.
  bool looksLikeJScript() const {
    for (const Token &token : tokens_)
      if (token.kind == Kind::Symbol && (token.text == QLatin1String("{") || token.text == QLatin1String(";")))
        return true;
    return false;
  }

private:
  bool isSymbol(std::size_t i, const char *symbol) const {
    return i < tokens_.size() && tokens_[i].kind == Kind::Symbol && tokens_[i].text == QLatin1String(symbol);
  }
  bool isWord(std::size_t i, const char *word) const {
    return i < tokens_.size() && tokens_[i].kind == Kind::Word && tokens_[i].text == QLatin1String(word);
  }
  bool isMember(std::size_t i) const { return i > 0 && isSymbol(i - 1, "."); }

  // Where the statement of token i begins: after a line end, a ":" or ";",
  // or at the start.
  bool startsStatement(std::size_t i) const {
    if (i == 0)
      return true;
    const Token &before = tokens_[i - 1];
    return before.kind == Kind::LineEnd ||
           (before.kind == Kind::Symbol && (before.text == QLatin1String(":") || before.text == QLatin1String(";") ||
                                            before.text == QLatin1String("{"))) ||
           (before.kind == Kind::Word &&
            (before.text == QLatin1String("then") || before.text == QLatin1String("else")));
  }

  // The token after the parenthesis that closes the one at open; the end
  // of the tokens when it is never closed.
  std::size_t afterClose(std::size_t open) const {
    int depth = 0;
    for (std::size_t i = open; i < tokens_.size(); ++i) {
      if (isSymbol(i, "("))
        ++depth;
      else if (isSymbol(i, ")") && --depth == 0)
        return i + 1;
    }
    return tokens_.size();
  }

  // The token that ends the statement beginning at i.
  std::size_t statementEnd(std::size_t i) const {
    int depth = 0;
    for (; i < tokens_.size(); ++i) {
      if (isSymbol(i, "("))
        ++depth;
      else if (isSymbol(i, ")"))
        --depth;
      else if (depth <= 0 && (tokens_[i].kind == Kind::LineEnd || isSymbol(i, ":") || isSymbol(i, ";")))
        return i;
    }
    return tokens_.size();
  }

  // The first token of a member chain "a.b.c" that ends at i.
  std::size_t chainStart(std::size_t i) const {
    while (i >= 2 && isMember(i) && tokens_[i - 2].kind == Kind::Word)
      i -= 2;
    return i;
  }

  void replace(std::size_t first, std::size_t end, const QString &with) {
    const qsizetype start = tokens_[first].start;
    const qsizetype stop = end < tokens_.size() ? tokens_[end].start : text_.size();
    // Keep the white space before what follows.
    qsizetype trimmed = stop;
    while (trimmed > start && text_[trimmed - 1].isSpace())
      --trimmed;
    replacements_.push_back({start, trimmed, with});
    doneUntil_ = stop;
  }

  QString nothing() const { return writeVb_ ? QStringLiteral("Nothing") : QStringLiteral("null"); }
  QString noValue() const { return writeVb_ ? QStringLiteral("Empty") : QStringLiteral("undefined"); }

  // A call of the word at i with its arguments: the token after it.
  std::size_t callEnd(std::size_t i) const {
    if (isSymbol(i + 1, "("))
      return afterClose(i + 1);
    return statementEnd(i + 1);
  }

  // The ProgID of a call at i when it is one literal; "" otherwise.
  QString literalArgument(std::size_t i) const {
    std::size_t at = i + 1;
    if (isSymbol(at, "("))
      ++at;
    if (at >= tokens_.size() || tokens_[at].kind != Kind::String)
      return {};
    const std::size_t next = at + 1;
    if (next < tokens_.size() && !isSymbol(next, ")") && !isSymbol(next, ",") && tokens_[next].kind != Kind::LineEnd)
      return {};
    return tokens_[at].text;
  }

  void blockCreation(std::size_t i, std::size_t first) { replace(first, callEnd(i), nothing()); }

  void check(std::size_t i) {
    const QString &word = tokens_[i].text;
    if (word == QLatin1String("createobject") || word == QLatin1String("getobject") ||
        word == QLatin1String("activexobject")) {
      if (word != QLatin1String("getobject") && isAllowedProgId(literalArgument(i)))
        return;
      blockCreation(i, i > 0 && isWord(i - 1, "new") ? i - 1 : chainStart(i));
      return;
    }
    if (word == QLatin1String("xmlhttprequest") || word == QLatin1String("loadpicture")) {
      const std::size_t first = i > 0 && isWord(i - 1, "new") ? i - 1 : chainStart(i);
      blockCreation(i, first);
      return;
    }
    if (!vb_ && word == QLatin1String("include") && isMember(i) && i >= 2 && isWord(i - 2, "qt")) {
      blockCreation(i, i - 2);
      return;
    }
    if (!vb_ && word == QLatin1String("import") && isSymbol(i + 1, "(")) {
      blockCreation(i, i);
      return;
    }
    if (!vb_ && word == QLatin1String("function")) {
      // Function("code") runs a string; "function (a) {...}" only declares.
      if (isSymbol(i + 1, "(") && i + 2 < tokens_.size() && tokens_[i + 2].kind == Kind::String)
        replace(i > 0 && isWord(i - 1, "new") ? i - 1 : i, afterClose(i + 1), nothing());
      return;
    }
    const bool runsCode =
        word == QLatin1String("execute") || word == QLatin1String("executeglobal") || word == QLatin1String("eval");
    if (!runsCode || isMember(i))
      return;
    if (vb_ && writeVb_ && startsStatement(i)) {
      replace(i, statementEnd(i), QStringLiteral("Err.Raise 70"));
      return;
    }
    replace(i, callEnd(i), noValue());
  }

  const QString &text_;
  bool vb_;
  bool writeVb_;
  std::vector<Token> tokens_;
  std::vector<Replacement> replacements_;
  qsizetype doneUntil_ = 0;
};

QString applyReplacements(const QString &text, std::vector<Replacement> replacements) {
  // Earlier first; at one place the first found wins; overlaps are dropped.
  std::stable_sort(replacements.begin(), replacements.end(),
                   [](const Replacement &a, const Replacement &b) { return a.start < b.start; });
  QString result;
  qsizetype at = 0;
  for (const Replacement &r : replacements) {
    if (r.start < at)
      continue;
    result += text.mid(at, r.start - at) + r.with;
    at = r.end;
  }
  return result + text.mid(at);
}

} // namespace

bool isAllowedProgId(const QString &progId) { return kAllowedProgIds.contains(progId, Qt::CaseInsensitive); }

QString neutraliseUnsafeCalls(const QString &text, ScriptLanguage language) {
  return applyReplacements(text, Checker(text, language, language).run());
}

QString neutraliseUnsafeCallsOfEither(const QString &text) {
  const ScriptLanguage writing = Checker(text, ScriptLanguage::JScript, ScriptLanguage::JScript).looksLikeJScript()
                                     ? ScriptLanguage::JScript
                                     : ScriptLanguage::VBScript;
  const ScriptLanguage other = writing == ScriptLanguage::VBScript ? ScriptLanguage::JScript : ScriptLanguage::VBScript;
  // The rules of the language the text seems to be in come first.
  std::vector<Replacement> found = Checker(text, writing, writing).run();
  const std::vector<Replacement> more = Checker(text, other, writing).run();
  found.insert(found.end(), more.begin(), more.end());
  return applyReplacements(text, std::move(found));
}

} // namespace kordel::nuvo
