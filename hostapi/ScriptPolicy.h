#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

inline constexpr const char *kScriptPolicyProgId = "Nuvo.Script";

// The safety check for layout scripts. Late-bound: CheckScript(text).
class ScriptPolicy : public Object {
public:
  // The script with every unsafe call neutralised: object creation outside
  // a short allow-list, code run from strings, files, shells and the
  // network. A safe script comes back unchanged, character for character.
  virtual QString checkScript(const QString &text) const = 0;
};

} // namespace kordel::hostapi
