#pragma once

#include "core/Error.h"
#include "script/ScriptEngine.h"
#include "script/ScriptErrors.h"

#include <QString>

namespace kordel::script::vb {

// Error numbers of the language beyond the shared tables of core/Error.h
// and script/ScriptErrors.h: the run-time errors only the interpreter
// raises and the compile errors.
namespace VbError {
constexpr int ForLoopNotInitialized = 92;
constexpr int NotACollection = 451;
constexpr int UnsupportedAutomationType = 458;
constexpr int VariableUndefined = 500;
constexpr int IllegalAssignment = 501;
constexpr int UnqualifiedReference = 505;
constexpr int ClassNotDefined = 506;

constexpr int SyntaxError = 1002;
constexpr int ExpectedColon = 1003;
constexpr int ExpectedLParen = 1005;
constexpr int ExpectedRParen = 1006;
constexpr int ExpectedIdentifier = 1010;
constexpr int ExpectedEqual = 1011;
constexpr int ExpectedIf = 1012;
constexpr int ExpectedTo = 1013;
constexpr int ExpectedEnd = 1014;
constexpr int ExpectedFunction = 1015;
constexpr int ExpectedSub = 1016;
constexpr int ExpectedThen = 1017;
constexpr int ExpectedWend = 1018;
constexpr int ExpectedLoop = 1019;
constexpr int ExpectedNext = 1020;
constexpr int ExpectedCase = 1021;
constexpr int ExpectedSelect = 1022;
constexpr int ExpectedExpression = 1023;
constexpr int ExpectedStatement = 1024;
constexpr int ExpectedEndOfStatement = 1025;
constexpr int ExpectedIntegerConstant = 1026;
constexpr int ExpectedWhileOrUntil = 1027;
constexpr int ExpectedWith = 1029;
constexpr int IdentifierTooLong = 1030;
constexpr int InvalidNumber = 1031;
constexpr int InvalidCharacter = 1032;
constexpr int UnterminatedString = 1033;
constexpr int InvalidUseOfMe = 1037;
constexpr int LoopWithoutDo = 1038;
constexpr int InvalidExit = 1039;
constexpr int InvalidForVariable = 1040;
constexpr int NameRedefined = 1041;
constexpr int MustBeFirstStatement = 1042;
constexpr int ParenthesesOnSubCall = 1044;
constexpr int ExpectedLiteralConstant = 1045;
constexpr int ExpectedIn = 1046;
constexpr int ExpectedClass = 1047;
constexpr int MustBeInsideClass = 1048;
constexpr int ExpectedLetSetGet = 1049;
constexpr int ExpectedProperty = 1050;
constexpr int InconsistentPropertyArguments = 1051;
constexpr int MultipleDefaults = 1052;
constexpr int InitializeWithArguments = 1053;
constexpr int PropertyLetWithoutArgument = 1054;
constexpr int UnexpectedNext = 1055;
constexpr int DefaultNotOnProperty = 1057;
constexpr int ExpressionTooComplex = 1058; // ours: nesting deeper than the parser allows

// The RegExp object's pattern errors, raised when a pattern is used.
constexpr int RegExpSyntax = 5017;
constexpr int RegExpUnexpectedQuantifier = 5018;
constexpr int RegExpExpectedBracket = 5019;
constexpr int RegExpExpectedParen = 5020;
constexpr int RegExpInvalidRange = 5021;
} // namespace VbError

// The description of a number the shared table lacks, or a null string.
QString vbErrorDescription(int number);
// The description of any run-time error number: the language's own text,
// else the shared table's.
QString standardDescription(int number);

// A host's error as the native engine shows it to scripts: an HRESULT of
// VB's own facility (&H800A....) becomes its low word, the system's and
// automation's common failures (E_OUTOFMEMORY, E_INVALIDARG, E_NOTIMPL,
// DISP_E_...) become the VB numbers they stand for; other numbers stay.
// A description the host left empty or plain takes the standard one of the
// new number.
Error scriptVisibleError(const Error &error);

// A run-time error on its way through the interpreter: the error as Err
// sees it (VB's plain description), the thing it concerns, and once known
// the statement it came from. Where it leaves the engine it becomes a plain
// ScriptError whose description names the thing: "Object required: 'x'".
class RunError : public ScriptError {
public:
  explicit RunError(const Error &error, QString subject = {});

  const QString &subject() const { return subject_; }
  bool placed() const { return line() > 0; }
  void place(int line, int column) { setPlace(line, column); }
  ScriptError toScriptError() const;

private:
  QString subject_;
};

// Raises a run-time error with its standard description about a named thing.
[[noreturn]] void raiseNamedError(int number, const QString &subject);

// Sources that the interpreter puts on its errors.
QString runtimeErrorSource();
QString compileErrorSource();

// Raises the run-time errors that name what they concern.
[[noreturn]] void raiseNoSuchMember(const QString &name);
[[noreturn]] void raiseIllegalAssignment(const QString &name);
[[noreturn]] void raiseNotACollection();

// Raises a compile error at a place.
[[noreturn]] void raiseCompileError(int number, int line, int column, const QString &description = {});

} // namespace kordel::script::vb
