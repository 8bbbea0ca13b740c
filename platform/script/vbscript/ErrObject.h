#pragma once

#include "core/Error.h"
#include "core/Object.h"

namespace kordel::script::vb {

// The Err object: the last error caught by On Error Resume Next, and Raise
// to throw one. Number is its default property.
class ErrObject final : public Object {
public:
  QString typeName() const override { return QStringLiteral("ErrObject"); }

  int number() const { return number_; }
  const QString &description() const { return description_; }
  const QString &source() const { return source_; }

  // Fills the properties from a caught error.
  void record(const Error &error);
  void clear();
  // Err.Raise: throws the error described. An argument left out keeps the
  // value Err already holds; a description or source that is still empty
  // comes from the error table and the language.
  [[noreturn]] void raise(const Args &args);

protected:
  const MemberTable &memberTable() const override;

private:
  int number_ = 0;
  QString description_;
  QString source_;
  QString helpFile_;
  int helpContext_ = 0;
  // The help of the error Raise threw, which record() gives to Err when it
  // catches that error: the error itself carries no help.
  int raisedNumber_ = 0;
  QString raisedHelpFile_;
  int raisedHelpContext_ = 0;
};

} // namespace kordel::script::vb
