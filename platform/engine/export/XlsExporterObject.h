#pragma once

#include "engine/export/XlsExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The workbook exporter for scripts and late-bound callers. Members:
// FileName (read and write) and Export(pages), which writes the engine's
// Pages to FileName as a workbook.
class XlsExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("XlsExport"); }

  XlsExporter exporter;
  QString fileName;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
