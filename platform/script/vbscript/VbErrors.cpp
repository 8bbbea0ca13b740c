#include "script/vbscript/VbErrors.h"

#include "script/ScriptEngine.h"

namespace kordel::script::vb {

QString vbErrorDescription(int number) {
  switch (number) {
  case ScriptErrorNumber::OutOfStackSpace: return QStringLiteral("Out of stack space");
  case ScriptErrorNumber::SubNotDefined: return QStringLiteral("Sub or Function not defined");
  case VbError::ForLoopNotInitialized: return QStringLiteral("For loop not initialized");
  case VbError::NotACollection: return QStringLiteral("Object not a collection");
  case 10: return QStringLiteral("This array is fixed or temporarily locked");
  case 430: return QStringLiteral("Class doesn't support Automation");
  case 445: return QStringLiteral("Object doesn't support this action");
  case 446: return QStringLiteral("Object doesn't support named arguments");
  case 447: return QStringLiteral("Object doesn't support current locale setting");
  case 448: return QStringLiteral("Named argument not found");
  case 449: return QStringLiteral("Argument not optional");
  case VbError::UnsupportedAutomationType:
    return QStringLiteral("Variable uses an Automation type not supported in VBScript");
  case VbError::VariableUndefined: return QStringLiteral("Variable is undefined");
  case VbError::IllegalAssignment: return QStringLiteral("Illegal assignment");
  case VbError::UnqualifiedReference: return QStringLiteral("Invalid or unqualified reference");
  case VbError::ClassNotDefined: return QStringLiteral("Class not defined");
  case ScriptErrorNumber::Timeout: return QStringLiteral("The script ran longer than it may");
  case VbError::SyntaxError: return QStringLiteral("Syntax error");
  case VbError::ExpectedColon: return QStringLiteral("Expected ':'");
  case VbError::ExpectedLParen: return QStringLiteral("Expected '('");
  case VbError::ExpectedRParen: return QStringLiteral("Expected ')'");
  case VbError::ExpectedIdentifier: return QStringLiteral("Expected identifier");
  case VbError::ExpectedEqual: return QStringLiteral("Expected '='");
  case VbError::ExpectedIf: return QStringLiteral("Expected 'If'");
  case VbError::ExpectedTo: return QStringLiteral("Expected 'To'");
  case VbError::ExpectedEnd: return QStringLiteral("Expected 'End'");
  case VbError::ExpectedFunction: return QStringLiteral("Expected 'Function'");
  case VbError::ExpectedSub: return QStringLiteral("Expected 'Sub'");
  case VbError::ExpectedThen: return QStringLiteral("Expected 'Then'");
  case VbError::ExpectedWend: return QStringLiteral("Expected 'Wend'");
  case VbError::ExpectedLoop: return QStringLiteral("Expected 'Loop'");
  case VbError::ExpectedNext: return QStringLiteral("Expected 'Next'");
  case VbError::ExpectedCase: return QStringLiteral("Expected 'Case'");
  case VbError::ExpectedSelect: return QStringLiteral("Expected 'Select'");
  case VbError::ExpectedExpression: return QStringLiteral("Expected expression");
  case VbError::ExpectedStatement: return QStringLiteral("Expected statement");
  case VbError::ExpectedEndOfStatement: return QStringLiteral("Expected end of statement");
  case VbError::ExpectedIntegerConstant: return QStringLiteral("Expected integer constant");
  case VbError::ExpectedWhileOrUntil: return QStringLiteral("Expected 'While' or 'Until'");
  case VbError::ExpectedWith: return QStringLiteral("Expected 'With'");
  case VbError::IdentifierTooLong: return QStringLiteral("Identifier too long");
  case VbError::InvalidNumber: return QStringLiteral("Invalid number");
  case VbError::InvalidCharacter: return QStringLiteral("Invalid character");
  case VbError::UnterminatedString: return QStringLiteral("Unterminated string constant");
  case VbError::InvalidUseOfMe: return QStringLiteral("Invalid use of 'Me' keyword");
  case VbError::LoopWithoutDo: return QStringLiteral("'loop' without 'do'");
  case VbError::InvalidExit: return QStringLiteral("Invalid 'exit' statement");
  case VbError::InvalidForVariable: return QStringLiteral("Invalid 'for' loop control variable");
  case VbError::NameRedefined: return QStringLiteral("Name redefined");
  case VbError::MustBeFirstStatement: return QStringLiteral("Must be first statement on the line");
  case VbError::ParenthesesOnSubCall: return QStringLiteral("Cannot use parentheses when calling a Sub");
  case VbError::ExpectedLiteralConstant: return QStringLiteral("Expected literal constant");
  case VbError::ExpectedIn: return QStringLiteral("Expected 'In'");
  case VbError::ExpectedClass: return QStringLiteral("Expected 'Class'");
  case VbError::MustBeInsideClass: return QStringLiteral("Must be defined inside a Class");
  case VbError::ExpectedLetSetGet: return QStringLiteral("Expected Let or Set or Get in property declaration");
  case VbError::ExpectedProperty: return QStringLiteral("Expected 'Property'");
  case VbError::InconsistentPropertyArguments:
    return QStringLiteral("Number of arguments must be consistent across the procedures of a property");
  case VbError::MultipleDefaults: return QStringLiteral("Cannot have multiple default property/method in a Class");
  case VbError::InitializeWithArguments: return QStringLiteral("Class initialize or terminate do not have arguments");
  case VbError::PropertyLetWithoutArgument:
    return QStringLiteral("Property set or let must have at least one argument");
  case VbError::UnexpectedNext: return QStringLiteral("Unexpected 'Next'");
  case VbError::DefaultNotOnProperty: return QStringLiteral("'Default' can only be on Property Get, Function or Sub");
  case VbError::ExpressionTooComplex: return QStringLiteral("Expression too complex");
  case VbError::RegExpSyntax: return QStringLiteral("Syntax error in regular expression");
  case VbError::RegExpUnexpectedQuantifier: return QStringLiteral("Unexpected quantifier");
  case VbError::RegExpExpectedBracket: return QStringLiteral("Expected ']' in regular expression");
  case VbError::RegExpExpectedParen: return QStringLiteral("Expected ')' in regular expression");
  case VbError::RegExpInvalidRange: return QStringLiteral("Invalid range in character set");
  default: return QString();
  }
}

namespace {

int vbNumberOfHresult(std::uint32_t hresult) {
  if ((hresult & 0xFFFF0000u) == 0x800A0000u)
    return int(hresult & 0xFFFFu);
  switch (hresult) {
  case 0x8007000Eu: return 7;   // E_OUTOFMEMORY
  case 0x80070057u: return 5;   // E_INVALIDARG
  case 0x80070005u: return 70;  // E_ACCESSDENIED
  case 0x80004001u: return 445; // E_NOTIMPL
  case 0x80004002u: return 430; // E_NOINTERFACE
  case 0x80020003u: return 438; // DISP_E_MEMBERNOTFOUND
  case 0x80020004u: return 448; // DISP_E_PARAMNOTFOUND
  case 0x80020005u: return 13;  // DISP_E_TYPEMISMATCH
  case 0x80020006u: return 438; // DISP_E_UNKNOWNNAME
  case 0x80020007u: return 446; // DISP_E_NONAMEDARGS
  case 0x80020008u: return 458; // DISP_E_BADVARTYPE
  case 0x8002000Au: return 6;   // DISP_E_OVERFLOW
  case 0x8002000Bu: return 9;   // DISP_E_BADINDEX
  case 0x8002000Cu: return 447; // DISP_E_UNKNOWNLCID
  case 0x8002000Du: return 10;  // DISP_E_ARRAYISLOCKED
  case 0x8002000Eu: return 450; // DISP_E_BADPARAMCOUNT
  case 0x8002000Fu: return 449; // DISP_E_PARAMNOTOPTIONAL
  case 0x80020011u: return 451; // DISP_E_NOTACOLLECTION
  case 0x80020012u: return 11;  // DISP_E_DIVBYZERO
  case 0x80030002u: return 53;  // STG_E_FILENOTFOUND
  case 0x80030003u: return 76;  // STG_E_PATHNOTFOUND
  case 0x80030005u: return 70;  // STG_E_ACCESSDENIED
  case 0x80030008u: return 7;   // STG_E_INSUFFICIENTMEMORY
  case 0x800401F3u: return 429; // CO_E_CLASSSTRING
  case 0x80040154u: return 429; // REGDB_E_CLASSNOTREG
  default: return int(hresult);
  }
}

} // namespace

Error scriptVisibleError(const Error &error) {
  if (error.number() >= 0)
    return error;
  const int number = vbNumberOfHresult(std::uint32_t(error.number()));
  if (number == error.number())
    return error;
  // A host that said nothing of its own gave the HRESULT's plain text.
  const bool ownText = !error.description().isEmpty() && error.description() != standardDescription(error.number());
  return Error(number, error.source(), ownText ? error.description() : standardDescription(number));
}

QString standardDescription(int number) {
  const QString own = vbErrorDescription(number);
  return own.isNull() ? defaultDescription(number) : own;
}

RunError::RunError(const Error &error, QString subject) : ScriptError(error, 0, 0), subject_(std::move(subject)) {
  if (source().isEmpty())
    setSource(runtimeErrorSource());
}

ScriptError RunError::toScriptError() const {
  const QString text = subject_.isEmpty() ? description() : QStringLiteral("%1: '%2'").arg(description(), subject_);
  return ScriptError(Error(number(), source(), text), line(), column());
}

void raiseNamedError(int number, const QString &subject) {
  throw RunError(Error(number, runtimeErrorSource(), standardDescription(number)), subject);
}

QString runtimeErrorSource() { return QStringLiteral("VBScript runtime error"); }

QString compileErrorSource() { return QStringLiteral("VBScript compilation error"); }

void raiseNoSuchMember(const QString &name) { raiseNamedError(ErrorNumber::NoSuchMember, name); }

void raiseIllegalAssignment(const QString &name) { raiseNamedError(VbError::IllegalAssignment, name); }

void raiseNotACollection() { raiseNamedError(VbError::NotACollection, QString()); }

void raiseCompileError(int number, int line, int column, const QString &description) {
  const QString text = description.isEmpty() ? vbErrorDescription(number) : description;
  throw ScriptError(Error(number, compileErrorSource(), text), line, column, true);
}

} // namespace kordel::script::vb
