#pragma once

#include <QPointF>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace kordel::engine {

class Control;
class DesignerDocument;
class DesignerEvents;
class Section;

// The designer's commands by number, as its owner asks for and runs them
// (QueryAction, ExecuteAction) and as its menus, toolbars and keys run them.
namespace DesignAction {
constexpr int Undo = 2;
constexpr int Redo = 3;
constexpr int Cut = 4;
constexpr int Paste = 5;
constexpr int Copy = 6;
constexpr int SelectAll = 7;
constexpr int Delete = 8;
constexpr int DeleteSection = 9;
constexpr int ReportHeaderFooter = 10; // adds the pair, or removes it when the layout has it
constexpr int PageHeaderFooter = 11;   // the same for the page header and footer
constexpr int GroupHeaderFooter = 12;  // adds a group header and footer around the detail
constexpr int ReorderGroups = 13;
constexpr int ScriptEditor = 21;
constexpr int AlignLeft = 22;
constexpr int AlignRight = 23;
constexpr int AlignCenter = 24;
constexpr int AlignTop = 25;
constexpr int AlignMiddle = 26;
constexpr int AlignBottom = 27;
constexpr int AlignToGrid = 28;
constexpr int CenterInSection = 29;
constexpr int SameWidth = 30;
constexpr int SameHeight = 31;
constexpr int SameSize = 32;
constexpr int SpaceVertically = 33;
constexpr int SpaceHorizontally = 36;
constexpr int Border = 54;
} // namespace DesignAction

// What QueryAction answers: bit 0 the action can run now; bit 1 what it
// toggles is on (the header and footer pairs are there).
namespace ActionState {
constexpr int Enabled = 1;
constexpr int Checked = 2;
} // namespace ActionState

// Runs the designer's commands on a document. Each command is one step of
// the document's history and asks the owner before it deletes (validate
// change) and tells it after (layout changed), through the events. An
// action that cannot run now does nothing.
class DesignerActions {
public:
  DesignerActions(DesignerDocument &document, DesignerEvents &events);

  // The state bits of an action; 0 for a number the designer does not know.
  int query(int action) const;
  bool enabled(int action) const { return (query(action) & ActionState::Enabled) != 0; }
  // Runs an action. Raises 5 for a number the designer does not know;
  // an action that is not enabled does nothing.
  void execute(int action);

  // The section a paste or an insert goes to: the selected section, else
  // the section of the first selected control, else the detail.
  std::shared_ptr<Section> currentSection() const;

  // The grid step in twips, for AlignToGrid.
  std::function<QPointF()> gridStep = [] { return QPointF(90, 90); };
  // Opens the script editor (the designer control sets it).
  std::function<void()> openScriptEditor;
  // Asks the user for the order of the group headers, outermost first;
  // nothing when the user cancelled.
  std::function<std::optional<QStringList>(const QStringList &groups)> askGroupOrder;

private:
  void deleteControls(bool askFirst);
  void deleteSection();
  void togglePair(int headerType, int footerType);
  void addGroupPair();
  void reorderGroups();
  void align(int action);
  void space(bool horizontally);
  void toggleBorder();
  void paste();
  void movedAll(const std::vector<std::shared_ptr<Control>> &controls, int kind);

  DesignerDocument &document_;
  DesignerEvents &events_;
};

} // namespace kordel::engine
