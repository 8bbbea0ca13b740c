#include "script/vbscript/ErrObject.h"

#include "script/vbscript/VbErrors.h"

namespace kordel::script::vb {

namespace {

QString descriptionFor(int number) {
  const QString own = vbErrorDescription(number);
  if (!own.isNull())
    return own;
  if (findErrorInfo(number))
    return defaultDescription(number);
  return QStringLiteral("Unknown runtime error");
}

} // namespace

void ErrObject::record(const Error &error) {
  number_ = error.number();
  description_ = error.description();
  source_ = error.source().isEmpty() ? runtimeErrorSource() : error.source();
  const bool raised = raisedNumber_ != 0 && raisedNumber_ == number_;
  helpFile_ = raised ? raisedHelpFile_ : QString();
  helpContext_ = raised ? raisedHelpContext_ : 0;
  raisedNumber_ = 0;
}

void ErrObject::clear() {
  number_ = 0;
  description_.clear();
  source_.clear();
  helpFile_.clear();
  helpContext_ = 0;
  raisedNumber_ = 0;
}

void ErrObject::raise(const Args &args) {
  expectArgs(args, 1, 5);
  const int code = args[0].toLong();
  if (code == 0)
    raiseError(ErrorNumber::InvalidCall);
  auto given = [&args](std::size_t i) { return i < args.size() && !args[i].isEmpty(); };
  QString text = given(2) ? args[2].toString() : description_;
  if (text.isEmpty())
    text = descriptionFor(code);
  QString from = given(1) ? args[1].toString() : source_;
  if (from.isEmpty())
    from = runtimeErrorSource();
  raisedNumber_ = code;
  raisedHelpFile_ = given(3) ? args[3].toString() : helpFile_;
  raisedHelpContext_ = given(4) ? args[4].toLong() : helpContext_;
  throw Error(code, from, text);
}

const MemberTable &ErrObject::memberTable() const {
  static const MemberTable table{{
                                     property<ErrObject>(
                                         "Number", [](ErrObject &e) { return e.number_; },
                                         [](ErrObject &e, const Variant &v) { e.number_ = v.toLong(); }),
                                     property<ErrObject>(
                                         "Description", [](ErrObject &e) { return e.description_; },
                                         [](ErrObject &e, const Variant &v) { e.description_ = v.toString(); }),
                                     property<ErrObject>(
                                         "Source", [](ErrObject &e) { return e.source_; },
                                         [](ErrObject &e, const Variant &v) { e.source_ = v.toString(); }),
                                     property<ErrObject>(
                                         "HelpFile", [](ErrObject &e) { return e.helpFile_; },
                                         [](ErrObject &e, const Variant &v) { e.helpFile_ = v.toString(); }),
                                     property<ErrObject>(
                                         "HelpContext", [](ErrObject &e) { return e.helpContext_; },
                                         [](ErrObject &e, const Variant &v) { e.helpContext_ = v.toLong(); }),
                                     method<ErrObject>("Clear",
                                                       [](ErrObject &e, Args &) {
                                                         e.clear();
                                                         return Variant();
                                                       }),
                                     method<ErrObject>("Raise", [](ErrObject &e, Args &a) -> Variant { e.raise(a); }),
                                 },
                                 nullptr,
                                 QStringLiteral("Number")};
  return table;
}

} // namespace kordel::script::vb
