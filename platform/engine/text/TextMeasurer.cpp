#include "engine/text/TextMeasurer.h"

namespace kordel::engine::text {

namespace {

// How many widths are kept before all are dropped: some 2 MB of texts of
// the usual length.
constexpr qsizetype kKeptWidths = 20000;

} // namespace

TextMeasurer &TextMeasurer::forThisThread() {
  thread_local TextMeasurer measurer;
  return measurer;
}

TextMeasurer::TextMeasurer() : fonts_(QStringLiteral("TextCanvas")), shaper_(fonts_) {}

int TextMeasurer::font(const PageFont &font) {
  auto found = indexes_.constFind(font);
  if (found == indexes_.cend()) {
    found = indexes_.insert(font, fonts_.add(font));
    widths_.emplace_back();
  }
  return *found;
}

double TextMeasurer::width(int font, const QString &line) {
  QHash<QString, double> &widths = widths_.at(std::size_t(font));
  if (const auto found = widths.constFind(line); found != widths.cend())
    return *found;
  const double width = shaper_.width(font, line);
  if (kept_ >= kKeptWidths) {
    for (QHash<QString, double> &kept : widths_)
      kept.clear();
    kept_ = 0;
  }
  widths.insert(line, width);
  ++kept_;
  return width;
}

} // namespace kordel::engine::text
