#pragma once

namespace kordel::script {

// Run-time error numbers that both languages raise for the same cause, so
// that a host treats them alike whichever language a script is in. The
// numbers are VBScript's, except 1001, which is ours.
namespace ScriptErrorNumber {
constexpr int OutOfStackSpace = 28; // calls nested deeper than the budget or the stack allows
constexpr int SubNotDefined = 35;   // the host called a procedure that is not there
constexpr int Timeout = 1001;       // the time or statement budget of an entry is spent
} // namespace ScriptErrorNumber

} // namespace kordel::script
