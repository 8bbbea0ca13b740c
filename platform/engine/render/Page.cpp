#include "engine/render/Page.h"

#include "core/Error.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <limits>

namespace kordel::engine {

// The items stay small: a text run is the most common item and costs this
// much plus its characters.
static_assert(sizeof(PageItem) <= 48, "page items must stay compact");
static_assert(sizeof(PrintedValue) <= 32, "printed values must stay compact");
// Pages leave memory as the bytes of their arrays.
static_assert(std::is_trivially_copyable_v<PageItem> && std::is_trivially_copyable_v<PrintedValue>);

namespace {

// What the bytes of a page begin with: its size and the lengths of its
// arrays, which follow one after another.
struct PageBytesHead {
  Twips width = 0;
  Twips height = 0;
  std::uint32_t items = 0;
  std::uint32_t poolLength = 0;
  std::uint32_t values = 0;
};

template <typename T> void appendArray(QByteArray &out, const T *data, std::size_t count) {
  if (count > 0)
    out.append(reinterpret_cast<const char *>(data), qsizetype(count * sizeof(T)));
}

// Fills the array with count elements from the bytes at, and moves past them.
template <typename T> void readArray(std::vector<T> &array, const char *&at, std::size_t count) {
  array.resize(count);
  if (count > 0)
    std::memcpy(array.data(), at, count * sizeof(T));
  at += count * sizeof(T);
}

} // namespace

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

void Page::markValue(std::uint32_t mark, const ValueSource &source, const QString &whole) {
  const std::uint32_t end = textMark();
  std::size_t runs = 0;
  for (auto item = items_.rbegin(); item != items_.rend(); ++item) {
    const auto *run = std::get_if<TextRun>(&*item);
    if (run && run->textOffset_ < mark)
      break;
    if (run)
      ++runs;
  }
  if (runs == 0)
    return;
  PrintedValue value;
  value.number_ = source.number;
  value.band_ = source.band;
  value.control_ = source.control;
  value.kind_ = source.kind;
  value.runsBegin_ = mark;
  value.runsEnd_ = end;
  // One run showing the value as it is needs nothing more.
  if (runs > 1 || QStringView(textPool_).sliced(qsizetype(mark), qsizetype(end - mark)) != whole) {
    value.wholeLength_ = std::uint32_t(whole.size());
    textPool_.append(whole);
  }
  values_.push_back(value);
}

const PrintedValue *Page::valueOf(const TextRun &run) const {
  // Ordered by where their runs begin, and their runs do not overlap.
  const auto after =
      std::upper_bound(values_.begin(), values_.end(), run.textOffset_,
                       [](std::uint32_t offset, const PrintedValue &value) { return offset < value.runsBegin_; });
  if (after == values_.begin())
    return nullptr;
  const PrintedValue &candidate = *(after - 1);
  return run.textOffset_ < candidate.runsEnd_ || run.textOffset_ == candidate.runsBegin_ ? &candidate : nullptr;
}

QString Page::text(const PrintedValue &value) const {
  if (value.printedWhole())
    return textPool_.sliced(qsizetype(value.runsBegin_), qsizetype(value.runsEnd_ - value.runsBegin_));
  return textPool_.sliced(qsizetype(value.runsEnd_), qsizetype(value.wholeLength_));
}

void Page::addPage(const Page &other, Twips dx, Twips dy) {
  auto value = other.values_.begin();
  std::uint32_t mark = 0;
  for (const PageItem &item : other.items_) {
    std::visit(
        [&](const auto &shape) {
          using T = std::decay_t<decltype(shape)>;
          if constexpr (std::is_same_v<T, TextRun>) {
            if (value != other.values_.end() && shape.textOffset_ == value->runsBegin_)
              mark = textMark();
            addText(Box{shape.box.x + dx, shape.box.y + dy, shape.box.width, shape.box.height}, other.text(shape),
                    shape.font, shape.color, shape.align);
            if (value != other.values_.end() && shape.textOffset_ + shape.textLength_ == value->runsEnd_) {
              markValue(mark, value->source(), other.text(*value));
              ++value;
            }
          } else if constexpr (std::is_same_v<T, LineItem>) {
            LineItem line = shape;
            line.x1 += dx;
            line.x2 += dx;
            line.y1 += dy;
            line.y2 += dy;
            addLine(line);
          } else if constexpr (std::is_same_v<T, RectItem>) {
            RectItem rect = shape;
            rect.box.x += dx;
            rect.box.y += dy;
            addRect(rect);
          } else if constexpr (std::is_same_v<T, EllipseItem>) {
            EllipseItem ellipse = shape;
            ellipse.box.x += dx;
            ellipse.box.y += dy;
            addEllipse(ellipse);
          } else {
            addImage(Box{shape.box.x + dx, shape.box.y + dy, shape.box.width, shape.box.height}, shape.image);
          }
        },
        item);
  }
}

void Page::squeeze() {
  items_.shrink_to_fit();
  textPool_.squeeze();
  values_.shrink_to_fit();
}

void Page::appendBytes(QByteArray &out) const {
  const PageBytesHead head{width_, height_, std::uint32_t(items_.size()), std::uint32_t(textPool_.size()),
                           std::uint32_t(values_.size())};
  appendArray(out, &head, 1);
  appendArray(out, items_.data(), items_.size());
  appendArray(out, textPool_.constData(), std::size_t(textPool_.size()));
  appendArray(out, values_.data(), values_.size());
}

Page Page::fromBytes(const char *data, qsizetype size) {
  PageBytesHead head;
  const auto fail = [] {
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Page"), QStringLiteral("The stored page is damaged"));
  };
  if (size < qsizetype(sizeof head))
    fail();
  std::memcpy(&head, data, sizeof head);
  const std::size_t expected = sizeof head + head.items * sizeof(PageItem) + head.poolLength * sizeof(QChar) +
                               head.values * sizeof(PrintedValue);
  if (std::size_t(size) != expected)
    fail();
  Page page(head.width, head.height);
  const char *at = data + sizeof head;
  readArray(page.items_, at, head.items);
  page.textPool_ = QString(reinterpret_cast<const QChar *>(at), qsizetype(head.poolLength));
  at += head.poolLength * sizeof(QChar);
  readArray(page.values_, at, head.values);
  return page;
}

std::size_t Page::approximateBytes() const {
  // The pool's heap block carries a small header before its characters.
  constexpr std::size_t kStringHeader = 16;
  std::size_t bytes = sizeof(Page) + items_.capacity() * sizeof(PageItem) + values_.capacity() * sizeof(PrintedValue);
  if (textPool_.capacity() > 0)
    bytes += kStringHeader + std::size_t(textPool_.capacity()) * sizeof(QChar);
  return bytes;
}

} // namespace kordel::engine
