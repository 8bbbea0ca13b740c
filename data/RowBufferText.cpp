#include "data/RowBufferText.h"

#include "core/Error.h"

#include <algorithm>
#include <limits>

namespace kordel::addin {

namespace {

// Blocks start small, for the many short-lived buffers of a few rows, and
// double up to a size that keeps the cost of a new block low.
constexpr std::size_t kFirstBlockUnits = 256;
constexpr std::size_t kLargestBlockUnits = std::size_t(1) << 20;
// Repacking is not worth it for less.
constexpr std::size_t kRepackFloor = std::size_t(1) << 16;

} // namespace

void TextCells::set(int row, QStringView text) {
  if (std::size_t(text.size()) > std::numeric_limits<std::uint32_t>::max())
    raiseError(ErrorNumber::OutOfStringSpace, QStringLiteral("RowBuffer"));
  Cell &cell = cells_[row];
  const auto length = std::uint32_t(text.size());
  if (length <= cell.length) {
    std::copy(text.utf16(), text.utf16() + length, blocks_.empty() ? nullptr : blocks_[cell.block].data() + cell.start);
    unusedUnits_ += cell.length - length;
    cell.length = length;
  } else {
    unusedUnits_ += cell.length;
    cell = store(text);
  }
  if (unusedUnits_ > kRepackFloor && unusedUnits_ * 2 > usedUnits_)
    repack();
}

TextCells::Cell TextCells::store(QStringView text) {
  const std::size_t length = std::size_t(text.size());
  if (blocks_.empty() || blocks_.back().size() + length > blocks_.back().capacity()) {
    const std::size_t grown = blocks_.empty() ? kFirstBlockUnits : blocks_.back().capacity() * 2;
    std::vector<char16_t> block;
    block.reserve(std::max(length, std::min(grown, kLargestBlockUnits)));
    blocks_.push_back(std::move(block));
  }
  std::vector<char16_t> &block = blocks_.back();
  const Cell cell{std::uint32_t(blocks_.size() - 1), std::uint32_t(block.size()), std::uint32_t(length)};
  block.insert(block.end(), text.utf16(), text.utf16() + length);
  usedUnits_ += length;
  return cell;
}

void TextCells::repack() {
  std::vector<std::vector<char16_t>> old;
  old.swap(blocks_);
  usedUnits_ = 0;
  unusedUnits_ = 0;
  for (Cell &cell : cells_)
    cell = cell.length == 0 ? Cell{} : store(QStringView(old[cell.block].data() + cell.start, cell.length));
}

} // namespace kordel::addin
