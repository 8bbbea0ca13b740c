#pragma once

#include "engine/render/PageDocument.h"

#include <QByteArray>
#include <QString>

namespace kordel::engine {

// Writes the text of a document's pages as an RTF document that word
// processors open with the text in place. The paper has the first page's
// size; a page of another size starts a section of its own. The margins
// are the narrowest space that the text leaves at each edge of the pages.
// Each page's lines (in reading order, as the text exporter finds them)
// become paragraphs, set apart by the vertical space between them; the runs
// of one line are separated by tabs at tab stops where the runs stand, with
// their fonts and colours; East Asian and right-to-left text also names a
// font that has its characters (see RtfFonts). Each page after the first
// begins with a paragraph that breaks to a new page, so that a word
// processor lays out as many pages as the document has. The document's
// title is the file's title. Characters beyond ASCII are written as Unicode
// escapes with "?" for readers that lack them.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written (see checkExportTarget), 5 for a document without
// pages. A failure leaves any earlier file as it was and no partial one.
class RtfExporter {
public:
  // The RTF document, 7-bit ASCII.
  QByteArray rtf(const PageDocument &document) const;
  void exportDocument(const PageDocument &document, const QString &path) const;
};

} // namespace kordel::engine
