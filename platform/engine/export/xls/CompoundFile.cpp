#include "engine/export/xls/CompoundFile.h"

#include <QtEndian>

#include <cstdint>
#include <vector>

namespace kordel::engine::xls {

namespace {

constexpr qsizetype kSectorSize = 512;
constexpr std::uint32_t kEntriesPerFatSector = kSectorSize / 4;
constexpr std::uint32_t kHeaderFatEntries = 109;
constexpr std::uint32_t kFatEntriesPerDifatSector = kEntriesPerFatSector - 1; // the last one chains on
constexpr qsizetype kDirectoryEntrySize = 128;

constexpr std::uint32_t kDifatSector = 0xFFFFFFFC;
constexpr std::uint32_t kFatSector = 0xFFFFFFFD;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;

constexpr std::uint8_t kRootStorage = 5;
constexpr std::uint8_t kStream = 2;
constexpr std::uint8_t kBlack = 1;

void put16(QByteArray &bytes, qsizetype at, std::uint16_t value) { qToLittleEndian(value, bytes.data() + at); }
void put32(QByteArray &bytes, qsizetype at, std::uint32_t value) { qToLittleEndian(value, bytes.data() + at); }

std::uint32_t sectorsFor(qsizetype bytes) { return std::uint32_t((bytes + kSectorSize - 1) / kSectorSize); }

// How the file's sectors are shared out: the stream first, then the one
// directory sector, the FAT and, for large files, the DIFAT sectors that
// list the FAT sectors beyond the header's 109.
struct SectorPlan {
  std::uint32_t streamSectors = 0;
  std::uint32_t fatSectors = 0;
  std::uint32_t difatSectors = 0;

