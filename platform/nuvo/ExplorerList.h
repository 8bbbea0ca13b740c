#pragma once

#include "hostapi/Explorer.h"

#include <memory>
#include <vector>

namespace kordel::nuvo {

// The open list windows of the host, at most one per class. The current
// window is the one the host counts as current (the last one opened or
// made current); the active one is the window that has the focus now, if
// a list window has it.
class ExplorerList : public hostapi::Explorers {
public:
  QString typeName() const override { return QStringLiteral("Explorers"); }

  int count() const override { return int(explorers_.size()); }
  bool exists(const QString &className) const override { return find(className) >= 0; }
  std::shared_ptr<hostapi::Explorer> item(const QString &className) const override;
  std::shared_ptr<hostapi::Explorer> current() const override { return current_; }
  std::shared_ptr<hostapi::Explorer> active() const { return active_; }

  // Opens a window; one of the same class is replaced. The new window
  // becomes current and active.
  void open(const std::shared_ptr<hostapi::Explorer> &explorer);
  void close(const QString &className);
  // Makes the window of a class current and active; raises 9 when none.
  void activate(const QString &className);
  // Another kind of window took the focus: no list window is active.
  void deactivate() { active_.reset(); }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  int find(const QString &className) const;

  std::vector<std::shared_ptr<hostapi::Explorer>> explorers_;
  std::shared_ptr<hostapi::Explorer> current_;
  std::shared_ptr<hostapi::Explorer> active_;
};

// The open record windows of the host, in the order they were opened; the
// active one has the focus now, if a record window has it. Late-bound:
// Count, Item(index from 1) (default), Active, and For Each.
class InspectorList : public Object {
public:
  QString typeName() const override { return QStringLiteral("Inspectors"); }

  int count() const { return int(inspectors_.size()); }
  // Raises 9 for an index outside 1 to Count.
  std::shared_ptr<hostapi::Inspector> item(int index) const;
  std::shared_ptr<hostapi::Inspector> active() const { return active_; }

  // Opens a window, which becomes the active one.
  void open(const std::shared_ptr<hostapi::Inspector> &inspector);
  void close(const std::shared_ptr<hostapi::Inspector> &inspector);
  void activate(const std::shared_ptr<hostapi::Inspector> &inspector) { active_ = inspector; }
  // Another kind of window took the focus: no record window is active.
  void deactivate() { active_.reset(); }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<std::shared_ptr<hostapi::Inspector>> inspectors_;
  std::shared_ptr<hostapi::Inspector> active_;
};

} // namespace kordel::nuvo
