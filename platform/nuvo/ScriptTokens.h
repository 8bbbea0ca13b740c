#pragma once

// The tokens of a layout script as the safety rules read them: words,
// literals, symbols and line ends, each with its place in the text.
// Comments and white space leave no token.

#include <QString>

#include <vector>

namespace kordel::nuvo::scripttokens {

enum class Kind { Word, String, Number, Regex, Symbol, LineEnd };

struct Token {
  Kind kind;
  qsizetype start;
  qsizetype end;
  // A word's name with its escapes decoded and folded to lower case; a
  // string's value; a symbol as written.
  QString text;
  // A word's name with its escapes decoded, in its own case.
  QString name;
  // A word or string written with escapes, whose value is not what it
  // seems to be at a glance.
  bool escaped = false;
  // A "[" that opens a computed member name or property key (JScript).
  bool computedKey = false;
  // A word that names a member in a class body (JScript).
  bool inClassBody = false;
};

struct Tokens {
  std::vector<Token> tokens;
  // False when the text ends inside a comment, string, template or regular
  // expression, a string runs into a line end, or brackets do not pair:
  // the engine refuses such a text, and its reading here is not to be
  // trusted. Only the JScript reading says so.
  bool wellFormed = true;
};

// VBScript: line ends are CR, LF and CR LF; " _" at a line end joins the
// next line; comments begin with ' or Rem.
Tokens vbScriptTokens(const QString &text);

// JScript: line ends are CR, LF, CR LF, U+2028 and U+2029; names may hold
// \u escapes; template literals give the code in their placeholders;
// a "/" is a regular expression or a division as the grammar has it.
Tokens jScriptTokens(const QString &text);

// Whether a JScript keyword begins an expression after it ("return",
// "typeof", "new" ...): a "/" there starts a regular expression, a "[" an
// array.
bool beginsJScriptExpression(const QString &word);

} // namespace kordel::nuvo::scripttokens
