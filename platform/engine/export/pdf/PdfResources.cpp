#include "engine/export/pdf/PdfResources.h"

#include "engine/export/pdf/PdfFile.h"

#include <QImage>

namespace kordel::engine::pdf {

namespace {

// The image's samples, rows one after another without padding: red, green
// and blue, and its opacity apart.
void splitSamples(const QImage &image, QByteArray &colour, QByteArray &alpha) {
  const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
  const int width = rgba.width();
  colour.reserve(qsizetype(width) * rgba.height() * 3);
  alpha.reserve(qsizetype(width) * rgba.height());
  for (int y = 0; y < rgba.height(); ++y) {
    const uchar *pixel = rgba.constScanLine(y);
    for (int x = 0; x < width; ++x, pixel += 4) {
      colour.append(reinterpret_cast<const char *>(pixel), 3);
      alpha.append(char(pixel[3]));
    }
  }
}

QByteArray imageEntries(const QImage &image, const char *colourSpace) {
  QByteArray entries("/Type/XObject/Subtype/Image/Width ");
  appendInteger(entries, image.width());
  entries.append("/Height ");
  appendInteger(entries, image.height());
  entries.append("/ColorSpace/").append(colourSpace).append("/BitsPerComponent 8");
  return entries;
}

} // namespace

PdfResources::PdfResources(PdfFile &file, const PageDocument &document)
    : file_(file), document_(document), objectNumber_(file.reserve()) {}

PdfResources::~PdfResources() = default;

EmbeddedFont &PdfResources::font(text::FontFace &face) {
  std::unique_ptr<EmbeddedFont> &font = fonts_[&face];
  if (!font)
    font = std::make_unique<EmbeddedFont>(face, file_.reserve(), int(fonts_.size()));
  return *font;
}

const QByteArray &PdfResources::image(int index) {
  auto found = images_.find(index);
  if (found != images_.end())
    return found->first;
  const QImage &image = document_.image(index); // raises 9 out of range
  QByteArray colour, alpha;
  splitSamples(image, colour, alpha);
  const int object = file_.reserve();
  QByteArray entries = imageEntries(image, "DeviceRGB");
  if (image.hasAlphaChannel()) {
    const int mask = file_.reserve();
    file_.writeStream(mask, imageEntries(image, "DeviceGray"), alpha);
    entries.append("/SMask ").append(reference(mask));
  }
  file_.writeStream(object, entries, colour);
  return images_.insert(index, {"/Im" + QByteArray::number(images_.size() + 1), object})->first;
}

const QByteArray &PdfResources::opacity(int alpha) {
  auto found = opacities_.find(alpha);
  if (found != opacities_.end())
    return found->first;
  const int object = file_.reserve();
  QByteArray state("<</Type/ExtGState/ca ");
  appendNumber(state, alpha / 255.0);
  state.append("/CA ");
  appendNumber(state, alpha / 255.0);
  state.append(">>");
  file_.writeObject(object, state);
  return opacities_.insert(alpha, {"/GS" + QByteArray::number(opacities_.size() + 1), object})->first;
}

void PdfResources::finish() {
  QByteArray dictionary("<</ProcSet[/PDF/Text/ImageB/ImageC]");
  const auto appendNamed = [&](const char *kind, const QHash<int, std::pair<QByteArray, int>> &named) {
    if (named.isEmpty())
      return;
    dictionary.append('/').append(kind).append("<<");
    for (const auto &[name, object] : named)
      dictionary.append(name).append(' ').append(reference(object));
    dictionary.append(">>");
  };
  if (!fonts_.empty()) {
    dictionary.append("/Font<<");
    for (const auto &[face, font] : fonts_) {
      font->write(file_);
      dictionary.append(font->resourceName()).append(' ').append(reference(font->objectNumber()));
    }
    dictionary.append(">>");
  }
  appendNamed("XObject", images_);
  appendNamed("ExtGState", opacities_);
  dictionary.append(">>");
  file_.writeObject(objectNumber_, dictionary);
}

} // namespace kordel::engine::pdf
