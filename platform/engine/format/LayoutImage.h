#pragma once

// Pictures in a layout file: PNG bytes as base64 text.

#include <QImage>
#include <QString>

#include <optional>

namespace kordel::engine::layoutformat {

// The image as PNG in base64, on one line. The pixels are stored in the
// form the PNG reader gives back, so an image read from a layout writes
// the same bytes again.
QString pngBase64(const QImage &image);

// The image of base64 PNG text; whitespace within the text is skipped.
// Nothing for text that is not base64 or bytes that are not a PNG image.
std::optional<QImage> imageFromPngBase64(const QString &text);

} // namespace kordel::engine::layoutformat
