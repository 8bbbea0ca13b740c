#pragma once

#include "engine/export/pdf/EmbeddedFont.h"
#include "engine/render/PageDocument.h"

#include <QByteArray>
#include <QHash>

#include <map>
#include <memory>
#include <vector>

namespace kordel::engine::pdf {

class PdfFile;

// What the pages of a PDF document draw with, named in one resource
// dictionary that all pages share: the embedded fonts, the images (each
// written once, when a page first shows it) and the graphics states that
// make colours translucent. The dictionary and the fonts are written when
// the last page is done, as only then are the fonts' glyphs known.
class PdfResources {
public:
  PdfResources(PdfFile &file, const PageDocument &document);
  ~PdfResources();

  int objectNumber() const { return objectNumber_; }

  EmbeddedFont &font(text::FontFace &face);
  // The name of the document's image of that index, with its slash.
  // Raises 9 for an index out of range.
  const QByteArray &image(int index);
  // The name of the graphics state that fills and strokes with that
  // opacity, 0 to 255.
  const QByteArray &opacity(int alpha);

  // Writes the fonts and the dictionary.
  void finish();

private:
  PdfFile &file_;
  const PageDocument &document_;
  int objectNumber_;
  std::map<text::FontFace *, std::unique_ptr<EmbeddedFont>> fonts_;
  QHash<int, std::pair<QByteArray, int>> images_;    // by image index: name and object
  QHash<int, std::pair<QByteArray, int>> opacities_; // by alpha: name and object
};

} // namespace kordel::engine::pdf
