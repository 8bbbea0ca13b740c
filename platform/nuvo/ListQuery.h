#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace kordel::hostapi {
class Filter;
}

namespace kordel::nuvo {

class Engine;
struct ClassDef;
struct FieldDef;

// What a list window shows of a class: its columns, the description's
// fields first and then the class's other fields that hold a value, and
// the rows' texts. The ids of a list come from one query that reads
// nothing else; the texts are read only for the rows asked for, so a list
// of any size opens at once.
class ListQuery {
public:
  ListQuery(std::shared_ptr<Engine> engine, const QString &className);

  const ClassDef &listClass() const { return class_; }
  int columnCount() const { return int(columns_.size()); }
  const FieldDef &columnField(int column) const { return *columns_[std::size_t(column)]; }
  // The column's head: the field's name in the user's language.
  QString columnTitle(int column) const;
  // Numbers, currency and dates, which read right-aligned.
  bool numericColumn(int column) const;

  // The ids of the class's records under the filter (nullptr: all) whose
  // text in any column contains search, without regard to case (empty:
  // all), ordered by a column (-1: by id).
  std::vector<int> ids(const std::shared_ptr<hostapi::Filter> &filter, const QString &search = {}, int sortColumn = -1,
                       bool descending = false) const;
  // The texts of the records, one row per id in the order given; a record
  // that is gone gives a row of empty texts.
  std::vector<QStringList> texts(const std::vector<int> &ids) const;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
  std::vector<const FieldDef *> columns_;
};

} // namespace kordel::nuvo
