// The design surface under a real mouse and keyboard, offscreen: drags
// that move and size controls by grid steps, into other sections and as
// one undo step back to the saved bytes, the rubber band, the section's
// and the print width's edges with the owner's Cancel, keys, the toolbox,
// context menus, the events in order, the rulers, and a screenshot of a
// layout of every kind of control.

#include "engine/designer/ControlBox.h"
#include "engine/designer/DesignSurface.h"
#include "engine/designer/DesignView.h"
#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DragAutoScroll.h"
#include "engine/designer/Rulers.h"
#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "support/TempDir.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace kordel;
using namespace kordel::engine;

namespace {

const QString kLabel = QStringLiteral("DDActiveReports2.Label");
const QString kField = QStringLiteral("DDActiveReports2.Field");

QString nameOf(const ObjectRef &object) {
  if (const auto *control = dynamic_cast<const Control *>(object.get()))
    return control->name;
  if (const auto *section = dynamic_cast<const Section *>(object.get()))
    return section->name;
  return object ? object->typeName() : QStringLiteral("Nothing");
}

// The owner: records each event as "what name kind" and cancels the kinds
// it is told to.
class RecordingEvents : public DesignerEvents {
public:
  QStringList events;
  std::set<int> refused;
  bool cancelMenus = false;

  bool validateChange(const ObjectRef &object, int kind) override {
    events << QStringLiteral("validate %1 %2").arg(nameOf(object)).arg(kind);
    return refused.count(kind) == 0;
  }
  void layoutChanged(const ObjectRef &object, int kind) override {
    events << QStringLiteral("changed %1 %2").arg(nameOf(object)).arg(kind);
  }
  bool contextMenuOpen(const ObjectRef &source, int menuType, QPoint) override {
    events << QStringLiteral("menu %1 %2").arg(nameOf(source)).arg(menuType);
    return cancelMenus;
  }
  int message(int number, const QString &text, int) override {
    events << QStringLiteral("message %1 %2").arg(number).arg(text);
    return 1;
  }
};

std::shared_ptr<Control> place(const std::shared_ptr<Section> &section, const QString &progId, const QString &name,
                               QRectF box) {
  auto control = section->controls()->add(progId);
  control->name = name;
  setDesignBox(*control, box);
  if (auto *label = dynamic_cast<Label *>(control.get()))
    label->caption = name;
  if (auto *field = dynamic_cast<Field *>(control.get()))
    field->text = name;
  return control;
}

// A page header with a title, a detail with two fields side by side and a
// note below them, and a page footer.
QByteArray threeSections() {
  const auto report = LayoutReport::create();
  const auto header = report->sections()->add(QStringLiteral("PageHeader"), 0, SectionType::PageHeader, 720);
  const auto detail = report->sections()->add(QStringLiteral("Detail"), 1, SectionType::Detail, 1440);
  const auto footer = report->sections()->add(QStringLiteral("PageFooter"), 2, SectionType::PageFooter, 720);
  place(header, kLabel, QStringLiteral("Title"), {0, 90, 2880, 270});
  place(detail, kField, QStringLiteral("Name"), {1440, 180, 1440, 270});
  place(detail, kField, QStringLiteral("City"), {3600, 180, 1440, 270});
  place(detail, kLabel, QStringLiteral("Note"), {1440, 900, 1440, 270});
  place(footer, kLabel, QStringLiteral("Footer"), {0, 90, 1440, 270});
  return saveLayout(*report);
}

bool onGrid(double value, double step) {
  const double steps = value / step;
  return std::abs(steps - std::round(steps)) < 1e-3;
}

class DesignSurfaceTest : public ::testing::Test {
protected:
  void SetUp() override {
    document_.load(threeSections());
    view_.resize(900, 600);
    view_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view_));
    surface().setFocus();
  }

  DesignSurface &surface() { return view_.surface(); }
  std::shared_ptr<Section> section(const QString &name) { return document_.report()->sections()->find(name); }
  std::shared_ptr<Control> control(const QString &name) {
    for (const auto &section : document_.report()->sections()->all())
      if (auto found = section->controls()->find(name))
        return found;
    return nullptr;
  }
  QRectF rectOf(const QString &name) { return surface().surfaceLayout().controlRect(*control(name)); }
  QRect pixels(const QString &name) { return surface().controlRect(*control(name)); }
  const SurfaceLayout::Band &band(const QString &name) { return *surface().surfaceLayout().bandOf(*section(name)); }
  double scale() { return surface().pixelsPerTwip(); }
  QPointF step() { return surface().gridStep(); }
  std::set<QString> selectedSet() {
    const QStringList names = selected();
    return std::set<QString>(names.begin(), names.end());
  }
  QStringList selected() {
    QStringList names;
    for (const auto &object : document_.selection())
      names << nameOf(object);
    return names;
  }

  // A left drag in several moves, with the modifiers held throughout.
  void drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mousePress(&surface(), Qt::LeftButton, modifiers, from);
    QTest::mouseMove(&surface(), from + (to - from) / 3);
    QTest::mouseMove(&surface(), from + (to - from) * 2 / 3);
    QTest::mouseMove(&surface(), to);
    QTest::mouseRelease(&surface(), Qt::LeftButton, modifiers, to);
  }
  void click(QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(&surface(), Qt::LeftButton, modifiers, at);
  }

  DesignerDocument document_;
  RecordingEvents events_;
  DesignView view_{document_, &events_};
};

