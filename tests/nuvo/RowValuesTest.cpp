// The compact row store under a tiny memory budget, so that its rows lie in
// memory, in the temporary file and in the buffer not yet written: every
// kind of value comes back as it went in, whatever order the rows are read
// in, and a file that cannot grow stops the rows with error 7.

#include "nuvo/RowValues.h"

#include "support/ErrorCapture.h"
#include "support/FileSizeLimit.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace kordel;
using kordel::nuvo::RowValues;

namespace {

constexpr int kColumns = 7;

// A text the size of many read windows, to cross every boundary.
QString hugeText(int row) { return QString(150'000, QChar(u'a' + row % 26)); }

QString textOf(int row) {
  switch (row % 5) {
  case 0: return QStringLiteral("Åsa Öberg %1").arg(row);
  case 1: return QStringLiteral("名前 Ελένη %1").arg(row);
  case 2: return {};
  case 3: return row % 1000 == 3 ? hugeText(row) : QStringLiteral("x").repeated(row % 300);
  default: return QStringLiteral("\U0001F600 emoji %1").arg(row);
  }
}

Variant expected(int row, int column) {
  switch (column) {
  case 0: return Variant::null();
  case 1: return Variant(row * 7 - 1000);
  case 2: return Variant(row % 3 == 0);
  case 3: return Variant(row / 8.0);
  case 4: return Variant(Currency{std::int64_t(row) * 12345});
  case 5: return Variant(Date{45000.25 + row});
  default: return Variant(textOf(row));
  }
}

void fill(RowValues &values, int rows) {
  for (int row = values.rowCount(); row < rows; ++row) {
    values.appendNull();
    values.appendLong(expected(row, 1).rawLong());
    values.appendBoolean(expected(row, 2).rawBool());
    values.append(expected(row, 3));
    values.appendCurrency(expected(row, 4).rawCurrency());
    values.append(expected(row, 5));
    values.appendText(textOf(row));
    values.endRow();
  }
}

void expectRow(const RowValues &values, int row) {
  // Columns out of order and twice, as a report reads them.
  for (const int column : {6, 0, 3, 1, 2, 6, 4, 5})
    ASSERT_EQ(values.value(row, column), expected(row, column)) << "row " << row << ", column " << column;
}

} // namespace

TEST(RowValues, EveryValueComesBackInAnyOrderWhereverItsRowLies) {
  constexpr std::size_t kBudget = 16 * 1024;
  RowValues values(kColumns, kBudget);
  fill(values, 5000);
  ASSERT_EQ(values.rowCount(), 5000);
  EXPECT_TRUE(values.spilled());
  EXPECT_LE(values.memoryBytes(), kBudget);

  for (int row = 0; row < values.rowCount(); ++row)
    expectRow(values, row);
  for (int row = values.rowCount() - 1; row >= 0; --row)
    expectRow(values, row);
  QRandomGenerator random(17);
  for (int i = 0; i < 5000; ++i)
    expectRow(values, int(random.bounded(5000)));
}

TEST(RowValues, RowsOfNoColumnsAndAFirstRowBeyondTheBudget) {
  RowValues none(0, 16);
  for (int row = 0; row < 3; ++row)
    none.endRow();
  EXPECT_EQ(none.rowCount(), 3);

  RowValues huge(1, 16);
  huge.appendText(hugeText(3));
  huge.endRow();
  huge.appendLong(4);
  huge.endRow();
  EXPECT_TRUE(huge.spilled());
  EXPECT_EQ(huge.value(1, 0), Variant(4));
  EXPECT_EQ(huge.value(0, 0), Variant(hugeText(3)));
}

TEST(RowValues, AFileThatCannotGrowStopsTheRowsWithError7AndKeepsTheRowsBefore) {
  RowValues values(kColumns, 4096);
  const Error error = test::errorOf([&] {
    const test::FileSizeLimit limit(256 * 1024);
    ASSERT_TRUE(limit.active());
    fill(values, 100'000);
  });
  EXPECT_EQ(error.number(), ErrorNumber::OutOfMemory);
  EXPECT_TRUE(error.description().contains(QLatin1String("temporary file"))) << error.what();
  ASSERT_GT(values.rowCount(), 100);
  ASSERT_LT(values.rowCount(), 100'000);
  for (int row = 0; row < values.rowCount(); ++row)
    expectRow(values, row);
}
