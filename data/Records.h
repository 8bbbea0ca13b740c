#pragma once

#include "core/Object.h"

#include <QStringList>

#include <cstdint>
#include <memory>
#include <vector>

namespace kordel::hostapi {
class Filter;
class Pool;
class Record;
class Records;
class ReportContext;
class View;
} // namespace kordel::hostapi

namespace kordel::addin {

class Page;
class ReportField;
class RowBuffer;
class StringCollection;

// The cursor a report page takes its rows from.
//
// Design note. Opening is eager and recursive: OpenRecords runs one engine
// query for the page, keeps its result, and copies each row's sort keys
// (and its id and parent id) into a row buffer, which it sorts. A record
// object is made from the result when a row is read, not kept for every
// row: the result is in the order of its ids, so an id's row is found by
// halving. Then it opens one cursor per sub page with a pool of all the ids
// this page fetched, so that a sub page's single query fetches the
// children of every parent row. While the report prints no query runs:
// SetParentFilter picks the rows of the current parent ids out of the
// buffer into a second buffer and sorts that.
//
// States: new (every read fails), open (reads go to the buffer), and
// parent-filtered (reads go to the parent buffer). RecordIndex counts
// moves: 0 at the first row, +1 per MoveNext, and the row count, not the
// count minus one, after MoveLast.
class Records : public std::enable_shared_from_this<Records> {
public:
  Records();
  ~Records();

  bool BeginningOfFile() const;
  bool EndOfFile() const;
  bool IsFiltered() const { return parentBuffer_ != nullptr; }
  // The engine record of the current row; the buffer's error at either end.
  std::shared_ptr<hostapi::Record> Record() const;
  std::int32_t RecordIndex() const { return recordIndex_; }
  std::int32_t RecordCount() const;
  void ClearParentFilter();
  // The ids of this page's rows, or of the parent-filtered rows.
  std::shared_ptr<hostapi::Pool> GetPool() const;
  // The cursor of the page with the guid in this cursor's subtree, this
  // one included; nullptr when there is none.
  std::shared_ptr<Records> LookupSubRecords(const QString &guid);
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  // A parent pool makes this a sub page's cursor. Raises -9999 when the
  // context's range gives no rows to ask for.
  void OpenRecords(const std::shared_ptr<Page> &page, const std::shared_ptr<hostapi::ReportContext> &context,
                   const std::shared_ptr<hostapi::Pool> &parentPool);
  // Selects the rows whose parent id is in the pool; nothing happens on a
  // top page's cursor.
  void SetParentFilter(const std::shared_ptr<hostapi::Pool> &pool);
  // The field's value on the current row; its default value when it has
  // none or cannot be read. Never raises.
  Variant Value(const ReportField &field);

  // What the cursor derived from its page, for the run and for tests.
  const QString &IdField() const { return idField_; }
  const QString &ParentLinkField() const { return parentLinkField_; }
  const QString &SortExpression() const { return sortExpression_; }
  const std::shared_ptr<hostapi::View> &View() const { return view_; }

private:
  // How a row's sort key is made from a record: a whole number or a
  // number (Null as 0), a date as sortable text (Null without text), or
  // the display text cut to 64 characters.
  enum class SortKey { WholeNumber, Number, Date, Text };

  // A buffer column: its field path and how a record's value goes in.
  struct Column {
    QString path;
    SortKey key;    // how a record's value goes into the column
    bool inBuffer;  // false for the types that get no column
    int bufferType; // a ColumnType
    int definedSize;
  };

  std::shared_ptr<StringCollection> GetFieldDependencies(const ReportField &field) const;
  void BuildView();
  void ResolveLinkFields();
  void CreateBuffer();
  std::unique_ptr<RowBuffer> NewBuffer() const;
  void BuildSortExpression();
  void FindSubFilter();
  std::shared_ptr<hostapi::Filter> SourceFilter();
  void CopySortFields(hostapi::Record &record, RowBuffer &buffer) const;
  void OpenSubRecords();
  RowBuffer &ActiveBuffer() const;
  // The record of an id of the result, nullptr when it has none; the
  // first row when the engine returned the id twice.
  std::shared_ptr<hostapi::Record> RecordOf(int id) const;

  std::shared_ptr<Page> page_;
  std::shared_ptr<hostapi::ReportContext> context_;
  std::shared_ptr<hostapi::Pool> parentPool_;
  std::unique_ptr<RowBuffer> buffer_;
  std::unique_ptr<RowBuffer> parentBuffer_;
  std::vector<Column> bufferColumns_;
  int idColumn_ = -1;
  QString sortExpression_;
  std::int32_t recordIndex_ = 0;
  QString idField_;
  QString parentLinkField_;
  std::shared_ptr<hostapi::Records> result_;
  // The record of the id looked up last: a row's fields are read one
  // after another.
  mutable int lastId_ = 0;
  mutable std::shared_ptr<hostapi::Record> lastRecord_;
  std::vector<std::pair<QString, std::shared_ptr<Records>>> subRecords_; // by page guid, in page order
  std::shared_ptr<hostapi::Pool> resultPool_;
  std::shared_ptr<hostapi::Pool> parentResultPool_;
  std::shared_ptr<hostapi::Filter> subFilter_;
  std::shared_ptr<hostapi::View> view_;
};

// The view of a cursor that layout scripts get as "Records": navigation and
// the current record, nothing that opens or filters. Late-bound:
// BeginningOfFile, EndOfFile, Record, RecordIndex, RecordCount, GetPool,
// MoveFirst, MoveLast, MoveNext, MovePrevious.
class RecordsFacade : public Object {
public:
  QString typeName() const override { return QStringLiteral("Records"); }
  void SetRecords(std::shared_ptr<Records> records) { records_ = std::move(records); }

protected:
  const MemberTable &memberTable() const override;

private:
  Records &records() const;

  std::shared_ptr<Records> records_;
};

} // namespace kordel::addin
