#pragma once

#include "engine/export/xls/SheetContent.h"
#include "engine/render/PageDocument.h"

#include <memory>
#include <vector>

namespace kordel::engine::xls {

// Left edges closer than this to the first edge of a column belong to it.
constexpr Twips kColumnTolerance = 60;
// Text tops closer than this to the first top of a line belong to it.
constexpr Twips kRowTolerance = 30;

// The first values of the groups that sorted values fall into: a value
// starts a new group when it lies more than the tolerance beyond the
// current group's first value.
std::vector<Twips> groupStarts(std::vector<Twips> values, Twips tolerance);

// The texts of all pages laid out on one worksheet as the pages show them:
// the distinct left edges of the texts over all pages are the columns, the
// distinct lines of each page are rows, and the pages follow one another
// down the sheet. Texts that share a row and a column are joined with a
// space, left to right; texts of only white space are left out. Texts that
// plainly show a number ("42", "-3.5", "1,234.50") become numbers; every
// other text stays text, even one that starts like a formula.
std::unique_ptr<SheetContent> pageSheet(const PageDocument &document);

} // namespace kordel::engine::xls
