// The designer control as its owner drives it, late-bound: actions and
// their enabled states against the selection, undo back to the saved bytes,
// the clipboard between two designers, and the events with their kinds in
// order, a Cancel stopping the change.

#include "engine/designer/DesignerControl.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"
#include "support/ErrorCapture.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;

namespace {

// Records the designer's events and cancels what it is told to.
class Owner : public Object {
public:
  QStringList events;
  bool cancelDeletes = false;
  int answer = 1;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<Owner>("ValidateChange",
                      [](Owner &o, Args &a) {
                        o.events << QStringLiteral("validate %1 %2").arg(nameOf(a[0])).arg(a[1].toLong());
                        if (o.cancelDeletes)
                          a[2] = Variant(true);
                        return Variant();
                      }),
        method<Owner>("LayoutChanged",
                      [](Owner &o, Args &a) {
                        o.events << QStringLiteral("changed %1 %2").arg(nameOf(a[0])).arg(a[1].toLong());
                        return Variant();
                      }),
        method<Owner>("SelectionChanged",
                      [](Owner &o, Args &) {
                        o.events << QStringLiteral("selection");
                        return Variant();
                      }),
    }};
    return table;
  }

private:
  static QString nameOf(const Variant &object) { return object.toObject()->get(QStringLiteral("Name")).toString(); }
};

class DesignerActionsTest : public ::testing::Test {
protected:
  void SetUp() override {
    designer->set(QStringLiteral("EventSink"), Variant(ObjectRef(owner)));
    Section &detail = *report()->detail();
    for (int i = 0; i < 3; ++i) {
      auto label = std::static_pointer_cast<Label>(detail.controls()->add(QStringLiteral("DDActiveReports2.Label")));
      label->caption = QStringLiteral("Label %1").arg(i + 1);
      label->left = float(500 + 1500 * i + 100 * i * i);
      label->top = float(100 * i);
      label->width = float(1000 + 200 * i);
    }
    // The layout as the owner loads it: the history starts here, clean.
    saved = designer->document().save();
    designer->document().load(saved);
    owner->events.clear();
  }

  std::shared_ptr<LayoutReport> report() { return designer->document().report(); }
  std::shared_ptr<Control> control(const char *name) { return report()->detail()->controls()->find(name); }
  void select(std::initializer_list<const char *> names) {
    std::vector<ObjectRef> objects;
    for (const char *name : names)
      objects.push_back(control(name));
    designer->document().select(std::move(objects));
  }
  bool enabled(int action) { return designer->invoke(QStringLiteral("QueryAction"), {action}).toLong() & 1; }
  void run(int action) { designer->invoke(QStringLiteral("ExecuteAction"), {action}); }
  bool dirty() { return designer->get(QStringLiteral("IsDirty")).toBool(); }

  std::shared_ptr<DesignerControl> designer = DesignerControl::create();
  std::shared_ptr<Owner> owner = std::make_shared<Owner>();
  QByteArray saved;
};

TEST_F(DesignerActionsTest, EachActionIsEnabledExactlyWhenTheSelectionAllowsIt) {
  using namespace DesignAction;
  const std::vector<int> needOne{Cut, Copy, Delete, AlignToGrid, CenterInSection, Border};
  const std::vector<int> needTwo{AlignLeft,   AlignRight, AlignCenter, AlignTop, AlignMiddle,
                                 AlignBottom, SameWidth,  SameHeight,  SameSize};
  const std::vector<int> needThree{SpaceHorizontally, SpaceVertically};
  for (int selected = 0; selected <= 3; ++selected) {
    std::vector<ObjectRef> objects;
    for (int i = 0; i < selected; ++i)
      objects.push_back(report()->detail()->controls()->at(i));
    designer->document().select(objects);
    for (int action : needOne)
      EXPECT_EQ(enabled(action), selected >= 1) << action << " with " << selected;
    for (int action : needTwo)
      EXPECT_EQ(enabled(action), selected >= 2) << action << " with " << selected;
    for (int action : needThree)
      EXPECT_EQ(enabled(action), selected >= 3) << action << " with " << selected;
  }
  designer->document().select({report()->detail()});
  EXPECT_FALSE(enabled(DeleteSection)) << "the detail stays";
  designer->document().select({report()->sections()->find("PageHeader")});
  EXPECT_TRUE(enabled(DeleteSection));
  EXPECT_FALSE(enabled(ReorderGroups)) << "no groups to order";
  EXPECT_EQ(designer->invoke(QStringLiteral("QueryAction"), {PageHeaderFooter}).toLong(), 3) << "enabled and there";
  EXPECT_EQ(designer->invoke(QStringLiteral("QueryAction"), {ReportHeaderFooter}).toLong(), 1);
  EXPECT_EQ(test::errorNumber([&] { run(999); }), ErrorNumber::InvalidCall);
}

TEST_F(DesignerActionsTest, AlignSizeAndSpacingFollowTheFirstSelected) {
  select({"Label2", "Label1", "Label3"});
  run(DesignAction::AlignTop);
  EXPECT_EQ(control("Label1")->top, 100);
  EXPECT_EQ(control("Label3")->top, 100);
  run(DesignAction::SameWidth);
  EXPECT_EQ(control("Label1")->width, 1200);
  EXPECT_EQ(control("Label3")->width, 1200);
  run(DesignAction::SpaceHorizontally);
  const float gap1 = control("Label2")->left - (control("Label1")->left + control("Label1")->width);
  const float gap2 = control("Label3")->left - (control("Label2")->left + control("Label2")->width);
  EXPECT_FLOAT_EQ(gap1, gap2);
  EXPECT_EQ(control("Label1")->left, 500) << "the outermost stay";
  run(DesignAction::Border);
  EXPECT_EQ(control("Label2")->borderStyle, 1);
  run(DesignAction::Border);
  EXPECT_EQ(control("Label2")->borderStyle, 0) << "a second border takes them all off";
}

