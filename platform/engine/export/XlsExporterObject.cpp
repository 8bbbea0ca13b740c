#include "engine/export/XlsExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

const MemberTable &XlsExporterObject::memberTable() const {
  using X = XlsExporterObject;
  static const MemberTable table{{
      property<X>(
          "FileName", [](X &x) { return x.fileName; }, [](X &x, const Variant &v) { x.fileName = v.toString(); }),
      method<X>("Export",
                [](X &x, Args &a) {
                  expectArgs(a, 1, 1);
                  x.exporter.exportDocument(PagesObject::documentOf(a[0], QStringLiteral("XlsExport.Export")),
                                            x.fileName);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
