#pragma once

#include "engine/export/xls/SheetContent.h"
#include "engine/render/PageDocument.h"

#include <QByteArray>

namespace kordel::engine::xls {

// The BIFF8 workbook stream with one worksheet "Report" holding the
// sheet's rows: text cells (never formulas), numbers with their number
// formats and truth values, rows with their heights and outline levels,
// and the frozen heading. Raises 5 for a sheet beyond the format's 65,536
// rows or 256 columns (before anything is written), for a text longer
// than a cell holds and for more formats than a workbook has.
QByteArray workbookStream(const PageDocument &document, const SheetContent &sheet);

} // namespace kordel::engine::xls
