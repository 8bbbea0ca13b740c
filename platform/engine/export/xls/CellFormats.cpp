#include "engine/export/xls/CellFormats.h"

#include "core/Error.h"

#include <cmath>

namespace kordel::engine::xls {

namespace {

constexpr int kBuiltInFonts = 5;
constexpr int kStyleFormats = 15;

constexpr std::uint16_t kAutomaticColor = 0x7FFF;
constexpr std::uint16_t kNormalWeight = 400;
constexpr std::uint16_t kBoldWeight = 700;
constexpr std::uint16_t kItalic = 0x0002;
constexpr std::uint16_t kStrikeout = 0x0008;
constexpr std::uint8_t kSingleUnderline = 1;
constexpr int kMaxFontNameLength = 255;

// XF flags: locked, and for style formats the style bit with no parent.
constexpr std::uint16_t kStyleFormatFlags = 0xFFF5;
constexpr std::uint16_t kCellFormatFlags = 0x0001; // locked, parent style 0
constexpr std::uint8_t kBottomAligned = 0x20;
// Attributes a format sets itself rather than taking from its style.
constexpr std::uint8_t kOwnFont = 0x08;
constexpr std::uint8_t kOwnAlignment = 0x10;
// For a style format, attributes that the style leaves alone.
constexpr std::uint8_t kStyleLeavesAll = 0xF4;
// The system window colours as pattern foreground and background.
constexpr std::uint16_t kDefaultPatternColors = 0x20C0;

// Number formats from this index on are the workbook's own.
constexpr std::uint16_t kFirstCustomNumberFormat = 164;
constexpr std::uint8_t kWrapText = 0x08;
// Attribute of a format that sets its own number format.
constexpr std::uint8_t kOwnNumberFormat = 0x04;

// Font record 4 does not exist: the fifth FONT record has index 5.
std::uint16_t fontIndexOfRecord(int record) { return std::uint16_t(record < 4 ? record : record + 1); }

Bytes fontPayload(const PageFont &font, bool bold) {
  std::uint16_t flags = 0;
  if (font.italic)
    flags |= kItalic;
  if (font.strikeout)
    flags |= kStrikeout;
  Bytes bytes;
  bytes.u16(std::uint16_t(std::lround(font.pointSize * kTwipsPerPoint)))
      .u16(flags)
      .u16(kAutomaticColor)
      .u16(font.bold || bold ? kBoldWeight : kNormalWeight)
      .u16(0) // neither superscript nor subscript
      .u8(font.underline ? kSingleUnderline : 0)
      .u8(0) // family
      .u8(0) // character set
      .u8(0)
      .unicode(font.family.left(kMaxFontNameLength), 1);
  return bytes;
}

Bytes formatRecord(std::uint16_t font, std::uint16_t numberFormat, std::uint16_t flags, std::uint8_t alignment,
                   std::uint8_t ownAttributes) {
  Bytes bytes;
  bytes.u16(font)
      .u16(numberFormat)
      .u16(flags)
      .u8(alignment)
      .u8(0) // no rotation
      .u8(0) // no indent
      .u8(ownAttributes)
      .u32(0) // no borders
      .u32(0)
      .u16(kDefaultPatternColors);
  return bytes;
}

std::uint8_t horizontalAlignment(TextAlign align) {
  switch (align) {
  case TextAlign::Left: return 1;
  case TextAlign::Center: return 2;
  case TextAlign::Right: return 3;
  }
  return 0;
}

} // namespace

int CellFormats::fontRecord(int font, bool bold) {
  const quint64 key = (quint64(quint32(font)) << 1) | quint64(bold);
  const auto found = fontRecords_.constFind(key);
  if (found != fontRecords_.cend())
    return *found;
  const int record = int(fonts_.size());
  fonts_.push_back(FontUse{font, bold});
  fontRecords_.insert(key, record);
  return record;
}

std::uint16_t CellFormats::numberFormat(const QString &code) {
  if (code.isEmpty())
    return 0; // General
  const auto found = numberFormatIndex_.constFind(code);
  if (found != numberFormatIndex_.cend())
    return *found;
  const auto index = std::uint16_t(kFirstCustomNumberFormat + numberFormats_.size());
  numberFormats_.push_back(code);
  numberFormatIndex_.insert(code, index);
  return index;
}

std::uint16_t CellFormats::cellFormat(const SheetCell &cell) {
  const CellStyle key = CellStyle::of(cell);
  const auto found = formatIndex_.constFind(key);
  if (found != formatIndex_.cend())
    return *found;
  if (kStyleFormats + 1 + int(formats_.size()) >= kMaxFormats)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("XlsExporter"),
               QStringLiteral("The cells use more combinations of font, number format and alignment than the %1 "
                              "cell formats a workbook can have")
                   .arg(kMaxFormats));
  const auto index = std::uint16_t(kStyleFormats + 1 + formats_.size());
  formats_.push_back(
      CellFormat{fontRecord(cell.font, cell.bold), numberFormat(cell.numberFormat), cell.align, cell.wrap});
  formatIndex_.insert(key, index);
  return index;
}

void CellFormats::write(BiffStream &stream) const {
  const PageFont builtIn;
  for (int i = 0; i < kBuiltInFonts; ++i)
    stream.record(Record::Font, fontPayload(builtIn, false));
  for (const FontUse &use : fonts_)
    stream.record(Record::Font, fontPayload(document_.font(use.font), use.bold));
  for (std::size_t i = 0; i < numberFormats_.size(); ++i)
    stream.record(Record::Format,
                  Bytes().u16(std::uint16_t(kFirstCustomNumberFormat + i)).unicode(numberFormats_[i], 2));

  // The style formats: Normal with font 0, then the built-in styles' own
  // formats as every workbook carries them.
  static const std::uint16_t styleFonts[kStyleFormats] = {0, 1, 1, 2, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  for (int i = 0; i < kStyleFormats; ++i)
    stream.record(Record::Xf,
                  formatRecord(styleFonts[i], 0, kStyleFormatFlags, kBottomAligned, i == 0 ? 0 : kStyleLeavesAll));
  stream.record(Record::Xf, formatRecord(0, 0, kCellFormatFlags, kBottomAligned, 0));
  for (const CellFormat &format : formats_)
    stream.record(
        Record::Xf,
        formatRecord(fontIndexOfRecord(kBuiltInFonts + format.fontRecord), format.numberFormat, kCellFormatFlags,
                     std::uint8_t(kBottomAligned | horizontalAlignment(format.align) | (format.wrap ? kWrapText : 0)),
                     std::uint8_t(kOwnFont | kOwnAlignment | (format.numberFormat ? kOwnNumberFormat : 0))));

  // The Normal style, built in, on format 0.
  stream.record(Record::Style, Bytes().u16(0x8000).u8(0).u8(0xFF));
}

} // namespace kordel::engine::xls
