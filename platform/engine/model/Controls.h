#pragma once

#include "engine/model/Font.h"

#include "core/Object.h"

#include <QColor>
#include <QImage>

#include <memory>
#include <vector>

namespace kordel::engine {

class Section;

// The kinds of control, each made by its ProgID ("DDActiveReports2.Label"
// and so on; the prefix is the layouts' own name for this engine).
enum class ControlKind { Label, Field, SubReport, Line, Shape, Picture };

// Horizontal alignment of text in its box.
enum class Alignment { Left = 0, Right = 1, Center = 2 };

// What every control has: a name, a box in twips within its section, a
// font and colours, and a Tag for its owner's use. Late-bound: Name, Left,
// Top, Width, Height, Visible, Tag, Font, ForeColor, BackColor, BackStyle
// (0 transparent, 1 filled), Alignment, BorderStyle (0 none, 1 solid),
// BorderColor, and the kind's own members.
class Control : public Object {
public:
  ~Control() override;

  ControlKind kind() const { return kind_; }
  QString progId() const;

  QString name;
  float left = 0, top = 0, width = 1440, height = 270;
  bool visible = true;
  QString tag;
  std::shared_ptr<FontObject> font = std::make_shared<FontObject>();
  QColor foreColor = Qt::black;
  QColor backColor = Qt::white;
  int backStyle = 0;
  Alignment alignment = Alignment::Left;
  int borderStyle = 0;
  QColor borderColor = Qt::black;

  // The section that holds the control; nullptr while it stands alone.
  std::shared_ptr<Section> section() const { return section_.lock(); }
  void setSection(const std::shared_ptr<Section> &section) { section_ = section; }

protected:
  explicit Control(ControlKind kind) : kind_(kind) {}
  const MemberTable &memberTable() const override;

private:
  ControlKind kind_;
  std::weak_ptr<Section> section_;
};

class Label : public Control {
public:
  Label() : Control(ControlKind::Label) {}
  QString typeName() const override { return QStringLiteral("Label"); }
  QString caption;

protected:
  const MemberTable &memberTable() const override;
};

// A field shows a value: its Text, or the unbound field its DataField
// names, or the value of a DataField that begins with "=" as a script
// expression; OutputFormat formats it. CountKind, RunningKind and
// FieldMode make it a counter or a summary (page numbers, page counts,
// record indexes, sums and counts per group and report); SummaryGroup names
// the group header whose group a summary covers.
class Field : public Control {
public:
  Field() : Control(ControlKind::Field) {}
  QString typeName() const override { return QStringLiteral("Field"); }
  QString text;
  QString dataField;
  QString outputFormat;
  bool canGrow = true;
  bool canShrink = false;
  int countKind = 0;
  int runningKind = 0;
  int fieldMode = 0;
  QString summaryGroup;

protected:
  const MemberTable &memberTable() const override;
};

// A report within a report: Report (and Object) is what the owner plugs
// in, run once per showing of the parent section.
class SubReport : public Control {
public:
  SubReport() : Control(ControlKind::SubReport) {}
  QString typeName() const override { return QStringLiteral("SubReport"); }
  QString reportName;
  ObjectRef report;

protected:
  const MemberTable &memberTable() const override;
};

// A line from (X1, Y1) to (X2, Y2) in the section; LineStyle 0 solid, 1 dash, 2 dot.
class Line : public Control {
public:
  Line() : Control(ControlKind::Line) {}
  QString typeName() const override { return QStringLiteral("Line"); }
  float x1 = 0, y1 = 0, x2 = 1440, y2 = 0;
  float lineWeight = 1;
  int lineStyle = 0;
  QColor lineColor = Qt::black;

protected:
  const MemberTable &memberTable() const override;
};

// Shape 0 rectangle, 1 ellipse, 2 rounded rectangle.
class Shape : public Control {
public:
  Shape() : Control(ControlKind::Shape) {}
  QString typeName() const override { return QStringLiteral("Shape"); }
  int shape = 0;
  float lineWeight = 1;
  QColor lineColor = Qt::black;

protected:
  const MemberTable &memberTable() const override;
};

// An image; SizeMode 0 clip, 1 stretch, 2 zoom keeping its proportions.
class Picture : public Control {
public:
  Picture() : Control(ControlKind::Picture) {}
  QString typeName() const override { return QStringLiteral("Picture"); }
  QImage image;
  int sizeMode = 2;

protected:
  const MemberTable &memberTable() const override;
};

// A new control of a ProgID; raises 429 for one this engine does not make.
std::shared_ptr<Control> createControl(const QString &progId);

// The controls of a section, in order. Late-bound: Count, Item(index from 0
// or name) (default), Add(progId), Remove(index or name), For Each.
class Controls : public Object {
public:
  explicit Controls(std::weak_ptr<Section> owner) : owner_(std::move(owner)) {}
  QString typeName() const override { return QStringLiteral("Controls"); }

  int count() const { return int(controls_.size()); }
  // Raises 9 outside 0..count-1.
  std::shared_ptr<Control> at(int index) const;
  // nullptr when no control has the name (compared without case).
  std::shared_ptr<Control> find(const QString &name) const;
  // Raises 9 for a missing name.
  std::shared_ptr<Control> item(const Variant &indexOrName) const;
  // A new control with a name of the form Kind1, Kind2 ... not yet taken
  // in the section's report.
  std::shared_ptr<Control> add(const QString &progId);
  // Adds a control made elsewhere, keeping its name (the layout reader).
  void append(const std::shared_ptr<Control> &control);
  void remove(const Variant &indexOrName);
  const std::vector<std::shared_ptr<Control>> &all() const { return controls_; }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  int indexOf(const Variant &indexOrName) const;

  std::weak_ptr<Section> owner_;
  std::vector<std::shared_ptr<Control>> controls_;
};

} // namespace kordel::engine
