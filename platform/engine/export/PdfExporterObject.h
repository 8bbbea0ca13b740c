#pragma once

#include "engine/export/PdfExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The PDF exporter for scripts and late-bound callers. Members: FileName,
// Title (read and write) and Export(pages), which writes the engine's
// Pages to FileName.
class PdfExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("PdfExport"); }

  QString fileName;
  PdfExporter exporter;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
