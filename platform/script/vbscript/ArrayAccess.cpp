#include "script/vbscript/ArrayAccess.h"

#include "core/Error.h"

namespace kordel::script::vb {

int subscriptCount(const std::vector<ExprPtr> &args) {
  if (args.size() > std::size_t(kMaxDimensions))
    raiseError(ErrorNumber::SubscriptOutOfRange);
  for (const ExprPtr &arg : args) {
    if (!arg)
      raiseError(ErrorNumber::SubscriptOutOfRange);
  }
  return int(args.size());
}

std::size_t elementOffset(const VariantArray &array, const std::int32_t *subscripts, int count) {
  const std::vector<VariantArray::Bounds> &bounds = array.bounds();
  if (std::size_t(count) != bounds.size())
    raiseError(ErrorNumber::SubscriptOutOfRange);
  std::size_t offset = 0;
  std::size_t stride = 1;
  for (int d = 0; d < count; ++d) {
    const VariantArray::Bounds &b = bounds[std::size_t(d)];
    if (subscripts[d] < b.lower || subscripts[d] > b.upper)
      raiseError(ErrorNumber::SubscriptOutOfRange);
    offset += std::size_t(subscripts[d] - b.lower) * stride;
    stride *= std::size_t(b.size());
  }
  return offset;
}

} // namespace kordel::script::vb
