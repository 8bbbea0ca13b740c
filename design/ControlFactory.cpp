#include "design/ControlFactory.h"

#include "design/ControlPositioner.h"
#include "dialogs/DlgFieldSelector.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/StringCollection.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/LayoutWalk.h"

#include "hostapi/Classes.h"
#include "hostapi/Layout.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

#include <array>

namespace kordel::addin {

namespace {

constexpr std::int32_t kSpacing = 115;
constexpr float kGroupSectionHeight = 370;

enum SectionType : std::int32_t { GroupHeader = 4, GroupFooter = 5, Detail = 6 };

struct BuiltInFieldInfo {
  const char *stem;
  const char *textKey;
  const char *sample;     // nullptr: the field's own text
  const char *expression; // nullptr: none
};

// By type, 1 to 8.
constexpr std::array<BuiltInFieldInfo, 8> kBuiltInFields{{
    {"pField_date", "ControlFactory.BuiltInFieldDate", "0000-00-00 ", "=Extensions.Timestamp(\"yyyy-mm-dd\")"},
    {"pField_time", "ControlFactory.BuiltInFieldTime", "00:00:00", "=Extensions.Timestamp(\"hh:mm:ss\")"},
    {"pField_timestamp", "ControlFactory.BuiltInFieldTimestamp", "0000-00-00 00:00:00 ", "=Extensions.Timestamp()"},
    {"pField_pagenumber", "ControlFactory.BuiltInFieldPageIndex", "000 ", nullptr},
    {"pField_pagetotal", "ControlFactory.BuiltInFieldPageCount", "000 ", nullptr},
    {"pField_printedby", "ControlFactory.BuiltInFieldPrintedBy", "########## ##########",
     "=Extensions.Application.ActiveUser.Name"},
    {"pField_record", "ControlFactory.BuiltInFieldRecordIndex", nullptr, "=Records.RecordIndex"},
    {"pField_records", "ControlFactory.BuiltInFieldRecordCount", nullptr, "=Records.RecordCount"},
}};

QString text(const ObjectRef &object, const char *name) { return object->get(QString::fromLatin1(name)).toString(); }

} // namespace

// ---- the layout, late-bound

std::vector<ObjectRef> ControlFactory::Sections() const { return LayoutSections(activeReport_); }

std::vector<ObjectRef> ControlFactory::Controls(const ObjectRef &section) { return SectionControls(section); }

ObjectRef ControlFactory::SectionNamed(const QString &name) const {
  return activeReport_->get(QStringLiteral("Sections")).toObject()->invoke(QStringLiteral("Item"), {name}).toObject();
}

ObjectRef ControlFactory::AddControl(const QString &sectionName, const char *progId) const {
  return SectionNamed(sectionName)
      ->get(QStringLiteral("Controls"))
      .toObject()
      ->invoke(QStringLiteral("Add"), {QString::fromLatin1(progId)})
      .toObject();
}

std::shared_ptr<hostapi::Fields> ControlFactory::ClassFields() const { return page_->Class()->fields(); }

void ControlFactory::RefreshLayout() const { activeReport_->invoke(QStringLiteral("RefreshLayout")); }

// ---- names

QString ControlFactory::GetUniqueName(const QString &stem, int kind) const {
  const auto names = kind == 0 ? GetControlNames() : kind == 1 ? GetDataFieldNames() : GetSectionNames();
  std::int16_t number = 1;
  QString candidate = stem + QString::number(number);
  while (names->Exists(candidate).toBool()) {
    if (number == INT16_MAX)
      raiseError(ErrorNumber::Overflow, QStringLiteral("ControlFactory.GetUniqueName"));
    ++number;
    candidate = stem + QString::number(number);
  }
  return candidate;
}

std::shared_ptr<StringCollection> ControlFactory::GetControlNames() const {
  auto names = std::make_shared<StringCollection>();
  for (const ObjectRef &section : Sections()) {
    names->Add(text(section, "Name"));
    for (const ObjectRef &control : Controls(section))
      names->Add(text(control, "Name"));
  }
  return names;
}

std::shared_ptr<StringCollection> ControlFactory::GetDataFieldNames() const {
  auto names = std::make_shared<StringCollection>();
  const auto addOnce = [&](const QString &name) {
    if (!names->Exists(name).toBool())
      names->Add(name);
  };
  for (const ObjectRef &section : Sections()) {
    if (section->get(QStringLiteral("Type")).toLong() == GroupHeader)
      addOnce(text(section, "DataField"));
    for (const ObjectRef &control : Controls(section))
      if (control->typeName() == QLatin1String("Field"))
        addOnce(text(control, "DataField"));
  }
  return names;
}

std::shared_ptr<StringCollection> ControlFactory::GetSectionNames() const {
  auto names = std::make_shared<StringCollection>();
  for (const ObjectRef &section : Sections())
    names->Add(text(section, "Name"));
  return names;
}

// ---- sizes

void ControlFactory::FitFieldToText(const ObjectRef &field, const QString &sample) const {
  FitControlToText(field, text(field, "Text"), sample);
}

void ControlFactory::FitLabelToText(const ObjectRef &label, const QString &sample) const {
  FitControlToText(label, text(label, "Caption"), sample);
}

void ControlFactory::FitControlToText(const ObjectRef &control, const QString &text1, const QString &text2) const {
  try {
    const ObjectRef canvas = CreateObject(QString::fromLatin1(hostapi::kTextCanvasProgId));
    canvas->set(QStringLiteral("Font"), control->get(QStringLiteral("Font")));
    Args second{text2, Variant(), Variant()};
    canvas->call(QStringLiteral("MeasureText"), second);
    Args first{text1, Variant(), Variant()};
    canvas->call(QStringLiteral("MeasureText"), first);
    control->set(QStringLiteral("Width"), std::max(first[1].toLong(), second[1].toLong()));
    control->set(QStringLiteral("Height"), first[2]);
  } catch (const Error &) {
    // the control keeps the size it had: a field too narrow is no failure
  }
}

// ---- built-in fields

bool ControlFactory::CreateBuiltInField(std::int16_t fieldType, const QString &sectionName) {
  try {
    ControlPositioner positioner;
    positioner.Initialize(activeReport_, kSpacing);
    const ObjectRef field = AddControl(sectionName, hostapi::kFieldProgId);
    field->set(QStringLiteral("Tag"), QString::number(fieldType));

    QString sample;
    if (fieldType >= Date && fieldType <= RecordCount) {
      const BuiltInFieldInfo &info = kBuiltInFields[std::size_t(fieldType - 1)];
      field->set(QStringLiteral("Name"), GetUniqueName(QString::fromLatin1(info.stem), 0));
      field->set(QStringLiteral("Text"), GetMessage(QString::fromLatin1(info.textKey)));
      if (fieldType == RecordIndex)
        field->set(QStringLiteral("FieldMode"), 1);
      sample = info.sample ? QString::fromLatin1(info.sample) : text(field, "Text");
    } else {
      field->set(QStringLiteral("Text"), QStringLiteral("Field"));
      field->set(QStringLiteral("Name"), GetUniqueName(text(field, "Text").toLower(), 0));
      sample = text(field, "Text") + u' ';
    }
    AssignBuiltInExpression(field);
    FitFieldToText(field, sample);
    const std::int32_t halfHeight = Variant(field->get(QStringLiteral("Height")).toDouble() / 2).toLong();
    positioner.SetPosition(field, sectionName, 1, halfHeight);
    RefreshLayout();
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("ControlFactory.CreateBuiltInField"));
    return false;
  }
}

