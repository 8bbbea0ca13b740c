#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace kordel::engine::xls {

// The most payload bytes one BIFF8 record may carry.
constexpr int kMaxRecordPayload = 8224;

// Record types of the workbook stream.
namespace Record {
constexpr std::uint16_t Bof = 0x0809;
constexpr std::uint16_t Eof = 0x000A;
constexpr std::uint16_t Codepage = 0x0042;
constexpr std::uint16_t Window1 = 0x003D;
constexpr std::uint16_t Font = 0x0031;
constexpr std::uint16_t Xf = 0x00E0;
constexpr std::uint16_t Style = 0x0293;
constexpr std::uint16_t BoundSheet = 0x0085;
constexpr std::uint16_t Sst = 0x00FC;
constexpr std::uint16_t Continue = 0x003C;
constexpr std::uint16_t ExtSst = 0x00FF;
constexpr std::uint16_t ColInfo = 0x007D;
constexpr std::uint16_t Dimensions = 0x0200;
constexpr std::uint16_t Row = 0x0208;
constexpr std::uint16_t LabelSst = 0x00FD;
constexpr std::uint16_t Number = 0x0203;
constexpr std::uint16_t Window2 = 0x023E;
constexpr std::uint16_t Format = 0x041E;
constexpr std::uint16_t Pane = 0x0041;
constexpr std::uint16_t Guts = 0x0080;
constexpr std::uint16_t WsBool = 0x0081;
constexpr std::uint16_t BoolErr = 0x0205;
} // namespace Record

// Little-endian values appended to a byte array: the payload of a record.
class Bytes {
public:
  Bytes &u8(std::uint8_t value);
  Bytes &u16(std::uint16_t value);
  Bytes &u32(std::uint32_t value);
  Bytes &f64(double value);
  Bytes &zeros(int count);
  // A string with its character count in 1 or 2 bytes and the flag byte
  // that tells one-byte characters from UTF-16.
  Bytes &unicode(const QString &text, int countBytes);

  const QByteArray &data() const { return data_; }
  int size() const { return int(data_.size()); }

private:
  QByteArray data_;
};

// Whether every character of the text fits in one byte, so that the text
// can be stored with one byte per character.
bool fitsOneByte(const QString &text);
// Appends the characters only: one byte each, or UTF-16 little-endian.
void appendCharacters(QByteArray &out, QStringView text, bool oneByte);

// The workbook stream as it grows: records one after another.
class BiffStream {
public:
  void record(std::uint16_t type, const Bytes &payload);
  void record(std::uint16_t type, const QByteArray &payload);
  // Overwrites four bytes at a position already written.
  void patchU32(qsizetype position, std::uint32_t value);

  qsizetype position() const { return data_.size(); }
  const QByteArray &data() const { return data_; }
  QByteArray take() { return std::move(data_); }

private:
  QByteArray data_;
};

} // namespace kordel::engine::xls
