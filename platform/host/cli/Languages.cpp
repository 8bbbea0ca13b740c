#include "cli/Languages.h"

#include "host/HostPaths.h"

#include "core/Error.h"

#include <QDir>
#include <QStringList>

namespace kordel::host::cli {

void checkLanguage(const QString &language) {
  if (language.isEmpty())
    return;
  const QDir folder(HostPaths::addinFolder() + QStringLiteral("/translation"));
  if (folder.exists(QStringLiteral("kordel.%1.ini").arg(language)))
    return;
  QStringList known;
  for (const QString &file : folder.entryList({QStringLiteral("kordel.*.ini")}, QDir::Files, QDir::Name))
    known << file.section(u'.', 1, 1);
  raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"),
             QStringLiteral("There are no texts in the language \"%1\"; the languages are %2")
                 .arg(language, known.join(QStringLiteral(", "))));
}

} // namespace kordel::host::cli
