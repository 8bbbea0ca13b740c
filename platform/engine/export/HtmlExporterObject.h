#pragma once

#include "engine/export/HtmlExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The HTML exporter for scripts and late-bound callers. Members, all read
// and write: FileNamePrefix (the base name of the files), HtmlOutputPath
// (the folder they go to), Title, and FileName, which sets both from one
// file name; and Export(pages), which writes the engine's Pages.
class HtmlExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("HtmlExport"); }

  HtmlExporter exporter;
  QString fileNamePrefix;
  QString outputPath;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