TEST_F(DesignSurfaceTest, AMouseDragMovesByGridStepsAsOneUndoStep) {
  const QByteArray before = document_.save();
  const QRectF box = designBox(*control("Name"));
  const QPoint by(37, 20);
  drag(rectOf("Name").center().toPoint(), rectOf("Name").center().toPoint() + by);

  const auto name = control("Name");
  EXPECT_TRUE(onGrid(name->left, step().x())) << name->left;
  EXPECT_TRUE(onGrid(name->top, step().y())) << name->top;
  EXPECT_LE(std::abs(name->left - (box.left() + by.x() / scale())), step().x() / 2);
  EXPECT_LE(std::abs(name->top - (box.top() + by.y() / scale())), step().y() / 2);
  EXPECT_EQ(designBox(*name).size(), box.size());
  EXPECT_EQ(name->section(), section("Detail"));
  EXPECT_EQ(selected(), QStringList{"Name"});
  EXPECT_EQ(events_.events, QStringList{"changed Name 0"});

  // Every mouse move of the drag made one step.
  ASSERT_TRUE(document_.canUndo());
  document_.undo();
  EXPECT_FALSE(document_.canUndo());
  EXPECT_EQ(document_.save(), before);
}

TEST_F(DesignSurfaceTest, HandlesResizeByGridSteps) {
  click(rectOf("Name").center().toPoint());
  const QRectF box = designBox(*control("Name"));
  // The bottom right handle sits on the corner.
  drag(rectOf("Name").bottomRight().toPoint(), rectOf("Name").bottomRight().toPoint() + QPoint(50, 13));
  auto name = control("Name");
  EXPECT_EQ(designBox(*name).topLeft(), box.topLeft());
  EXPECT_TRUE(onGrid(name->left + name->width, step().x()));
  EXPECT_TRUE(onGrid(name->top + name->height, step().y()));
  EXPECT_LE(std::abs(name->width - (box.width() + 50 / scale())), step().x() / 2);
  EXPECT_EQ(events_.events, QStringList{"changed Name 1"});

  // The left handle moves the left edge and keeps the right one.
  events_.events.clear();
  const QRectF sized = designBox(*name);
  const QPoint left(int(rectOf("Name").left()), int(rectOf("Name").center().y()));
  drag(left, left + QPoint(-25, 0));
  name = control("Name");
  EXPECT_TRUE(onGrid(name->left, step().x()));
  EXPECT_LT(name->left, sized.left());
  EXPECT_DOUBLE_EQ(name->left + name->width, sized.right());
  EXPECT_EQ(events_.events, (QStringList{"changed Name 0", "changed Name 1"}));
}

