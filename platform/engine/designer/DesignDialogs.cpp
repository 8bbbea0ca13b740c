#include "engine/designer/DesignDialogs.h"

#include "engine/designer/DesignerText.h"

#include "hostapi/Ui.h"

#include "core/Error.h"

#include <QImageReader>

namespace kordel::engine {

namespace {

// Runs a dialog that raises 32755 when cancelled; nothing for a cancel.
template <class Ask> auto unlessCancelled(Ask ask) -> std::optional<decltype(ask())> {
  try {
    return ask();
  } catch (const Error &error) {
    if (error.number() == ErrorNumber::DialogCancelled)
      return std::nullopt;
    throw;
  }
}

QString pictureFilter() {
  QStringList patterns;
  for (const QByteArray &format : QImageReader::supportedImageFormats())
    patterns << QStringLiteral("*.") + QString::fromLatin1(format);
  return designerText("Pictures") + u'|' + patterns.join(u';') + u'|' + designerText("All files") +
         QStringLiteral("|*.*");
}

} // namespace

std::optional<QColor> askColor(const QColor &initial, const QString &title) {
  return hostapi::ui().chooseColor(initial, title);
}

std::optional<QFont> askFont(const QFont &initial, const QString &title) {
  return unlessCancelled([&] { return hostapi::ui().chooseFont(initial, title); });
}

std::optional<QString> askPictureFile() {
  hostapi::FileDialogRequest request;
  request.title = designerText("Choose a picture");
  request.filter = pictureFilter();
  return unlessCancelled([&] { return hostapi::ui().openFile(request); });
}

} // namespace kordel::engine
