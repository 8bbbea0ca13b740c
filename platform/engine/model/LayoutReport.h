#pragma once

#include "engine/preview/WindowPlace.h"
#include "engine/print/LayoutPrinter.h"

#include "core/Object.h"

#include <QHash>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace kordel::engine {

class PageDocument;
class PreviewWindow;
class ReportRun;
class Section;
class Sections;

// Margins and paper of a layout, in twips. Orientation 1 portrait, 2
// landscape. Late-bound: LeftMargin, TopMargin, RightMargin, BottomMargin,
// Orientation, PaperWidth, PaperHeight.
class PageSettings : public Object {
public:
  QString typeName() const override { return QStringLiteral("PageSettings"); }
  float leftMargin = 1440, topMargin = 1440, rightMargin = 1440, bottomMargin = 1440;
  int orientation = 1;
  // A4 unless set.
  float paperWidth = 11906, paperHeight = 16838;

protected:
  const MemberTable &memberTable() const override;
};

// One unbound field: a named value the run sets per row. Late-bound: Name,
// Value (default).
class UnboundField : public Object {
public:
  explicit UnboundField(QString name) : name(std::move(name)) {}
  QString typeName() const override { return QStringLiteral("Field"); }
  QString name;
  Variant value;

protected:
  const MemberTable &memberTable() const override;
};

// The unbound fields of a run, in the order added. Late-bound: Count,
// Add(name), Item(index from 0 or name) (default), For Each.
class UnboundFields : public Object {
public:
  QString typeName() const override { return QStringLiteral("Fields"); }
  int count() const { return int(fields_.size()); }
  // Adding a name that is there returns the field that is there.
  std::shared_ptr<UnboundField> add(const QString &name);
  // nullptr for a name no field has (compared without case).
  std::shared_ptr<UnboundField> find(const QString &name) const;
  std::shared_ptr<UnboundField> item(const Variant &indexOrName) const;
  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<std::shared_ptr<UnboundField>> fields_;
  QHash<QString, int> index_; // folded name -> position
};

// A layout: sections with controls, the report's script and its language,
// the band's width, paper and margins, and the unbound fields and named
// script objects of a run. Late-bound as the report object scripts see as
// "rpt": Sections, Fields, Printer, PageSettings, ScriptLanguage, Script,
// PrintWidth, Detail, documentName, Caption, ExportAhead, AddNamedItem(name, object),
// LoadLayout(bytes) and SaveLayout(path, format, out) (format/LayoutFormat.h);
// for printing and the preview PrintReport(prompt), Show(modal), Close,
// WindowState, Left, Top, Width and Height (LayoutReportOutput.cpp).
class LayoutReport : public Object {
public:
  static std::shared_ptr<LayoutReport> create();
  ~LayoutReport() override;

  QString typeName() const override { return QStringLiteral("ActiveReport"); }

  const std::shared_ptr<engine::Sections> &sections() const { return sections_; }
  const std::shared_ptr<UnboundFields> &fields() const { return fields_; }
  const std::shared_ptr<engine::PageSettings> &pageSettings() const { return pageSettings_; }
  const std::shared_ptr<LayoutPrinter> &printer() const { return printer_; }
  // The section of type Detail; nullptr for a layout without one.
  std::shared_ptr<Section> detail() const;

  QString scriptLanguage = QStringLiteral("VBScript");
  QString script;
  float printWidth = 9360; // 6.5 inches
  QString documentName;
  QString caption;
  // The export the pages of the next Run go to, when the caller knows it:
  // "PDF" has the run write the PDF while it makes the pages, on a second
  // thread (PdfPrewriter), so that the export after it is quick. Any other
  // value, the empty one included, has the run write nothing ahead.
  QString exportAhead;

  // Objects the report's scripts see by name, in the order given.
  void addNamedItem(const QString &name, const ObjectRef &object);
  const std::vector<std::pair<QString, ObjectRef>> &namedItems() const { return namedItems_; }

  // A control name of the form stem + number, from 1, that no control of
  // any section has.
  QString uniqueControlName(const QString &stem) const;
  // Whether any control of any section has the name.
  bool hasControlNamed(const QString &name) const;

  // A run holds the report from its start until the run object is gone
  // (the events of a printing or a preview after the run still reach its
  // scripts). While it is held, nothing may change what the run walks:
  // LoadLayout, Run, PrintReport, Show, Script, EventSink and adding or
  // removing sections and controls raise 5 naming what was refused, and
  // ScriptLanguage raises once the run has compiled its scripts.
  void holdForRun() { ++runHolds_; }
  void releaseFromRun() {
    --runHolds_;
    languageFixed_ = runHolds_ > 0 && languageFixed_;
  }
  bool heldByRun() const { return runHolds_ > 0; }
  void fixScriptLanguage() { languageFixed_ = true; }
  // Raises 5 when a run holds the report; what names the member refused.
  void refuseWhileHeld(const QString &what) const;

