#pragma once

#include "script/vbscript/Ast.h"

#include <memory>

namespace kordel::script::vb {

// Parses a block of code: global statements, variables, constants,
// procedures and classes. Raises a compile error (a ScriptError with line,
// column and what was expected) at the first mistake.
std::unique_ptr<Program> parseProgram(const QString &text);

// Parses a single expression, for Eval and the host's evaluate.
ExprPtr parseExpression(const QString &text);

} // namespace kordel::script::vb
