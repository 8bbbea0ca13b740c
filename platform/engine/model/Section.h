#pragma once

#include "core/Object.h"

#include <QColor>

#include <memory>
#include <vector>

namespace kordel::engine {

class Controls;
class LayoutReport;

// Section type codes, in the banded order a report prints them.
enum class SectionType {
  ReportHeader = 0,
  ReportFooter = 1,
  PageHeader = 2,
  PageFooter = 3,
  GroupHeader = 4,
  GroupFooter = 5,
  Detail = 6,
};

// NewPage: where a section forces a page break.
enum class NewPage { None = 0, Before = 1, After = 2, BeforeAfter = 3 };

// Whether a group header repeats at the top of each page its group goes on
// to.
enum class RepeatStyle { None = 0, OnPage = 1 };

// A band of a layout. Late-bound: Name, Type, Height, Visible, BackStyle,
// BackColor, Controls, DataField (group headers: a new group starts when
// its value changes), Script, CanGrow, CanShrink, KeepTogether, NewPage,
// RepeatStyle (group headers).
class Section : public Object {
public:
  static std::shared_ptr<Section> create(SectionType type, const QString &name);

  QString typeName() const override { return QStringLiteral("Section"); }

  SectionType type() const { return type_; }
  const std::shared_ptr<engine::Controls> &controls() const { return controls_; }
  std::shared_ptr<LayoutReport> report() const { return report_.lock(); }
  void setReport(const std::shared_ptr<LayoutReport> &report) { report_ = report; }

  QString name;
  float height = 360;
  bool visible = true;
  int backStyle = 0;
  QColor backColor = Qt::white;
  QString dataField;
  QString script;
  bool canGrow = true;
  bool canShrink = false;
  bool keepTogether = false;
  NewPage newPage = NewPage::None;
  RepeatStyle repeatStyle = RepeatStyle::None;

protected:
  const MemberTable &memberTable() const override;

private:
  explicit Section(SectionType type) : type_(type) {}

  SectionType type_;
  std::shared_ptr<engine::Controls> controls_;
  std::weak_ptr<LayoutReport> report_;
};

// The sections of a layout in banded order. Late-bound: Count, Item(index
// from 0 or name) (default), Add(name, index, type, height), Remove(index),
// For Each.
class Sections : public Object {
public:
  explicit Sections(std::weak_ptr<LayoutReport> owner) : owner_(std::move(owner)) {}
  QString typeName() const override { return QStringLiteral("Sections"); }

  int count() const { return int(sections_.size()); }
  std::shared_ptr<Section> at(int index) const;
  // nullptr for a name no section has (compared without case).
  std::shared_ptr<Section> find(const QString &name) const;
  std::shared_ptr<Section> item(const Variant &indexOrName) const;
  // Inserts at the index (later sections move up); a name that is taken
  // raises 457.
  std::shared_ptr<Section> add(const QString &name, int index, SectionType type, float height);
  // Inserts a section made elsewhere (one taken out to be moved), keeping
  // everything it holds; a name that is taken raises 457.
  void insert(const std::shared_ptr<Section> &section, int index);
  void remove(int index);
  const std::vector<std::shared_ptr<Section>> &all() const { return sections_; }

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::weak_ptr<LayoutReport> owner_;
  std::vector<std::shared_ptr<Section>> sections_;
};

} // namespace kordel::engine
