#pragma once

#include "core/Object.h"

#include <QStringList>

#include <memory>

namespace kordel {
class XmlDocument;
}

namespace kordel::hostapi {

class Class;
class Field;
class Fields;
class Filter;
class Pool;

inline constexpr const char *kViewProgId = "Nuvo.View";
inline constexpr const char *kRecordsProgId = "Nuvo.Records";
inline constexpr const char *kRecordQueryProgId = "Nuvo.RecordQuery";

// Record.State, bits that may be combined.
namespace RecordState {
constexpr int Saved = 0;
constexpr int Modified = 1; // changed and not yet saved
constexpr int New = 2;      // never saved: it has no id yet
constexpr int Deleted = 4;  // removed from the database
} // namespace RecordState

// The field paths a query fetches with each record. Late-bound:
// Add(path, 0, -1, ""), Count, Item(1-based index).
class View : public Object {
public:
  // The three last arguments are reserved: pass 0, -1 and "". A path
  // added twice is fetched once.
  virtual void add(const QString &path, int reserved1, int reserved2, const QString &reserved3) = 0;
  virtual int count() const = 0;
  virtual QStringList paths() const = 0;
};

// One record with the values of the paths its query fetched. Reading a
// path the query did not fetch still answers, by one more query.
// Late-bound: ID, Class, Fields, Field(path), Value(path) (default),
// Text(path), Evaluate(expression, 1), Description, State.
class Record : public Object {
public:
  virtual int id() const = 0;
  virtual std::shared_ptr<Class> recordClass() const = 0;
  virtual std::shared_ptr<Fields> fields() const = 0;
  // The field of a path; for a formula field its DataType is that of the
  // value in this record. Raises 5 for a path that leads nowhere.
  virtual std::shared_ptr<Field> field(const QString &path) = 0;
  // The raw value: numbers, dates, texts, Booleans, the id of a related
  // record; Null where the database has none. Raises 5 for an unknown path.
  virtual Variant value(const QString &path) = 0;
  // What a user reads: numbers and dates in the language's format, option
  // texts, Yes and No, a related record's description; "" for no value.
  virtual QString text(const QString &path) = 0;
  // A VBScript expression in which [path], Value("path"), Text("path") and
  // ActiveUser.Record.Value("path") read fields. flags: pass 1.
  virtual Variant evaluate(const QString &expression, int flags) = 0;
  // The record as one line of text, as lists show it.
  virtual QString description() = 0;
  // RecordState bits.
  virtual int state() const = 0;
};

// A query over one class: its records in the order of their ids.
// Late-bound: Open(class, filter, view, 0), Count, Item(1-based index)
// (default), Pool, Source, and For Each over the records.
class Records : public Object {
public:
  // The class as a Class or its name; the filter and the view may be
  // nullptr (all records; the class's plain fields). Runs one query.
  virtual void open(const Variant &classOrName, const std::shared_ptr<Filter> &filter,
                    const std::shared_ptr<View> &view, int flags) = 0;
  virtual int count() const = 0;
  // The record at a position from 0.
  virtual std::shared_ptr<Record> at(int index) const = 0;
  // The id of the record at a position from 0, without making the record.
  virtual int idAt(int index) const = 0;
  // The ids that were returned, as a new pool.
  virtual std::shared_ptr<Pool> pool() const = 0;
  // The filter the records were opened with; nullptr when none.
  virtual std::shared_ptr<Filter> source() const = 0;
};

// RecordQuery.Open: what Result reports.
namespace RecordQueryParts {
constexpr int Count = 1;   // the attribute "count" of the first element
constexpr int Summary = 2; // the attributes "class" and "filter"
constexpr int Ids = 4;     // a <record id="..."/> child per record, from first, at most max (-1 all)
} // namespace RecordQueryParts

// A query whose answer is an XML document: the element <records> with the
// attributes that the parts ask for. Late-bound: Open(class, filter, view,
// parts, first, max), Result.
class RecordQuery : public Object {
public:
  virtual void open(const Variant &classOrName, const std::shared_ptr<Filter> &filter,
                    const std::shared_ptr<View> &view, int parts, int first, int max) = 0;
  // Raises 91 before Open.
  virtual std::shared_ptr<XmlDocument> result() const = 0;
};

} // namespace kordel::hostapi
