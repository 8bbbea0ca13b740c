#pragma once

#include "engine/export/xls/SheetContent.h"
#include "engine/render/PageDocument.h"

#include <memory>

namespace kordel::engine::xls {

// The values a report's run printed, as a table on one worksheet, for
// users who work with the data rather than the printed look.
//
// Each showing of a band (a detail row, a group header or footer, a report
// header or footer, a sub report's band) is one row for each line of its
// layout: controls of a band that stand side by side share a row, however
// many lines a value wraps over. Columns come from the controls' left
// edges over the whole run, sub reports' included, so that a column holds
// one kind of value and a sub report's rows stand indented to the right of
// their parent's; a row's outline level is its depth in sub reports.
// Page headers and footers are left out but for the first page header (the
// title and the column heads), which stays in view at the top; group
// headers repeated on a new page are left out too. Values keep their type:
// numbers, amounts and dates are numbers with a format from their
// control's output format, truth values are truth values, and texts are
// whole, line breaks and all, wrapped within their column. Group headers
// are bold. Columns are as wide as their values (up to about sixty
// characters, beyond which texts wrap) and rows as high as their lines.
//
// Nothing when the pages carry no values, such as pages a script drew.
std::unique_ptr<SheetContent> reportTable(const PageDocument &document);

} // namespace kordel::engine::xls
