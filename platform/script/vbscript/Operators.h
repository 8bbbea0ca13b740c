#pragma once

#include "core/Object.h"
#include "core/Variant.h"
#include "script/vbscript/Ast.h"

#include <QVarLengthArray>

namespace kordel::script::vb {

// VBScript's operators on values, with its result types: Integer arithmetic
// that grows into Long and then Double instead of overflowing, Date plus a
// number staying a Date, Null spreading through arithmetic and comparisons,
// And/Or/Not working bit by bit on numbers and with three-valued logic on
// Null. Objects take part through their default value.
//
// The error of a string longer than a script may build: Out of string
// space (14) beyond what any VBScript string can hold, else Out of memory
// (7) for one over the budget's cap.
int stringTooLongError(qsizetype length);

// maxStringLength limits the result of & and of + on two strings.
Variant binaryOperation(BinaryOp op, const Variant &left, const Variant &right, qsizetype maxStringLength);
Variant unaryOperation(UnaryOp op, const Variant &operand);

// The & of several values, joined left to right into one string: the value
// of (((a & b) & c) & ...) with its errors, without a new string for each
// &. Null adds nothing, and the result is Null when every operand was.
// Objects take part through their default value.
class ConcatChain {
public:
  explicit ConcatChain(qsizetype maxLength) : maxLength_(maxLength) {}
  // The first two operands, checked together as a & b checks them.
  void addPair(const Variant &left, const Variant &right);
  void add(const Variant &value);
  Variant result();

private:
  // Checks a value that is no object and keeps its text.
  void append(const Variant &plain);

  // The texts are joined once at the end, into a string of the right size.
  QVarLengthArray<QString, 8> pieces_;
  qsizetype length_ = 0;
  qsizetype maxLength_;
};

// Whether a condition (If, While, Until) holds: Null and Empty do not,
// numbers do unless zero, strings must read as a Boolean or a number.
bool isTrue(const Variant &value);

// The value of an object for a Let assignment or an operator is core's
// plainValue: its default member.
using kordel::plainValue;

} // namespace kordel::script::vb
