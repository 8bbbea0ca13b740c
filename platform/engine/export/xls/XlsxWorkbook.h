#pragma once

#include "engine/export/xls/SheetContent.h"
#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine::xls {

// Part of the workbook writer's module (libkordel_xlsx), which the engine
// loads when it first writes a workbook.
//
// Writes the sheet as an Office Open XML workbook (.xlsx) to the file,
// row by row, holding one row at a time: rows beyond the format's
// 1,048,576 go on to further worksheets ("Report (2)", ...), each with the
// heading repeated and kept in view. The workbook's title is the
// document's. The file is written in full or the call raises 70 with the
// reason; a text longer than a cell holds raises 5.
void writeXlsxWorkbook(const PageDocument &document, const SheetContent &sheet, const QString &file,
                       const QString &source);

// How the engine finds it: the module, the entry that calls it, and the
// entry's type.
inline constexpr const char *kXlsxModule = "libkordel_xlsx.so";
inline constexpr const char *kXlsxEntry = "kordel_write_xlsx_workbook";
using XlsxEntry = void (*)(const PageDocument &, const SheetContent &, const QString &, const QString &);

} // namespace kordel::engine::xls