  // The object that answers the run's events by name
  // ("ActiveReport_FetchData", "Detail_Format" ...); nullptr for none. The
  // report does not keep it alive: the sink is the run-time object that
  // owns the report, and a strong reference back would keep both forever.
  ObjectRef eventSink() const { return eventSink_.lock(); }
  void setEventSink(const ObjectRef &sink) {
    refuseWhileHeld(QStringLiteral("EventSink"));
    eventSink_ = sink;
  }

  // What the designer showing the layout hears of changes made through
  // the layout object: RefreshLayout (sections or controls added or
  // removed: a step of its history) and LoadLayout (a new layout: a new
  // history). A layout shown by no designer has no listener.
  enum class OutsideChange { Refreshed, Replaced };
  void setChangeListener(std::function<void(OutsideChange)> listener) { changeListener_ = std::move(listener); }
  void tellChange(OutsideChange change) const {
    if (changeListener_)
      changeListener_(change);
  }

  // Runs the layout onto new pages. Script errors do not stop a run; they
  // are kept, each with its place, in runErrors.
  void run();
  // The pages of the last run; empty before the first.
  const std::shared_ptr<PageDocument> &pages() const { return pages_; }
  const QStringList &runErrors() const { return runErrors_; }
  void addRunError(const QString &error) { runErrors_ << error; }

  // Prints all pages, running the layout first when it has no pages yet,
  // on the printer's device with its copies, orientation and paper bin,
  // then raises ActiveReport_PrintProgress(page) for the pages 1 to the
  // last, as the run raises its events. There is no print dialog: prompt
  // True raises 5. Printing errors raise, and no progress follows. A run
  // made here raises its ActiveReport_Terminate at the end of the call.
  void printReport(bool prompt);
  // Opens the preview of the pages, running the layout first when it has
  // no pages yet, titled by the caption and placed by windowPlace, through
  // the modal presenter (preview/Presenters.h), and returns when it is
  // closed, with windowPlace then the window's last. Only a modal preview
  // is offered: modal False raises 5, as does a second preview while one
  // is open. Its print button prints through printReport. A run made here
  // makes its pages while the window is open (PreviewWindow) and raises
  // its ActiveReport_Terminate after the window has closed; a run that
  // fails raises its error here, and a run stopped by closing the window
  // leaves no pages and raises no Terminate, as a failed run.
  void show(bool modal);
  // Closes the preview when one is open; nothing otherwise.
  void close();
  // The open preview; nullptr when none is open.
  PreviewWindow *preview() const;
  // Moves a preview whose run is making its pages to windowPlace.
  void placeRunningPreview();
  WindowPlace windowPlace;

protected:
  const MemberTable &memberTable() const override;

private:
  // The pages of a printing or a preview and the run whose scripts answer
  // its events.
  struct Output;

  LayoutReport();
  // The run that made the current pages, with its scripts, so that events
  // after it reach the scripts as they were left.
  // keepValues: the pages keep the values they print (PageDocument::
  // setKeepsValues), for exports that hold data.
  std::unique_ptr<ReportRun> runOntoNewPages(bool terminateAtEnd = true, bool keepValues = true);
  // The same onto the given pages, which become the current pages.
  std::unique_ptr<ReportRun> runOnto(std::shared_ptr<PageDocument> pages, bool terminateAtEnd, bool keepValues);
  std::unique_ptr<Output> startOutput();
  // Raises the run's ActiveReport_Terminate when the output holds it back;
  // after a failure an error of the handlers is dropped.
  void endOutput(Output &output, bool afterFailure);
  void printPages(Output &output);
  // runFirst: the window opens on empty pages and the layout runs onto
  // them while it is open.
  void presentPreview(bool runFirst);

  static const MemberTable &layoutMemberTable();

  std::shared_ptr<engine::Sections> sections_;
  std::shared_ptr<UnboundFields> fields_ = std::make_shared<UnboundFields>();
  std::shared_ptr<engine::PageSettings> pageSettings_ = std::make_shared<engine::PageSettings>();
  std::shared_ptr<LayoutPrinter> printer_ = std::make_shared<LayoutPrinter>();
  std::vector<std::pair<QString, ObjectRef>> namedItems_;
  std::weak_ptr<Object> eventSink_;
  std::shared_ptr<PageDocument> pages_;
  QStringList runErrors_;
  int runHolds_ = 0;
  bool languageFixed_ = false;
  std::function<void(OutsideChange)> changeListener_;
  std::unique_ptr<Output> output_; // while the preview is open
  QPointer<PreviewWindow> preview_;
};

} // namespace kordel::engine
