#pragma once

#include "hostapi/Explorer.h"

#include <memory>
#include <vector>

namespace kordel::nuvo {

class Engine;
struct ClassDef;
class RecordsObject;

// The model of a list window: the records of a class under the active
// filter, the items listed of them (all, or fewer when the list is
// narrowed), and the selected items. The desktop client shows it; the
// command line and tests drive it directly.
class ExplorerObject : public hostapi::Explorer {
public:
  // Lists all records of the class.
  ExplorerObject(std::shared_ptr<Engine> engine, const QString &className);

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
  // Selects the listed items among the ids; others are ignored.
  void select(const std::vector<int> &ids);

  const std::vector<int> &listedIds() const { return listed_; }
  const std::vector<int> &selectedIds() const { return selected_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
  std::shared_ptr<hostapi::Filter> activeFilter_;
  std::shared_ptr<RecordsObject> records_;
  std::vector<int> listed_;
  std::vector<int> selected_;
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
