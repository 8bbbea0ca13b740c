#include "data/RowBuffer.h"

#include "data/RowBufferIndex.h"

#include "core/Error.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace kordel::addin {

namespace {

QString sourceOf(const char *operation) { return QStringLiteral("RowBuffer.") + QLatin1String(operation); }

} // namespace

RowBuffer::RowBuffer() = default;
RowBuffer::~RowBuffer() = default;

void RowBuffer::AppendField(const QString &name, ColumnType type, int definedSize) {
  if (open_)
    raiseError(ErrorNumber::NotAllowedInContext, sourceOf("AppendField"),
               QStringLiteral("Columns cannot be appended once the row buffer is open"));
  if (name.trimmed().isEmpty())
    raiseError(ErrorNumber::BadArguments, sourceOf("AppendField"), QStringLiteral("A column needs a name"));
  if (type != ColumnType::VarChar && type != ColumnType::BigInt && type != ColumnType::Double)
    raiseError(ErrorNumber::BadArguments, sourceOf("AppendField"),
               QStringLiteral("The row buffer holds no columns of type %1 (only 200 text, 20 64-bit integer, 5 double)")
                   .arg(int(type)));
  if (definedSize < 0)
    raiseError(ErrorNumber::BadArguments, sourceOf("AppendField"),
               QStringLiteral("The defined size %1 of column \"%2\" is negative").arg(definedSize).arg(name));
  const QString key = name.toCaseFolded();
  if (columnByName_.contains(key))
    raiseError(ErrorNumber::AlreadyInCollection, sourceOf("AppendField"),
               QStringLiteral("The row buffer already has a column \"%1\"").arg(name));
  columnByName_.insert(key, int(columns_.size()));
  columns_.emplace_back(name, type, definedSize);
}

void RowBuffer::Open() {
  if (open_)
    raiseError(ErrorNumber::NotAllowedInContext, sourceOf("Open"), QStringLiteral("The row buffer is already open"));
  if (columns_.empty())
    raiseError(ErrorNumber::NotAllowedInContext, sourceOf("Open"),
               QStringLiteral("The row buffer cannot open without columns"));
  indexes_.resize(columns_.size());
  open_ = true;
}

void RowBuffer::Reserve(int rows) {
  for (RowBufferColumn &column : columns_)
    column.reserve(rows);
  order_.reserve(std::size_t(std::max(rows, 0)));
}

void RowBuffer::AddNew() {
  requireOpen("AddNew");
  if (rowCount_ == std::numeric_limits<int>::max())
    raiseError(ErrorNumber::OutOfMemory, sourceOf("AddNew"), QStringLiteral("The row buffer is full"));
  for (RowBufferColumn &column : columns_)
    column.appendNull();
  const int row = rowCount_++;
  order_.push_back(row);
  if (filter_)
    filter_->added.push_back(row);
  // The indexes stay good: a new row is Null throughout, which no filter
  // matches, and each write drops the index of its column.
  position_ = viewSize() - 1;
  editing_ = true;
}

void RowBuffer::Update() {
  requireOpen("Update");
  editing_ = false;
}

Variant RowBuffer::Value(const QString &column) const { return Value(ColumnIndex(column)); }

void RowBuffer::SetValue(const QString &column, const Variant &value) { SetValue(ColumnIndex(column), value); }

int RowBuffer::ColumnIndex(const QString &column) const {
  const auto found = columnByName_.constFind(column.toCaseFolded());
  if (found == columnByName_.constEnd())
    raiseError(ErrorNumber::ItemNotFound, sourceOf("Fields"),
               defaultDescription(ErrorNumber::ItemNotFound) + QStringLiteral(": \"%1\"").arg(column));
  return *found;
}

Variant RowBuffer::Value(int column) const {
  requireColumn(column, "Value");
  return columns_[column].value(requireCurrentRow("Value"));
}

void RowBuffer::SetValue(int column, const Variant &value) {
  requireColumn(column, "Value");
  columns_[column].setValue(requireCurrentRow("Value"), value);
  indexes_[column].reset();
}

int RowBuffer::RecordCount() const {
  requireOpen("RecordCount");
  return viewSize();
}

bool RowBuffer::BOF() const {
  requireOpen("BOF");
  return position_ < 0 || viewSize() == 0;
}

bool RowBuffer::EOF() const {
  requireOpen("EOF");
  return position_ >= viewSize();
}

