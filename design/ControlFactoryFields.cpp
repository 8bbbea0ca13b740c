// The field operations of the control factory: page and script fields
// inserted on the user's choice, and the page's field list read back from
// the layout when the page is saved.

#include "design/ControlFactory.h"

#include "design/ControlPositioner.h"
#include "dialogs/DlgFields.h"
#include "document/Page.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "document/StringCollection.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ScriptExpression.h"

#include "hostapi/Classes.h"
#include "hostapi/Layout.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

namespace kordel::addin {

namespace {

constexpr std::int32_t kSpacing = 115;
constexpr std::int32_t kGroupHeader = 4;

// Marks a script field whatever the report's script language.
const QString kScriptPrefix = QStringLiteral("vbscript:");

QString text(const ObjectRef &object, const char *name) { return object->get(QString::fromLatin1(name)).toString(); }

bool startsWithScriptPrefix(const QString &text) { return text.startsWith(kScriptPrefix, Qt::CaseInsensitive); }

bool isField(const ObjectRef &control) { return control->typeName() == QLatin1String("Field"); }

std::int32_t halfHeight(const ObjectRef &control) {
  return Variant(control->get(QStringLiteral("Height")).toDouble() / 2).toLong();
}

void addOnce(ReportFields &names, const QString &name, const QString &expression) {
  if (!names.Exists(name))
    names.Add(name, expression, QString());
}

struct Measured {
  std::int32_t width = 0;
  std::int32_t height = 0;
};

Measured measure(const ObjectRef &canvas, const QString &shown) {
  Args args{shown, Variant(), Variant()};
  canvas->call(QStringLiteral("MeasureText"), args);
  return {args[1].toLong(), args[2].toLong()};
}

} // namespace

bool ControlFactory::AskForFields(DlgFields &dialog, int mode) const {
  dialog.SetMode(mode);
  dialog.SetActiveReport(activeReport_);
  dialog.SetNuvoFields(ClassFields());
  dialog.SetSectionNames(GetSectionNames());
  if (activeSection_)
    dialog.SetActiveSectionName(text(activeSection_, "Name"));
  dialog.Form_Load();
  hostapi::ui().showModal(dialog);
  return dialog.Status();
}

bool ControlFactory::CreatePageFields() {
  try {
    DlgFields dialog;
    if (!AskForFields(dialog, 0))
      return true;

    SetBusyCursor();
    const QStringList names = dialog.NewFieldNames();
    const QString fieldSection = dialog.FieldSection();
    const QString labelSection = dialog.LabelSection();
    ControlPositioner positioner;
    positioner.Initialize(activeReport_, kSpacing);
    // One canvas for the whole command, in its own font: the fields are
    // sized for the default font, whatever font they get later.
    const ObjectRef canvas = CreateObject(QString::fromLatin1(hostapi::kTextCanvasProgId));
    const auto fields = ClassFields();
    for (const QString &name : names) {
      const QString shown = u'<' + name + u'>';
      const QString internalPath = fields->translatePath(name, hostapi::PathDirection::ToInternal);
      const Measured size = measure(canvas, shown + QStringLiteral("000"));
      const ObjectRef field =
          AddField(fieldSection, GetUniqueName(QStringLiteral("fld_") + QString(internalPath).remove(u'.'), 0), name,
                   shown, size.width, size.height);
      if (!labelSection.isEmpty()) {
        // The label comes first; the field goes under it in the same
        // section, or on its place in another one.
        CreateHeaderLabel(positioner, labelSection, name, size.width, size.height);
        const bool sameSection = fieldSection.compare(labelSection, Qt::CaseInsensitive) == 0;
        positioner.SetPosition(field, fieldSection, sameSection ? 2 : 3, 0);
      } else {
        positioner.SetPosition(field, fieldSection, 1, halfHeight(field));
      }
    }
    RefreshLayout();
    ResetCursor();
    return true;
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ControlFactory.CreatePageFields"));
    return false;
  }
}

ObjectRef ControlFactory::AddField(const QString &sectionName, const QString &name, const QString &dataField,
                                   const QString &text, std::int32_t width, std::int32_t height) const {
  const ObjectRef field = AddControl(sectionName, hostapi::kFieldProgId);
  field->set(QStringLiteral("Name"), name);
  field->set(QStringLiteral("DataField"), dataField);
  field->set(QStringLiteral("Text"), text);
  field->set(QStringLiteral("Width"), width);
  field->set(QStringLiteral("Height"), height);
  return field;
}

void ControlFactory::CreateHeaderLabel(ControlPositioner &positioner, const QString &sectionName,
                                       const QString &caption, std::int32_t width, std::int32_t height) {
  if (sectionName.isEmpty())
    return;
  const ObjectRef label = AddControl(sectionName, hostapi::kLabelProgId);
  label->set(QStringLiteral("Name"), GetUniqueName(QStringLiteral("lbl_header"), 0));
  label->set(QStringLiteral("Caption"), caption);
  label->set(QStringLiteral("Width"), width);
  label->set(QStringLiteral("Height"), height);
  positioner.SetPosition(label, sectionName, 1, halfHeight(label));
}

bool ControlFactory::CreateScriptFields() {
  try {
    DlgFields dialog;
    if (!AskForFields(dialog, 1))
      return true;

    SetBusyCursor();
    const QStringList expressions = dialog.NewFieldNames();
    const QString fieldSection = dialog.FieldSection();
    ControlPositioner positioner;
    positioner.Initialize(activeReport_, kSpacing);
    const ObjectRef canvas = CreateObject(QString::fromLatin1(hostapi::kTextCanvasProgId));
    for (const QString &expression : expressions) {
      const QString shown = u'<' + kScriptPrefix + expression + u'>';
      const Measured size = measure(canvas, shown);
      // The name before the data field: both are made unique in that order.
      const QString name = GetUniqueName(QStringLiteral("fld_script"), 0);
      const ObjectRef field = AddField(fieldSection, name, GetUniqueName(QStringLiteral("vbscript:script"), 1), shown,
                                       size.width, size.height);
      positioner.SetPosition(field, fieldSection, 1, halfHeight(field));
    }
    RefreshLayout();
    ResetCursor();
    return true;
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ControlFactory.CreateScriptFields"));
    return false;
  }
}

// ---- the layout read back into the page

void ControlFactory::UpdateReportFields() {
  ReportFields names;
  for (const ObjectRef &section : Sections())
    for (const ObjectRef &control : Controls(section)) {
      if (!isField(control))
        continue;
      bool handled = CollectFromText(control, names);
      if (!handled)
        handled = CollectFromDataField(control, names);
      // A built-in field writes its expression anew, in the report's
      // present script language; it is no field of the page.
      if (!handled && !text(control, "Tag").isEmpty())
        AssignBuiltInExpression(control);
    }
  CollectFromGroupSections(names);

  const auto sortFields = page_->SortFields();
  for (int i = sortFields->Count(); i >= 1; --i) {
    const QString name = sortFields->Item(i)->Name;
    if (!names.Exists(name))
      sortFields->Remove(name);
  }
  const auto pageFields = page_->Fields();
  for (int i = pageFields->Count(); i >= 1; --i) {
    const QString name = pageFields->Item(i)->Name;
    if (!names.Exists(name))
      pageFields->Remove(name);
  }
  for (int i = 1; i <= names.Count(); ++i) {
    const auto entry = names.Item(i);
    if (pageFields->Exists(entry->Name))
      pageFields->Field(entry->Name)->Expression = entry->Expression;
  }
  for (int i = 1; i <= names.Count(); ++i) {
    const auto entry = names.Item(i);
    if (!pageFields->Exists(entry->Name))
      pageFields->Add(entry->Name, entry->Expression, QString());
  }
  RefreshLayout();
}

// The shown text decides, so that typing "<path>" over a field's text in
// the designer rebinds it; the data field follows.
bool ControlFactory::CollectFromText(const ObjectRef &field, ReportFields &names) {
  const QString shown = text(field, "Text");
  if (!shown.startsWith(u'<') || !shown.endsWith(u'>') || shown.size() < 2)
    return false;
  const QString inner = shown.mid(1, shown.size() - 2);
  if (inner.isEmpty())
    return false;

  const auto fields = ClassFields();
  const QString dataField = text(field, "DataField");
  QString name;
  QString expression;
  QString newDataField;
  if (startsWithScriptPrefix(inner)) {
    expression =
        ConvertScriptExpression(fields, RemovePrefixOnce(inner, kScriptPrefix), hostapi::PathDirection::ToInternal);
    name = startsWithScriptPrefix(dataField) ? dataField
                                             : kScriptPrefix + text(field, "Name").remove(QStringLiteral("fld_"));
    newDataField = name;
  } else {
    if (!fields->lookup(inner, hostapi::LookupMode::Either))
      return false;
    newDataField = inner;
    name = fields->translatePath(inner, hostapi::PathDirection::ToInternal);
    expression = name;
  }
  if (dataField != newDataField) {
    ReplaceDataField(dataField, newDataField);
    field->set(QStringLiteral("DataField"), newDataField);
    field->set(QStringLiteral("Tag"), QString());
  }
  addOnce(names, name, expression);
  return true;
}

bool ControlFactory::CollectFromDataField(const ObjectRef &field, ReportFields &names) {
  const QString dataField = text(field, "DataField");
  if (dataField.isEmpty())
    return false;
  const auto fields = ClassFields();
  QString name;
  QString expression;
  if (startsWithScriptPrefix(dataField)) {
    const QString shown = text(field, "Text");
    if (shown.contains(kScriptPrefix, Qt::CaseInsensitive))
      return false;
    name = dataField;
    expression =
        ConvertScriptExpression(fields, RemovePrefixOnce(shown, kScriptPrefix), hostapi::PathDirection::ToInternal);
  } else {
    if (!fields->lookup(dataField, hostapi::LookupMode::Either))
      return false;
    name = fields->translatePath(dataField, hostapi::PathDirection::ToInternal);
    expression = name;
  }
  field->set(QStringLiteral("Tag"), QString());
  addOnce(names, name, expression);
  return true;
}

void ControlFactory::CollectFromGroupSections(ReportFields &names) {
  const auto fields = ClassFields();
  for (const ObjectRef &section : Sections()) {
    if (section->get(QStringLiteral("Type")).toLong() != kGroupHeader)
      continue;
    const QString dataField = text(section, "DataField");
    if (dataField.isEmpty())
      continue;
    if (startsWithScriptPrefix(dataField) && !names.Exists(dataField)) {
      // No control keeps the script field the group was on any more.
      section->set(QStringLiteral("DataField"), QString());
      continue;
    }
    if (fields->lookup(dataField, hostapi::LookupMode::Either)) {
      const QString name = fields->translatePath(dataField, hostapi::PathDirection::ToInternal);
      addOnce(names, name, name);
    }
  }
}

void ControlFactory::ReplaceDataField(const QString &oldName, const QString &newName) {
  for (const ObjectRef &section : Sections()) {
    if (section->get(QStringLiteral("Type")).toLong() == kGroupHeader &&
        text(section, "DataField").compare(oldName, Qt::CaseInsensitive) == 0)
      section->set(QStringLiteral("DataField"), newName);
    for (const ObjectRef &control : Controls(section)) {
      if (!isField(control))
        continue;
      // A running field takes the new data field whatever it had: layouts
      // have always been rebound that way.
      const bool sameName = text(control, "DataField").compare(oldName, Qt::CaseInsensitive) == 0;
      if ((sameName && control->get(QStringLiteral("CountKind")).toLong() != 0) ||
          control->get(QStringLiteral("RunningKind")).toLong() != 0)
        control->set(QStringLiteral("DataField"), newName);
    }
  }
}

} // namespace kordel::addin
