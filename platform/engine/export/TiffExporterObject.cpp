#include "engine/export/TiffExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

const MemberTable &TiffExporterObject::memberTable() const {
  using T = TiffExporterObject;
  static const MemberTable table{{
      property<T>(
          "FileName", [](T &t) { return t.fileName; }, [](T &t, const Variant &v) { t.fileName = v.toString(); }),
      property<T>(
          "Resolution", [](T &t) { return t.exporter.resolution(); },
          [](T &t, const Variant &v) { t.exporter.setResolution(v.toLong()); }),
      property<T>(
          "Monochrome", [](T &t) { return t.exporter.monochrome(); },
          [](T &t, const Variant &v) { t.exporter.setMonochrome(v.toBool()); }),
      method<T>("Export",
                [](T &t, Args &a) {
                  expectArgs(a, 1, 1);
                  t.exporter.exportDocument(PagesObject::documentOf(a[0], QStringLiteral("TiffExport.Export")),
                                            t.fileName);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
