#include "core/ScriptRights.h"

#include "core/Error.h"

#include <QStringList>

namespace kordel {

namespace {

thread_local int layoutScriptDepth = 0;

// The data engine's read-only query objects and in-memory helpers.
const QStringList &creatableByLayoutScripts() {
  static const QStringList progIds{
      QStringLiteral("Nuvo.Pool"),       QStringLiteral("Nuvo.Filter"),     QStringLiteral("Nuvo.View"),
      QStringLiteral("Nuvo.Records"),    QStringLiteral("Nuvo.Properties"), QStringLiteral("Scripting.Dictionary"),
      QStringLiteral("VBScript.RegExp"),
  };
  return progIds;
}

} // namespace

LayoutScriptScope::LayoutScriptScope() { ++layoutScriptDepth; }

LayoutScriptScope::~LayoutScriptScope() { --layoutScriptDepth; }

FullRightsScope::FullRightsScope() : saved_(layoutScriptDepth) { layoutScriptDepth = 0; }

FullRightsScope::~FullRightsScope() { layoutScriptDepth = saved_; }

bool runningLayoutScript() { return layoutScriptDepth > 0; }

void requireFullRights(const QString &what) {
  if (layoutScriptDepth > 0)
    raiseError(ErrorNumber::PermissionDenied, what,
               QStringLiteral("Permission denied: a layout script may not use %1").arg(what));
}

bool layoutScriptMayCreate(const QString &progId) {
  return creatableByLayoutScripts().contains(progId.trimmed(), Qt::CaseInsensitive);
}

} // namespace kordel
