#pragma once

#include "core/Object.h"

#include <QString>

namespace kordel {

// Why the last load of a document failed, for scripts that test the Boolean
// result of load and loadXML and then read parseError. After a successful
// load errorCode is 0 and reason is empty. errorCode is the number of the
// Error that the typed load raised; line and linepos are 0 when the failure
// had no place in the text (a missing file).
class XmlParseError : public Object {
public:
  XmlParseError() = default;
  XmlParseError(int errorCode, QString reason, int line, int linepos)
      : errorCode_(errorCode), reason_(std::move(reason)), line_(line), linepos_(linepos) {}

  QString typeName() const override { return QStringLiteral("XmlParseError"); }

  int errorCode() const { return errorCode_; }
  const QString &reason() const { return reason_; }
  int line() const { return line_; }
  int linepos() const { return linepos_; }

protected:
  const MemberTable &memberTable() const override;

private:
  int errorCode_ = 0;
  QString reason_;
  int line_ = 0;
  int linepos_ = 0;
};

} // namespace kordel
