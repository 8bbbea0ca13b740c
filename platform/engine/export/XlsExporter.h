#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine {

// How a workbook lays out a report: as a table of the run's values (one row
// per band showing, typed cells, page furniture left out), or as the pages
// show their texts, page after page.
enum class SpreadsheetLayout { Table, Pages };

// "table" or "pages", in any case; raises 5 for another name.
SpreadsheetLayout spreadsheetLayoutNamed(const QString &name, const QString &source);

// Writes the pages of a document to a workbook in the BIFF8 format (the
// .xls of the 97 to 2003 programs), one worksheet "Report". As a table (see
// xls/ReportTable.h), which pages without a run's values (drawn by a
// script, or made for the printer or the preview alone) fall back to, or
// as the pages show their texts: the texts' left edges over all pages
// make the columns and each page's lines the rows, texts that plainly show
// a number ("42", "-3.5", "1,234.50") become numbers and every other text
// stays text, even one that starts like a formula. Lines, shapes and
// images are left out. The file is written beside the target under
// another name and takes the target's name only when complete, so a
// failure leaves any earlier file as it was and no partial one.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written, 5 for a document without pages and for a report that
// does not fit one worksheet of the format (more than 65,536 rows or 256
// columns, a text of more than 32,767 characters), said before anything is
// written.
class XlsExporter {
public:
  SpreadsheetLayout layout = SpreadsheetLayout::Table;

  void exportDocument(const PageDocument &document, const QString &path) const;
};

// The same for the Office Open XML workbook (.xlsx), written a row at a
// time whatever the report's size: rows beyond a worksheet's 1,048,576 go
// on to a further worksheet with the heading repeated.
class XlsxExporter {
public:
  SpreadsheetLayout layout = SpreadsheetLayout::Table;

  void exportDocument(const PageDocument &document, const QString &path) const;
};

} // namespace kordel::engine
