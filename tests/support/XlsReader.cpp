#include "support/XlsReader.h"

#include <QFile>
#include <QXmlStreamReader>
#include <QtEndian>

#include <bit>

namespace kordel::test {

namespace {

constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;

std::uint16_t u16(const QByteArray &bytes, qsizetype at) {
  return qFromLittleEndian<std::uint16_t>(bytes.constData() + at);
}
std::uint32_t u32(const QByteArray &bytes, qsizetype at) {
  return qFromLittleEndian<std::uint32_t>(bytes.constData() + at);
}

// A sector chain through the FAT, refusing loops and sectors past the end.
std::optional<QByteArray> readChain(const QByteArray &file, const std::vector<std::uint32_t> &fat, std::uint32_t start,
                                    QString *error) {
  QByteArray data;
  std::uint32_t sector = start;
  std::size_t steps = 0;
  while (sector != kEndOfChain) {
    const qsizetype offset = 512 + qsizetype(sector) * 512;
    if (sector >= fat.size() || offset + 512 > file.size() || ++steps > fat.size()) {
      *error = QStringLiteral("broken sector chain at sector %1").arg(sector);
      return std::nullopt;
    }
    data.append(file.mid(offset, 512));
    sector = fat[sector];
  }
  return data;
}

QString characters(const QByteArray &bytes, qsizetype at, qsizetype count, bool wide) {
  QString text;
  for (qsizetype i = 0; i < count; ++i)
    text.append(QChar(wide ? u16(bytes, at + 2 * i) : std::uint8_t(bytes[at + i])));
  return text;
}

// The SST's strings, following them across CONTINUE records: a continued
// part starts with its own flag byte. Nullopt when the records end inside
// a string or a string header is cut.
std::optional<QStringList> sharedStrings(const std::vector<BiffRecord> &records, std::size_t sst) {
  std::vector<QByteArray> parts{records[sst].payload};
  for (std::size_t i = sst + 1; i < records.size() && records[i].type == 0x003C; ++i)
    parts.push_back(records[i].payload);
  if (parts[0].size() < 8)
    return std::nullopt;
  const std::uint32_t unique = u32(parts[0], 4);
  QStringList strings;
  std::size_t part = 0;
  qsizetype at = 8;
  for (std::uint32_t s = 0; s < unique; ++s) {
    if (at >= parts[part].size()) {
      if (++part == parts.size())
        return std::nullopt;
      at = 0;
    }
    const QByteArray &header = parts[part];
    if (at + 3 > header.size())
      return std::nullopt;
    const int length = u16(header, at);
    bool wide = header[at + 2] & 1;
    at += 3;
    QString text;
    while (text.size() < length) {
      if (at >= parts[part].size()) {
        if (++part == parts.size() || parts[part].isEmpty())
          return std::nullopt;
        wide = parts[part][0] & 1;
        at = 1;
      }
      const qsizetype available = (parts[part].size() - at) / (wide ? 2 : 1);
      if (available == 0)
        return std::nullopt;
      const qsizetype count = std::min<qsizetype>(available, length - text.size());
      text += characters(parts[part], at, count, wide);
      at += count * (wide ? 2 : 1);
    }
    strings.append(text);
  }
  return strings;
}

struct ReadFormat {
  int font = 0;
  int numberFormat = 0;
  int alignment = 0;
  bool wrap = false;
};

} // namespace

const ReadCell *ReadWorkbook::cell(int row, int column) const {
  const auto found = cells.find({row, column});
  return found == cells.end() ? nullptr : &found->second;
}

std::optional<QByteArray> compoundStream(const QByteArray &file, const QString &name, QString *error) {
  static const QByteArray signature = QByteArray::fromHex("D0CF11E0A1B11AE1");
  if (file.size() < 512 || !file.startsWith(signature)) {
    *error = QStringLiteral("no compound document signature");
    return std::nullopt;
  }
  if (u16(file, 28) != 0xFFFE || u16(file, 30) != 9 || u32(file, 56) != 4096) {
    *error = QStringLiteral("unexpected byte order, sector size or mini stream cutoff");
    return std::nullopt;
  }
  if ((file.size() - 512) % 512 != 0) {
    *error = QStringLiteral("the file is not made of whole sectors");
    return std::nullopt;
  }
  // The FAT's sectors: 109 in the header, the rest in the DIFAT chain.
  const std::uint32_t fatSectors = u32(file, 44);
  std::vector<std::uint32_t> fatSectorList;
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(fatSectors, 109); ++i)
    fatSectorList.push_back(u32(file, 76 + 4 * i));
  std::uint32_t difat = u32(file, 68);
  for (std::uint32_t d = 0; d < u32(file, 72); ++d) {
    const qsizetype base = 512 + qsizetype(difat) * 512;
    if (base + 512 > file.size()) {
      *error = QStringLiteral("DIFAT sector beyond the end");
      return std::nullopt;
    }
    for (int slot = 0; slot < 127 && fatSectorList.size() < fatSectors; ++slot)
      fatSectorList.push_back(u32(file, base + 4 * slot));
    difat = u32(file, base + 4 * 127);
  }
  if (fatSectorList.size() != fatSectors) {
    *error = QStringLiteral("the DIFAT lists %1 of %2 FAT sectors").arg(fatSectorList.size()).arg(fatSectors);
    return std::nullopt;
  }
  std::vector<std::uint32_t> fat;
  for (const std::uint32_t sector : fatSectorList) {
    const qsizetype base = 512 + qsizetype(sector) * 512;
    if (base + 512 > file.size()) {
      *error = QStringLiteral("FAT sector beyond the end");
      return std::nullopt;
    }
    for (int i = 0; i < 128; ++i)
      fat.push_back(u32(file, base + 4 * i));
  }

