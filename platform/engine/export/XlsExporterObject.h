#pragma once

#include "engine/export/XlsExporter.h"

#include "core/Object.h"

namespace kordel::engine {

// A workbook exporter for scripts and late-bound callers, of the BIFF8
// format (.xls) or the Office Open XML one (.xlsx). Members: FileName
// (read and write), Layout (read and write: "Table", the default, or
// "Pages" for the printed look) and Export(pages), which writes the
// engine's Pages to FileName as a workbook.
class XlsExporterObject : public Object {
public:
  enum class Format { Xls, Xlsx };
  explicit XlsExporterObject(Format format = Format::Xls) : format_(format) {}

  QString typeName() const override {
    return format_ == Format::Xls ? QStringLiteral("XlsExport") : QStringLiteral("XlsxExport");
  }

  SpreadsheetLayout layout = SpreadsheetLayout::Table;
  QString fileName;

protected:
  const MemberTable &memberTable() const override;

private:
  void exportPages(const Variant &pages) const;

  Format format_;
};

} // namespace kordel::engine
