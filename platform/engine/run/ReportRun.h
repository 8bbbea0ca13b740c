#pragma once

#include "engine/run/Band.h"

#include "core/Object.h"

#include <QHash>
#include <QStringList>

#include <map>
#include <set>
#include <memory>
#include <vector>

namespace kordel::script {
class RunBudget;
class ScriptEngine;
} // namespace kordel::script

namespace kordel::engine {

class Field;
class LayoutReport;
class PageDocument;
class Paginator;
class Section;
class SectionRenderer;
class SubReport;
class UnboundField;

// One run of a layout over the rows its FetchData handlers give.
//
// Design note. The run owns the flow; the report's event sink (the add-in's
// run-time object) and the layout's scripts only answer events. Order:
// Initialize, ReportStart, DataInitialize (a sub report's run raises
// DataInitialize before ReportStart, so that it knows its rows when it
// starts), then the first row's FetchData, the report header (so that what
// the header shows, sub reports among it, has the first row), then rows:
// the run fetches one row ahead
// (FetchData with eof, True unless a handler says otherwise) and keeps each
// row as a snapshot of the unbound fields, so that it knows before
// formatting a row whether the next one starts a new group. Per row: the
// group headers whose key changed (or all at the first row), the detail,
// then the group footers, innermost first, whose key changes at the next row
// (or all at the last). Then the report footer, ReportEnd and Terminate
// (which a run for printing or a preview leaves to the end of those). A
// group header with RepeatStyle OnPage prints again below the page header
// of each page its group goes on to. Each
// showing of a section raises <Section>_Format, is formatted into a band
// unless it is hidden, raises <Section>_BeforePrint, is placed, and raises
// <Section>_AfterPrint; a section's own script answers the same as OnFormat,
// OnBeforePrint and OnAfterPrint. A top-level run places bands on pages
// (with PageStart, the page header and footer, PageEnd); a sub report's run
// hands its bands to the section that holds it and has no pages of its own.
//
// Scripts. The event sink may set the script language at ReportStart, so
// the layout's scripts are compiled only after the sink has answered
// ReportStart; events before that reach the scripts then, in their order.
// Every script of the run, sub reports' included, runs with layout rights
// and spends one budget (script/RunBudget.h). Script errors and failed
// field expressions do not stop a run: they are kept in the report's run
// errors with their place (script, event, row, line) and the run goes on,
// until the budget is spent, which stops the run with its error. The host
// hears of a top-level run's problems at its end (RunSettings).
//
// The run holds its report from construction to destruction
// (LayoutReport::holdForRun), so that nothing changes the sections and
// scripts it walks under its feet.
class ReportRun {
public:
  // A sub report's run shares its parent's budget; a top-level run makes
  // its own.
  ReportRun(LayoutReport &report, PageDocument &document, std::shared_ptr<script::RunBudget> budget = nullptr);
  ~ReportRun();

  // The whole run onto pages of the document. Without terminateAtEnd the
  // run stops short of ActiveReport_Terminate, for a caller that goes on
  // with the pages (printing them, a preview) and raises it with
  // raiseEvent when it is done.
  void run(bool terminateAtEnd = true);
  // A sub report's run: its bands in order, without page header and footer.
  std::vector<Band> runEmbedded();
  // Raises an event of what follows the run, such as the printing of its
  // pages, to the sink and the report's script, as the run raises its own.
  // A run that has not run compiles the scripts first.
  void raiseEvent(const QString &event, Args &args);

private:
  struct Row {
    int number = 0;                 // from 1, in the order fetched
    std::vector<Variant> fields;    // the unbound fields' values
    std::vector<Variant> atFetch;   // values of fields evaluated when the row was fetched
    std::vector<QString> groupKeys; // per group header, outermost first
  };
  struct Summary {
    double sum = 0;
    int count = 0;
  };

  struct SubRun {
    std::shared_ptr<LayoutReport> report; // the report the run was made for
    std::unique_ptr<ReportRun> run;
  };

  void prepare();
  void compileScripts();
  void compileLayoutScripts();
  std::unique_ptr<script::ScriptEngine> layoutScriptEngine();
  void callScript(const QString &event, Args &args);
  void raise(const QString &event, Args &args);
  void raise(const QString &event);
  void sectionEvent(Section &section, const QString &event);
  bool fetch(Row &row);
  void restore(const Row &row);
  QString groupKey(const Section &header);
  // A "=" expression; place names the field or section it belongs to.
  Variant evaluate(const QString &expression, const QString &place);
  // The unbound field a DataField names, remembered by its exact spelling
  // so that rows do not look names up again; nullptr when there is none.
  std::shared_ptr<UnboundField> boundField(const QString &dataField);
  Variant fieldValue(const Field &field);
  void accumulate();
  void resetSummaries(const QString &groupName);
  std::vector<Band> subReportBands(SubReport &control, Twips width);
  // Formats a showing of a section; nothing when it is hidden.
  // Formats a section into a band. A band placed in the body opens its
  // page, if it has to, before its BeforePrint; page headers and footers
  // are formatted by the paginator itself.
  // A repeat is a group header printed again at the top of a page.
  std::optional<Band> format(Section &section, bool opensItsPage = false, bool repeat = false);
  void printSection(Section *section);
  // What opens each page: the page header, then the headers of the groups
  // that go on from the page before and repeat on each page.
  std::optional<Band> pageTop(Section *pageHeader);
  // Keeps the error in flight with its place and the row; when the script
  // budget is spent, raises the error that stops the run.
  void recordError(const QString &where);
  void flow(bool paginated);
  void reportProblems() const;

  LayoutReport &report_;
  PageDocument &document_;
  std::shared_ptr<script::RunBudget> budget_;
  std::unique_ptr<script::ScriptEngine> reportScript_;
  bool scriptsCompiled_ = false;
  std::vector<std::pair<QString, Args>> heldForScripts_; // events raised before the scripts were compiled
  std::map<const Section *, std::unique_ptr<script::ScriptEngine>> sectionScripts_;
  std::unique_ptr<SectionRenderer> renderer_;
  std::unique_ptr<Paginator> paginator_;
  std::vector<Band> *collected_ = nullptr; // the bands of an embedded run
  std::vector<Section *> groupHeaders_;    // outermost first
  std::vector<Section *> groupFooters_;    // paired by index with the headers
  std::vector<bool> groupOpen_;            // per header: printed, and its footer not yet
  std::vector<const Field *> fetchTimeFields_;
  std::map<const Field *, Summary> summaries_;
  std::map<const SubReport *, SubRun> subRuns_;
  QHash<QString, std::shared_ptr<UnboundField>> boundFields_;
  const Row *currentRow_ = nullptr;
  int rowNumber_ = 0; // of the row being fetched or formatted, from 1
  int fetched_ = 0;   // rows fetched so far
  // Where problems are kept: the top-level report, for a sub report's run
  // too, with the sub report's name before each.
  LayoutReport *problemsTo_;
  // The run of the report a sub report's run stands in; nullptr at the top.
  const ReportRun *parent_ = nullptr;
  std::set<const SubReport *> cyclicSubReports_; // said to be left out
  QString problemPrefix_;
  bool prepared_ = false;
  bool terminateAtEnd_ = true;
};

} // namespace kordel::engine
