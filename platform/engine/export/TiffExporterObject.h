#pragma once

#include "engine/export/TiffExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The TIFF exporter for scripts and late-bound callers. Members: FileName,
// Resolution (dots per inch, 100 to 600, 200 at first) and Monochrome
// (True at first: 1-bit Group 4 images; False: 8-bit grey), all read and
// write, and Export(pages), which writes the engine's Pages to FileName.
class TiffExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("TiffExport"); }

  QString fileName;
  TiffExporter exporter;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
