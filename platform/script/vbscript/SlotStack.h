#pragma once

#include "core/Variant.h"

#include <memory>
#include <vector>

namespace kordel::script::vb {

// The storage of procedure frames: blocks of variables that never move, so
// a pointer to a caller's local (a ByRef argument) stays valid for the
// whole call. Frames are taken and given back in stack order; after the
// first calls no frame allocates.
class SlotStack {
public:
  struct Mark {
    std::size_t block = 0;
    std::size_t used = 0;
  };

  SlotStack();

  Mark mark() const { return {current_, used_}; }
  // count Empty variables and as many references, each referring to its
  // own variable. The references may be redirected (ByRef parameters).
  Variant **push(int count);
  // Empties the variables taken since the mark and gives them back.
  void pop(Mark mark);

private:
  struct Chunk {
    std::unique_ptr<Variant[]> values;
    std::unique_ptr<Variant *[]> refs;
    std::size_t size = 0;
    std::size_t usedWhenLeft = 0; // how far it was taken when a frame moved on to the next chunk
  };

  std::vector<Chunk> chunks_;
  std::size_t current_ = 0;
  std::size_t used_ = 0;
};

} // namespace kordel::script::vb
