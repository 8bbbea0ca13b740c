#include "engine/render/PageDocument.h"

#include "core/Error.h"

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
}

void PageDocument::append(Page page) {
  checkReferences(page);
  page.squeeze();
  pages_.push_back(std::move(page));
}

const Page &PageDocument::page(int index) const {
  checkIndex(index, pageCount(), "page");
  return pages_[std::size_t(index)];
}

Page &PageDocument::page(int index) {
  checkIndex(index, pageCount(), "page");
  return pages_[std::size_t(index)];
}

void PageDocument::clear() {
  pages_.clear();
  pages_.shrink_to_fit();
  fonts_.clear();
  fontIndex_.clear();
  images_.clear();
  imageByKey_.clear();
  imageByContent_.clear();
}

std::size_t PageDocument::approximateBytes() const {
  std::size_t bytes = sizeof(PageDocument) + (pages_.capacity() - pages_.size()) * sizeof(Page);
  for (const Page &page : pages_)
    bytes += page.approximateBytes();
  for (const PageFont &font : fonts_)
    bytes += sizeof(PageFont) + std::size_t(font.family.capacity()) * sizeof(QChar);
  for (const QImage &image : images_)
    bytes += sizeof(QImage) + std::size_t(image.sizeInBytes());
  return bytes;
}

} // namespace kordel::engine
