#pragma once

#include "hostapi/Explorer.h"

#include <memory>
#include <vector>

namespace kordel::nuvo {

class Engine;
class ListQuery;
struct ClassDef;
class RecordsObject;

// The model of a list window: the records of a class under the active
// filter, the items listed of them (all, or fewer when the list is
// narrowed or searched), in the list's order, and the selected items. The
// desktop client shows it; the command line and tests drive it directly.
// Only ids are read to list; Records reads its rows when first asked for.
class ExplorerObject : public hostapi::Explorer {
public:
  // Lists all records of the class.
  ExplorerObject(std::shared_ptr<Engine> engine, const QString &className);
  ~ExplorerObject() override;

  QString typeName() const override { return QStringLiteral("Explorer"); }

  std::shared_ptr<hostapi::Class> explorerClass() const override;
  std::shared_ptr<hostapi::Selection> items() const override;
  std::shared_ptr<hostapi::Selection> selection() const override;
  std::shared_ptr<hostapi::Records> records() const override;
  std::shared_ptr<hostapi::Filters> filters() const override;
  std::shared_ptr<hostapi::Filter> activeFilter() const override { return activeFilter_; }

  // Shows the records of a filter (nullptr: all); the list shows all of
  // them and nothing is selected.
  void setActiveFilter(std::shared_ptr<hostapi::Filter> filter);
  // Reads the records again under the same filter.
  void refresh();
  // Lists only those of the records whose ids are given, in the records'
  // order; the selection keeps what is still listed.
  void narrow(const std::vector<int> &ids);
  // Lists the records whose text in a column of the list contains the
  // text (empty: all), ordered by a column of the list (-1: by id); the
  // selection keeps what is still listed.
  void arrange(const QString &search, int sortColumn, bool descending);
  // Selects the listed items among the ids; others are ignored.
  void select(const std::vector<int> &ids);

  const std::vector<int> &listedIds() const { return listed_; }
  const std::vector<int> &selectedIds() const { return selected_; }
  // The columns and texts of the list.
  const ListQuery &listQuery() const { return *query_; }

  // The window's own settings object (Settings, late-bound), which the
  // host gives it; Nothing until then.
  void setSettings(ObjectRef settings) { settings_ = std::move(settings); }
  const ObjectRef &settings() const { return settings_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
  std::unique_ptr<ListQuery> query_;
  std::shared_ptr<hostapi::Filter> activeFilter_;
  mutable std::shared_ptr<RecordsObject> records_; // read when first asked for
  std::vector<int> all_;                           // the ids under the active filter, by id
  std::vector<int> listed_;
  std::vector<int> selected_;
  QString search_;
  int sortColumn_ = -1;
  bool descending_ = false;
  ObjectRef settings_;
};

// The model of a record window: a class and the record it shows.
class InspectorObject : public hostapi::Inspector {
public:
  // A window on a saved record of the class.
  InspectorObject(std::shared_ptr<Engine> engine, const QString &className, int id);
  // A window on a new record, not yet saved: its State has the New bit.
  static std::shared_ptr<InspectorObject> forNewRecord(std::shared_ptr<Engine> engine, const QString &className);

  QString typeName() const override { return QStringLiteral("Inspector"); }

  std::shared_ptr<hostapi::Class> inspectorClass() const override;
  std::shared_ptr<hostapi::Record> record() const override { return record_; }

protected:
  const MemberTable &memberTable() const override;

private:
  InspectorObject(std::shared_ptr<Engine> engine, const ClassDef &cls, std::shared_ptr<hostapi::Record> record);

  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
  std::shared_ptr<hostapi::Record> record_;
};

} // namespace kordel::nuvo
