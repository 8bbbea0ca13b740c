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
  helpFile_.clear();
  helpContext_ = 0;
}

void ErrObject::clear() {
  number_ = 0;
  description_.clear();
  source_.clear();
  helpFile_.clear();
  helpContext_ = 0;
}

void ErrObject::raise(const Variant &number, const Variant &source, const Variant &description) {
  const int code = number.toLong();
  if (code == 0)
    raiseError(ErrorNumber::InvalidCall);
  const QString text = description.isEmpty() ? descriptionFor(code) : description.toString();
  const QString from = source.isEmpty() ? runtimeErrorSource() : source.toString();
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
                                     method<ErrObject>("Raise",
                                                       [](ErrObject &e, Args &a) -> Variant {
                                                         expectArgs(a, 1, 5);
                                                         e.raise(a[0], arg(a, 1), arg(a, 2));
                                                       }),
                                 },
                                 nullptr,
                                 QStringLiteral("Number")};
  return table;
}

} // namespace kordel::script::vb
