#include "data/RowBufferIndex.h"

#include "core/Error.h"
#include "core/VbNumber.h"

#include <bit>
#include <cmath>
#include <optional>

namespace kordel::addin {

namespace {

// Equal doubles give equal keys: both zeros are one key.
std::int64_t doubleKey(double value) { return std::bit_cast<std::int64_t>(value == 0.0 ? 0.0 : value); }

// The number a filter value stands for: a plain number as written, or a
// quoted text read by VB's rules.
double filterNumber(const FilterValue &value, const QString &column) {
  if (!value.quoted)
    return value.text.toDouble();
  if (const std::optional<double> number = parseVbNumber(value.text))
    return *number;
  raiseError(ErrorNumber::BadArguments, QStringLiteral("RowBuffer.Filter"),
             QStringLiteral("The filter compares the number column \"%1\" with '%2', which is no number")
                 .arg(column, value.text));
}

// The 64-bit integer a filter value stands for; nothing when it is not a
// whole number in range, which no cell of an integer column can equal.
std::optional<std::int64_t> integerKey(const FilterValue &value, const QString &column) {
  if (!value.quoted) {
    bool whole = false;
    const std::int64_t integer = value.text.toLongLong(&whole);
    if (whole)
      return integer;
  }
  const double number = filterNumber(value, column);
  constexpr double kLimit = 9223372036854775808.0; // 2^63
  if (std::trunc(number) != number || number >= kLimit || number < -kLimit)
    return std::nullopt;
  return std::int64_t(number);
}

} // namespace

EqualityIndex::EqualityIndex(const RowBufferColumn &column, const std::vector<int> &order)
    : columnName_(column.name()), type_(column.type()) {
  // First pass: a group per distinct cell, counted; second: rows placed.
  std::vector<int> groupOfPosition(order.size(), -1);
  std::vector<int> groupSize;
  for (std::size_t position = 0; position < order.size(); ++position) {
    const int row = order[position];
    if (column.isNull(row))
      continue;
    const int next = int(groupSize.size());
    int group = next;
    switch (type_) {
    case ColumnType::VarChar: {
      const QString key = column.textAt(row).toString().toCaseFolded();
      auto found = textGroups_.constFind(key);
      group = found != textGroups_.constEnd() ? *found : *textGroups_.insert(key, next);
      break;
    }
    case ColumnType::BigInt: group = numberGroups_.try_emplace(column.integerAt(row), next).first->second; break;
    case ColumnType::Double:
      if (std::isnan(column.doubleAt(row)))
        continue;
      group = numberGroups_.try_emplace(doubleKey(column.doubleAt(row)), next).first->second;
      break;
    }
    if (group == next)
      groupSize.push_back(0);
    ++groupSize[group];
    groupOfPosition[position] = group;
  }
  groupStart_.resize(groupSize.size() + 1);
  for (std::size_t group = 0; group < groupSize.size(); ++group)
    groupStart_[group + 1] = groupStart_[group] + groupSize[group];
  rows_.resize(groupStart_.back());
  std::vector<int> fill(groupStart_.begin(), groupStart_.end() - 1);
  for (std::size_t position = 0; position < order.size(); ++position) {
    if (const int group = groupOfPosition[position]; group >= 0)
      rows_[fill[group]++] = order[position];
  }
}

std::span<const int> EqualityIndex::rowsEqualTo(const FilterValue &value) const {
  int id = -1;
  switch (type_) {
  case ColumnType::VarChar: id = textGroups_.value(value.text.toCaseFolded(), -1); break;
  case ColumnType::BigInt:
    if (const std::optional<std::int64_t> key = integerKey(value, columnName_)) {
      const auto found = numberGroups_.find(*key);
      id = found == numberGroups_.end() ? -1 : found->second;
    }
    break;
  case ColumnType::Double: {
    const double number = filterNumber(value, columnName_);
    const auto found = std::isnan(number) ? numberGroups_.end() : numberGroups_.find(doubleKey(number));
    id = found == numberGroups_.end() ? -1 : found->second;
    break;
  }
  }
  return id < 0 ? std::span<const int>() : rowsOfGroup(id);
}

std::span<const int> EqualityIndex::rowsOfGroup(int id) const {
  return std::span<const int>(rows_.data() + groupStart_[id], std::size_t(groupStart_[id + 1] - groupStart_[id]));
}

} // namespace kordel::addin
