#include "data/RowBufferText.h"

#include "core/Error.h"
#include "core/Latin1Text.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kordel::addin {

namespace {

// Blocks start small, for the many short-lived buffers of a few rows, and
// double up to a size that keeps the cost of a new block low.
constexpr std::size_t kFirstBlockBytes = 512;
constexpr std::size_t kLargestBlockBytes = std::size_t(2) << 20;
// Repacking is not worth it for less.
constexpr std::size_t kRepackFloor = std::size_t(128) << 10;

// Writes the text into its place in the cell's encoding.
void encode(QStringView text, bool wide, char *into) {
  if (wide) {
    std::memcpy(into, text.utf16(), std::size_t(text.size()) * 2);
    return;
  }
  writeLatin1(text, into);
}

} // namespace

QAnyStringView TextCells::at(int row) const {
  const Cell &cell = cells_[std::size_t(row)];
  if (cell.length == 0)
    return QStringView();
  const char *data = blocks_[cell.block].data() + cell.start;
  if (cell.wide)
    return QStringView(reinterpret_cast<const char16_t *>(data), qsizetype(cell.length));
  return QLatin1StringView(data, qsizetype(cell.length));
}

void TextCells::set(int row, QStringView text) {
  if (std::size_t(text.size()) > std::numeric_limits<std::int32_t>::max())
    raiseError(ErrorNumber::OutOfStringSpace, QStringLiteral("RowBuffer"));
  Cell &cell = cells_[std::size_t(row)];
  const bool wide = !fitsLatin1(text);
  const std::size_t bytes = std::size_t(text.size()) << int(wide);
  // A wide text needs an even offset to be read in place.
  if (bytes <= cell.bytes() && (!wide || cell.start % 2 == 0) && bytes > 0) {
    unusedBytes_ += cell.bytes() - bytes;
    cell.length = std::uint32_t(text.size());
    cell.wide = wide;
    encode(text, wide, blocks_[cell.block].data() + cell.start);
  } else {
    unusedBytes_ += cell.bytes();
    cell = text.isEmpty() ? Cell{} : place(bytes, wide);
    cell.length = std::uint32_t(text.size());
    if (bytes > 0)
      encode(text, wide, blocks_[cell.block].data() + cell.start);
  }
  if (unusedBytes_ > kRepackFloor && unusedBytes_ * 2 > usedBytes_)
    repack();
}

TextCells::Cell TextCells::place(std::size_t bytes, bool wide) {
  const std::size_t pad = wide && !blocks_.empty() ? blocks_.back().size() % 2 : 0;
  if (blocks_.empty() || blocks_.back().size() + pad + bytes > blocks_.back().capacity()) {
    const std::size_t grown = blocks_.empty() ? kFirstBlockBytes : blocks_.back().capacity() * 2;
    std::vector<char> block;
    block.reserve(std::max(bytes, std::min(grown, kLargestBlockBytes)));
    blocks_.push_back(std::move(block));
    return place(bytes, wide);
  }
  std::vector<char> &block = blocks_.back();
  Cell cell;
  cell.block = std::uint32_t(blocks_.size() - 1);
  cell.start = std::uint32_t(block.size() + pad);
  cell.wide = wide;
  // Within the capacity reserved: the block does not move.
  block.resize(block.size() + pad + bytes);
  usedBytes_ += bytes;
  return cell;
}

void TextCells::repack() {
  std::vector<std::vector<char>> old;
  old.swap(blocks_);
  usedBytes_ = 0;
  unusedBytes_ = 0;
  for (Cell &cell : cells_) {
    if (cell.length == 0) {
      cell = Cell{};
      continue;
    }
    const std::size_t bytes = cell.bytes();
    const char *from = old[cell.block].data() + cell.start;
    const std::uint32_t length = cell.length;
    cell = place(bytes, cell.wide);
    cell.length = length;
    std::memcpy(blocks_[cell.block].data() + cell.start, from, bytes);
  }
}

} // namespace kordel::addin
