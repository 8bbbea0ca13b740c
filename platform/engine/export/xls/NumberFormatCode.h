#pragma once

#include "engine/render/Page.h"

#include <QString>

namespace kordel::engine::xls {

// How a value goes into a spreadsheet cell: as its printed text, or typed
// with a spreadsheet format code. An empty code is the General format for
// a number and the default date format for a date (its day, with the time
// when it has one).
struct CellFormatChoice {
  bool asText = false;
  QString code;
};

// The cell format for a value of the kind printed in a control's output
// format, a format of the Format function: named formats ("Standard",
// "Short Date", ...) and custom patterns ("#,##0.00", "yyyy-mm-dd hh:nn").
// Number patterns keep their sections and placeholders, with literal
// letters quoted; date patterns have their tokens turned into the
// spreadsheet's (n for minutes becomes m, c and ddddd the regional
// patterns). A value whose format only words can show ("Yes/No", "@")
// stays text; a number or date whose format has no spreadsheet counterpart
// (week numbers, quarters, days of the year) keeps its type with the
// default format of its kind, so that its value is not lost. A truth value
// is a truth value cell unless a format turns it into words.
CellFormatChoice cellFormatFor(ValueKind kind, const QString &outputFormat);

} // namespace kordel::engine::xls
