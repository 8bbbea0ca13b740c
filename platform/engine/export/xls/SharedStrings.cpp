#include "engine/export/xls/SharedStrings.h"

#include "core/Error.h"

#include <algorithm>

namespace kordel::engine::xls {

namespace {

constexpr int kRecordHeaderSize = 4;
constexpr int kStringHeaderSize = 3; // character count and flags
// The EXTSST record lists every so many strings; at least 8, and few
// enough places to fit one record.
constexpr int kMinStringsPerBucket = 8;
constexpr int kMaxBuckets = (kMaxRecordPayload - 2) / 8;

int stringsPerBucket(std::size_t strings) {
  return std::max<int>(kMinStringsPerBucket, int((strings + kMaxBuckets - 1) / kMaxBuckets));
}

} // namespace

std::uint32_t SharedStrings::add(const QString &text) {
  if (text.size() > kMaxLength)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("XlsExporter"),
               QStringLiteral("A text of %1 characters is longer than the %2 characters a cell holds: \"%3...\"")
                   .arg(text.size())
                   .arg(kMaxLength)
                   .arg(text.left(40)));
  ++references_;
  const auto found = index_.constFind(text);
  if (found != index_.cend())
    return *found;
  const auto index = std::uint32_t(strings_.size());
  strings_.push_back(text);
  index_.insert(text, index);
  return index;
}

// A string's header never splits from its first character. Characters
// that do not fit go on in a CONTINUE record, which starts with the flag
// byte again; a UTF-16 character is never cut in two.
void SharedStrings::write(BiffStream &stream) const {
  std::uint16_t type = Record::Sst;
  qsizetype recordStart = stream.position();
  QByteArray payload = Bytes().u32(references_).u32(std::uint32_t(strings_.size())).data();
  auto finishRecord = [&] {
    stream.record(type, payload);
    payload.clear();
    type = Record::Continue;
    recordStart = stream.position();
  };

  const int bucket = stringsPerBucket(strings_.size());
  Bytes index;
  index.u16(std::uint16_t(bucket));
  for (std::size_t i = 0; i < strings_.size(); ++i) {
    const QString &text = strings_[i];
    const bool oneByte = fitsOneByte(text);
    const int characterSize = oneByte ? 1 : 2;
    if (payload.size() + kStringHeaderSize + characterSize > kMaxRecordPayload)
      finishRecord();
    if (i % bucket == 0) {
      const qsizetype offsetInRecord = kRecordHeaderSize + payload.size();
      index.u32(std::uint32_t(recordStart + offsetInRecord)).u16(std::uint16_t(offsetInRecord)).u16(0);
    }
    payload.append(Bytes().u16(std::uint16_t(text.size())).u8(oneByte ? 0 : 1).data());
    qsizetype written = 0;
    for (;;) {
      const qsizetype room = (kMaxRecordPayload - payload.size()) / characterSize;
      const qsizetype count = std::min(room, text.size() - written);
      appendCharacters(payload, QStringView(text).mid(written, count), oneByte);
      written += count;
      if (written == text.size())
        break;
      finishRecord();
      payload.append(char(oneByte ? 0 : 1));
    }
  }
  finishRecord();
  stream.record(Record::ExtSst, index);
}

} // namespace kordel::engine::xls
