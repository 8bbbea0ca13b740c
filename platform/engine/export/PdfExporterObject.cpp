#include "engine/export/PdfExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

const MemberTable &PdfExporterObject::memberTable() const {
  using P = PdfExporterObject;
  static const MemberTable table{{
      property<P>(
          "FileName", [](P &p) { return p.fileName; }, [](P &p, const Variant &v) { p.fileName = v.toString(); }),
      property<P>(
          "Title", [](P &p) { return p.exporter.title(); },
          [](P &p, const Variant &v) { p.exporter.setTitle(v.toString()); }),
      method<P>("Export",
                [](P &p, Args &a) {
                  expectArgs(a, 1, 1);
                  p.exporter.exportDocument(PagesObject::documentOf(a[0], QStringLiteral("PdfExport.Export")),
                                            p.fileName);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
