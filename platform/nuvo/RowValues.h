#pragma once

#include "core/Variant.h"

#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class QTemporaryFile;

namespace kordel::nuvo {

// The values of a query's rows, a fixed number per row, in a compact
// binary form: a tag byte per value, then its bytes (texts in Latin-1
// where they can be, else in UTF-16). The first rows stay in memory; once
// they fill the memory budget, further rows go to a temporary file and are
// read back when asked for, so that a result of any size takes no more
// memory than its budget, four bytes a row and the row at hand.
//
// Reading keeps the last row read: its values are decoded one at a time
// as asked for and kept until another row is read. Rows read in order
// are read from the file in large windows, rows read out of order one at a
// time. Reading changes that state: one thread at a time.
class RowValues {
public:
  explicit RowValues(int columns, std::size_t memoryBudget = kDefaultMemoryBudget);
  ~RowValues();
  RowValues(const RowValues &) = delete;
  RowValues &operator=(const RowValues &) = delete;

  int columnCount() const { return columns_; }
  int rowCount() const { return rows_; }

  // Building: a row is its values in column order, then endRow. Raises 7
  // when the temporary file cannot be made or written, with the system's
  // reason.
  void appendNull();
  void appendLong(std::int32_t value);
  void appendBoolean(bool value);
  void appendDouble(double value);
  void appendCurrency(Currency value);
  void appendDate(Date value);
  void appendText(QStringView text);
  // A value of the kinds above; any other kind is kept as Null.
  void append(const Variant &value);
  void endRow();

  // Row and column must be in range. Raises 7 when a row cannot be read
  // back.
  Variant value(int row, int column) const;

  // The bytes the rows in memory hold.
  std::size_t memoryBytes() const { return memory_.capacity(); }
  bool spilled() const { return file_ != nullptr; }

  static constexpr std::size_t kDefaultMemoryBudget = 16u << 20;

private:
  // Row offsets are kept as 32 bits from the start of their group.
  static constexpr int kRowsPerGroup = 4096;

  void put(const void *bytes, std::size_t size);
  void putByte(std::uint8_t byte) { put(&byte, 1); }
  void putLength(std::uint32_t length);
  void spill(std::size_t rowBytes);
  void flush();
  std::int64_t offsetOf(int row) const;
  std::int64_t endOf(int row) const;
  void load(int row) const;

  int columns_;
  std::size_t memoryBudget_;
  int rows_ = 0;
  // Where each row starts: the group's base plus the row's offset in it.
  std::vector<std::int64_t> groupBases_;
  std::vector<std::uint32_t> rowOffsets_;
  std::int64_t size_ = 0; // bytes of all rows written so far
  std::int64_t rowStart_ = 0;

  // Rows from the first up to rowsInMemory_ lie in memory_; the rest in
  // the file, the last of them still in writeBuffer_.
  std::vector<char> memory_;
  int rowsInMemory_ = -1;     // -1 while every row is in memory
  std::int64_t fileBase_ = 0; // offset of the first spilled row
  std::unique_ptr<QTemporaryFile> file_;
  std::vector<char> writeBuffer_;

  // The last row read.
  mutable std::vector<char> window_;
  mutable std::int64_t windowStart_ = -1;
  mutable int loadedRow_ = -1;
  mutable const char *rowBytes_ = nullptr;
  mutable std::vector<std::uint32_t> valueStarts_;
  mutable std::vector<Variant> decoded_;
  mutable std::vector<bool> isDecoded_;
};

} // namespace kordel::nuvo
