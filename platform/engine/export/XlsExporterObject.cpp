#include "engine/export/XlsExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

void XlsExporterObject::exportPages(const Variant &pages) const {
  const QString place = typeName() + QStringLiteral(".Export");
  const PageDocument &document = PagesObject::documentOf(pages, place);
  if (format_ == Format::Xls) {
    XlsExporter exporter;
    exporter.layout = layout;
    exporter.exportDocument(document, fileName);
  } else {
    XlsxExporter exporter;
    exporter.layout = layout;
    exporter.exportDocument(document, fileName);
  }
}

const MemberTable &XlsExporterObject::memberTable() const {
  using X = XlsExporterObject;
  static const MemberTable table{{
      property<X>(
          "FileName", [](X &x) { return x.fileName; }, [](X &x, const Variant &v) { x.fileName = v.toString(); }),
      property<X>(
          "Layout",
          [](X &x) { return x.layout == SpreadsheetLayout::Table ? QStringLiteral("Table") : QStringLiteral("Pages"); },
          [](X &x, const Variant &v) {
            x.layout = spreadsheetLayoutNamed(v.toString(), x.typeName() + QStringLiteral(".Layout"));
          }),
      method<X>("Export",
                [](X &x, Args &a) {
                  expectArgs(a, 1, 1);
                  x.exportPages(a[0]);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