  const auto directory = readChain(file, fat, u32(file, 48), error);
  if (!directory)
    return std::nullopt;
  if (directory->at(66) != 5) {
    *error = QStringLiteral("the first directory entry is not the root storage");
    return std::nullopt;
  }
  for (qsizetype entry = 0; entry + 128 <= directory->size(); entry += 128) {
    const int nameBytes = u16(*directory, entry + 64);
    if (nameBytes < 2 || directory->at(entry + 66) != 2)
      continue;
    if (characters(*directory, entry, nameBytes / 2 - 1, true) != name)
      continue;
    const std::uint32_t size = u32(*directory, entry + 120);
    if (size < 4096) {
      *error = QStringLiteral("the stream is %1 bytes, short enough for the mini stream").arg(size);
      return std::nullopt;
    }
    auto stream = readChain(file, fat, u32(*directory, entry + 116), error);
    if (!stream)
      return std::nullopt;
    if (stream->size() < size) {
      *error = QStringLiteral("the stream's chain is shorter than its size");
      return std::nullopt;
    }
    stream->truncate(size);
    return stream;
  }
  *error = QStringLiteral("no stream named %1").arg(name);
  return std::nullopt;
}

std::vector<BiffRecord> substreamRecords(const QByteArray &stream, qsizetype position) {
  std::vector<BiffRecord> records;
  while (position + 4 <= stream.size()) {
    BiffRecord record;
    record.type = u16(stream, position);
    record.position = position;
    const int size = u16(stream, position + 2);
    record.payload = stream.mid(position + 4, size);
    position += 4 + size;
    records.push_back(record);
    if (record.type == 0x000A)
      break;
  }
  return records;
}

std::optional<ReadWorkbook> readWorkbook(const QString &path, QString *error) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    *error = file.errorString();
    return std::nullopt;
  }
  const auto stream = compoundStream(file.readAll(), QStringLiteral("Workbook"), error);
  if (!stream)
    return std::nullopt;

  ReadWorkbook book;
  book.globals = substreamRecords(*stream, 0);
  std::vector<ReadFont> fonts;
  std::vector<ReadFormat> formats;
  std::map<int, QString> numberFormats;
  qsizetype sheetPosition = -1;
  for (std::size_t i = 0; i < book.globals.size(); ++i) {
    const BiffRecord &record = book.globals[i];
    const QByteArray &p = record.payload;
    switch (record.type) {
    case 0x0031: {
      if (fonts.size() == 4)
        fonts.push_back(ReadFont{}); // font index 4 does not exist
      fonts.push_back(ReadFont{u16(p, 0), u16(p, 6) >= 700, bool(u16(p, 2) & 2), p[10] != 0,
                               characters(p, 16, std::uint8_t(p[14]), p[15] & 1)});
      break;
    }
    case 0x00E0: formats.push_back(ReadFormat{u16(p, 0), u16(p, 2), p[6] & 7, bool(p[6] & 8)}); break;
    case 0x041E: numberFormats[u16(p, 0)] = characters(p, 5, u16(p, 2), p[4] & 1); break;
    case 0x0085: sheetPosition = u32(p, 0); break;
    case 0x00FC: {
      const auto strings = sharedStrings(book.globals, i);
      if (!strings) {
        *error = QStringLiteral("the shared strings end inside a string");
        return std::nullopt;
      }
      book.sharedStrings = *strings;
      break;
    }
    case 0x003C: ++book.sstContinueRecords; break;
    default: break;
    }
  }
  if (sheetPosition < 0 || sheetPosition >= stream->size()) {
    *error = QStringLiteral("no worksheet where BOUNDSHEET points");
    return std::nullopt;
  }
  book.sheet = substreamRecords(*stream, sheetPosition);
  for (const BiffRecord &record : book.sheet) {
    const QByteArray &p = record.payload;
    if (record.type == 0x007D) {
      for (int column = u16(p, 0); column <= u16(p, 2); ++column)
        book.columnWidths[column] = u16(p, 4);
      continue;
    }
    if (record.type == 0x0041) {
      book.frozenRows = u16(p, 2);
      continue;
    }
    if (record.type == 0x0208) {
      book.outlineLevels[u16(p, 0)] = u16(p, 12) & 7;
      continue;
    }
    if (record.type != 0x00FD && record.type != 0x0203 && record.type != 0x0205)
      continue;
    if (p.size() < (record.type == 0x0203 ? 14 : record.type == 0x0205 ? 8 : 10)) {
      *error = QStringLiteral("a cell record of %1 bytes").arg(p.size());
      return std::nullopt;
    }
    ReadCell cell;
    const ReadFormat &format = formats.at(u16(p, 4));
    cell.font = fonts.at(format.font);
    cell.horizontalAlignment = format.alignment;
    cell.wrap = format.wrap;
    cell.numberFormat = numberFormats.count(format.numberFormat) ? numberFormats[format.numberFormat] : QString();
    if (record.type == 0x0205) {
      cell.isBoolean = true;
      cell.number = p[6];
    } else if (record.type == 0x0203) {
      cell.isNumber = true;
      cell.number = std::bit_cast<double>(qFromLittleEndian<std::uint64_t>(p.constData() + 6));
    } else {
      cell.text = book.sharedStrings.at(u32(p, 6));
    }
    book.cells[{u16(p, 0), u16(p, 2)}] = cell;
  }
  return book;
}

