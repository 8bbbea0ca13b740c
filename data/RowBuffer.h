#pragma once

#include "data/RowBufferColumn.h"
#include "data/RowBufferSyntax.h"

#include "core/Variant.h"

#include <QHash>
#include <QString>

#include <memory>
#include <optional>
#include <span>
#include <vector>

// The C library's EOF macro would swallow the member of that name; files
// that include this one use std::char_traits<char>::eof() instead.
#ifdef EOF
#undef EOF
#endif

namespace kordel::addin {

class EqualityIndex;

// An in-memory table with a current row, as the record cursor uses it: it
// holds each row's sort keys, sorts, and picks the rows of one parent.
//
// Cells are kept per column in typed stores (see RowBufferColumn). Neither
// sorting nor filtering moves a row: the view is a list of row numbers.
// Sorting builds the list of all rows in sort order (stable, so ties keep
// the order of AddNew). A filter is one column equal to one value; its rows
// come from an index of that column built on first use over the sorted
// list and kept until the column is written or the sort changes, so that
// filtering the same buffer by many values costs one look-up each.
//
// Positions follow the classic client-side cursor: an empty view is at BOF
// and EOF at once; moving past either end, or reading or writing a value
// there, raises 3021. Row operations before Open raise 3219.
class RowBuffer {
public:
  RowBuffer();
  ~RowBuffer();
  RowBuffer(const RowBuffer &) = delete;
  RowBuffer &operator=(const RowBuffer &) = delete;

  // Columns are appended before Open; names are compared without regard to
  // case and may contain dots ("company.idcompany"). A defined size of 0
  // leaves a text column unlimited. Raises 3367 for a name already there,
  // 3001 for an empty name, an unknown type or a negative size.
  void AppendField(const QString &name, ColumnType type, int definedSize);
  // After the columns; before AddNew. Appending after Open raises.
  void Open();
  // Makes room for this many rows in all, so that a buffer filled with a
  // known number of rows takes no more memory than they need.
  void Reserve(int rows);
  // Appends a row (all Null) at the end of the view and makes it current;
  // a row added earlier and not yet Updated is kept as it is. A sort or a
  // filter set before does not apply to the new row until it is set again.
  void AddNew();
  // Ends the edit of the added row.
  void Update();
  // True from AddNew until Update or a move, sort or filter.
  bool Editing() const { return editing_; }

  // The value of the current row; Null when never set.
  Variant Value(const QString &column) const;
  // Converts by VB's rules; raises 13 when the value does not convert.
  void SetValue(const QString &column, const Variant &value);
  // Raises 3265 for an unknown column.
  int ColumnIndex(const QString &column) const;
  // Fast forms for the cursor's per-row copying; 3265 out of range.
  Variant Value(int column) const;
  void SetValue(int column, const Variant &value);

  // Rows in view (after the filter).
  int RecordCount() const;
  bool BOF() const;
  bool EOF() const;
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();

  // "[a] ASC, [b] DESC"; "" for insertion order. The view moves to its
  // first row. Raises 3001 for a text that does not read or names an
  // unknown column, and keeps the sort it had.
  void SetSort(const QString &text);
  const QString &Sort() const { return sortText_; }
  // "[a.b] = 17" or "[name] = 'O''Brien'"; "" clears. Text compares without
  // regard to case. The view keeps the sort order and moves to its first
  // row. Raises 3001 like SetSort.
  void SetFilter(const QString &text);
  const QString &Filter() const { return filterText_; }

private:
  // The filter in force and the rows it picked: a group of an index, which
  // the view shares so that dropping the index cannot pull the rows away,
  // and the rows added since.
  struct ActiveFilter {
    int column = -1;
    FilterValue value;
    std::shared_ptr<const EqualityIndex> index;
    std::span<const int> matched;
    std::vector<int> added;
  };

  void requireOpen(const char *operation) const;
  int requireCurrentRow(const char *operation) const; // the row number
  void requireColumn(int column, const char *operation) const;
  int columnNamed(const QString &name, const QString &text, const char *operation) const;
  void selectRows(ActiveFilter &filter);
  int viewSize() const;
  int viewRow(int position) const;
  void moveTo(int position);

  std::vector<RowBufferColumn> columns_;
  QHash<QString, int> columnByName_; // case-folded name to column
  bool open_ = false;
  bool editing_ = false;
  int rowCount_ = 0;
  std::vector<int> order_; // every row, in sort order
  std::optional<ActiveFilter> filter_;
  std::vector<std::shared_ptr<const EqualityIndex>> indexes_; // per column, built on first filter
  int position_ = 0;                                          // -1 at BOF, viewSize() at EOF
  QString sortText_;
  QString filterText_;
};

} // namespace kordel::addin
