#pragma once

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <memory>

namespace kordel::engine::pdf {

// Owning pointers for the C objects of cairo, HarfBuzz and fontconfig:
// each drops its reference (or frees its object) when it goes, also when an
// error unwinds the stack.
template <auto Release> struct Releaser {
  template <typename T> void operator()(T *object) const { Release(object); }
};

using CairoSurfacePtr = std::unique_ptr<cairo_surface_t, Releaser<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, Releaser<cairo_destroy>>;
using CairoFontFacePtr = std::unique_ptr<cairo_font_face_t, Releaser<cairo_font_face_destroy>>;
using CairoScaledFontPtr = std::unique_ptr<cairo_scaled_font_t, Releaser<cairo_scaled_font_destroy>>;
using CairoFontOptionsPtr = std::unique_ptr<cairo_font_options_t, Releaser<cairo_font_options_destroy>>;
using HbFontPtr = std::unique_ptr<hb_font_t, Releaser<hb_font_destroy>>;
using HbBufferPtr = std::unique_ptr<hb_buffer_t, Releaser<hb_buffer_destroy>>;
using FcPatternPtr = std::unique_ptr<FcPattern, Releaser<FcPatternDestroy>>;
using FcFontSetPtr = std::unique_ptr<FcFontSet, Releaser<FcFontSetDestroy>>;

} // namespace kordel::engine::pdf
