#include "nuvo/DocumentObject.h"

#include "core/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel::nuvo {

namespace {
const QString kSource = QStringLiteral("Nuvo.Document");
} // namespace

void DocumentObject::setContents(const Variant &contents) {
  if (contents.isEmpty() || contents.isByteArray())
    contents_ = contents;
  else if (contents.isString())
    contents_ = contents.rawString().toUtf8();
  else
    raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("A document holds bytes or text"));
}

void DocumentObject::loadFromFile(const QString &path) {
  QFile file(path);
  if (!file.exists())
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("File not found: %1").arg(path));
  if (!file.open(QIODevice::ReadOnly))
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("Cannot read %1: %2").arg(path, file.errorString()));
  contents_ = file.readAll();
}

void DocumentObject::saveToFile(const QString &path) const {
  if (!QFileInfo(path).absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("Path not found: %1").arg(path));
  QSaveFile file(path);
  const QByteArray bytes = contents_.isByteArray() ? contents_.rawBytes() : QByteArray();
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("Cannot write %1: %2").arg(path, file.errorString()));
}

const MemberTable &DocumentObject::memberTable() const {
  static const MemberTable table{{
      property<DocumentObject>(
          "Contents", [](DocumentObject &d) { return d.contents(); },
          [](DocumentObject &d, const Variant &v) { d.setContents(v); }),
      fullRightsOnly(method<DocumentObject>("LoadFromFile",
                                            [](DocumentObject &d, Args &a) {
                                              expectArgs(a, 1, 1);
                                              d.loadFromFile(a[0].toString());
                                              return Variant();
                                            })),
      fullRightsOnly(method<DocumentObject>("SaveToFile",
                                            [](DocumentObject &d, Args &a) {
                                              expectArgs(a, 1, 1);
                                              d.saveToFile(a[0].toString());
                                              return Variant();
                                            })),
  }};
  return table;
}

} // namespace kordel::nuvo
