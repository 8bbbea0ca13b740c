#include "nuvo/demo/DemoBuild.h"

#include "core/Error.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace kordel::nuvo::demo {

namespace {

const QString kSource = QStringLiteral("orvex demo");

// A hidden name beside the target that no other build takes.
QString temporaryName(const QString &target) {
  const QFileInfo info(target);
  return info.absolutePath() + QStringLiteral("/.%1.partial-%2")
                                   .arg(info.fileName())
                                   .arg(QRandomGenerator::system()->generate(), 8, 16, QChar(u'0'));
}

} // namespace

DemoBuild::DemoBuild(const DatabaseAddress &target) : target_(target), building_(target) {
  if (target.dialect != Dialect::SQLite)
    return;
  if (QFileInfo::exists(target.file))
    raiseError(ErrorNumber::FileAlreadyExists, kSource,
               QStringLiteral("%1 exists already; a demo database never replaces a file").arg(target.file));
  building_.file = temporaryName(target.file);
}

DemoBuild::~DemoBuild() {
  if (!finished_)
    for (const QString &file : temporaryFiles())
      QFile::remove(file);
}

QStringList DemoBuild::temporaryFiles() const {
  if (building_.dialect != Dialect::SQLite)
    return {};
  const QString &file = building_.file;
  return {file, file + QStringLiteral("-journal"), file + QStringLiteral("-wal"), file + QStringLiteral("-shm")};
}

void DemoBuild::finish() {
  if (building_.dialect != Dialect::SQLite) {
    finished_ = true;
    return;
  }
  // QFile::rename never replaces a file that is there.
  QFile built(building_.file);
  finished_ = built.rename(target_.file);
  if (!finished_) {
    if (QFileInfo::exists(target_.file))
      raiseError(ErrorNumber::FileAlreadyExists, kSource,
                 QStringLiteral("%1 appeared while the demo database was made; it is left as it is").arg(target_.file));
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("Cannot name the demo database %1: %2").arg(target_.file, built.errorString()));
  }
}

} // namespace kordel::nuvo::demo
