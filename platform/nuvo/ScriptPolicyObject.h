#pragma once

#include "hostapi/ScriptPolicy.h"

namespace kordel::nuvo {

// Nuvo.Script: the safety policy for layout scripts. Without a language
// the text is checked by the rules of both script languages.
class ScriptPolicyObject : public hostapi::ScriptPolicy {
public:
  QString typeName() const override { return QStringLiteral("Script"); }

  QString checkScript(const QString &text) const override;
  // language: "VBScript" or "JScript"; raises 5 for another.
  QString checkScript(const QString &text, const QString &language) const;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::nuvo
