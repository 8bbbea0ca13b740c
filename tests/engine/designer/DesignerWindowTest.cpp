// The designer's window as its owner embeds it: the panels that the
// toolbar masks allow, commands enabled as the selection allows, and a real
// window with a layout in it, grabbed as a picture that is not blank.
// KORDEL_DESIGNER_SHOT=FILE.png keeps the picture for a look.

#include "engine/designer/DesignView.h"
#include "engine/designer/DesignerControl.h"
#include "engine/designer/DesignerWindow.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"
#include "engine/run/SectionRenderer.h"

#include <QAction>
#include <QDockWidget>
#include <QFile>
#include <QImage>
#include <QSet>
#include <QToolBar>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;

namespace {

QByteArray customerList() {
  QFile file(QStringLiteral(KORDEL_ENGINE_TEST_DIR "/run/layouts/customer-list.xml"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class DesignerWindowTest : public ::testing::Test {
protected:
  void SetUp() override {
    designer->document().load(customerList());
    window = static_cast<DesignerWindow *>(designer->window());
    window->resize(1200, 800);
  }

  std::shared_ptr<DesignerControl> designer = DesignerControl::create();
  DesignerWindow *window = nullptr;
};

TEST_F(DesignerWindowTest, ThePanelsAreThoseTheMasksAllow) {
  const std::map<QString, int> panels{{"ddTBToolBox", 2}, {"ddTBStandard", 4},  {"ddTBAlignment", 8},
                                      {"ddTBFormat", 16}, {"ddTBExplorer", 32}, {"ddTBPropertyToolbox", 128}};
  const auto shown = [&](const QString &name) {
    const QWidget *panel = window->findChild<QWidget *>(name);
    return panel && !panel->isHidden();
  };
  for (const int mask : {146, 2 | 4 | 8 | 32, 255}) {
    designer->set(QStringLiteral("ToolbarsVisible"), mask);
    for (const auto &[name, bit] : panels)
      EXPECT_EQ(shown(name), (mask & bit) != 0) << name.toStdString() << " in mask " << mask;
  }
  // What is not accessible stays hidden whatever is asked to be shown.
  designer->set(QStringLiteral("ToolbarsAccessible"), 255 & ~32);
  EXPECT_FALSE(shown(QStringLiteral("ddTBExplorer")));
  EXPECT_TRUE(shown(QStringLiteral("ddTBPropertyToolbox")));
}

TEST_F(DesignerWindowTest, CommandsAndTheExplorerFollowTheSelection) {
  const auto detail = designer->document().report()->detail();
  ASSERT_GE(detail->controls()->count(), 2);
  QAction *alignLeft = window->action(DesignAction::AlignLeft);
  QAction *cut = window->action(DesignAction::Cut);
  ASSERT_TRUE(alignLeft && cut);
  EXPECT_FALSE(cut->isEnabled());
  designer->document().select({detail->controls()->at(0)});
  EXPECT_TRUE(cut->isEnabled());
  EXPECT_FALSE(alignLeft->isEnabled());
  designer->document().select({detail->controls()->at(0), detail->controls()->at(1)});
  EXPECT_TRUE(alignLeft->isEnabled());

  // The explorer marks what is selected and selects what is clicked.
  QTreeWidget &explorer = window->explorer();
  EXPECT_EQ(explorer.selectedItems().size(), 2);
  const QList<QTreeWidgetItem *> headers = explorer.findItems(QStringLiteral("PageHeader"), Qt::MatchExactly);
  ASSERT_EQ(headers.size(), 1);
  explorer.clearSelection();
  headers.front()->setSelected(true);
  emit explorer.itemClicked(headers.front(), 0);
  ASSERT_EQ(designer->document().selection().size(), 1u);
  EXPECT_EQ(designer->document().selection().front(),
            ObjectRef(designer->document().report()->sections()->find("PageHeader")));
  EXPECT_TRUE(window->action(DesignAction::DeleteSection)->isEnabled());

  // A command from its action is one step of the history.
  window->action(DesignAction::DeleteSection)->trigger();
  EXPECT_FALSE(designer->document().report()->sections()->find("PageHeader"));
  EXPECT_TRUE(window->action(DesignAction::Undo)->isEnabled());
}

TEST(DesignRendering, AFieldShowsItsTextElseWhatItIsBoundTo) {
  PageDocument document;
  SectionRenderer renderer(document, {});
  const auto shown = [&](const Field &field) {
    QStringList texts;
    const Page page = renderer.renderDesign(field);
    for (const PageItem &item : page.items())
      if (const auto *run = std::get_if<TextRun>(&item))
        texts << page.text(*run);
    return texts.join(u' ');
  };
  Field field;
  field.dataField = QStringLiteral("city");
  EXPECT_EQ(shown(field), QStringLiteral("city"));
  field.text = QStringLiteral("<City>");
  EXPECT_EQ(shown(field), QStringLiteral("<City>"));
}

TEST_F(DesignerWindowTest, TheWindowShowsTheLayout) {
  designer->set(QStringLiteral("ToolbarsVisible"), 255);
  window->show();
  const QImage shot = window->grab().toImage();
  ASSERT_FALSE(shot.isNull());
  QSet<QRgb> colours;
  int dark = 0;
  for (int y = 0; y < shot.height(); y += 2)
    for (int x = 0; x < shot.width(); x += 2) {
      const QRgb pixel = shot.pixel(x, y);
      colours.insert(pixel);
      dark += qGray(pixel) < 100;
    }
  EXPECT_GT(colours.size(), 20) << "more than a plain fill";
  EXPECT_GT(dark, 500) << "text and lines are drawn";
  if (const QByteArray keep = qgetenv("KORDEL_DESIGNER_SHOT"); !keep.isEmpty())
    shot.save(QString::fromLocal8Bit(keep));
}

} // namespace
