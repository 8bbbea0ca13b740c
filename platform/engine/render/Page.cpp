#include "engine/render/Page.h"

#include "core/Error.h"

#include <algorithm>
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

void Page::markWholeText(std::uint32_t mark, const QString &whole) {
  const std::uint32_t end = textMark();
  if (end == mark)
    return; // nothing printed
  const QStringView printed = QStringView(textPool_).sliced(qsizetype(mark), qsizetype(end - mark));
  // One run showing the value as it is needs nothing more.
  std::size_t runs = 0;
  for (auto item = items_.rbegin(); item != items_.rend(); ++item) {
    const auto *run = std::get_if<TextRun>(&*item);
    if (run && run->textOffset_ < mark)
      break;
    if (run)
      ++runs;
  }
  if (runs == 1 && printed == whole)
    return;
  WholeText kept;
  kept.runsBegin_ = mark;
  kept.runsEnd_ = end;
  kept.textOffset_ = end;
  kept.textLength_ = std::uint32_t(whole.size());
  textPool_.append(whole);
  wholeTexts_.push_back(kept);
}

const WholeText *Page::wholeTextOf(const TextRun &run) const {
  // Ordered by where their runs begin, and their runs do not overlap.
  const auto after =
      std::upper_bound(wholeTexts_.begin(), wholeTexts_.end(), run.textOffset_,
                       [](std::uint32_t offset, const WholeText &whole) { return offset < whole.runsBegin_; });
  if (after == wholeTexts_.begin())
    return nullptr;
  const WholeText &candidate = *(after - 1);
  return run.textOffset_ < candidate.runsEnd_ ? &candidate : nullptr;
}

QString Page::text(const WholeText &whole) const {
  return textPool_.sliced(qsizetype(whole.textOffset_), qsizetype(whole.textLength_));
}

void Page::addPage(const Page &other, Twips dx, Twips dy) {
  auto whole = other.wholeTexts_.begin();
  std::uint32_t mark = 0;
  for (const PageItem &item : other.items_) {
    std::visit(
        [&](const auto &value) {
          using T = std::decay_t<decltype(value)>;
          if constexpr (std::is_same_v<T, TextRun>) {
            if (whole != other.wholeTexts_.end() && value.textOffset_ == whole->runsBegin_)
              mark = textMark();
            addText(Box{value.box.x + dx, value.box.y + dy, value.box.width, value.box.height}, other.text(value),
                    value.font, value.color, value.align);
            if (whole != other.wholeTexts_.end() && value.textOffset_ + value.textLength_ == whole->runsEnd_) {
              markWholeText(mark, other.text(*whole));
              ++whole;
            }
          } else if constexpr (std::is_same_v<T, LineItem>) {
            LineItem line = value;
            line.x1 += dx;
            line.x2 += dx;
            line.y1 += dy;
            line.y2 += dy;
            addLine(line);
          } else if constexpr (std::is_same_v<T, RectItem>) {
            RectItem rect = value;
            rect.box.x += dx;
            rect.box.y += dy;
            addRect(rect);
          } else if constexpr (std::is_same_v<T, EllipseItem>) {
            EllipseItem ellipse = value;
            ellipse.box.x += dx;
            ellipse.box.y += dy;
            addEllipse(ellipse);
          } else {
            addImage(Box{value.box.x + dx, value.box.y + dy, value.box.width, value.box.height}, value.image);
          }
        },
        item);
  }
}

void Page::squeeze() {
  items_.shrink_to_fit();
  textPool_.squeeze();
  wholeTexts_.shrink_to_fit();
}

std::size_t Page::approximateBytes() const {
  // The pool's heap block carries a small header before its characters.
  constexpr std::size_t kStringHeader = 16;
  std::size_t bytes = sizeof(Page) + items_.capacity() * sizeof(PageItem) + wholeTexts_.capacity() * sizeof(WholeText);
  if (textPool_.capacity() > 0)
    bytes += kStringHeader + std::size_t(textPool_.capacity()) * sizeof(QChar);
  return bytes;
}

} // namespace kordel::engine
