#pragma once

#include "core/Variant.h"
#include "script/vbscript/Ast.h"

namespace kordel::script::vb {

// The most subscripts an array access may have.
constexpr int kMaxDimensions = 16;

// The number of subscripts in an argument list; raises 9 beyond the limit
// and for a left-out subscript.
int subscriptCount(const std::vector<ExprPtr> &args);

// The storage position of an element: arrays keep the first subscript
// fastest, as VB does. Raises 9 for a wrong count or a subscript out of
// bounds.
std::size_t elementOffset(const VariantArray &array, const std::int32_t *subscripts, int count);

} // namespace kordel::script::vb