TEST_F(DesignSurfaceTest, ALinesHandlesAreItsEnds) {
  auto line = std::static_pointer_cast<Line>(section("Detail")->controls()->add("DDActiveReports2.Line"));
  setLineEnds(*line, QLineF(1440, 1260, 4320, 1260));
  document_.noteOutsideChange();
  const QByteArray before = document_.save();
  line = std::static_pointer_cast<Line>(control(line->name));
  const auto end = [&](QPointF twips) { return surface().surfaceLayout().toSurface(band("Detail"), twips).toPoint(); };
  click(end(QPointF(3000, 1260)));
  ASSERT_EQ(selected(), QStringList{line->name});

  // The second end goes up and left; the first stays.
  drag(end(QPointF(4320, 1260)), end(QPointF(4320, 1260)) + QPoint(-40, -22));
  EXPECT_EQ(lineEnds(*line).p1(), QPointF(1440, 1260));
  EXPECT_TRUE(onGrid(line->x2, step().x()) && onGrid(line->y2, step().y()));
  EXPECT_LE(std::abs(line->x2 - (4320 - 40 / scale())), step().x() / 2);
  EXPECT_LE(std::abs(line->y2 - (1260 - 22 / scale())), step().y() / 2);
  // Its box follows its ends.
  EXPECT_EQ(QRectF(line->left, line->top, line->width, line->height), designBox(*line));
  EXPECT_EQ(events_.events, (QStringList{"changed " + line->name + " 0", "changed " + line->name + " 1"}));
  document_.undo();
  EXPECT_EQ(document_.save(), before);
}

TEST_F(DesignSurfaceTest, TheRubberBandSelectsWhatItTouchesAcrossSections) {
  // From the header's empty top edge down to the name field's top, left of
  // the city field.
  const QPoint from(int(rectOf("Title").center().x()), int(band("PageHeader").body.top()) + 1);
  const QPoint to(int(rectOf("Name").right()) + 10, int(rectOf("Name").top()) + 5);
  ASSERT_LT(to.x(), rectOf("City").left());
  drag(from, to);
  EXPECT_EQ(selectedSet(), (std::set<QString>{"Title", "Name"}));

  // With Shift the band adds to the selection.
  const QRectF footer = rectOf("Footer");
  drag(QPoint(int(footer.right()) + 20, int(band("PageFooter").body.top()) + 1),
       QPoint(int(footer.center().x()), int(footer.center().y())), Qt::ShiftModifier);
  EXPECT_EQ(selectedSet(), (std::set<QString>{"Title", "Name", "Footer"}));
  // Nothing changed: no step.
  EXPECT_FALSE(document_.canUndo());
}

TEST_F(DesignSurfaceTest, ADragIntoAnotherSectionMovesTheControlThere) {
  const QByteArray before = document_.save();
  const QPoint from = rectOf("Note").center().toPoint();
  const QPoint to(from.x(), int(band("PageFooter").body.top()) + 15);
  drag(from, to);

  const auto note = control("Note");
  ASSERT_TRUE(note);
  EXPECT_EQ(note->section(), section("PageFooter"));
  EXPECT_FALSE(section("Detail")->controls()->find("Note"));
  EXPECT_EQ(section("PageFooter")->controls()->all().back(), note);
  EXPECT_GE(note->top, 0);
  EXPECT_TRUE(onGrid(note->top, step().y()));
  EXPECT_EQ(events_.events.value(0), "changed Note 0");
  EXPECT_EQ(selected(), QStringList{"Note"});

  document_.undo();
  EXPECT_EQ(document_.save(), before);
  EXPECT_EQ(control("Note")->section(), section("Detail"));
}

TEST_F(DesignSurfaceTest, ThePrintWidthEdgeAsksFirstTellsAfterAndACancelKeepsTheWidth) {
  const float width = document_.report()->printWidth;
  const QPoint edge(int(std::lround(surface().surfaceLayout().printRight())), int(band("Detail").body.center().y()));
  events_.refused = {DesignChange::PrintWidth};
  drag(edge, edge + QPoint(60, 0));
  EXPECT_EQ(document_.report()->printWidth, width);
  EXPECT_EQ(events_.events, QStringList{"validate ActiveReport 6"});
  EXPECT_FALSE(document_.canUndo());

  events_.refused.clear();
  events_.events.clear();
  drag(edge, edge + QPoint(60, 0));
  EXPECT_TRUE(onGrid(document_.report()->printWidth, step().x()));
  EXPECT_LE(std::abs(document_.report()->printWidth - (width + 60 / scale())), step().x() / 2);
  EXPECT_EQ(events_.events, (QStringList{"validate ActiveReport 6", "changed ActiveReport 6"}));
  EXPECT_TRUE(document_.canUndo());

  // So does a width set without the mouse.
  events_.events.clear();
  EXPECT_TRUE(surface().setPrintWidth(document_.report()->printWidth + 1440));
  EXPECT_EQ(events_.events, (QStringList{"validate ActiveReport 6", "changed ActiveReport 6"}));
}

