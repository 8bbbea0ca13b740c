#pragma once

#include "data/RowBufferText.h"

#include "core/Variant.h"

#include <QString>
#include <QStringView>

#include <cstdint>
#include <vector>

namespace kordel::addin {

// Column types, numbered as the cursor's column table numbers them.
enum class ColumnType { VarChar = 200, BigInt = 20, Double = 5 };

// One column of the row buffer: a name, a type and one typed cell per row,
// each of which may be Null. Values going in are converted by VB's rules;
// text is cut to the defined size (0: no limit).
class RowBufferColumn {
public:
  RowBufferColumn(QString name, ColumnType type, int definedSize);

  const QString &name() const { return name_; }
  ColumnType type() const { return type_; }
  int definedSize() const { return definedSize_; }

  // Adds a Null cell at the end.
  void appendNull();
  // Makes room for this many cells in all.
  void reserve(int rows);
  bool isNull(int row) const { return nulls_[row] != 0; }
  // String, Long (Double for a 64-bit number beyond Long), Double or Null.
  Variant value(int row) const;
  // Raises 13 for a value of no use to the column, 6 for a number too big.
  void setValue(int row, const Variant &value);

  // The typed cell of a row that is not Null.
  std::int64_t integerAt(int row) const { return wideIntegers_ ? integers_[row] : narrowIntegers_[row]; }
  double doubleAt(int row) const { return doubles_[row]; }
  QAnyStringView textAt(int row) const { return texts_.at(row); }

  // Orders two rows: Null first, text without regard to case, numbers by
  // value. Negative, zero or positive.
  int compareRows(int a, int b) const;

private:
  void setInteger(int row, std::int64_t value);

  QString name_;
  ColumnType type_;
  int definedSize_;
  std::vector<std::uint8_t> nulls_;
  // Only the store of the column's type grows. Whole numbers take 32 bits
  // until one needs more, when they all move to 64.
  bool wideIntegers_ = false;
  std::vector<std::int32_t> narrowIntegers_;
  std::vector<std::int64_t> integers_;
  std::vector<double> doubles_;
  TextCells texts_;
};

} // namespace kordel::addin
