#include "engine/designer/DesignDialogs.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QImageReader>

namespace kordel::engine {

namespace {

QString pictureFilter() {
  QStringList patterns;
  for (const QByteArray &format : QImageReader::supportedImageFormats())
    patterns << QStringLiteral("*.") + QString::fromLatin1(format);
  return QObject::tr("Pictures (%1);;All files (*)").arg(patterns.join(u' '));
}

} // namespace

DesignDialogs DesignDialogs::standard() {
  DesignDialogs dialogs;
  dialogs.chooseColor = [](const QColor &initial, QWidget *parent) -> std::optional<QColor> {
    const QColor color = QColorDialog::getColor(initial, parent);
    return color.isValid() ? std::optional<QColor>(color) : std::nullopt;
  };
  dialogs.chooseFont = [](const QFont &initial, QWidget *parent) -> std::optional<QFont> {
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, initial, parent);
    return chosen ? std::optional<QFont>(font) : std::nullopt;
  };
  dialogs.choosePictureFile = [](QWidget *parent) -> std::optional<QString> {
    const QString path = QFileDialog::getOpenFileName(parent, QObject::tr("Picture"), QString(), pictureFilter());
    return path.isEmpty() ? std::nullopt : std::optional<QString>(path);
  };
  return dialogs;
}

} // namespace kordel::engine