TEST_F(DesignSurfaceTest, ADragHeldBelowTheViewScrollsItAndTheControlGoesOn) {
  // A detail far taller than the view.
  section("Detail")->height = 12 * 1440;
  document_.noteOutsideChange();
  QApplication::processEvents();
  const QByteArray before = document_.save();
  QScrollBar &bar = *view_.scrollArea().verticalScrollBar();
  ASSERT_EQ(bar.value(), 0);
  const int shownBottom = view_.scrollArea().viewport()->height();
  ASSERT_LT(shownBottom, int(band("Detail").body.bottom()) - 300);
  DragAutoScroll &autoScroll = view_.autoScroll();

  const QPoint from = rectOf("Name").center().toPoint();
  QTest::mousePress(&surface(), Qt::LeftButton, Qt::NoModifier, from);
  QTest::mouseMove(&surface(), from + QPoint(0, 10));
  EXPECT_FALSE(autoScroll.isScrolling()) << "well inside the view";
  const QPoint below(from.x(), shownBottom + 30);
  QTest::mouseMove(&surface(), below);
  ASSERT_TRUE(autoScroll.isScrolling());
  // The timer's steps, taken here one by one; the mouse stays where it is.
  for (int i = 0; i < 10; ++i)
    ASSERT_TRUE(autoScroll.step());
  const int scrolled = bar.value();
  EXPECT_GT(scrolled, 100);
  EXPECT_GT(rectOf("Name").top(), shownBottom) << "the drag follows while the view scrolls";

  QTest::mouseRelease(&surface(), Qt::LeftButton, Qt::NoModifier, below + QPoint(0, scrolled));
  EXPECT_FALSE(autoScroll.isScrolling());
  EXPECT_EQ(bar.value(), scrolled);
  const auto name = control("Name");
  EXPECT_EQ(name->section(), section("Detail"));
  EXPECT_GT(rectOf("Name").top(), shownBottom);
  EXPECT_TRUE(onGrid(name->top, step().y()));
  EXPECT_EQ(events_.events, QStringList{"changed Name 0"});
  document_.undo();
  EXPECT_EQ(document_.save(), before) << "the whole drag is one step";
}

TEST_F(DesignSurfaceTest, ASectionsBottomEdgeDragsItsHeightNoHigherThanItsControls) {
  const auto detail = section("Detail");
  const float height = detail->height;
  const QPoint edge(40, int(std::lround(band("Detail").body.bottom())));
  drag(edge, edge + QPoint(0, 30));
  EXPECT_TRUE(onGrid(detail->height, step().y()));
  EXPECT_GT(detail->height, height);
  EXPECT_EQ(events_.events, QStringList{"changed Detail 3"});

  const QPoint lowered(40, int(std::lround(band("Detail").body.bottom())));
  drag(lowered, QPoint(40, int(band("Detail").body.top()) + 2));
  EXPECT_FLOAT_EQ(detail->height, contentBottom(*detail));
}

TEST_F(DesignSurfaceTest, EscapePutsADragBackWithoutAStep) {
  const QByteArray before = document_.save();
  const QPoint from = rectOf("City").center().toPoint();
  QTest::mousePress(&surface(), Qt::LeftButton, Qt::NoModifier, from);
  QTest::mouseMove(&surface(), from + QPoint(40, 40));
  EXPECT_NE(document_.save(), before);
  QTest::keyClick(&surface(), Qt::Key_Escape);
  QTest::mouseRelease(&surface(), Qt::LeftButton, Qt::NoModifier, from + QPoint(40, 40));
  EXPECT_EQ(document_.save(), before);
  EXPECT_FALSE(document_.canUndo());
  EXPECT_TRUE(events_.events.isEmpty());
}

TEST_F(DesignSurfaceTest, ClicksSelectAndShiftOrCtrlAddAndRemove) {
  click(rectOf("Name").center().toPoint());
  EXPECT_EQ(selected(), QStringList{"Name"});
  click(rectOf("City").center().toPoint(), Qt::ShiftModifier);
  EXPECT_EQ(selected(), (QStringList{"Name", "City"}));
  click(rectOf("Name").center().toPoint(), Qt::ControlModifier);
  EXPECT_EQ(selected(), QStringList{"City"});

  // A band's title selects its section; an empty place selects nothing.
  click(band("Detail").title.center().toPoint());
  EXPECT_EQ(selected(), QStringList{"Detail"});
  click(QPoint(int(band("Detail").body.right()) - 5, int(band("Detail").body.bottom()) - 10));
  EXPECT_TRUE(selected().isEmpty());

  // A press on one of several selected controls keeps them all for a drag;
  // released in place, it leaves that one.
  document_.selectAll();
  EXPECT_EQ(document_.selection().size(), 5u);
  click(rectOf("Note").center().toPoint());
  EXPECT_EQ(selected(), QStringList{"Note"});
}

