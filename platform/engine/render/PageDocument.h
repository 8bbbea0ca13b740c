#pragma once

#include "engine/render/PageFont.h"
#include "engine/render/Page.h"

#include <QHash>
#include <QImage>

#include <cstddef>
#include <vector>

namespace kordel::engine {

// The pages of one report run with the tables they share: fonts and
// images. Equal fonts and equal images are kept once; pages refer to them
// by index. Pages are appended as the run finishes them.
class PageDocument {
public:
  // The report's name, which exports give their files as title.
  void setTitle(const QString &title) { title_ = title; }
  const QString &title() const { return title_; }

  // The index of the font, adding it when it is new. Raises 6 beyond
  // 65536 distinct fonts.
  int internFont(const PageFont &font);
  int fontCount() const { return int(fonts_.size()); }
  // Raises 9 for an index out of range.
  const PageFont &font(int index) const;

  // The index of the image, adding it when neither the same image nor an
  // equal one is present. Raises 5 for a null image.
  int internImage(const QImage &image);
  int imageCount() const { return int(images_.size()); }
  // Raises 9 for an index out of range.
  const QImage &image(int index) const;

  // Adds a finished page. Raises 5 for a page without a size and 9 for a
  // page that refers to a font or image the tables lack; the document
  // stays as it was.
  void append(Page page);
  int pageCount() const { return int(pages_.size()); }
  // Pages count from 0; raises 9 for an index out of range.
  const Page &page(int index) const;
  Page &page(int index);

  // Drops the pages and the tables; the title stays.
  void clear();

  // The memory the document holds, in bytes: pages, fonts and image pixels.
  std::size_t approximateBytes() const;

private:
  void checkReferences(const Page &page) const;

  QString title_;
  std::vector<Page> pages_;
  std::vector<PageFont> fonts_;
  QHash<PageFont, int> fontIndex_;
  std::vector<QImage> images_;
  QHash<qint64, int> imageByKey_;
  QMultiHash<size_t, int> imageByContent_;
};

} // namespace kordel::engine
