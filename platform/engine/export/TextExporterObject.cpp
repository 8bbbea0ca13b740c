#include "engine/export/TextExporterObject.h"

#include "engine/render/PagesObject.h"

namespace kordel::engine {

const MemberTable &TextExporterObject::memberTable() const {
  using T = TextExporterObject;
  static const MemberTable table{{
      property<T>(
          "FileName", [](T &t) { return t.fileName; }, [](T &t, const Variant &v) { t.fileName = v.toString(); }),
      property<T>(
          "TextDelimiter", [](T &t) { return t.exporter.textDelimiter(); },
          [](T &t, const Variant &v) { t.exporter.setTextDelimiter(v.toString()); }),
      property<T>(
          "PageDelimiter", [](T &t) { return t.exporter.pageDelimiter(); },
          [](T &t, const Variant &v) { t.exporter.setPageDelimiter(v.toString()); }),
      property<T>(
          "SuppressEmptyLines", [](T &t) { return t.exporter.suppressEmptyLines(); },
          [](T &t, const Variant &v) { t.exporter.setSuppressEmptyLines(v.toBool()); }),
      method<T>("Export",
                [](T &t, Args &a) {
                  expectArgs(a, 1, 1);
                  t.exporter.exportDocument(PagesObject::documentOf(a[0], QStringLiteral("TextExport.Export")),
                                            t.fileName);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
