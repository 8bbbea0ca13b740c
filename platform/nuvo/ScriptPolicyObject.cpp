#include "nuvo/ScriptPolicyObject.h"

#include "nuvo/ScriptSafety.h"

#include "core/Error.h"

namespace kordel::nuvo {

QString ScriptPolicyObject::checkScript(const QString &text) const { return neutraliseUnsafeCallsOfEither(text); }

QString ScriptPolicyObject::checkScript(const QString &text, const QString &language) const {
  if (language.compare(QLatin1String("VBScript"), Qt::CaseInsensitive) == 0)
    return neutraliseUnsafeCalls(text, ScriptLanguage::VBScript);
  if (language.compare(QLatin1String("JScript"), Qt::CaseInsensitive) == 0)
    return neutraliseUnsafeCalls(text, ScriptLanguage::JScript);
  raiseError(ErrorNumber::InvalidCall, QStringLiteral("Nuvo.Script"),
             QStringLiteral("'%1' is no script language").arg(language));
}

const MemberTable &ScriptPolicyObject::memberTable() const {
  static const MemberTable table{{
      method<ScriptPolicyObject>("CheckScript",
                                 [](ScriptPolicyObject &p, Args &a) {
                                   expectArgs(a, 1, 2);
                                   return a.size() > 1 ? p.checkScript(a[0].toText(), a[1].toText())
                                                       : p.checkScript(a[0].toText());
                                 }),
  }};
  return table;
}

} // namespace kordel::nuvo
