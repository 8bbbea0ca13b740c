#pragma once

#include <QAnyStringView>
#include <QStringView>

#include <cstdint>
#include <vector>

namespace kordel::addin {

// The texts of one column, one cell per row, packed in large blocks of
// bytes instead of one allocation per cell: a text that Latin-1 can hold
// takes a byte a character, any other two (UTF-16, kept at an even offset).
// A cell that is written again reuses its place when the new text fits,
// else moves to the end; the blocks are repacked once more than half their
// bytes are left behind.
class TextCells {
public:
  // Adds an empty cell at the end.
  void append() { cells_.push_back({}); }
  void reserve(std::size_t cells) { cells_.reserve(cells); }
  // Latin-1 or UTF-16; valid until the cell or a later one is written.
  QAnyStringView at(int row) const;
  void set(int row, QStringView text);

private:
  struct Cell {
    std::uint32_t block = 0;
    std::uint32_t start = 0;       // in bytes
    std::uint32_t length : 31 = 0; // in characters of its encoding
    std::uint32_t wide : 1 = 0;
    std::size_t bytes() const { return std::size_t(length) << wide; }
  };

  // Makes room for a text of this many bytes at the end of the last block,
  // or in a new block when it does not fit there, and gives its place.
  Cell place(std::size_t bytes, bool wide);
  void repack();

  std::vector<std::vector<char>> blocks_; // each keeps its first capacity: cells point into it
  std::vector<Cell> cells_;
  std::size_t usedBytes_ = 0;
  std::size_t unusedBytes_ = 0;
};

} // namespace kordel::addin
