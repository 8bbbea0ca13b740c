#pragma once

#include "engine/export/RtfExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The RTF exporter for scripts and late-bound callers. Members: FileName
// (read and write) and Export(pages), which writes the engine's Pages to
// FileName.
class RtfExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("RtfExport"); }

  QString fileName;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
