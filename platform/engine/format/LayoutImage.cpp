#include "engine/format/LayoutImage.h"

#include "core/Error.h"

#include <QBuffer>

namespace kordel::engine::layoutformat {

namespace {

const QByteArray kPngSignature("\x89PNG\r\n\x1a\n", 8);

} // namespace

QString pngBase64(const QImage &image) {
  const QImage pixels = image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (!pixels.save(&buffer, "PNG"))
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("SaveLayout"),
               QStringLiteral("The picture could not be stored as PNG"));
  return QString::fromLatin1(png.toBase64());
}

std::optional<QImage> imageFromPngBase64(const QString &text) {
  QString compact = text;
  compact.remove(QChar(u' ')).remove(QChar(u'\t')).remove(QChar(u'\n')).remove(QChar(u'\r'));
  const auto decoded = QByteArray::fromBase64Encoding(compact.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
  if (!decoded || !decoded.decoded.startsWith(kPngSignature))
    return std::nullopt;
  QImage image;
  if (!image.loadFromData(decoded.decoded, "PNG"))
    return std::nullopt;
  return image;
}

} // namespace kordel::engine::layoutformat