void ControlFactory::AssignBuiltInExpression(const ObjectRef &field) const {
  const bool vbscript = page_->Report()->ScriptLanguage().toLower() == QLatin1String("vbscript");
  const QString tag = text(field, "Tag");
  for (std::int16_t type = Date; type <= RecordCount; ++type) {
    if (tag != QString::number(type))
      continue;
    if (type == PageNumber) {
      field->set(QStringLiteral("RunningKind"), 2);
      field->set(QStringLiteral("CountKind"), 4);
    } else if (type == PageTotal) {
      field->set(QStringLiteral("CountKind"), 4);
    } else {
      // ";" ends the expression as a JScript statement, so built-in fields
      // stay valid in either script language.
      QString expression = QString::fromLatin1(kBuiltInFields[std::size_t(type - 1)].expression);
      if (!vbscript)
        expression += u';';
      field->set(QStringLiteral("DataField"), expression);
    }
    return;
  }
  field->set(QStringLiteral("Tag"), QString());
}

// ---- sections

bool ControlFactory::CreateGroupSection() {
  try {
    DlgFieldSelector dialog;
    dialog.SetFields(ClassFields());
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
    if (!dialog.Status())
      return true;

    const QString localPath = dialog.FullLocalPath();
    const QString stem = NormaliseName(localPath);
    const int detail = GetIndexOfDetailSection().toLong();
    if (detail == -1)
      return true;
    const ObjectRef sections = activeReport_->get(QStringLiteral("Sections")).toObject();
    // The footer first, after the detail; then the header at the detail's
    // place, which moves the detail down: the new group wraps the detail
    // most closely, inside any older group.
    sections->invoke(QStringLiteral("Add"),
                     {GetUniqueName(QStringLiteral("Sum") + stem, 2), detail + 1, GroupFooter, kGroupSectionHeight});
    sections->invoke(QStringLiteral("Add"),
                     {GetUniqueName(QStringLiteral("Group") + stem, 2), detail, GroupHeader, kGroupSectionHeight});
    sections->invoke(QStringLiteral("Item"), {detail}).toObject()->set(QStringLiteral("DataField"), localPath);
    RefreshLayout();
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("ControlFactory.CreateGroupSection"));
    return false;
  }
}

Variant ControlFactory::GetIndexOfDetailSection() const {
  const std::vector<ObjectRef> sections = Sections();
  for (std::size_t i = 0; i < sections.size(); ++i)
    if (sections[i]->get(QStringLiteral("Type")).toLong() == Detail)
      return std::int32_t(i);
  return -1;
}

void ControlFactory::RemoveSectionByType(std::int32_t sectionType) {
  const ObjectRef sections = activeReport_->get(QStringLiteral("Sections")).toObject();
  for (int i = sections->get(QStringLiteral("Count")).toLong() - 1; i >= 0; --i)
    if (sections->invoke(QStringLiteral("Item"), {i}).toObject()->get(QStringLiteral("Type")).toLong() == sectionType)
      sections->invoke(QStringLiteral("Remove"), {i});
}

bool ControlFactory::SectionTypeExists(std::int32_t sectionType) const {
  bool found = false;
  for (const ObjectRef &section : Sections())
    found = section->get(QStringLiteral("Type")).toLong() == sectionType || found;
  return found;
}

} // namespace kordel::addin
