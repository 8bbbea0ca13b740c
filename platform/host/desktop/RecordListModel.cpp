#include "desktop/RecordListModel.h"

#include "nuvo/ExplorerObject.h"
#include "nuvo/ListQuery.h"

#include <algorithm>

namespace kordel::host::desktop {

RecordListModel::RecordListModel(std::shared_ptr<nuvo::ExplorerObject> explorer, QObject *parent)
    : QAbstractTableModel(parent), explorer_(std::move(explorer)) {}

int RecordListModel::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : int(explorer_->listedIds().size());
}

int RecordListModel::columnCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : explorer_->listQuery().columnCount();
}

const QStringList &RecordListModel::rowTexts(int row) const {
  const int block = row / kBlockRows;
  auto found = blocks_.find(block);
  if (found == blocks_.end()) {
    const auto &listed = explorer_->listedIds();
    const std::size_t first = std::size_t(block) * kBlockRows;
    const std::size_t last = std::min(listed.size(), first + kBlockRows);
    const std::vector<int> ids(listed.begin() + std::ptrdiff_t(first), listed.begin() + std::ptrdiff_t(last));
    found = blocks_.emplace(block, explorer_->listQuery().texts(ids)).first;
    blockUse_.push_front(block);
    if (blockUse_.size() > kKeptBlocks) {
      blocks_.erase(blockUse_.back());
      blockUse_.pop_back();
    }
  } else if (blockUse_.front() != block) {
    blockUse_.remove(block);
    blockUse_.push_front(block);
  }
  return found->second[std::size_t(row % kBlockRows)];
}

QVariant RecordListModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount())
    return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
    try {
      return rowTexts(index.row()).value(index.column());
    } catch (...) {
      // A database that stopped answering shows empty cells, not a crash
      // inside the view's painting.
      return {};
    }
  }
  if (role == Qt::TextAlignmentRole && explorer_->listQuery().numericColumn(index.column()))
    return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
  return {};
}

QVariant RecordListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole)
    return {};
  if (orientation == Qt::Vertical)
    return section + 1;
  return explorer_->listQuery().columnTitle(section);
}

void RecordListModel::sort(int column, Qt::SortOrder order) {
  sortColumn_ = column;
  descending_ = order == Qt::DescendingOrder;
  rearrange();
}

void RecordListModel::search(const QString &text) {
  search_ = text;
  rearrange();
}

void RecordListModel::rearrange() {
  beginResetModel();
  blocks_.clear();
  blockUse_.clear();
  try {
    explorer_->arrange(search_, sortColumn_, descending_);
  } catch (...) {
    endResetModel();
    throw;
  }
  endResetModel();
}

void RecordListModel::reload() {
  beginResetModel();
  blocks_.clear();
  blockUse_.clear();
  endResetModel();
}

int RecordListModel::recordId(int row) const { return explorer_->listedIds().at(std::size_t(row)); }

int RecordListModel::rowOf(int id) const {
  const auto &listed = explorer_->listedIds();
  const auto found = std::find(listed.begin(), listed.end(), id);
  return found == listed.end() ? -1 : int(found - listed.begin());
}

} // namespace kordel::host::desktop
