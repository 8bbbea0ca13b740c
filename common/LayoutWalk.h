#pragma once

#include "core/Object.h"

#include <vector>

namespace kordel::addin {

// The sections of a layout object and the controls of a section, in their
// order, read through the layout engine's late-bound collections.
std::vector<ObjectRef> LayoutSections(const ObjectRef &layout);
std::vector<ObjectRef> SectionControls(const ObjectRef &section);

} // namespace kordel::addin
