#include "engine/export/RtfExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

const MemberTable &RtfExporterObject::memberTable() const {
  using R = RtfExporterObject;
  static const MemberTable table{{
      property<R>(
          "FileName", [](R &r) { return r.fileName; }, [](R &r, const Variant &v) { r.fileName = v.toString(); }),
      method<R>("Export",
                [](R &r, Args &a) {
                  expectArgs(a, 1, 1);
                  RtfExporter().exportDocument(PagesObject::documentOf(a[0], QStringLiteral("RtfExport.Export")),
                                               r.fileName);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
