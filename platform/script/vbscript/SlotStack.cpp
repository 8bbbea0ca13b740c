#include "script/vbscript/SlotStack.h"

#include <algorithm>

namespace kordel::script::vb {

namespace {

constexpr std::size_t kChunkSize = 4096;

} // namespace

SlotStack::SlotStack() {
  chunks_.push_back(
      Chunk{std::make_unique<Variant[]>(kChunkSize), std::make_unique<Variant *[]>(kChunkSize), kChunkSize, 0});
}

Variant **SlotStack::push(int count) {
  const std::size_t n = std::size_t(count);
  if (used_ + n > chunks_[current_].size) {
    // Move on to the next chunk; earlier frames stay where they are.
    chunks_[current_].usedWhenLeft = used_;
    ++current_;
    if (current_ == chunks_.size() || chunks_[current_].size < n) {
      const std::size_t size = std::max(kChunkSize, n);
      Chunk chunk{std::make_unique<Variant[]>(size), std::make_unique<Variant *[]>(size), size, 0};
      if (current_ == chunks_.size())
        chunks_.push_back(std::move(chunk));
      else
        chunks_[current_] = std::move(chunk);
    }
    used_ = 0;
  }
  Chunk &chunk = chunks_[current_];
  Variant **refs = chunk.refs.get() + used_;
  Variant *values = chunk.values.get() + used_;
  for (std::size_t i = 0; i < n; ++i)
    refs[i] = values + i;
  used_ += n;
  return refs;
}

void SlotStack::pop(Mark mark) {
  // Empty the variables from the top down. A value dying here may run a
  // Class_Terminate, whose frame goes above the variables still taken.
  while (current_ > mark.block || used_ > mark.used) {
    const std::size_t floor = current_ == mark.block ? mark.used : 0;
    while (used_ > floor) {
      Variant &slot = chunks_[current_].values[used_ - 1];
      if (!slot.isEmpty()) {
        Variant dying = std::move(slot);
        slot = Variant();
      }
      --used_;
    }
    if (current_ > mark.block) {
      --current_;
      used_ = chunks_[current_].usedWhenLeft;
    }
  }
}

} // namespace kordel::script::vb
