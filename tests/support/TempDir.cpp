#include "support/TempDir.h"

#include <QFile>

namespace kordel::test {

TempDir::TempDir() : dir_(QDir::tempPath() + QStringLiteral("/kordel-test-XXXXXX")) {}

QByteArray readFile(const QString &path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return {};
  return file.readAll();
}

bool writeFile(const QString &path, const QByteArray &bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
    return false;
  return file.write(bytes) == bytes.size();
}

} // namespace kordel::test
