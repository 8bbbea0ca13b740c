#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine {

// Writes the pages of a document to a spreadsheet workbook in the BIFF8
// format (the .xls of the 97 to 2003 programs): one worksheet on which the
// texts of all pages stand in rows and columns found from their places on
// the pages. Texts that plainly show a number ("42", "-3.5", "1,234.50")
// become numbers; every other text stays text, even one that starts like a
// formula. Lines, shapes and images are left out. The file is written
// beside the target under another name and takes the target's name only
// when complete, so a failure leaves any earlier file as it was and no
// partial one.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written, 5 for a document without pages and for pages that do
// not fit one worksheet (more than 65,536 rows or 256 columns, a text of
// more than 32,767 characters).
class XlsExporter {
public:
  void exportDocument(const PageDocument &document, const QString &path) const;
};

} // namespace kordel::engine
