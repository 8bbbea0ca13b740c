#pragma once

#include <QString>

namespace kordel::script::vb {

// A pattern of the RegExp object turned into the syntax of Qt's engine.
// The object's syntax is the ECMAScript one: classes, escapes and anchors
// mean what they mean there and are rewritten where the engine reads them
// otherwise. error is 0, or the run-time error number the pattern raises
// when it is used.
struct RegExpPattern {
  QString translated;
  int error = 0;
};

// With multiline, ^ and $ also match at the line breaks \n, \r, U+2028 and
// U+2029, the characters that "." does not match.
RegExpPattern translateRegExpPattern(const QString &pattern, bool multiline);

} // namespace kordel::script::vb
