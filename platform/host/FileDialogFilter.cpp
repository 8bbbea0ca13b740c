#include "host/FileDialogFilter.h"

#include "core/Error.h"

#include <QRegularExpression>

namespace kordel::host {

QStringList qtNameFilters(const QString &filter) {
  QStringList out;
  if (filter.isEmpty())
    return out;
  const QStringList parts = filter.split(u'|');
  if (parts.size() % 2 != 0)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("FileDialog"),
               QStringLiteral("The file filter \"%1\" has a description without a pattern").arg(filter));
  static const QRegularExpression trailingPatterns(QStringLiteral("\\s*\\([^()]*[*.][^()]*\\)\\s*$"));
  for (qsizetype i = 0; i < parts.size(); i += 2) {
    QString description = parts[i];
    description.remove(trailingPatterns);
    QStringList patterns;
    for (const QString &pattern : parts[i + 1].split(u';')) {
      if (!pattern.trimmed().isEmpty())
        patterns << pattern.trimmed();
    }
    out << QStringLiteral("%1 (%2)").arg(description.trimmed(), patterns.join(u' '));
  }
  return out;
}

QString dialogFolder(const QString &folder) {
  const qsizetype nul = folder.indexOf(QChar(u'\0'));
  QString cut = nul < 0 ? folder : folder.left(nul);
  return cut.replace(u'\\', u'/');
}

} // namespace kordel::host