FlatSheet parseFlatSheet(const QByteArray &xml) {
  // Empty rows and cells are counted and only spelled out when something
  // follows them, as the document repeats the empty rest of the sheet.
  FlatSheet sheet;
  std::vector<FlatCell> row;
  int emptyRows = 0;
  int emptyCells = 0;
  int rowRepeat = 1;
  int cellRepeat = 1;
  FlatCell cell;
  bool inCell = false;
  bool inParagraph = false;
  bool tableDone = false;
  QXmlStreamReader reader(xml);
  while (!reader.atEnd()) {
    reader.readNext();
    const QStringView name = reader.name();
    if (reader.isStartElement()) {
      const QXmlStreamAttributes attributes = reader.attributes();
      if (tableDone) {
        continue;
      } else if (name == QLatin1String("table-row")) {
        row.clear();
        emptyCells = 0;
        const QStringView repeat = attributes.value(QLatin1String("table:number-rows-repeated"));
        rowRepeat = repeat.isEmpty() ? 1 : repeat.toInt();
      } else if (name == QLatin1String("table-cell") || name == QLatin1String("covered-table-cell")) {
        cell = FlatCell{};
        cell.type = attributes.value(QLatin1String("office:value-type")).toString();
        for (const char *value : {"office:value", "office:date-value", "office:boolean-value", "office:time-value"})
          if (attributes.hasAttribute(QLatin1String(value)))
            cell.value = attributes.value(QLatin1String(value)).toString();
        inCell = true;
        const QStringView repeat = attributes.value(QLatin1String("table:number-columns-repeated"));
        cellRepeat = repeat.isEmpty() ? 1 : repeat.toInt();
      } else if (inCell && name == QLatin1String("p")) {
        if (!cell.text.isEmpty())
          cell.text += QLatin1Char('\n');
        inParagraph = true;
      } else if (inParagraph && name == QLatin1String("s")) {
        const QStringView count = attributes.value(QLatin1String("text:c"));
        cell.text += QString(count.isEmpty() ? 1 : count.toInt(), QLatin1Char(' '));
      } else if (inParagraph && name == QLatin1String("line-break")) {
        cell.text += QLatin1Char('\n');
      }
    } else if (reader.isCharacters() && inParagraph) {
      cell.text += reader.text();
    } else if (reader.isEndElement()) {
      if (tableDone) {
        continue;
      } else if (name == QLatin1String("p")) {
        inParagraph = false;
      } else if (name == QLatin1String("table-cell") || name == QLatin1String("covered-table-cell")) {
        inCell = false;
        if (cell.text.isEmpty() && cell.type.isEmpty()) {
          emptyCells += cellRepeat;
          continue;
        }
        for (; emptyCells > 0; --emptyCells)
          row.push_back(FlatCell{});
        for (int i = 0; i < cellRepeat; ++i)
          row.push_back(cell);
      } else if (name == QLatin1String("table-row")) {
        if (row.empty()) {
          emptyRows += rowRepeat;
          continue;
        }
        for (; emptyRows > 0; --emptyRows)
          sheet.rows.push_back({});
        for (int i = 0; i < rowRepeat; ++i)
          sheet.rows.push_back(row);
      } else if (name == QLatin1String("table")) {
        tableDone = true;
      }
    }
  }
  return sheet;
}

std::vector<QStringList> parseFlatSpreadsheet(const QByteArray &xml) {
  std::vector<QStringList> rows;
  for (const std::vector<FlatCell> &cells : parseFlatSheet(xml).rows) {
    QStringList row;
    for (const FlatCell &cell : cells)
      row << cell.text;
    rows.push_back(row);
  }
  return rows;
}

} // namespace kordel::test
