#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace kordel::test {

// A reader of the workbook files the exporter writes, for the tests: it
// checks the compound document's structure as it goes and decodes the
// records a report's worksheet has.

struct BiffRecord {
  std::uint16_t type = 0;
  QByteArray payload;
  qsizetype position = 0; // of the record's header in the stream
};

// The stream of that name in a compound document; nullopt with the reason
// in error when the file is no well-formed compound document or lacks it.
std::optional<QByteArray> compoundStream(const QByteArray &file, const QString &name, QString *error);

// The records from a position of a stream up to and including the next
// EOF record.
std::vector<BiffRecord> substreamRecords(const QByteArray &stream, qsizetype position);

struct ReadFont {
  int height = 0; // twips
  bool bold = false;
  bool italic = false;
  bool underline = false;
  QString name;
};

struct ReadCell {
  bool isNumber = false;
  bool isBoolean = false;
  double number = 0; // a truth value's 1 or 0 too
  QString text;
  QString numberFormat; // the workbook's own format code; empty for a built-in one
  ReadFont font;
  int horizontalAlignment = 0; // 0 general, 1 left, 2 center, 3 right
  bool wrap = false;
};

struct ReadWorkbook {
  std::vector<BiffRecord> globals;
  std::vector<BiffRecord> sheet;
  QStringList sharedStrings;
  std::map<std::pair<int, int>, ReadCell> cells; // by (row, column)
  std::map<int, int> columnWidths;               // 1/256 of a digit
  std::map<int, int> outlineLevels;              // by row
  int frozenRows = 0;
  int sstContinueRecords = 0;

  const ReadCell *cell(int row, int column) const;
};

// The whole workbook of a file; nullopt with the reason in error when it
// cannot be read.
std::optional<ReadWorkbook> readWorkbook(const QString &path, QString *error);

// A cell of a flat XML spreadsheet document: its text, its value type
// ("string", "float", "date", "boolean", ...; empty for an empty cell) and
// its value as the document writes it (a number, an ISO date, true/false).
struct FlatCell {
  QString text;
  QString type;
  QString value;
};

// The first table of a flat XML spreadsheet document, row by row, with
// repeated rows and cells spelled out.
struct FlatSheet {
  std::vector<std::vector<FlatCell>> rows;
};
FlatSheet parseFlatSheet(const QByteArray &xml);

// The cell texts of the first table of a flat XML spreadsheet document.
std::vector<QStringList> parseFlatSpreadsheet(const QByteArray &xml);

} // namespace kordel::test
