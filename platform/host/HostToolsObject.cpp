#include "host/HostToolsObject.h"

#include "host/HostPaths.h"
#include "host/PrinterList.h"

#include "hostapi/Picture.h"

#include "core/Error.h"

#include <QDir>

#include <QUuid>

namespace kordel::host {

namespace {

// The position of the last separator of either kind, -1 when none.
qsizetype lastSeparator(const QString &path) { return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')); }

// An image as a picture object.
class PictureObject : public hostapi::Picture {
public:
  explicit PictureObject(QImage image) : image_(std::move(image)) {}

  QString typeName() const override { return QStringLiteral("Picture"); }
  QImage image() const override { return image_; }

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        property<PictureObject>("Width", [](PictureObject &p) { return p.image_.width(); }),
        property<PictureObject>("Height", [](PictureObject &p) { return p.image_.height(); }),
    }};
    return table;
  }

private:
  QImage image_;
};

} // namespace

QString HostToolsObject::newGuid() { return QUuid::createUuid().toString(QUuid::WithBraces).toUpper(); }

QString HostToolsObject::fileExtension(const QString &path) {
  const QString name = fileName(path);
  const qsizetype dot = name.lastIndexOf(u'.');
  return dot < 0 ? QString() : name.mid(dot + 1);
}

QString HostToolsObject::filePath(const QString &path) { return path.left(lastSeparator(path) + 1); }

QString HostToolsObject::fileName(const QString &path) { return path.mid(lastSeparator(path) + 1); }

QString HostToolsObject::defaultPrinterName() { return PrinterList::fromSystem()->defaultPrinterName(); }

QString HostToolsObject::dataFolder() {
  const QString folder = HostPaths::dataFolder();
  QDir().mkpath(folder);
  return folder;
}

std::shared_ptr<hostapi::Picture> HostToolsObject::loadIconPicture(const QString &instance, const QString &resource,
                                                                   int width, int height) {
  const QDir folder(instance);
  for (const char *extension : {".png", ".ico"}) {
    QImage image(folder.filePath(resource + QLatin1String(extension)));
    if (!image.isNull())
      return std::make_shared<PictureObject>(
          image.scaled(width, height, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  }
  raiseError(ErrorNumber::FileNotFound, typeName(),
             QStringLiteral("No icon '%1' in %2").arg(resource, folder.absolutePath()));
}

const MemberTable &HostToolsObject::memberTable() const {
  static const MemberTable table{{
      method<HostToolsObject>("NewGuid", [](HostToolsObject &t, Args &) { return t.newGuid(); }),
      method<HostToolsObject>("FileExtension",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.fileExtension(a[0].toString());
                              }),
      method<HostToolsObject>("FilePath",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.filePath(a[0].toString());
                              }),
      method<HostToolsObject>("FileName",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.fileName(a[0].toString());
                              }),
      property<HostToolsObject>("DefaultPrinterName", [](HostToolsObject &t) { return t.defaultPrinterName(); }),
      fullRightsOnly(method<HostToolsObject>("LoadIconPicture",
                                             [](HostToolsObject &t, Args &a) {
                                               expectArgs(a, 4, 4);
                                               return Variant(t.loadIconPicture(a[0].toText(), a[1].toString(),
                                                                                a[2].toLong(), a[3].toLong()));
                                             })),
  }};
  return table;
}

} // namespace kordel::host
