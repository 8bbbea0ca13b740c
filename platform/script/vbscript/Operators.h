#pragma once

#include "core/Object.h"
#include "core/Variant.h"
#include "script/vbscript/Ast.h"

namespace kordel::script::vb {

// VBScript's operators on values, with its result types: Integer arithmetic
// that grows into Long and then Double instead of overflowing, Date plus a
// number staying a Date, Null spreading through arithmetic and comparisons,
// And/Or/Not working bit by bit on numbers and with three-valued logic on
// Null. Objects take part through their default value.
//
// maxStringLength limits the result of & and of + on two strings.
Variant binaryOperation(BinaryOp op, const Variant &left, const Variant &right, qsizetype maxStringLength);
Variant unaryOperation(UnaryOp op, const Variant &operand);

// Whether a condition (If, While, Until) holds: Null and Empty do not,
// numbers do unless zero, strings must read as a Boolean or a number.
bool isTrue(const Variant &value);

// The value of an object for a Let assignment or an operator is core's
// plainValue: its default member.
using kordel::plainValue;

} // namespace kordel::script::vb
