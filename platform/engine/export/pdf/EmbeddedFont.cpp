#include "engine/export/pdf/EmbeddedFont.h"

#include "engine/export/pdf/PdfFile.h"

#include "core/Error.h"

#include <hb-ot.h>
#include <hb-subset.h>

#include <algorithm>
#include <cmath>

namespace kordel::engine::pdf {

namespace {

using HbSubsetInputPtr = std::unique_ptr<hb_subset_input_t, text::Releaser<hb_subset_input_destroy>>;

// Longer texts than this for one glyph are given beside the glyph where it
// is drawn instead.
constexpr qsizetype kLongestMappedText = 64;
// Entries of one block of a character map.
constexpr int kMapBlock = 100;

std::int16_t readInt16(const hb_blob_t *blob, unsigned offset) {
  unsigned length = 0;
  const char *data = hb_blob_get_data(const_cast<hb_blob_t *>(blob), &length);
  if (offset + 2 > length)
    return 0;
  return std::int16_t((std::uint8_t(data[offset]) << 8) | std::uint8_t(data[offset + 1]));
}

bool hasTable(hb_face_t *face, hb_tag_t tag) {
  const text::HbBlobPtr table(hb_face_reference_table(face, tag));
  return hb_blob_get_length(table.get()) > 0;
}

// The face's PostScript name, with only the characters a PDF name takes
// without escapes.
QByteArray postScriptName(hb_face_t *face) {
  char name[128] = {};
  unsigned length = sizeof name;
  hb_ot_name_get_utf8(face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &length, name);
  QByteArray result;
  for (const char c : QByteArray(name))
    if (c > ' ' && c < 127 && !QByteArray("()<>[]{}/%#").contains(c))
      result.append(c);
  return result.isEmpty() ? QByteArrayLiteral("Font") : result;
}

// Six capital letters that set a subset apart from the others of the
// document.
QByteArray subsetTag(int serial) {
  QByteArray tag(6, 'A');
  for (int i = 5; i >= 0 && serial > 0; --i, serial /= 26)
    tag[i] = char('A' + serial % 26);
  return tag;
}

} // namespace

EmbeddedFont::EmbeddedFont(text::FontFace &face, int objectNumber, int serial)
    : face_(face), objectNumber_(objectNumber), widths_(hb_face_get_glyph_count(face.face()), kUnused),
      characters_(widths_.size(), 0) {
  resourceName_ = "/F";
  resourceName_.append(QByteArray::number(serial));
  baseFont_ = subsetTag(serial) + '+' + postScriptName(face.face());
}

int EmbeddedFont::use(std::uint32_t glyph) {
  if (glyph >= widths_.size())
    glyph = 0; // HarfBuzz gives only glyphs of the face; a stray number shows as the missing glyph
  int &width = widths_[glyph];
  if (width == kUnused)
    width = int(std::lround(hb_font_get_glyph_h_advance(face_.font(), glyph) * 1000.0 / face_.unitsPerEm()));
  return width;
}

bool EmbeddedFont::mapsTo(std::uint32_t glyph, char32_t character) {
  if (glyph >= characters_.size())
    glyph = 0;
  char32_t &mapped = characters_[glyph];
  if (mapped == 0)
    mapped = character;
  return mapped == character;
}

bool EmbeddedFont::mapsTo(std::uint32_t glyph, const QString &text) {
  const bool oneCharacter = text.size() == 1 || (text.size() == 2 && text.front().isHighSurrogate());
  if (oneCharacter && text.front() != QChar(0))
    return mapsTo(glyph, text.size() == 1 ? char32_t(text.front().unicode())
                                          : QChar::surrogateToUcs4(text.front(), text.back()));
  if (text.isEmpty() || text.size() > kLongestMappedText)
    return false;
  if (glyph >= characters_.size())
    glyph = 0;
  char32_t &mapped = characters_[glyph];
  if (mapped == 0) {
    mapped = kLongerText;
    texts_.insert(glyph, text);
    return true;
  }
  return mapped == kLongerText && texts_.value(glyph) == text;
}

QByteArray EmbeddedFont::fontProgram(bool &compactOutlines) const {
  const HbSubsetInputPtr input(hb_subset_input_create_or_fail());
  if (!input)
    throw std::bad_alloc();
  hb_set_t *glyphs = hb_subset_input_glyph_set(input.get());
  for (std::uint32_t glyph = 0; glyph < widths_.size(); ++glyph)
    if (widths_[glyph] != kUnused)
      hb_set_add(glyphs, glyph);
  // Glyph numbers stay, as the page contents use them; shaping and hinting
  // are done, so their tables go.
  hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING);
  hb_set_t *dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
  for (const hb_tag_t tag :
       {HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'), HB_TAG('k', 'e', 'r', 'n')})
    hb_set_add(dropped, tag);
  const text::HbFacePtr subset(hb_subset_or_fail(face_.face(), input.get()));
  if (!subset)
    raiseError(53, QStringLiteral("PdfExporter"),
               QStringLiteral("The font %1 could not be embedded").arg(QString::fromLatin1(baseFont_)));
  compactOutlines = hasTable(subset.get(), HB_TAG('C', 'F', 'F', ' '));
  const text::HbBlobPtr blob(hb_face_reference_blob(subset.get()));
  unsigned length = 0;
  const char *data = hb_blob_get_data(blob.get(), &length);
  return QByteArray(data, qsizetype(length));
}

QByteArray EmbeddedFont::widths() const {
  // Runs of glyph numbers in a row: "first [w w w]".
  QByteArray out("[");
  for (std::uint32_t glyph = 0; glyph < widths_.size();) {
    if (widths_[glyph] == kUnused) {
      ++glyph;
      continue;
    }
    appendInteger(out, glyph);
    out.append('[');
    for (bool first = true; glyph < widths_.size() && widths_[glyph] != kUnused; ++glyph, first = false) {
      if (!first)
        out.append(' ');
      appendInteger(out, widths_[glyph]);
    }
    out.append(']');
  }
  out.append(']');
  return out;
}

QByteArray EmbeddedFont::toUnicode() const {
  std::vector<std::uint32_t> glyphs;
  for (std::uint32_t glyph = 0; glyph < characters_.size(); ++glyph)
    if (characters_[glyph] != 0)
      glyphs.push_back(glyph);
  QByteArray out("/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                 "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
                 "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n"
                 "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n");
  for (std::size_t begin = 0; begin < glyphs.size(); begin += kMapBlock) {
    const std::size_t end = std::min(glyphs.size(), begin + kMapBlock);
    appendInteger(out, std::int64_t(end - begin));
    out.append(" beginbfchar\n");
    for (std::size_t i = begin; i < end; ++i) {
      const std::uint32_t glyph = glyphs[i];
      const char32_t character = characters_[glyph];
      out.append('<');
      appendHex16(out, glyph);
      out.append("><");
      const QString text = character == kLongerText ? texts_.value(glyph) : QString::fromUcs4(&character, 1);
      for (const QChar c : text)
        appendHex16(out, c.unicode());
      out.append(">\n");
    }
    out.append("endbfchar\n");
  }
  out.append("endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n");
  return out;
}

void EmbeddedFont::write(PdfFile &file) const {
  bool compactOutlines = false;
  const QByteArray program = fontProgram(compactOutlines);
  const int programObject = file.reserve();
  const int descriptorObject = file.reserve();
  const int descendantObject = file.reserve();
  const int toUnicodeObject = file.reserve();

  file.writeStream(programObject, compactOutlines ? QByteArrayLiteral("/Subtype/OpenType") : QByteArray(), program);

  // The descriptor's measures are in thousandths of the em.
  hb_font_t *font = face_.font();
  const double scale = 1000.0 / face_.unitsPerEm();
  const auto metric = [&](hb_ot_metrics_tag_t tag) {
    hb_position_t position = 0;
    hb_ot_metrics_get_position_with_fallback(font, tag, &position);
    return std::int64_t(std::lround(position * scale));
  };
  const text::HbBlobPtr head(hb_face_reference_table(face_.face(), HB_TAG('h', 'e', 'a', 'd')));
  const text::HbBlobPtr post(hb_face_reference_table(face_.face(), HB_TAG('p', 'o', 's', 't')));
  // The angle is a 16.16 number whose whole part is enough here.
  const int italicAngle = face_.slant() ? -12 : readInt16(post.get(), 4);
  QByteArray descriptor("<</Type/FontDescriptor/FontName/");
  descriptor.append(baseFont_).append("/Flags ");
  appendInteger(descriptor, 4 | (italicAngle != 0 ? 64 : 0));
  descriptor.append("/FontBBox[");
  for (const unsigned offset : {36u, 38u, 40u, 42u}) {
    appendInteger(descriptor, std::lround(readInt16(head.get(), offset) * scale));
    descriptor.append(' ');
  }
  descriptor.append("]/ItalicAngle ");
  appendInteger(descriptor, italicAngle);
  descriptor.append("/Ascent ");
  appendInteger(descriptor, metric(HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER));
  descriptor.append("/Descent ");
  appendInteger(descriptor, metric(HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER));
  descriptor.append("/CapHeight ");
  appendInteger(descriptor, metric(HB_OT_METRICS_TAG_CAP_HEIGHT));
  descriptor.append("/StemV 80");
  descriptor.append(compactOutlines ? "/FontFile3 " : "/FontFile2 ").append(reference(programObject)).append(">>");
  file.writeObject(descriptorObject, descriptor);

  QByteArray descendant("<</Type/Font/Subtype/");
  descendant.append(compactOutlines ? "CIDFontType0" : "CIDFontType2");
  descendant.append("/BaseFont/").append(baseFont_);
  descendant.append("/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor ");
  descendant.append(reference(descriptorObject));
  if (!compactOutlines)
    descendant.append("/CIDToGIDMap/Identity");
  descendant.append("/W").append(widths()).append(">>");
  file.writeObject(descendantObject, descendant);

  file.writeStream(toUnicodeObject, QByteArray(), toUnicode());

  QByteArray type0("<</Type/Font/Subtype/Type0/BaseFont/");
  type0.append(baseFont_).append("/Encoding/Identity-H/DescendantFonts[").append(reference(descendantObject));
  type0.append("]/ToUnicode ").append(reference(toUnicodeObject)).append(">>");
  file.writeObject(objectNumber_, type0);
}

} // namespace kordel::engine::pdf
