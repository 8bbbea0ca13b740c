#include "addin/Plugin.h"

#include "addin/Addin.h"
#include "core/Error.h"
#include "data/Context.h"

namespace kordel::addin {

ObjectRef Plugin::createObject(const QString &progId) {
  if (progId.compare(QLatin1String(hostapi::kAddinProgId), Qt::CaseInsensitive) == 0)
    return std::make_shared<Addin>();
  if (progId.compare(QLatin1String("OrvexKordel.Context"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Context>();
  raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("OrvexKordel"),
             QStringLiteral("The add-in offers no class '%1'").arg(progId));
}

} // namespace kordel::addin