TEST_F(DesignerActionsTest, UndoOfAnySequenceReachesTheSavedBytesAndCleanness) {
  select({"Label1", "Label2"});
  run(DesignAction::AlignLeft);
  run(DesignAction::SameSize);
  run(DesignAction::GroupHeaderFooter);
  run(DesignAction::PageHeaderFooter); // takes the page pair away
  select({"Label3"});
  run(DesignAction::Delete);
  EXPECT_TRUE(dirty());
  EXPECT_NE(designer->document().save(), saved);
  int steps = 0;
  while (enabled(DesignAction::Undo)) {
    run(DesignAction::Undo);
    ++steps;
  }
  EXPECT_EQ(steps, 5) << "one step a command";
  EXPECT_EQ(designer->document().save(), saved);
  EXPECT_FALSE(dirty()) << "back at the saved state";
  run(DesignAction::Redo);
  EXPECT_TRUE(dirty());
  EXPECT_EQ(control("Label2")->left, control("Label1")->left);
  // A new change after an undo cuts the redo steps off.
  run(DesignAction::Undo);
  select({"Label1"});
  run(DesignAction::Border);
  EXPECT_FALSE(enabled(DesignAction::Redo));
}

TEST_F(DesignerActionsTest, TheClipboardCarriesControlsBetweenDesigners) {
  select({"Label1", "Label3"});
  run(DesignAction::Copy);
  const QMimeData *mime = QApplication::clipboard()->mimeData();
  ASSERT_TRUE(mime);
  EXPECT_EQ(mime->text(), QStringLiteral("Label 1\nLabel 3"));

  const auto other = DesignerControl::create();
  other->document().select({other->document().report()->detail()});
  ASSERT_TRUE(other->invoke(QStringLiteral("QueryAction"), {DesignAction::Paste}).toLong() & 1);
  other->invoke(QStringLiteral("ExecuteAction"), {DesignAction::Paste});
  const auto pasted = other->document().report()->detail()->controls();
  ASSERT_EQ(pasted->count(), 2);
  EXPECT_EQ(std::static_pointer_cast<Label>(pasted->at(0))->caption, QStringLiteral("Label 1"));
  EXPECT_EQ(pasted->at(1)->left, control("Label3")->left);
  EXPECT_EQ(other->document().selection().size(), 2u) << "what was pasted is selected";

  // Pasted again into the first designer, the copies get names of their
  // own and stand off the originals.
  designer->document().select({report()->detail()});
  run(DesignAction::Paste);
  ASSERT_EQ(report()->detail()->controls()->count(), 5);
  const auto copy = report()->detail()->controls()->at(3);
  EXPECT_EQ(copy->name, QStringLiteral("Label4"));
  EXPECT_GT(copy->left, control("Label1")->left);

  QApplication::clipboard()->setText(QStringLiteral("plain words"));
  EXPECT_FALSE(enabled(DesignAction::Paste));
}

TEST_F(DesignerActionsTest, TheOwnerHearsOfChangesInOrderAndMayCancelDeletes) {
  select({"Label1", "Label2"});
  owner->events.clear();
  owner->cancelDeletes = true;
  run(DesignAction::Delete);
  EXPECT_EQ(report()->detail()->controls()->count(), 3) << "every delete was cancelled";
  EXPECT_FALSE(dirty());
  EXPECT_EQ(owner->events, (QStringList{"validate Label1 2", "validate Label2 2"}));

  owner->cancelDeletes = false;
  owner->events.clear();
  run(DesignAction::Delete);
  EXPECT_EQ(report()->detail()->controls()->count(), 1);
  EXPECT_EQ(owner->events, (QStringList{"validate Label1 2", "validate Label2 2", "selection"}));

  owner->events.clear();
  designer->document().select({report()->sections()->find("PageFooter")});
  run(DesignAction::DeleteSection);
  EXPECT_EQ(owner->events, (QStringList{"selection", "validate PageFooter 4", "validate PageHeader 4", "selection",
                                        "changed PageFooter 4", "changed PageHeader 4"}))
      << "a page footer goes with its header";
  EXPECT_EQ(report()->sections()->count(), 1);
}

TEST_F(DesignerActionsTest, GroupsAreAddedAroundTheDetailAndReorderedWithTheirFooters) {
  run(DesignAction::GroupHeaderFooter);
  run(DesignAction::GroupHeaderFooter);
  QStringList order;
  for (const auto &section : report()->sections()->all())
    order << section->name;
  EXPECT_EQ(order, (QStringList{"PageHeader", "GroupHeader1", "GroupHeader2", "Detail", "GroupFooter2", "GroupFooter1",
                                "PageFooter"}));
  designer->actions().askGroupOrder = [](const QStringList &groups) {
    EXPECT_EQ(groups, (QStringList{"GroupHeader1", "GroupHeader2"}));
    return std::optional<QStringList>(QStringList{"GroupHeader2", "GroupHeader1"});
  };
  ASSERT_TRUE(enabled(DesignAction::ReorderGroups));
  run(DesignAction::ReorderGroups);
  order.clear();
  for (const auto &section : report()->sections()->all())
    order << section->name;
  EXPECT_EQ(order, (QStringList{"PageHeader", "GroupHeader2", "GroupHeader1", "Detail", "GroupFooter1", "GroupFooter2",
                                "PageFooter"}));
  run(DesignAction::Undo);
  EXPECT_EQ(report()->sections()->at(1)->name, QStringLiteral("GroupHeader1"));
}

} // namespace
