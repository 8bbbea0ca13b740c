#pragma once

#include <QStringView>

#include <cstdint>
#include <memory>
#include <vector>

namespace kordel::addin {

// The texts of one column, one cell per row, packed in large blocks of
// UTF-16 units instead of one allocation per cell. A cell that is written
// again reuses its place when the new text fits, else moves to the end;
// the blocks are repacked once more than half their units are left behind.
class TextCells {
public:
  // Adds an empty cell at the end.
  void append() { cells_.push_back({}); }
  QStringView at(int row) const {
    const Cell &cell = cells_[row];
    return QStringView(blocks_.empty() ? nullptr : blocks_[cell.block].data() + cell.start, cell.length);
  }
  void set(int row, QStringView text);

private:
  struct Cell {
    std::uint32_t block = 0;
    std::uint32_t start = 0;
    std::uint32_t length = 0;
  };

  // Copies a text to the end of the last block, or to a new block when it
  // does not fit there, and gives its place.
  Cell store(QStringView text);
  void repack();

  std::vector<std::vector<char16_t>> blocks_; // each keeps its first capacity: cells point into it
  std::vector<Cell> cells_;
  std::size_t usedUnits_ = 0;
  std::size_t unusedUnits_ = 0;
};

} // namespace kordel::addin