void RowBuffer::MoveFirst() {
  requireOpen("MoveFirst");
  if (viewSize() == 0)
    raiseError(ErrorNumber::NoCurrentRow, sourceOf("MoveFirst"));
  moveTo(0);
}

void RowBuffer::MoveLast() {
  requireOpen("MoveLast");
  if (viewSize() == 0)
    raiseError(ErrorNumber::NoCurrentRow, sourceOf("MoveLast"));
  moveTo(viewSize() - 1);
}

void RowBuffer::MoveNext() {
  if (EOF())
    raiseError(ErrorNumber::NoCurrentRow, sourceOf("MoveNext"));
  moveTo(position_ + 1);
}

void RowBuffer::MovePrevious() {
  if (BOF())
    raiseError(ErrorNumber::NoCurrentRow, sourceOf("MovePrevious"));
  moveTo(position_ - 1);
}

void RowBuffer::SetSort(const QString &text) {
  requireOpen("Sort");
  struct Key {
    const RowBufferColumn *column;
    bool descending;
  };
  std::vector<Key> keys;
  for (const SortKeyText &key : parseSortText(text))
    keys.push_back({&columns_[columnNamed(key.column, text, "Sort")], key.descending});

  // Sorting starts from the order of AddNew, so that a stable sort keeps it
  // among rows that tie.
  std::vector<int> order(rowCount_);
  std::iota(order.begin(), order.end(), 0);
  if (!keys.empty()) {
    std::stable_sort(order.begin(), order.end(), [&keys](int a, int b) {
      for (const Key &key : keys) {
        if (const int compared = key.column->compareRows(a, b))
          return key.descending ? compared > 0 : compared < 0;
      }
      return false;
    });
  }
  order_ = std::move(order);
  sortText_ = text;
  indexes_.assign(columns_.size(), nullptr);
  if (filter_)
    selectRows(*filter_);
  moveTo(0);
}

void RowBuffer::SetFilter(const QString &text) {
  requireOpen("Filter");
  if (text.trimmed().isEmpty()) {
    filter_.reset();
    filterText_.clear();
    moveTo(0);
    return;
  }
  const FilterCondition condition = parseFilterText(text);
  ActiveFilter filter;
  filter.column = columnNamed(condition.column, text, "Filter");
  filter.value = condition.value;
  selectRows(filter);
  filter_ = std::move(filter);
  filterText_ = text;
  moveTo(0);
}

void RowBuffer::requireOpen(const char *operation) const {
  if (!open_)
    raiseError(ErrorNumber::NotAllowedInContext, sourceOf(operation), QStringLiteral("The row buffer is not open"));
}

int RowBuffer::requireCurrentRow(const char *operation) const {
  requireOpen(operation);
  if (position_ < 0 || position_ >= viewSize())
    raiseError(ErrorNumber::NoCurrentRow, sourceOf(operation));
  return viewRow(position_);
}

void RowBuffer::requireColumn(int column, const char *operation) const {
  if (column < 0 || column >= int(columns_.size()))
    raiseError(ErrorNumber::ItemNotFound, sourceOf(operation),
               defaultDescription(ErrorNumber::ItemNotFound) + QStringLiteral(": %1").arg(column));
}

int RowBuffer::columnNamed(const QString &name, const QString &text, const char *operation) const {
  const auto found = columnByName_.constFind(name.toCaseFolded());
  if (found == columnByName_.constEnd())
    raiseError(ErrorNumber::BadArguments, sourceOf(operation),
               QStringLiteral("The %1 \"%2\" names the column \"%3\", which the row buffer does not have")
                   .arg(QString::fromLatin1(operation).toLower(), text, name));
  return *found;
}

// Picks the rows of a filter from its column's index, building the index
// when the column has none.
void RowBuffer::selectRows(ActiveFilter &filter) {
  std::shared_ptr<const EqualityIndex> &index = indexes_[filter.column];
  if (!index)
    index = std::make_shared<const EqualityIndex>(columns_[filter.column], order_);
  filter.matched = index->rowsEqualTo(filter.value);
  filter.index = index;
  filter.added.clear();
}

int RowBuffer::viewSize() const {
  if (filter_)
    return int(filter_->matched.size() + filter_->added.size());
  return rowCount_;
}

int RowBuffer::viewRow(int position) const {
  if (!filter_)
    return order_[position];
  const int matched = int(filter_->matched.size());
  return position < matched ? filter_->matched[position] : filter_->added[position - matched];
}

void RowBuffer::moveTo(int position) {
  position_ = position;
  editing_ = false;
}

} // namespace kordel::addin