TEST_F(DesignSurfaceTest, KeysMoveSizeSelectAndZoom) {
  click(rectOf("Name").center().toPoint());
  const QRectF box = designBox(*control("Name"));
  QTest::keyClick(&surface(), Qt::Key_Right);
  EXPECT_DOUBLE_EQ(control("Name")->left, box.left() + step().x());
  QTest::keyClick(&surface(), Qt::Key_Down, Qt::ControlModifier);
  EXPECT_NEAR(control("Name")->top, box.top() + 1 / scale(), 1e-3);
  QTest::keyClick(&surface(), Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_DOUBLE_EQ(control("Name")->width, box.width() + step().x());
  EXPECT_EQ(events_.events, (QStringList{"changed Name 0", "changed Name 0", "changed Name 1"}));
  // Each key is a step of its own.
  document_.undo();
  EXPECT_DOUBLE_EQ(control("Name")->width, box.width());

  QTest::keyClick(&surface(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(document_.selection().size(), 5u);
  QTest::keyClick(&surface(), Qt::Key_Escape);
  EXPECT_TRUE(selected().isEmpty());
  // Tab walks each section, then its controls.
  QTest::keyClick(&surface(), Qt::Key_Tab);
  EXPECT_EQ(selected(), QStringList{"PageHeader"});
  QTest::keyClick(&surface(), Qt::Key_Tab);
  EXPECT_EQ(selected(), QStringList{"Title"});
  QTest::keyClick(&surface(), Qt::Key_Backtab);
  EXPECT_EQ(selected(), QStringList{"PageHeader"});
  // Shift+Down makes a selected section higher.
  const float height = section("PageHeader")->height;
  QTest::keyClick(&surface(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_DOUBLE_EQ(section("PageHeader")->height, height + step().y());

  const double width = rectOf("Name").width();
  QTest::keyClick(&surface(), Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_GT(surface().zoom(), 100);
  EXPECT_NEAR(rectOf("Name").width(), width * surface().zoom() / 100, 1);
  QTest::keyClick(&surface(), Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(surface().zoom(), 100);
}

TEST_F(DesignSurfaceTest, TheGridDecidesStepsSnappingAndDots) {
  // A tenth of a centimetre for the keys.
  surface().setGrid(DesignGrid{10, 10, true, true, 1});
  click(rectOf("Name").center().toPoint());
  const float left = control("Name")->left;
  QTest::keyClick(&surface(), Qt::Key_Right);
  EXPECT_NEAR(control("Name")->left, left + 1440 / 2.54 / 10, 1e-3);

  // Without alignment a drag goes as far as the mouse.
  surface().setGrid(DesignGrid{16, 16, true, false, 0});
  const QRectF box = designBox(*control("City"));
  drag(rectOf("City").center().toPoint(), rectOf("City").center().toPoint() + QPoint(7, 5));
  EXPECT_NEAR(control("City")->left, box.left() + 7 / scale(), 1e-3);
  EXPECT_NEAR(control("City")->top, box.top() + 5 / scale(), 1e-3);

  // The grid's dots show in an empty part of a section, or do not.
  const QRect empty = QRectF(band("Detail").body).adjusted(420, 80, -20, -10).toAlignedRect();
  ASSERT_TRUE(empty.isValid());
  const auto inked = [&] {
    const QImage image = surface().grab(empty).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x)
        count += image.pixel(x, y) != qRgb(255, 255, 255) ? 1 : 0;
    return count;
  };
  EXPECT_GT(inked(), 0);
  surface().setGrid(DesignGrid{16, 16, false, true, 0});
  EXPECT_EQ(inked(), 0);
}

TEST_F(DesignSurfaceTest, CtrlAndTheWheelZoom) {
  const QPoint at = rectOf("Name").center().toPoint();
  const auto wheel = [&](int delta, Qt::KeyboardModifiers modifiers) {
    QWheelEvent event(at, surface().mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&surface(), &event);
  };
  wheel(120, Qt::ControlModifier);
  EXPECT_GT(surface().zoom(), 100);
  wheel(-120, Qt::ControlModifier);
  wheel(-120, Qt::ControlModifier);
  EXPECT_LT(surface().zoom(), 100);
  const int zoom = surface().zoom();
  wheel(120, Qt::NoModifier);
  EXPECT_EQ(surface().zoom(), zoom);
}

TEST_F(DesignSurfaceTest, AFailureReachesTheOwnerAsAMessage) {
  surface().setTool(QStringLiteral("DDActiveReports2.Nothing"));
  click(QPoint(20, int(band("Detail").body.top()) + 50));
  ASSERT_EQ(events_.events.size(), 1);
  EXPECT_TRUE(events_.events.front().startsWith("message 20 ")) << events_.events.front().toStdString();
  EXPECT_FALSE(document_.canUndo());
  EXPECT_FALSE(surface().tool());
}

TEST_F(DesignSurfaceTest, TheToolDrawsANewControlByClickOrDragAndResets) {
  QSignalSpy reset(&surface(), &DesignSurface::toolReset);
  surface().setTool(kLabel);
  const QPoint at(int(rectOf("City").right()) + 30, int(band("Detail").body.top()) + 40);
  click(at);
  ASSERT_EQ(document_.selection().size(), 1u);
  const auto label = std::dynamic_pointer_cast<Control>(document_.selection().front());
  ASSERT_TRUE(label);
  EXPECT_EQ(label->kind(), ControlKind::Label);
  EXPECT_EQ(label->section(), section("Detail"));
  EXPECT_TRUE(onGrid(label->left, step().x()) && onGrid(label->top, step().y()));
  EXPECT_GT(label->width, 0);
  EXPECT_FALSE(surface().tool());
  EXPECT_EQ(reset.count(), 1);

  surface().setTool(kField);
  const QPoint from(10, int(band("PageFooter").body.top()) + 3);
  const QPoint to(from + QPoint(100, 20));
  drag(from, to);
  const auto field = std::dynamic_pointer_cast<Control>(document_.selection().front());
  ASSERT_TRUE(field);
  EXPECT_EQ(field->kind(), ControlKind::Field);
  EXPECT_EQ(field->section(), section("PageFooter"));
  const QPointF end = surface().surfaceLayout().toSection(band("PageFooter"), to);
  EXPECT_LE(std::abs(field->left + field->width - end.x()), step().x() / 2);
  EXPECT_LE(std::abs(field->top + field->height - end.y()), step().y() / 2);
  // Each new name is the layout's only control of that name.
  for (const auto &made : {label, field}) {
    int named = 0;
    for (const auto &section : document_.report()->sections()->all())
      named += section->controls()->find(made->name) ? 1 : 0;
    EXPECT_EQ(named, 1) << made->name.toStdString();
  }
  EXPECT_NE(label->name, field->name);
  EXPECT_EQ(events_.events, (QStringList{"changed " + label->name + " 7", "changed " + field->name + " 7"}));
}

TEST_F(DesignSurfaceTest, EventsComeInTheOrderOfTheChanges) {
  surface().setTool(kLabel);
  click(QPoint(20, int(band("Detail").body.top()) + 50));
  const QString made = nameOf(document_.selection().front());
  QTest::keyClick(&surface(), Qt::Key_Down);
  QTest::keyClick(&surface(), Qt::Key_Left, Qt::ShiftModifier);
  // Moved far down, the label takes the section down with it.
  for (int i = 0; i < 20; ++i)
    QTest::keyClick(&surface(), Qt::Key_Down);
  EXPECT_EQ(events_.events.mid(0, 3),
            (QStringList{"changed " + made + " 7", "changed " + made + " 0", "changed " + made + " 1"}));
  EXPECT_TRUE(events_.events.contains("changed Detail 3"));
  EXPECT_GE(section("Detail")->height, contentBottom(*section("Detail")));
}

TEST_F(DesignSurfaceTest, ContextMenusAskTheOwnerFirst) {
  QSignalSpy requested(&surface(), &DesignSurface::contextMenuRequested);
  const auto menuAt = [&](QPoint at) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, surface().mapToGlobal(at));
    QApplication::sendEvent(&surface(), &event);
  };
  menuAt(rectOf("City").center().toPoint());
  EXPECT_EQ(selected(), QStringList{"City"});
  menuAt(QPoint(int(band("Detail").body.right()) - 5, int(band("Detail").body.bottom()) - 10));
  EXPECT_EQ(selected(), QStringList{"Detail"});
  menuAt(QPoint(int(surface().surfaceLayout().printRight()) + 30, int(band("Detail").body.center().y())));
  EXPECT_EQ(events_.events, (QStringList{"menu City 1", "menu Detail 0", "menu ActiveReport 2"}));
  ASSERT_EQ(requested.count(), 3);
  EXPECT_EQ(requested[0][1].toInt(), DesignMenu::Control);
  EXPECT_EQ(requested[2][1].toInt(), DesignMenu::Surface);

  // The menu key opens the selection's menu; an owner's Cancel keeps the
  // designer's own.
  events_.cancelMenus = true;
  QTest::keyClick(&surface(), Qt::Key_Menu);
  EXPECT_EQ(events_.events.last(), "menu Detail 0");
  EXPECT_EQ(requested.count(), 3);
}

TEST_F(DesignSurfaceTest, RulersFollowZoomAndScrolling) {
  surface().setZoom(400);
  QApplication::processEvents();
  QScrollBar &bar = *view_.scrollArea().horizontalScrollBar();
  ASSERT_GT(bar.maximum(), 0);
  bar.setValue(150);
  QApplication::processEvents();
  Ruler &ruler = view_.horizontalRuler();
  EXPECT_EQ(ruler.surfaceOffset(), -150);
  // An inch's tick reaches a third of the way up the ruler.
  const QImage image = ruler.grab().toImage();
  const int inch = ruler.surfaceOffset() + int(std::lround(1440 * scale() * 1));
  const int x = inch > 0 ? inch : inch + int(std::lround(1440 * scale()));
  ASSERT_LT(x, image.width());
  EXPECT_LT(qGray(image.pixel(x, image.height() * 3 / 4)), 128);
  EXPECT_GT(qGray(image.pixel(x + int(1440 * scale() / 16), image.height() * 3 / 4)), 128);
}

// A layout of every kind of control, with a hidden section and a hidden
// label, the way the demo reports are made.
QByteArray everyKind() {
  const auto report = LayoutReport::create();
  const auto header = report->sections()->add(QStringLiteral("ReportHeader"), 0, SectionType::ReportHeader, 900);
  const auto pageHeader = report->sections()->add(QStringLiteral("PageHeader"), 1, SectionType::PageHeader, 400);
  const auto group = report->sections()->add(QStringLiteral("GroupHeader1"), 2, SectionType::GroupHeader, 400);
  group->dataField = QStringLiteral("city");
  const auto detail = report->sections()->add(QStringLiteral("Detail"), 3, SectionType::Detail, 1800);
  const auto hidden = report->sections()->add(QStringLiteral("GroupFooter1"), 4, SectionType::GroupFooter, 400);
  hidden->visible = false;
  const auto footer = report->sections()->add(QStringLiteral("PageFooter"), 5, SectionType::PageFooter, 400);
  auto title = place(header, kLabel, QStringLiteral("Title"), {0, 90, 6000, 600});
  title->font->setFont(QFont(QStringLiteral("DejaVu Sans"), 20, QFont::Bold));
  static_cast<Label &>(*title).caption = QStringLiteral("Customers by city");
  place(pageHeader, kLabel, QStringLiteral("HeadName"), {0, 90, 2000, 270});
  place(pageHeader, kLabel, QStringLiteral("HeadCity"), {3000, 90, 2000, 270});
  place(group, kField, QStringLiteral("GroupCity"), {0, 90, 3000, 270});
  auto name = place(detail, kField, QStringLiteral("Name"), {0, 90, 2880, 270});
  name->borderStyle = 1;
  place(detail, kField, QStringLiteral("City"), {3000, 90, 2000, 270});
  auto line = std::static_pointer_cast<Line>(detail->controls()->add(QStringLiteral("DDActiveReports2.Line")));
  line->lineWeight = 15;
  setLineEnds(*line, QLineF(0, 450, 9000, 450));
  // A line of one twip, far thinner than a pixel.
  auto rule = std::static_pointer_cast<Line>(detail->controls()->add(QStringLiteral("DDActiveReports2.Line")));
  rule->name = QStringLiteral("Rule");
  setLineEnds(*rule, QLineF(0, 1650, 9000, 1650));
  auto shape = place(detail, QStringLiteral("DDActiveReports2.Shape"), QStringLiteral("Badge"), {6000, 600, 1200, 900});
  static_cast<Shape &>(*shape).shape = 1;
  shape->backStyle = 1;
  shape->backColor = QColor(200, 30, 30);
  auto picture =
      place(detail, QStringLiteral("DDActiveReports2.Picture"), QStringLiteral("Logo"), {7500, 600, 900, 900});
  QImage image(32, 32, QImage::Format_RGB32);
  image.fill(QColor(30, 60, 200));
  static_cast<Picture &>(*picture).image = image;
  auto sub = place(detail, QStringLiteral("DDActiveReports2.SubReport"), QStringLiteral("Orders"), {0, 600, 5000, 900});
  static_cast<SubReport &>(*sub).reportName = QStringLiteral("Orders of the customer");
  place(hidden, kLabel, QStringLiteral("Count"), {0, 90, 2000, 270});
  auto gone = place(footer, kLabel, QStringLiteral("Gone"), {0, 90, 2000, 270});
  gone->visible = false;
  place(footer, kLabel, QStringLiteral("Shown"), {3000, 90, 2000, 270});
  return saveLayout(*report);
}

// The darkest grey of the pixels inside a rectangle.
int darkest(const QImage &image, const QRect &rect) {
  int gray = 255;
  for (int y = std::max(0, rect.top()); y <= std::min(image.height() - 1, rect.bottom()); ++y)
    for (int x = std::max(0, rect.left()); x <= std::min(image.width() - 1, rect.right()); ++x)
      gray = std::min(gray, qGray(image.pixel(x, y)));
  return gray;
}

TEST_F(DesignSurfaceTest, AScreenshotShowsEveryKindAsItPrints) {
  document_.load(everyKind());
  view_.resize(1000, 700);
  QApplication::processEvents();
  click(pixels("City").center());
  test::TempDir temp;
  const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR", temp.path());
  const QString path = folder + QStringLiteral("/design-surface.png");
  ASSERT_TRUE(view_.grab().save(path));
  const QImage shot(path);
  ASSERT_FALSE(shot.isNull());
  const QImage surfaceShot = surface().grab().toImage();

  // Text inked where the labels stand; a hidden label's text fainter.
  EXPECT_LT(darkest(surfaceShot, pixels("Title")), 80);
  EXPECT_LT(darkest(surfaceShot, pixels("Shown")), 80);
  EXPECT_GT(darkest(surfaceShot, pixels("Gone").adjusted(1, 1, -1, -1)), darkest(surfaceShot, pixels("Shown")) + 60);
  // The thinnest line shows as a pixel's line.
  EXPECT_LT(darkest(surfaceShot, pixels("Rule").adjusted(0, -1, 0, 1)), 100);
  // The ellipse's fill and the picture's pixels at their centres.
  EXPECT_EQ(QColor(surfaceShot.pixel(pixels("Badge").center())), QColor(200, 30, 30));
  EXPECT_EQ(QColor(surfaceShot.pixel(pixels("Logo").center())), QColor(30, 60, 200));
  // Eight handles around the selected field, in the highlight colour
  // just outside its outline.
  const QRectF city = rectOf("City");
  const QColor highlight = surface().palette().color(QPalette::Highlight);
  int handles = 0;
  for (const QPointF place : {city.topLeft(), city.topRight(), city.bottomLeft(), city.bottomRight(),
                              QPointF(city.center().x(), city.top()), QPointF(city.center().x(), city.bottom()),
                              QPointF(city.left(), city.center().y()), QPointF(city.right(), city.center().y())}) {
    const QPointF out(place.x() < city.center().x()   ? -2
                      : place.x() > city.center().x() ? 2
                                                      : 0,
                      place.y() < city.center().y()   ? -2
                      : place.y() > city.center().y() ? 2
                                                      : 0);
    handles += QColor(surfaceShot.pixel((place + out).toPoint())) == highlight ? 1 : 0;
  }
  EXPECT_EQ(handles, 8);
  // The window holds many colours, not a blank.
  std::set<QRgb> colours;
  for (int y = 0; y < shot.height(); y += 3)
    for (int x = 0; x < shot.width(); x += 3)
      colours.insert(shot.pixel(x, y));
  EXPECT_GT(colours.size(), 20u);
}

} // namespace
