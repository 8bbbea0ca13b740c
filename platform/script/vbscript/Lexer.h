#pragma once

#include "script/vbscript/Token.h"

#include <vector>

namespace kordel::script::vb {

// Splits script text into tokens. Comments (' and Rem) and line
// continuations (" _" at the end of a line) vanish; line breaks and colons
// stay as tokens because statements end there. The list always ends with a
// Newline and an End token. Raises a compile error for a bad character,
// number, date or an unterminated string.
std::vector<Token> tokenize(const QString &text);

} // namespace kordel::script::vb