  std::uint32_t directorySector() const { return streamSectors; }
  std::uint32_t firstFatSector() const { return streamSectors + 1; }
  std::uint32_t firstDifatSector() const { return firstFatSector() + fatSectors; }
  std::uint32_t totalSectors() const { return firstDifatSector() + difatSectors; }
};

SectorPlan planFor(qsizetype streamSize) {
  SectorPlan plan;
  plan.streamSectors = sectorsFor(streamSize);
  // The FAT covers every sector including its own and the DIFAT's: grow it
  // until it does.
  plan.fatSectors = 1;
  for (;;) {
    plan.difatSectors =
        plan.fatSectors <= kHeaderFatEntries
            ? 0
            : (plan.fatSectors - kHeaderFatEntries + kFatEntriesPerDifatSector - 1) / kFatEntriesPerDifatSector;
    if (plan.fatSectors * kEntriesPerFatSector >= plan.totalSectors())
      return plan;
    ++plan.fatSectors;
  }
}

QByteArray directoryEntry(const QString &name, std::uint8_t type, std::uint32_t child, std::uint32_t startSector,
                          std::uint32_t size) {
  QByteArray entry(kDirectoryEntrySize, '\0');
  for (qsizetype i = 0; i < name.size(); ++i)
    put16(entry, i * 2, name[i].unicode());
  put16(entry, 64, std::uint16_t((name.size() + 1) * 2));
  entry[66] = char(type);
  entry[67] = char(kBlack);
  put32(entry, 68, kNoEntry); // left sibling
  put32(entry, 72, kNoEntry); // right sibling
  put32(entry, 76, child);
  put32(entry, 116, startSector);
  put32(entry, 120, size);
  return entry;
}

QByteArray unusedDirectoryEntry() {
  QByteArray entry(kDirectoryEntrySize, '\0');
  put32(entry, 68, kNoEntry);
  put32(entry, 72, kNoEntry);
  put32(entry, 76, kNoEntry);
  return entry;
}

QByteArray header(const SectorPlan &plan) {
  QByteArray bytes(kSectorSize, '\0');
  static const unsigned char signature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
  for (int i = 0; i < 8; ++i)
    bytes[i] = char(signature[i]);
  put16(bytes, 24, 0x003E); // minor version
  put16(bytes, 26, 0x0003); // major version: 512-byte sectors
  put16(bytes, 28, 0xFFFE); // little-endian
  put16(bytes, 30, 9);      // sector size 2^9
  put16(bytes, 32, 6);      // mini sector size 2^6
  put32(bytes, 44, plan.fatSectors);
  put32(bytes, 48, plan.directorySector());
  put32(bytes, 56, std::uint32_t(kMiniStreamCutoff));
  put32(bytes, 60, kEndOfChain); // no mini FAT
  put32(bytes, 64, 0);
  put32(bytes, 68, plan.difatSectors == 0 ? kEndOfChain : plan.firstDifatSector());
  put32(bytes, 72, plan.difatSectors);
  for (std::uint32_t i = 0; i < kHeaderFatEntries; ++i)
    put32(bytes, 76 + 4 * i, i < plan.fatSectors ? plan.firstFatSector() + i : kFreeSector);
  return bytes;
}

QByteArray fat(const SectorPlan &plan) {
  std::vector<std::uint32_t> entries(std::size_t(plan.fatSectors) * kEntriesPerFatSector, kFreeSector);
  for (std::uint32_t i = 0; i < plan.streamSectors; ++i)
    entries[i] = i + 1 < plan.streamSectors ? i + 1 : kEndOfChain;
  entries[plan.directorySector()] = kEndOfChain;
  for (std::uint32_t i = 0; i < plan.fatSectors; ++i)
    entries[plan.firstFatSector() + i] = kFatSector;
  for (std::uint32_t i = 0; i < plan.difatSectors; ++i)
    entries[plan.firstDifatSector() + i] = kDifatSector;
  QByteArray bytes(qsizetype(entries.size()) * 4, '\0');
  for (std::size_t i = 0; i < entries.size(); ++i)
    put32(bytes, qsizetype(i) * 4, entries[i]);
  return bytes;
}

// The FAT sectors beyond the header's list, 127 to a sector, each sector
// ending with the number of the next one.
QByteArray difat(const SectorPlan &plan) {
  QByteArray bytes(qsizetype(plan.difatSectors) * kSectorSize, '\xFF');
  std::uint32_t fatIndex = kHeaderFatEntries;
  for (std::uint32_t sector = 0; sector < plan.difatSectors; ++sector) {
    const qsizetype base = qsizetype(sector) * kSectorSize;
    for (std::uint32_t slot = 0; slot < kFatEntriesPerDifatSector && fatIndex < plan.fatSectors; ++slot, ++fatIndex)
      put32(bytes, base + slot * 4, plan.firstFatSector() + fatIndex);
    const bool last = sector + 1 == plan.difatSectors;
    put32(bytes, base + kFatEntriesPerDifatSector * 4, last ? kEndOfChain : plan.firstDifatSector() + sector + 1);
  }
  return bytes;
}

} // namespace

QByteArray compoundFileWithStream(const QString &streamName, QByteArray stream) {
  Q_ASSERT(streamName.size() < 32);
  if (stream.size() < kMiniStreamCutoff)
    stream.append(kMiniStreamCutoff - stream.size(), '\0');
  const SectorPlan plan = planFor(stream.size());

  QByteArray file = header(plan);
  file.reserve(kSectorSize * (qsizetype(plan.totalSectors()) + 1));
  const auto streamSize = std::uint32_t(stream.size());
  file.append(stream);
  file.append(qsizetype(plan.streamSectors) * kSectorSize - stream.size(), '\0');

  // The root storage with the stream as its only child: entries 0 and 1 of
  // the directory's four.
  file.append(directoryEntry(QStringLiteral("Root Entry"), kRootStorage, 1, kEndOfChain, 0));
  file.append(directoryEntry(streamName, kStream, kNoEntry, 0, streamSize));
  file.append(unusedDirectoryEntry());
  file.append(unusedDirectoryEntry());

  file.append(fat(plan));
  file.append(difat(plan));
  return file;
}

} // namespace kordel::engine::xls
