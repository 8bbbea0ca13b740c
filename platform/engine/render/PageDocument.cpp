#include "engine/render/PageDocument.h"

#include "core/Error.h"

#include <algorithm>
#include <limits>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PageDocument");

size_t contentHash(const QImage &image) {
  const size_t pixels = qHashBits(image.constBits(), size_t(image.sizeInBytes()));
  return qHashMulti(pixels, image.width(), image.height(), int(image.format()));
}

void checkIndex(int index, int count, const char *what) {
  if (index < 0 || index >= count)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("There is no %1 %2; the document has %3").arg(QLatin1String(what)).arg(index).arg(count));
}

} // namespace

int PageDocument::internFont(const PageFont &font) {
  if (const auto found = fontIndex_.constFind(font); found != fontIndex_.constEnd())
    return found.value();
  if (fonts_.size() > std::numeric_limits<std::uint16_t>::max())
    raiseError(ErrorNumber::Overflow, kSource, QStringLiteral("A document takes at most 65536 different fonts"));
  const int index = int(fonts_.size());
  fonts_.push_back(font);
  fontIndex_.insert(font, index);
  return index;
}

const PageFont &PageDocument::font(int index) const {
  checkIndex(index, fontCount(), "font");
  return fonts_[std::size_t(index)];
}

int PageDocument::internImage(const QImage &image) {
  if (image.isNull())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("An empty image cannot be placed on a page"));
  if (const auto found = imageByKey_.constFind(image.cacheKey()); found != imageByKey_.constEnd())
    return found.value();
  const size_t hash = contentHash(image);
  for (auto it = imageByContent_.constFind(hash); it != imageByContent_.constEnd() && it.key() == hash; ++it) {
    if (images_[std::size_t(it.value())] == image) {
      imageByKey_.insert(image.cacheKey(), it.value());
      return it.value();
    }
  }
  const int index = int(images_.size());
  images_.push_back(image);
  imageByKey_.insert(image.cacheKey(), index);
  imageByContent_.insert(hash, index);
  return index;
}

const QImage &PageDocument::image(int index) const {
  checkIndex(index, imageCount(), "image");
  return images_[std::size_t(index)];
}

std::uint32_t PageDocument::beginBand(BandKind kind, bool repeat) {
  if (bands_.size() >= std::numeric_limits<std::uint32_t>::max())
    raiseError(ErrorNumber::Overflow, kSource, QStringLiteral("A document takes at most 2^32 band showings"));
  bands_.push_back(BandShowing{kind, openBands_, repeat});
  if (openBands_ < std::numeric_limits<std::uint8_t>::max())
    ++openBands_;
  return std::uint32_t(bands_.size() - 1);
}

void PageDocument::endBand() {
  if (openBands_ > 0)
    --openBands_;
}

const BandShowing &PageDocument::band(std::uint32_t index) const {
  if (index >= bands_.size())
    checkIndex(int(std::min<std::size_t>(index, std::numeric_limits<int>::max())), int(bandCount()), "band");
  return bands_[index];
}

std::uint32_t PageDocument::internControl(const QString &name, const QString &format) {
  const QString key = name + QChar(0) + format;
  if (const auto found = controlIndex_.constFind(key); found != controlIndex_.constEnd())
    return found.value();
  const auto index = std::uint32_t(controls_.size());
  controls_.push_back(ControlSource{name, format});
  controlIndex_.insert(key, index);
  return index;
}

const ControlSource &PageDocument::control(std::uint32_t index) const {
  if (index >= controls_.size())
    checkIndex(int(std::min<std::size_t>(index, std::numeric_limits<int>::max())), int(controlCount()), "control");
  return controls_[index];
}

