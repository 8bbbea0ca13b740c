#include "engine/preview/WindowPlace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <cmath>

namespace kordel::engine {

namespace {

constexpr qreal kTwipsPerInch = 1440;

// Screen pixels per twip, by the logical resolution of the screen that
// holds the window (or the primary screen before it is shown).
qreal pixelsPerTwip(const QWidget &window) {
  const QScreen *screen = window.screen() ? window.screen() : QGuiApplication::primaryScreen();
  const qreal dpi = screen ? screen->logicalDotsPerInchX() : 96;
  return dpi / kTwipsPerInch;
}

int toPixels(float twips, qreal scale) { return int(std::lround(twips * scale)); }

float toTwips(int pixels, qreal scale) { return float(std::round(pixels / scale)); }

} // namespace

void applyWindowPlace(QWidget &window, const WindowPlace &place) {
  const qreal scale = pixelsPerTwip(window);
  if (place.width > 0 && place.height > 0)
    window.setGeometry(toPixels(place.left, scale), toPixels(place.top, scale), toPixels(place.width, scale),
                       toPixels(place.height, scale));
  if (place.state == WindowPlace::kMaximised)
    window.setWindowState(Qt::WindowMaximized);
  else if (place.state == WindowPlace::kMinimised)
    window.setWindowState(Qt::WindowMinimized);
}

WindowPlace windowPlaceOf(const QWidget &window) {
  const qreal scale = pixelsPerTwip(window);
  WindowPlace place;
  if (window.isMinimized())
    place.state = WindowPlace::kMinimised;
  else if (window.isMaximized())
    place.state = WindowPlace::kMaximised;
  const QRect normal = place.state == WindowPlace::kNormal || window.normalGeometry().isEmpty()
                           ? window.geometry()
                           : window.normalGeometry();
  place.left = toTwips(normal.x(), scale);
  place.top = toTwips(normal.y(), scale);
  place.width = toTwips(normal.width(), scale);
  place.height = toTwips(normal.height(), scale);
  return place;
}

} // namespace kordel::engine
