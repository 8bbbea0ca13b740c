#include "nuvo/ScriptSafety.h"

#include "nuvo/ScriptTokens.h"
#include "script/vbscript/Parser.h"

#include <QSet>
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

using scripttokens::Kind;
using scripttokens::Token;
using scripttokens::Tokens;

// Names that reach object creation or code from strings: a computed member
// name that is one of them is never harmless.
bool isUnsafeName(const QString &folded) {
  static const QSet<QString> names{
      QStringLiteral("eval"),           QStringLiteral("execute"),     QStringLiteral("executeglobal"),
      QStringLiteral("function"),       QStringLiteral("constructor"), QStringLiteral("__proto__"),
      QStringLiteral("createobject"),   QStringLiteral("getobject"),   QStringLiteral("activexobject"),
      QStringLiteral("xmlhttprequest"), QStringLiteral("loadpicture"), QStringLiteral("include"),
      QStringLiteral("import"),
  };
  return names.contains(folded);
}

// What replaces a whole script that cannot be read safely.
QString blockedScript(ScriptLanguage writing) {
  return writing == ScriptLanguage::VBScript
             ? QStringLiteral("Err.Raise 70")
             : QStringLiteral("throw new Error(\"Permission denied: the script cannot be read safely\");");
}

// Whether the VBScript interpreter compiles the text.
bool compilesAsVbScript(const QString &text) {
  try {
    script::vb::parseProgram(text);
    return true;
  } catch (...) {
    return false; // a compile error is the answer here, not a failure
  }
}

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
      : text_(text), vb_(lexing == ScriptLanguage::VBScript), writeVb_(writing == ScriptLanguage::VBScript) {
    Tokens read = vb_ ? scripttokens::vbScriptTokens(text) : scripttokens::jScriptTokens(text);
    tokens_ = std::move(read.tokens);
    wellFormed_ = read.wellFormed;
  }

  std::vector<Replacement> run() {
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
      if (tokens_[i].start < doneUntil_)
        continue;
      if (tokens_[i].kind == Kind::Word)
        check(i);
      else if (tokens_[i].computedKey)
        checkComputedKey(i);
    }
    return std::move(replacements_);
  }

  // See Tokens::wellFormed.
  bool wellFormed() const { return wellFormed_; }

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
  bool isMember(std::size_t i) const { return i > 0 && (isSymbol(i - 1, ".") || isSymbol(i - 1, "?.")); }

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

  // The token after the bracket that closes the one at open; the end of
  // the tokens when it is never closed.
  std::size_t afterClose(std::size_t open, const char *opening, const char *closing) const {
    int depth = 0;
    for (std::size_t i = open; i < tokens_.size(); ++i) {
      if (isSymbol(i, opening))
        ++depth;
      else if (isSymbol(i, closing) && --depth == 0)
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
    // Up to what follows, or to the end of the last token: a comment after
    // it stays.
    const qsizetype stop = end < tokens_.size() ? tokens_[end].start : tokens_[end - 1].end;
    // Keep the white space before what follows.
    qsizetype trimmed = stop;
    while (trimmed > start && text_[trimmed - 1].isSpace())
      --trimmed;
    replacements_.push_back({start, trimmed, with});
    doneUntil_ = stop;
  }

  QString nothing() const { return writeVb_ ? QStringLiteral("Nothing") : QStringLiteral("null"); }
  QString noValue() const { return writeVb_ ? QStringLiteral("Empty") : QStringLiteral("undefined"); }

  // A use of the word at i: with its arguments when it is called. A
  // VBScript call may leave out the parentheses and run to the statement's
  // end; a JScript name without them is the name alone.
  std::size_t callEnd(std::size_t i) const {
    if (isSymbol(i + 1, "("))
      return afterClose(i + 1, "(", ")");
    return vb_ ? statementEnd(i + 1) : i + 1;
  }

  // The ProgID of a call at i when it is one plain literal; "" otherwise.
  QString literalArgument(std::size_t i) const {
    std::size_t at = i + 1;
    if (isSymbol(at, "("))
      ++at;
    if (at >= tokens_.size() || tokens_[at].kind != Kind::String || tokens_[at].escaped)
      return {};
    const std::size_t next = at + 1;
    if (next < tokens_.size() && !isSymbol(next, ")") && !isSymbol(next, ",") && tokens_[next].kind != Kind::LineEnd)
      return {};
    return tokens_[at].text;
  }

  void blockCreation(std::size_t i, std::size_t first) { replace(first, callEnd(i), nothing()); }

  // "Function Name(" and "End Function" are VBScript: to JScript two names
  // in a row on one line are a syntax error, so nothing of the text runs.
  bool isVbScriptFunctionLine(std::size_t i) const {
    const bool nameAfter = i + 1 < tokens_.size() && tokens_[i + 1].kind == Kind::Word;
    const bool nameBefore = i > 0 && tokens_[i - 1].kind == Kind::Word && !isMember(i - 1) &&
                            !scripttokens::beginsJScriptExpression(tokens_[i - 1].name);
    return nameAfter || nameBefore;
  }

  // The JScript names that reach code from strings or any object's
  // constructor, however they are reached. True when the word is dealt with.
  bool checkJScriptName(std::size_t i) {
    const Token &token = tokens_[i];
    if (token.name == QLatin1String("eval") && isMember(i)) {
      replace(chainStart(i), callEnd(i), noValue());
      return true;
    }
    if (token.text == QLatin1String("function")) {
      // The keyword declares; any other spelling is the Function constructor.
      if (token.name != QLatin1String("function") && !isVbScriptFunctionLine(i))
        replace(isWord(i - 1, "new") ? i - 1 : chainStart(i), callEnd(i), nothing());
      return true;
    }
    if (token.text == QLatin1String("constructor")) {
      // A class may define its constructor; nothing may read one.
      if (!token.inClassBody || isMember(i))
        replace(i, i + 1, noValue());
      return true;
    }
    return false;
  }

  // A computed member name or property key, obj[key]: harmless as a number
  // or as a plain string that names nothing unsafe. Anything else could be
  // built at run time into a name these rules would refuse to see, so it
  // is made a number, obj[+(key)]: numeric keys work as before, no name can
  // come of it. The key's own code is checked as any other.
  void checkComputedKey(std::size_t open) {
    const std::size_t close = afterClose(open, "[", "]") - 1;
    std::vector<std::size_t> key;
    for (std::size_t i = open + 1; i < close && i < tokens_.size(); ++i)
      if (tokens_[i].kind != Kind::LineEnd)
        key.push_back(i);
    if (key.empty())
      return;
    const bool signedNumber =
        key.size() == 2 && (isSymbol(key[0], "-") || isSymbol(key[0], "+")) && tokens_[key[1]].kind == Kind::Number;
    const Token &single = tokens_[key[0]];
    const bool harmless =
        signedNumber ||
        (key.size() == 1 && (single.kind == Kind::Number ||
                             (single.kind == Kind::String && !single.escaped && !isUnsafeName(single.text.toLower()))));
    if (harmless)
      return;
    const qsizetype start = tokens_[key.front()].start;
    const qsizetype end = tokens_[key.back()].end;
    replacements_.push_back({start, start, QStringLiteral("+(")});
    replacements_.push_back({end, end, QStringLiteral(")")});
  }

  void check(std::size_t i) {
    if (!vb_ && checkJScriptName(i))
      return;
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
  bool wellFormed_ = true;
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
  Checker checker(text, language, language);
  if (!checker.wellFormed())
    return blockedScript(language);
  return applyReplacements(text, checker.run());
}

QString neutraliseUnsafeCallsOfEither(const QString &text) {
  Checker jscript(text, ScriptLanguage::JScript, ScriptLanguage::JScript);
  const ScriptLanguage writing = jscript.looksLikeJScript() ? ScriptLanguage::JScript : ScriptLanguage::VBScript;
  // A text that neither language reads cleanly runs in neither; it may
  // also be one that JScript reads otherwise than the rules here do.
  if (!jscript.wellFormed() && !compilesAsVbScript(text))
    return blockedScript(writing);
  const ScriptLanguage other = writing == ScriptLanguage::VBScript ? ScriptLanguage::JScript : ScriptLanguage::VBScript;
  // The rules of the language the text seems to be in come first.
  std::vector<Replacement> found = Checker(text, writing, writing).run();
  const std::vector<Replacement> more = Checker(text, other, writing).run();
  found.insert(found.end(), more.begin(), more.end());
  return applyReplacements(text, std::move(found));
}

} // namespace kordel::nuvo
