#include "engine/export/HtmlExporterObject.h"

#include "engine/render/PagesObject.h"

#include <QDir>
#include <QFileInfo>

namespace kordel::engine {

const MemberTable &HtmlExporterObject::memberTable() const {
  using H = HtmlExporterObject;
  static const MemberTable table{{
      property<H>(
          "FileNamePrefix", [](H &h) { return h.fileNamePrefix; },
          [](H &h, const Variant &v) { h.fileNamePrefix = v.toString(); }),
      property<H>(
          "HtmlOutputPath", [](H &h) { return h.outputPath; },
          [](H &h, const Variant &v) { h.outputPath = v.toString(); }),
      property<H>(
          "Title", [](H &h) { return h.exporter.title(); },
          [](H &h, const Variant &v) { h.exporter.setTitle(v.toString()); }),
      property<H>(
          "FileName",
          [](H &h) {
            return h.outputPath.isEmpty() ? h.fileNamePrefix : QDir(h.outputPath).filePath(h.fileNamePrefix);
          },
          [](H &h, const Variant &v) {
            const QFileInfo file(v.toString());
            h.outputPath = file.path();
            h.fileNamePrefix = file.fileName();
          }),
      method<H>("Export",
                [](H &h, Args &a) {
                  expectArgs(a, 1, 1);
                  h.exporter.exportDocument(PagesObject::documentOf(a[0], QStringLiteral("HtmlExport.Export")),
                                            h.outputPath, h.fileNamePrefix);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::engine
