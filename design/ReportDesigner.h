#pragma once

#include "core/Object.h"

#include <QFont>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace kordel::addin {

class ControlFactory;
class Page;
class StringCollection;

// The layout engine's band designer bound to one page of a report at a
// time. It carries the page's layout into the designer and back, turns the
// designer's events into the report's own (sub pages added and removed,
// the page tree to update) and guards what the designer would let through:
// a fixed page width, sub report controls without a page, data controls.
//
// Design note. The designer works on local names: a field's DataField is
// its path in the user's language and its Text that path between "<" and
// ">"; the page stores internal paths. ShowPage prepares the layout on a
// scratch layout object (sections a sub page never had, widths, paths made
// local) and loads the result into the designer in one piece, so that the
// designer's history starts at the page as opened. SavePage converts a
// copy back to internal paths, so the designer's history never holds the
// stored form. The page is saved when the designer is dirty, and always
// for a page that had no layout yet.
class ReportDesigner : public QWidget {
  Q_OBJECT

public:
  explicit ReportDesigner(QWidget *parent = nullptr);
  ~ReportDesigner() override;

  std::shared_ptr<Page> ActivePage() const { return page_; }
  // The engine's designer ("ARDesigner"), late-bound.
  const ObjectRef &DesignerControl() const { return designer_; }
  bool HasFocus() const { return hasFocus_; }
  bool IsNewPage() const { return isNewPage_; }
  const QFont &FieldFont() const { return fieldFont_; }
  const QFont &LabelFont() const { return labelFont_; }

  // The toolbars the user wants shown; then the settings are read again.
  void CustomizeDesigner();
  // Grid, ruler and fonts; the grid values go back to the designer.
  void EditOptions();
  // The page's sorting, default values, stripes and hiding, over the
  // fields its layout shows now.
  void EditPageProperties();
  void InsertBuiltInField(std::int16_t fieldType);
  void InsertGroupSection();
  void InsertPageFields();
  void InsertScriptFields();
  // With a sub report control drawn by the user, or none for a new one.
  bool InsertSubPage(ObjectRef &subReportControl);
  bool IsActionEnabled(int action) const;
  bool IsAddSectionEnabled(int sectionType) const;
  void LoadSettings();
  void MoveSubReport();
  // Ctrl+C, Ctrl+X and Ctrl+V while the designer has the focus; a key it
  // used comes back as 0.
  void OnKeyDown(int &keyCode, int &shift);
  void Refresh();
  void SaveEditorSettings();
  // Raises what saving raises: a failed save stops the command that
  // asked for it.
  void SavePage();
  bool SetActiveSection();
  // The shown page's layout as the page would store it now, with internal
  // paths; the page and the designer stay as they are.
  QByteArray StoredLayout() const;
  bool ShowPage(const std::shared_ptr<Page> &page);

  // ---- the designer's events, as its event sink calls them
  void ard_LayoutChanged(const ObjectRef &object, int kind);
  void ard_ValidateChange(const ObjectRef &object, int kind, bool &cancel);
  void ard_ContextMenuOpen(const ObjectRef &sourceObject, int menuType, bool &cancel);
  void ard_SelectionChanged();
  int ard_Message(int number, const QString &text, int flags);
  void ard_GotFocus() { hasFocus_ = true; }
  void ard_LostFocus() { hasFocus_ = false; }

signals:
  // cancel true: the owner opened its own menu.
  void ContextMenuOpen(const kordel::ObjectRef &sourceObject, int menuType, bool &cancel);
  void SelectionChanged();
  void SubPageAdded(const QString &pageGuid, const QString &name, const QString &parentGuid);
  void SubPageRemoved(const QString &pageGuid);
  void UpdatePageOverview();
  // The layout changed in the designer.
  void Changed();

private:
  class Events;

  ObjectRef Layout() const;
  ControlFactory Factory(bool withSection) const;
  // A page of fixed width: a sub page, or a top page on paper of a known
  // size.
  bool HasFixedWidth() const;
  // Rewrites the layout's field paths: 0 local to internal, 1 back.
  void ConvertDataFields(const ObjectRef &layout, int direction) const;
  void RemoveSubPage(const QString &pageGuid);
  int ShowDesignerMessage(int number, const QString &text, int flags);
  ObjectRef ScratchLayout(const QByteArray &layout) const;
  QByteArray SavedLayout(const ObjectRef &layout) const;

  ObjectRef designer_;
  std::shared_ptr<Events> events_;
  std::shared_ptr<Page> page_;
  ObjectRef activeSection_;
  bool hasFocus_ = false;
  bool isNewPage_ = false;
  std::shared_ptr<StringCollection> deletedSubPages_;
  QFont fieldFont_;
  QFont labelFont_;
};

} // namespace kordel::addin
