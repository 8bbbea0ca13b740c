#pragma once

#include "engine/export/TextExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// The text exporter for scripts and late-bound callers. Members:
// FileName, TextDelimiter, PageDelimiter, SuppressEmptyLines (read and
// write; see TextExporter for their meaning) and Export(pages), which writes
// the engine's Pages to FileName.
class TextExporterObject : public Object {
public:
  QString typeName() const override { return QStringLiteral("TextExport"); }

  TextExporter exporter;
  QString fileName;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::engine
