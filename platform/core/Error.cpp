#include "core/Error.h"

#include <array>
#include <new>

namespace kordel {

namespace {

constexpr std::array kErrorTable{
    ErrorInfo{ErrorNumber::InvalidCall, "InvalidCall", "Invalid procedure call or argument"},
    ErrorInfo{ErrorNumber::Overflow, "Overflow", "Overflow"},
    ErrorInfo{ErrorNumber::OutOfMemory, "OutOfMemory", "Out of memory"},
    ErrorInfo{ErrorNumber::SubscriptOutOfRange, "SubscriptOutOfRange", "Subscript out of range"},
    ErrorInfo{ErrorNumber::ArrayFixedOrLocked, "ArrayFixedOrLocked", "This array is fixed or temporarily locked"},
    ErrorInfo{ErrorNumber::DivisionByZero, "DivisionByZero", "Division by zero"},
    ErrorInfo{ErrorNumber::TypeMismatch, "TypeMismatch", "Type mismatch"},
    ErrorInfo{ErrorNumber::OutOfStringSpace, "OutOfStringSpace", "Out of string space"},
    ErrorInfo{ErrorNumber::FileNotFound, "FileNotFound", "File not found"},
    ErrorInfo{ErrorNumber::FileAlreadyOpen, "FileAlreadyOpen", "File already open"},
    ErrorInfo{ErrorNumber::FileAlreadyExists, "FileAlreadyExists", "File already exists"},
    ErrorInfo{ErrorNumber::PermissionDenied, "PermissionDenied", "Permission denied"},
    ErrorInfo{ErrorNumber::PathNotFound, "PathNotFound", "Path not found"},
    ErrorInfo{ErrorNumber::InvalidFileFormat, "InvalidFileFormat", "Invalid file format"},
    ErrorInfo{ErrorNumber::DataValueNotFound, "DataValueNotFound", "Data value named not found"},
    ErrorInfo{ErrorNumber::ObjectNotSet, "ObjectNotSet", "Object variable not set"},
    ErrorInfo{ErrorNumber::InvalidUseOfNull, "InvalidUseOfNull", "Invalid use of Null"},
    ErrorInfo{ErrorNumber::ObjectRequired, "ObjectRequired", "Object required"},
    ErrorInfo{ErrorNumber::CannotCreateObject, "CannotCreateObject", "ActiveX component can't create object"},
    ErrorInfo{ErrorNumber::NoSuchMember, "NoSuchMember", "Object doesn't support this property or method"},
    ErrorInfo{ErrorNumber::WrongArgumentCount, "WrongArgumentCount",
              "Wrong number of arguments or invalid property assignment"},
    ErrorInfo{ErrorNumber::DuplicateKey, "DuplicateKey",
              "This key is already associated with an element of this collection"},
    ErrorInfo{ErrorNumber::ElementNotFound, "ElementNotFound", "Element not found"},
    ErrorInfo{ErrorNumber::DialogCancelled, "DialogCancelled", "Cancel was selected"},
    ErrorInfo{ErrorNumber::PageWithoutGuid, "PageWithoutGuid", "The page has no guid"},
    ErrorInfo{ErrorNumber::CarriageReturnInPath, "CarriageReturnInPath",
              "A section path must not contain a carriage return"},
    ErrorInfo{ErrorNumber::ClassMismatch, "ClassMismatch", "The records are not of the report's class"},
    ErrorInfo{ErrorNumber::UnusableRange, "UnusableRange", "The range of records is empty or cannot be used"},
    ErrorInfo{ErrorNumber::NoListWindow, "NoListWindow", "No list window shows the report's class"},
    ErrorInfo{ErrorNumber::UserMessage, "UserMessage", "User message"},
    ErrorInfo{ErrorNumber::SilentCancel, "SilentCancel", "Cancelled"},
    ErrorInfo{ErrorNumber::BadArguments, "BadArguments",
              "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another"},
    ErrorInfo{ErrorNumber::NoCurrentRow, "NoCurrentRow",
              "Either BOF or EOF is True, or the current record has been deleted"},
    ErrorInfo{ErrorNumber::NotAllowedInContext, "NotAllowedInContext", "Operation is not allowed in this context"},
    ErrorInfo{ErrorNumber::ItemNotFound, "ItemNotFound",
              "Item cannot be found in the collection corresponding to the requested name or ordinal"},
    ErrorInfo{ErrorNumber::AlreadyInCollection, "AlreadyInCollection",
              "Object is already in collection. Cannot append"},
};

} // namespace

const ErrorInfo *findErrorInfo(int number) {
  for (const ErrorInfo &info : kErrorTable) {
    if (info.number == number)
      return &info;
  }
  return nullptr;
}

QString defaultDescription(int number) {
  if (const ErrorInfo *info = findErrorInfo(number))
    return QString::fromUtf8(info->description);
  return QStringLiteral("Application-defined or object-defined error");
}

Error::Error(int number, QString source, QString description)
    : number_(number), source_(std::move(source)),
      description_(description.isNull() ? defaultDescription(number) : std::move(description)) {
  what_ = QStringLiteral("%1 (%2)").arg(description_).arg(number_).toUtf8();
}

void Error::setSource(const QString &source) { source_ = source; }

const char *Error::what() const noexcept { return what_.constData(); }

void raiseError(int number, const QString &source, const QString &description) {
  throw Error(number, source, description);
}

Error pendingError() {
  try {
    throw;
  } catch (const Error &error) {
    return error;
  } catch (const std::bad_alloc &) {
    return Error(ErrorNumber::OutOfMemory);
  } catch (const std::exception &other) {
    return Error(ErrorNumber::InvalidCall, {}, QString::fromUtf8(other.what()));
  } catch (...) {
    return Error(ErrorNumber::InvalidCall, {}, QStringLiteral("Unknown failure"));
  }
}

} // namespace kordel
