#pragma once

#include "engine/export/xls/SheetLayout.h"
#include "engine/render/PageDocument.h"

#include <QByteArray>

namespace kordel::engine::xls {

// The BIFF8 workbook stream with one worksheet holding the laid-out cells:
// texts that plainly show a number become number cells, all others text
// cells (never formulas). Raises 5 for a text longer than a cell holds or
// more formats than a workbook has.
QByteArray workbookStream(const PageDocument &document, const SheetLayout &sheet);

} // namespace kordel::engine::xls
