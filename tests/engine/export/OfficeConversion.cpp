#include "OfficeConversion.h"

#include "support/TempDir.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace kordel::test {

QString officeConverter() { return QStandardPaths::findExecutable(QStringLiteral("soffice")); }

QString convertWithOffice(const QString &file, const QString &format, const QString &folder,
                          const QString &inputFilter) {
  TempDir home; // a profile of its own, so that no other instance takes the job
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("HOME"), home.path());
  process.setProcessEnvironment(environment);
  QStringList arguments{QStringLiteral("--headless")};
  if (!inputFilter.isEmpty())
    arguments << QStringLiteral("--infilter=") + inputFilter;
  arguments << QStringLiteral("--convert-to") << format << QStringLiteral("--outdir") << folder << file;
  process.start(officeConverter(), arguments);
  if (!process.waitForFinished(240000) || process.exitCode() != 0) {
    ADD_FAILURE() << "soffice could not convert " << file.toStdString() << ": "
                  << process.readAllStandardError().toStdString();
    return {};
  }
  const QString extension = format.section(QLatin1Char(':'), 0, 0);
  const QString converted = QDir(folder).filePath(QFileInfo(file).completeBaseName() + u'.' + extension);
  if (!QFileInfo::exists(converted)) {
    ADD_FAILURE() << "soffice wrote no " << converted.toStdString();
    return {};
  }
  return converted;
}

} // namespace kordel::test
