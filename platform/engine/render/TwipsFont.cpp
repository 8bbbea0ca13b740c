#include "engine/render/TwipsFont.h"

#include "engine/render/PageFont.h"
#include "engine/render/Page.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

// A device on which one pixel is one twip.
const QImage &twipsDevice() {
  static const QImage device = [] {
    constexpr double kInchesPerMeter = 1.0 / 0.0254;
    QImage image(1, 1, QImage::Format_ARGB32);
    const int dotsPerMeter = int(std::lround(kTwipsPerInch * kInchesPerMeter));
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    return image;
  }();
  return device;
}

} // namespace

QFont twipsFont(const QFont &font) {
  const PageFont points = PageFont::fromQFont(font);
  QFont sized = font;
  sized.setPixelSize(std::max(1, int(std::lround(points.pointSize * kTwipsPerPoint))));
  sized.setHintingPreference(QFont::PreferNoHinting);
  return sized;
}

QFontMetricsF twipsMetrics(const QFont &twipsFont) { return QFontMetricsF(twipsFont, &twipsDevice()); }

} // namespace kordel::engine
