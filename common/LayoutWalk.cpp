#include "common/LayoutWalk.h"

namespace kordel::addin {

namespace {

// The items of a collection indexed from 0.
std::vector<ObjectRef> items(const ObjectRef &collection) {
  const int count = collection->get(QStringLiteral("Count")).toLong();
  std::vector<ObjectRef> result;
  result.reserve(std::size_t(count));
  for (int i = 0; i < count; ++i)
    result.push_back(collection->invoke(QStringLiteral("Item"), {i}).toObject());
  return result;
}

} // namespace

std::vector<ObjectRef> LayoutSections(const ObjectRef &layout) {
  return items(layout->get(QStringLiteral("Sections")).toObject());
}

std::vector<ObjectRef> SectionControls(const ObjectRef &section) {
  return items(section->get(QStringLiteral("Controls")).toObject());
}

} // namespace kordel::addin
