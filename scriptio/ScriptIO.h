#pragma once

#include "core/Object.h"

#include <QString>

#include <memory>

namespace kordel {
class XmlDocument;
namespace test {
class ScriptIOTest;
}
} // namespace kordel

namespace kordel::addin {

class Page;
class Report;
class ScriptTextFile;

// Takes the scripts of a report's layouts out into one text file that is a
// valid script in the report's language, and puts them back. Everything
// that is not script stands on comment lines carrying one tag each:
//
//   '/// <report name="…" database="…" language="VBScript">
//   '/// <page guid="…" name="…">
//   '/// <section name="ActiveReport Document">     (the layout's own script)
//   …script lines…
//   '/// </section>
//   '/// <section name="Detail">
//   …
//   '/// </page>
//   '/// </report>
//
// JScript files use "/// " as prefix. Both walks take the pages from
// Report::GetPageByIndex, which finds none: an export writes the header
// and reports the failure, and an import parses the whole file, then
// reports the same failure and leaves every layout as it was.
//
// A copy of the parsed file can be kept for inspection: the user setting
// "DumpImportedScripts" (under the add-in's settings root) set to "1"
// writes it to dump-scripting.xml in the "orvex" folder of the user's
// cache folder on every import.
class ScriptIO {
public:
  void SetReport(const std::shared_ptr<addin::Report> &report) { report_ = report; }
  void SetReportName(const QString &name) { reportName_ = name; }

  // Asks for a file and writes the scripts to it.
  void Export();
  // Asks for a file and applies its scripts; true if they were applied.
  bool Import();

private:
  friend class kordel::test::ScriptIOTest;

  bool Convert(ScriptTextFile &stream);
  bool ConvertPage(const QString &line, ScriptTextFile &stream);
  bool ConvertReport(ScriptTextFile &stream);
  bool ConvertSection(const QString &guid, const QString &line, ScriptTextFile &stream);
  bool ExportPageScript(const std::shared_ptr<addin::Page> &page, ScriptTextFile &stream);
  bool ExportReportScript(const QString &path);
  bool ImportPageScript(const std::shared_ptr<addin::Page> &page);
  bool ImportReportScript();

  // Reads the next line trimmed of blanks; a line that begins with the
  // marker comes without every occurrence of it, trimmed again, and
  // gives true.
  bool readTag(ScriptTextFile &stream, QString &line) const;
  void dumpDocument() const;
  QString filter() const;

  std::shared_ptr<addin::Report> report_;
  QString reportName_;
  QString marker_;
  QString language_;
  std::shared_ptr<XmlDocument> document_;
};

} // namespace kordel::addin
