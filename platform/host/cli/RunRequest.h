#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace kordel::host::cli {

class Arguments;

// What a run does with the report's pages.
enum class RunMode { Export, Print, Preview };

// The records a run prints, as the command line names them.
struct RangeRequest {
  // None: no range given; the print dialog offers the rows of a list
  // window of the report's class.
  enum Kind { None, Filter, Ids, All, Explorer };
  Kind kind = None;
  // The filter's name or local name for Filter; the class of the list
  // window for Explorer.
  QString name;
  // The ids of Ids, and the selection of Explorer.
  std::vector<int> ids;
  // Whether Explorer was given a selection; without one it prints all the
  // window lists.
  bool selected = false;
};

// --subfilter PAGE=FILTER: a saved filter that narrows a sub page.
struct SubFilterRequest {
  QString page; // the sub page's name or guid
  QString filter;
};

// What one export, print or preview command asks for, checked for its
// form; nothing here reads the database.
struct RunRequest {
  RunMode mode = RunMode::Export;
  QString report;
  QString outFile;
  RangeRequest range;
  QList<SubFilterRequest> subFilters;
  QString language;
  QString database;
  QString printer;
  int copies = 0; // 0 leaves the number to the report and printer
  // A print that opens the print dialog: --dialog, or no range given.
  bool dialog = false;
  // --xls-layout: "table" or "pages" for a workbook; empty for the default.
  QString xlsLayout;

  // The request of the command's words, read by the shared parser. Raises
  // 5 for a missing --report (or --out for an export), no range (but for a
  // print, which then asks in the dialog) or more than one, --select without --explorer, and values of the wrong form.
  static RunRequest read(RunMode mode, const Arguments &arguments);
};

} // namespace kordel::host::cli
