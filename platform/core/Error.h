#pragma once

#include <QString>

#include <exception>

namespace kordel {

// The run-time error numbers that the system raises or meets. VB's own
// numbers keep their meaning; the negative and six-digit ones are ours.
namespace ErrorNumber {
constexpr int InvalidCall = 5;
constexpr int Overflow = 6;
constexpr int OutOfMemory = 7;
constexpr int SubscriptOutOfRange = 9;
constexpr int ArrayFixedOrLocked = 10;
constexpr int DivisionByZero = 11;
constexpr int TypeMismatch = 13;
constexpr int OutOfStringSpace = 14;
constexpr int FileNotFound = 53;
constexpr int FileAlreadyOpen = 55;
constexpr int FileAlreadyExists = 58;
constexpr int PermissionDenied = 70;
constexpr int PathNotFound = 76;
constexpr int InvalidFileFormat = 321;
constexpr int DataValueNotFound = 327;
constexpr int ObjectNotSet = 91;
constexpr int InvalidUseOfNull = 94;
constexpr int CannotCreateObject = 429;
constexpr int ObjectRequired = 424;
constexpr int NoSuchMember = 438;
constexpr int WrongArgumentCount = 450;
constexpr int DuplicateKey = 457;
constexpr int ElementNotFound = 32811;
constexpr int DialogCancelled = 32755;
constexpr int PageWithoutGuid = 999;
constexpr int CarriageReturnInPath = 10013;
constexpr int ClassMismatch = 101001;
constexpr int UnusableRange = 101002;
constexpr int NoListWindow = 101003;
constexpr int UserMessage = -9999;
constexpr int SilentCancel = -9998;
// The row buffer's numbers.
constexpr int BadArguments = 3001;
constexpr int NoCurrentRow = 3021;
constexpr int NotAllowedInContext = 3219;
constexpr int ItemNotFound = 3265;
constexpr int AlreadyInCollection = 3367;
} // namespace ErrorNumber

// One entry of the error table: the number, a short name for code and logs,
// and the description used when a raise gives none.
struct ErrorInfo {
  int number;
  const char *name;
  const char *description;
};

// The table entry for a number, or nullptr for a number the table lacks.
const ErrorInfo *findErrorInfo(int number);

// The description the table gives for a number; "Application-defined or
// object-defined error" for numbers it does not know, as VB says.
QString defaultDescription(int number);

// The one exception type of the system: a run-time error with its number,
// the source that raised it and a description.
class Error : public std::exception {
public:
  Error(int number, QString source = {}, QString description = {});

  int number() const { return number_; }
  const QString &source() const { return source_; }
  const QString &description() const { return description_; }

  void setSource(const QString &source);

  const char *what() const noexcept override;

private:
  int number_;
  QString source_;
  QString description_;
  QByteArray what_;
};

// Raises an error; an empty description takes the table's text.
[[noreturn]] void raiseError(int number, const QString &source = {}, const QString &description = {});

// The error in flight inside a catch block, as an Error: an Error passes as
// it is, any other C++ exception becomes number 5 with its text. Must be
// called from within a handler.
Error pendingError();

} // namespace kordel
