#pragma once

#include "core/Object.h"

#include <cstdint>
#include <memory>

namespace kordel::hostapi {
class Fields;
}

namespace kordel::addin {

class ControlPositioner;
class DlgFields;
class Page;
class ReportFields;
class StringCollection;

// Where the user's choices become sections and controls of a layout: the
// designer makes one factory per command, gives it the layout, the section
// that is current and the page the layout belongs to, and calls one
// operation. Everything it does to the layout goes through the engine's
// late-bound objects (sections, controls, RefreshLayout); nothing survives
// between two calls.
//
// A Field control of a layout means one of four things, decided by its
// texts: a page field ("<local path>" shown, the local path as data
// field), a script field ("<vbscript:expression>" shown, "vbscript:scriptN"
// as data field), a built-in field (its Tag holds the built-in type, its
// data field an "=" expression or none) or a free field (anything else).
// UpdateReportFields reads the page's fields back from those texts: the
// layout is the master, and a field no control shows any more is dropped.
class ControlFactory {
public:
  // The built-in field types of CreateBuiltInField.
  enum BuiltInField : std::int16_t {
    Date = 1,
    Time = 2,
    Timestamp = 3,
    PageNumber = 4,
    PageTotal = 5,
    PrintedBy = 6,
    RecordIndex = 7,
    RecordCount = 8,
  };

  void SetActiveReport(const ObjectRef &activeReport) { activeReport_ = activeReport; }
  // The section current in the designer, or none.
  void SetActiveSection(const ObjectRef &activeSection) { activeSection_ = activeSection; }
  void SetReportPage(const std::shared_ptr<Page> &page) { page_ = page; }

  // ---- sections and built-in fields
  // Adds a built-in field of the type to the named section, sized for its
  // printed value and placed beside the section's last field. True when
  // the field stands; failures are reported and give false.
  bool CreateBuiltInField(std::int16_t fieldType, const QString &sectionName);
  // Asks for a field and wraps the detail section in a new group header
  // and footer on it. A cancelled choice or a layout without a detail
  // section changes nothing and is no failure.
  bool CreateGroupSection();
  // The zero-based index of the first detail section, or -1.
  Variant GetIndexOfDetailSection() const;
  void RemoveSectionByType(std::int32_t sectionType);
  bool SectionTypeExists(std::int32_t sectionType) const;

  // ---- page and script fields
  // Asks for fields of the page's class and adds a field control for each
  // (with a header label when asked).
  bool CreatePageFields();
  // Asks for script expressions and adds a field control for each.
  bool CreateScriptFields();
  // Reads the layout's field controls and group sections back into the
  // page's Fields and SortFields, rebinding controls whose shown path was
  // edited, and writes the expressions of built-in fields anew.
  void UpdateReportFields();

  // ---- sub pages
  // Asks for a relation and makes a sub page on it, with a new sub report
  // control or bound to the one given (drawn with the designer's tool).
  // A cancelled choice takes a given control away again.
  bool CreateSubPage(ObjectRef &control);
  // Asks for another section and moves the sub report control there.
  void MoveSubReport(const ObjectRef &control);
  // Deletes the sub page of the guid, when it exists, and the control.
  void RemoveSubPage(ObjectRef &control, const QString &pageGuid);
  // Follows the sub report controls into the sub pages (name, width) and
  // deletes sub pages no control shows. A control whose page is gone is
  // taken out and stops the save with an error.
  void UpdateSubPages();

private:
  QString GetUniqueName(const QString &stem, int kind) const;
  std::shared_ptr<StringCollection> GetControlNames() const;
  std::shared_ptr<StringCollection> GetDataFieldNames() const;
  std::shared_ptr<StringCollection> GetSectionNames() const;
  std::shared_ptr<StringCollection> GetSubPageNames() const;
  void FitFieldToText(const ObjectRef &field, const QString &sample) const;
  void FitLabelToText(const ObjectRef &label, const QString &sample) const;
  void FitControlToText(const ObjectRef &control, const QString &text1, const QString &text2) const;
  void AssignBuiltInExpression(const ObjectRef &field) const;

  // Shows the field dialog in its mode (0 page fields, 1 script fields);
  // true when the user confirmed a choice.
  bool AskForFields(DlgFields &dialog, int mode) const;
  void CreateHeaderLabel(ControlPositioner &positioner, const QString &sectionName, const QString &caption,
                         std::int32_t width, std::int32_t height);
  bool CollectFromText(const ObjectRef &field, ReportFields &names);
  bool CollectFromDataField(const ObjectRef &field, ReportFields &names);
  void CollectFromGroupSections(ReportFields &names);
  void ReplaceDataField(const QString &oldName, const QString &newName);
  void RemoveSubReportControl(ObjectRef &control);

  // The layout's sections in order; its field controls, section by section.
  std::vector<ObjectRef> Sections() const;
  static std::vector<ObjectRef> Controls(const ObjectRef &section);
  ObjectRef SectionNamed(const QString &name) const;
  std::shared_ptr<hostapi::Fields> ClassFields() const;
  void RefreshLayout() const;
  // Adds a control of the ProgID to the named section.
  ObjectRef AddControl(const QString &sectionName, const char *progId) const;
  // Adds a field of that name, data field, text and size.
  ObjectRef AddField(const QString &sectionName, const QString &name, const QString &dataField, const QString &text,
                     std::int32_t width, std::int32_t height) const;

  ObjectRef activeReport_;
  ObjectRef activeSection_;
  std::shared_ptr<Page> page_;
};

} // namespace kordel::addin
