#pragma once

#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <memory>

namespace kordel::engine::text {

// Owning pointers for the C objects of HarfBuzz and fontconfig: each drops
// its reference (or frees its object) when it goes, also when an error
// unwinds the stack.
template <auto Release> struct Releaser {
  template <typename T> void operator()(T *object) const { Release(object); }
};

using HbFontPtr = std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>>;
using HbFacePtr = std::unique_ptr<hb_face_t, Releaser<hb_face_destroy>>;
using HbBlobPtr = std::unique_ptr<hb_blob_t, Releaser<hb_blob_destroy>>;
using HbBufferPtr = std::unique_ptr<hb_buffer_t, Releaser<hb_buffer_destroy>>;
using FcPatternPtr = std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>>;
using FcFontSetPtr = std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>>;

} // namespace kordel::engine::text
