#pragma once

#include "core/Object.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <vector>

namespace kordel::engine {

class PageDocument;
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

// The printer a run prints for. Until printers are connected it knows only
// its paper: DeviceName, Port, PaperBin, PaperBins, PaperBinNames,
// Orientation, Copies, PaperWidth, PaperHeight (twips).
class LayoutPrinter : public Object {
public:
  QString typeName() const override { return QStringLiteral("Printer"); }
  QString deviceName;
  QString port;
  int paperBin = -1;
  int orientation = 1;
  int copies = 1;
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
// PrintWidth, Detail, documentName, Caption, AddNamedItem(name, object),
// LoadLayout(bytes) and SaveLayout(path, format, out) (format/LayoutFormat.h).
class LayoutReport : public Object {
public:
  static std::shared_ptr<LayoutReport> create();

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

  // Objects the report's scripts see by name, in the order given.
  void addNamedItem(const QString &name, const ObjectRef &object);
  const std::vector<std::pair<QString, ObjectRef>> &namedItems() const { return namedItems_; }

  // A control name of the form stem + number, from 1, that no control of
  // any section has.
  QString uniqueControlName(const QString &stem) const;
  // Whether any control of any section has the name.
  bool hasControlNamed(const QString &name) const;

  // The object that answers the run's events by name
  // ("ActiveReport_FetchData", "Detail_Format" ...); nullptr for none. The
  // report does not keep it alive: the sink is the run-time object that
  // owns the report, and a strong reference back would keep both forever.
  ObjectRef eventSink() const { return eventSink_.lock(); }
  void setEventSink(const ObjectRef &sink) { eventSink_ = sink; }

  // Runs the layout onto new pages. Script errors do not stop a run; they
  // are kept, each with its place, in runErrors.
  void run();
  // The pages of the last run; empty before the first.
  const std::shared_ptr<PageDocument> &pages() const { return pages_; }
  const QStringList &runErrors() const { return runErrors_; }
  void addRunError(const QString &error) { runErrors_ << error; }

protected:
  const MemberTable &memberTable() const override;

private:
  LayoutReport() = default;

  std::shared_ptr<engine::Sections> sections_;
  std::shared_ptr<UnboundFields> fields_ = std::make_shared<UnboundFields>();
  std::shared_ptr<engine::PageSettings> pageSettings_ = std::make_shared<engine::PageSettings>();
  std::shared_ptr<LayoutPrinter> printer_ = std::make_shared<LayoutPrinter>();
  std::vector<std::pair<QString, ObjectRef>> namedItems_;
  std::weak_ptr<Object> eventSink_;
  std::shared_ptr<PageDocument> pages_;
  QStringList runErrors_;
};

} // namespace kordel::engine
