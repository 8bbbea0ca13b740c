#include "engine/export/xls/BiffStream.h"

#include <QtEndian>

#include <bit>

namespace kordel::engine::xls {

Bytes &Bytes::u8(std::uint8_t value) {
  data_.append(char(value));
  return *this;
}

Bytes &Bytes::u16(std::uint16_t value) {
  char bytes[2];
  qToLittleEndian(value, bytes);
  data_.append(bytes, 2);
  return *this;
}

Bytes &Bytes::u32(std::uint32_t value) {
  char bytes[4];
  qToLittleEndian(value, bytes);
  data_.append(bytes, 4);
  return *this;
}

Bytes &Bytes::f64(double value) {
  char bytes[8];
  qToLittleEndian(std::bit_cast<std::uint64_t>(value), bytes);
  data_.append(bytes, 8);
  return *this;
}

Bytes &Bytes::zeros(int count) {
  data_.append(count, '\0');
  return *this;
}

Bytes &Bytes::unicode(const QString &text, int countBytes) {
  if (countBytes == 1)
    u8(std::uint8_t(text.size()));
  else
    u16(std::uint16_t(text.size()));
  const bool oneByte = fitsOneByte(text);
  u8(oneByte ? 0 : 1);
  appendCharacters(data_, text, oneByte);
  return *this;
}

bool fitsOneByte(const QString &text) {
  for (const QChar c : text) {
    if (c.unicode() > 0xff)
      return false;
  }
  return true;
}

void appendCharacters(QByteArray &out, QStringView text, bool oneByte) {
  for (const QChar c : text) {
    const char16_t unit = c.unicode();
    out.append(char(unit & 0xff));
    if (!oneByte)
      out.append(char(unit >> 8));
  }
}

void BiffStream::record(std::uint16_t type, const Bytes &payload) { record(type, payload.data()); }

void BiffStream::record(std::uint16_t type, const QByteArray &payload) {
  Q_ASSERT(payload.size() <= kMaxRecordPayload);
  char header[4];
  qToLittleEndian(type, header);
  qToLittleEndian(std::uint16_t(payload.size()), header + 2);
  data_.append(header, 4);
  data_.append(payload);
}

void BiffStream::patchU32(qsizetype position, std::uint32_t value) { qToLittleEndian(value, data_.data() + position); }

} // namespace kordel::engine::xls
