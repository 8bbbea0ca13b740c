#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace kordel::host::cli {

// A report document with the layouts stored in it as its pages' layout
// resources, in the published form of the add-in's documents: in the
// top-level section "resources", one "property" element per page, named by
// the page's guid, typed bin.base64 and holding the layout's bytes. A
// resource the page had already is replaced, as the add-in replaces it.
// Every page of the document (a section under "pages") needs a layout, and
// every layout a page. Raises 321 for bytes that are not a report document
// and 5, naming the page, for a page without a layout or a layout without a
// page; the document given stays as it was.
QByteArray withPageLayouts(const QByteArray &document, const QHash<QString, QByteArray> &layouts);

} // namespace kordel::host::cli
