#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kordel::nuvo {
class ExplorerObject;
}

namespace kordel::host::desktop {

// The rows of a list window as a table: one row per record the window
// lists, in its order, with the list's columns. Only ids are known up
// front; texts are read a block of rows at a time when a row is first
// shown, and the blocks last used are kept. Sorting asks the database for
// the order and starts over with an empty cache.
class RecordListModel : public QAbstractTableModel {
  Q_OBJECT

public:
  explicit RecordListModel(std::shared_ptr<nuvo::ExplorerObject> explorer, QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = {}) const override;
  int columnCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

  // Lists the records that contain the text (empty: all), in the order
  // of the last sort.
  void search(const QString &text);
  // The explorer read its list again (another filter, a refresh).
  void reload();
  int recordId(int row) const;
  // The row of a record, -1 when it is not listed.
  int rowOf(int id) const;

  // How many rows a read fetches, and how many blocks are kept.
  static constexpr int kBlockRows = 128;
  static constexpr std::size_t kKeptBlocks = 64;

private:
  const QStringList &rowTexts(int row) const;
  void rearrange();

  std::shared_ptr<nuvo::ExplorerObject> explorer_;
  QString search_;
  int sortColumn_ = -1;
  bool descending_ = false;
  // Block number -> its rows' texts; the list keeps the blocks by last use.
  mutable std::unordered_map<int, std::vector<QStringList>> blocks_;
  mutable std::list<int> blockUse_;
};

} // namespace kordel::host::desktop
