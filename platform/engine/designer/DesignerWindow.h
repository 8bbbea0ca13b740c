#pragma once

#include <QMainWindow>
#include <QMap>

class QAction;
class QActionGroup;
class QComboBox;
class QTreeWidget;

namespace kordel::engine {

class DesignView;
class DesignerControl;
class FormatBar;
class PropertyList;

// The designer's window, which its owner embeds: the design view in the
// middle, and around it the panels ToolbarsVisible names (DesignerControl.h):
// a menu bar, the toolbox, the standard bar (clipboard, undo, zoom), the
// alignment bar, the format bar, the explorer (a tree of the layout's
// sections and controls that selects what is clicked) and the property
// list. Every command is one of the control's actions, on menus, bars, the
// context menu and keys alike, enabled as QueryAction says.
class DesignerWindow : public QMainWindow {
  Q_OBJECT
public:
  explicit DesignerWindow(DesignerControl &control, QWidget *parent = nullptr);
  ~DesignerWindow() override;

  DesignView &view() const { return *view_; }
  PropertyList &propertyList() const { return *properties_; }
  QTreeWidget &explorer() const { return *explorer_; }
  // The action that runs a designer action by its number; nullptr for one
  // without a command here.
  QAction *action(int number) const { return actions_.value(number); }

  // Shows the panels the control's ToolbarsVisible and ToolbarsAccessible
  // allow, and takes its grid and ruler settings.
  void applySettings();
  // Updates every command's enabled state.
  void updateActions();
  // The designer's own context menu at a place on the screen.
  void showContextMenu(int menuType, QPoint globalPosition);

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  QAction *addAction(int number, const QString &text, const QKeySequence &keys = {}, const QIcon &icon = {});
  void buildActions();
  void buildToolBox();
  void buildBars();
  void buildMenus();
  void buildPanels();
  void fillExplorer();
  void explorerClicked();
  void run(int number);
  void openScriptEditor();
  std::optional<QStringList> askGroupOrder(const QStringList &groups);

  DesignerControl &control_;
  DesignView *view_ = nullptr;
  PropertyList *properties_ = nullptr;
  FormatBar *formatBar_ = nullptr;
  QTreeWidget *explorer_ = nullptr;
  QComboBox *zoomBox_ = nullptr;
  QActionGroup *tools_ = nullptr;
  QMap<int, QAction *> actions_;
  QMap<int, QWidget *> panels_; // by toolbar bit
};

} // namespace kordel::engine
