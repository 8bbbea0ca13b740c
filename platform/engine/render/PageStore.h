#pragma once

#include "engine/render/Page.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class QTemporaryFile;

namespace kordel::engine {

// The finished pages of a document, in the order added. The first pages
// stay in memory; once they hold more than the store's memory budget,
// further pages go to a temporary file in their compact binary form and
// are read back one at a time when asked for, so that a run of any number
// of pages takes no more memory than its budget and the page at hand. The
// file goes with the store. Reading shares one buffer and the file's
// position: one thread at a time.
class PageStore {
public:
  explicit PageStore(std::size_t memoryBudget = kDefaultMemoryBudget);
  ~PageStore();
  PageStore(PageStore &&) noexcept;
  PageStore &operator=(PageStore &&) noexcept;

  // Raises 7 when the temporary file cannot be made or written (a full
  // disk), with the system's reason; the store keeps the pages it had.
  void append(Page page);
  int count() const { return int(inMemory_.size() + spilled_.size()); }
  // A copy of the page; the index must be in range. Raises 7 when a page
  // cannot be read back.
  Page page(int index) const;
  void clear();

  // The memory the pages in memory hold, in bytes.
  std::size_t approximateBytes() const { return memoryBytes_; }

  static constexpr std::size_t kDefaultMemoryBudget = 1u << 19;

private:
  struct Spilled {
    std::int64_t offset = 0;
    std::int64_t size = 0;
  };

  std::size_t memoryBudget_;
  std::size_t memoryBytes_ = 0;
  std::vector<Page> inMemory_;
  std::vector<Spilled> spilled_;
  std::unique_ptr<QTemporaryFile> file_;
  std::int64_t fileSize_ = 0;
  mutable QByteArray bytes_; // the buffer pages pass through on their way to and from the file
};

} // namespace kordel::engine
