#include "engine/render/Page.h"

#include "core/Error.h"

#include <limits>

namespace kordel::engine {

// The items stay small: a text run is the most common item and costs this
// much plus its characters.
static_assert(sizeof(PageItem) <= 48, "page items must stay compact");

void Page::setSize(Twips width, Twips height) {
  width_ = width;
  height_ = height;
}

void Page::addText(const Box &box, const QString &text, int font, QRgb color, TextAlign align) {
  if (font < 0 || font > std::numeric_limits<std::uint16_t>::max())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Page"),
               QStringLiteral("The font index %1 is out of range").arg(font));
  if (qsizetype(textPool_.size()) + text.size() > qsizetype(std::numeric_limits<std::uint32_t>::max()))
    raiseError(ErrorNumber::OutOfStringSpace, QStringLiteral("Page"),
               QStringLiteral("The page holds more text than one page can take"));
  TextRun run;
  run.box = box;
  run.color = color;
  run.font = std::uint16_t(font);
  run.align = align;
  run.textOffset_ = std::uint32_t(textPool_.size());
  run.textLength_ = std::uint32_t(text.size());
  textPool_.append(text);
  items_.emplace_back(run);
}

QString Page::text(const TextRun &run) const {
  return textPool_.sliced(qsizetype(run.textOffset_), qsizetype(run.textLength_));
}

void Page::squeeze() {
  items_.shrink_to_fit();
  textPool_.squeeze();
}

std::size_t Page::approximateBytes() const {
  // The pool's heap block carries a small header before its characters.
  constexpr std::size_t kStringHeader = 16;
  std::size_t bytes = sizeof(Page) + items_.capacity() * sizeof(PageItem);
  if (textPool_.capacity() > 0)
    bytes += kStringHeader + std::size_t(textPool_.capacity()) * sizeof(QChar);
  return bytes;
}

} // namespace kordel::engine