void PageDocument::checkReferences(const Page &page) const {
  const int number = pageCount() + 1;
  if (page.width() <= 0 || page.height() <= 0)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("Page %1 has no size (%2 x %3 twips)").arg(number).arg(page.width()).arg(page.height()));
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item); run && run->font >= fonts_.size())
      raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
                 QStringLiteral("Page %1 uses font %2, but the document has %3 fonts")
                     .arg(number)
                     .arg(run->font)
                     .arg(fontCount()));
    if (const auto *picture = std::get_if<ImageItem>(&item);
        picture && (picture->image < 0 || picture->image >= imageCount()))
      raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
                 QStringLiteral("Page %1 uses image %2, but the document has %3 images")
                     .arg(number)
                     .arg(picture->image)
                     .arg(imageCount()));
  }
  for (const PrintedValue &value : page.values())
    if (value.source().band >= bands_.size() || value.source().control >= controls_.size())
      raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
                 QStringLiteral("Page %1 has a value of band %2 and control %3, but the document has %4 bands and %5 "
                                "controls")
                     .arg(number)
                     .arg(value.source().band)
                     .arg(value.source().control)
                     .arg(bands_.size())
                     .arg(controls_.size()));
}

void PageDocument::append(Page page) {
  checkReferences(page);
  if (pagesAhead_)
    pagesAhead_->pageAdded(*this, page);
  pages_.append(std::move(page));
  if (pageListener_)
    pageListener_();
}

void PageDocument::addPageCount(int page, PageCountText text) {
  checkIndex(page, pageCount(), "page");
  pageCounts_.push_back(PendingPageCount{page, false, std::move(text)});
}

void PageDocument::resolvePageCounts(const std::function<QString(const QString &format)> &textFor) {
  for (PendingPageCount &pending : pageCounts_)
    if (!pending.resolved) {
      pending.text.format = textFor(pending.text.format);
      pending.resolved = true;
    }
}

std::vector<PageCountText> PageDocument::resolvedPageCounts(int index) const {
  std::vector<PageCountText> texts;
  // The counts are added in the order of their pages.
  auto count = std::lower_bound(pageCounts_.cbegin(), pageCounts_.cend(), index,
                                [](const PendingPageCount &pending, int page) { return pending.page < page; });
  for (; count != pageCounts_.cend() && count->page == index; ++count)
    if (count->resolved)
      texts.push_back(count->text);
  return texts;
}

Page PageDocument::page(int index) const {
  checkIndex(index, pageCount(), "page");
  Page page = pages_.page(index);
  addPageCounts(page, resolvedPageCounts(index));
  return page;
}

void addPageCounts(Page &page, const std::vector<PageCountText> &counts) {
  for (const PageCountText &count : counts)
    page.addText(count.box, count.format, count.font, count.color, count.align);
}

void PageDocument::clear() {
  pagesAhead_.reset();
  pages_.clear();
  pageCounts_.clear();
  pageCounts_.shrink_to_fit();
  fonts_.clear();
  fontIndex_.clear();
  images_.clear();
  imageByKey_.clear();
  imageByContent_.clear();
  bands_.clear();
  bands_.shrink_to_fit();
  openBands_ = 0;
  controls_.clear();
  controlIndex_.clear();
}

std::size_t PageDocument::approximateBytes() const {
  std::size_t bytes = sizeof(PageDocument) + pages_.approximateBytes();
  for (const PendingPageCount &pending : pageCounts_)
    bytes += sizeof(PendingPageCount) + std::size_t(pending.text.format.capacity()) * sizeof(QChar);
  for (const PageFont &font : fonts_)
    bytes += sizeof(PageFont) + std::size_t(font.family.capacity()) * sizeof(QChar);
  for (const QImage &image : images_)
    bytes += sizeof(QImage) + std::size_t(image.sizeInBytes());
  bytes += bands_.capacity() * sizeof(BandShowing);
  for (const ControlSource &control : controls_)
    bytes += sizeof(ControlSource) + std::size_t(control.name.capacity() + control.format.capacity()) * sizeof(QChar);
  return bytes;
}

} // namespace kordel::engine
