// The sub page operations of the control factory. A sub report control
// holds the whole binding to its page: Tag is the page's guid, ReportName
// the page's name and Width its width; the control is the master of both
// at every save.

#include "design/ControlFactory.h"

#include "design/ControlPositioner.h"
#include "dialogs/DlgSelSection.h"
#include "dialogs/DlgSelectSubPage.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "document/StringCollection.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"

#include "hostapi/HostTools.h"
#include "hostapi/Layout.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

namespace kordel::addin {

namespace {

constexpr std::int32_t kSpacing = 115;

QString text(const ObjectRef &object, const char *name) { return object->get(QString::fromLatin1(name)).toString(); }

bool isSubReport(const ObjectRef &control) { return control->typeName() == QLatin1String("SubReport"); }

} // namespace

std::shared_ptr<StringCollection> ControlFactory::GetSubPageNames() const {
  auto names = std::make_shared<StringCollection>();
  for (const ObjectRef &section : Sections())
    for (const ObjectRef &control : Controls(section))
      if (isSubReport(control))
        names->Add(text(control, "ReportName"));
  return names;
}

bool ControlFactory::CreateSubPage(ObjectRef &control) {
  try {
    DlgSelectSubPage dialog;
    dialog.SetFields(ClassFields());
    dialog.SetSectionNames(GetSectionNames());
    dialog.SetSubPageNames(GetSubPageNames());
    if (activeSection_)
      dialog.SetActiveSectionName(text(activeSection_, "Name"));
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
    SetBusyCursor();
    if (!dialog.Status()) {
      // A control the user drew for the page goes again with the choice.
      RemoveSubPage(control, QString());
      ResetCursor();
      return true;
    }

    const QString pageName = dialog.NewPageName();
    QString source = dialog.NewPageSource();
    const QString sectionName = dialog.PageSectionName();
    // The source of a sub page is the whole path from the top page.
    if (const auto parent = page_->Parent(); parent && !parent->Guid().isEmpty())
      source = page_->Source() + u'.' + source;

    if (!control) {
      ControlPositioner positioner;
      positioner.Initialize(activeReport_, kSpacing);
      control = AddControl(sectionName, hostapi::kSubReportProgId);
      control->set(QStringLiteral("Name"), GetUniqueName(QString(source).remove(u'.'), 0));
      positioner.SetPosition(control, sectionName, 0, kSpacing);
      // A sub report spans the whole print width.
      control->set(QStringLiteral("Left"), 0);
      control->set(QStringLiteral("Width"), activeReport_->get(QStringLiteral("PrintWidth")));
    }
    const QString guid = HostTools()->newGuid();
    control->set(QStringLiteral("ReportName"), pageName);
    control->set(QStringLiteral("Tag"), guid);
    page_->Report()->AddPage(guid, pageName, source, page_->Guid(), Variant());
    RefreshLayout();
    ResetCursor();
    return true;
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ControlFactory.CreateSubPage"));
    return false;
  }
}

void ControlFactory::MoveSubReport(const ObjectRef &control) {
  try {
    const auto sectionNames = GetSectionNames();
    sectionNames->Remove(text(activeSection_, "Name"));
    DlgSelSection dialog;
    dialog.SetSectionNames(sectionNames);
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
    if (!dialog.Status())
      return;

    const QString name = text(control, "Name");
    const ObjectRef moved = AddControl(dialog.SectionName(), hostapi::kSubReportProgId);
    // Every setting of the control goes with it; the name only once the
    // old control has freed it.
    for (const char *property : {"BackStyle", "BorderStyle", "BackColor", "BorderColor", "Visible", "Height", "Left",
                                 "ReportName", "Tag", "Top", "Width"})
      moved->set(QString::fromLatin1(property), control->get(QString::fromLatin1(property)));
    activeSection_->get(QStringLiteral("Controls")).toObject()->invoke(QStringLiteral("Remove"), {name});
    moved->set(QStringLiteral("Name"), name);
    RefreshLayout();
  } catch (...) {
    ErrorMessage(QStringLiteral("ControlFactory.MoveSubReport"));
  }
}

void ControlFactory::RemoveSubPage(ObjectRef &control, const QString &pageGuid) {
  if (page_->Report()->PageExists(pageGuid))
    page_->Pages()->Page(pageGuid)->Delete();
  if (control)
    RemoveSubReportControl(control);
}

void ControlFactory::RemoveSubReportControl(ObjectRef &control) {
  if (!control)
    return;
  const QString name = text(control, "Name");
  bool removed = false;
  for (const ObjectRef &section : Sections()) {
    const ObjectRef controls = section->get(QStringLiteral("Controls")).toObject();
    const int count = controls->get(QStringLiteral("Count")).toLong();
    for (int i = 0; i < count && !removed; ++i)
      if (text(controls->invoke(QStringLiteral("Item"), {i}).toObject(), "Name") == name) {
        controls->invoke(QStringLiteral("Remove"), {i});
        removed = true;
      }
    if (removed)
      break;
  }
  RefreshLayout();
  control.reset();
}

void ControlFactory::UpdateSubPages() {
  StringCollection seen;
  const auto report = page_->Report();
  for (const ObjectRef &section : Sections()) {
    const std::vector<ObjectRef> controls = Controls(section);
    for (auto it = controls.rbegin(); it != controls.rend(); ++it) {
      ObjectRef control = *it;
      if (!isSubReport(control))
        continue;
      const QString guid = text(control, "Tag");
      if (!report->PageExists(guid)) {
        // The control points at a page that is gone: it is taken out and
        // the save stops. The message would name the control, but the
        // control is gone by the time it is read, so what reaches the
        // caller is that failed read.
        RemoveSubReportControl(control);
        raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("ControlFactory.UpdateSubPages"));
      }
      if (!seen.Exists(guid).toBool())
        seen.Add(guid);
      const auto subPage = report->LookupPage(guid);
      subPage->SetName(text(control, "ReportName"));
      subPage->SetWidth(control->get(QStringLiteral("Width")).toLong());
    }
  }
  const auto pages = page_->Pages();
  for (int i = pages->Count(); i >= 1; --i) {
    const auto subPage = pages->Item(i);
    if (!seen.Exists(subPage->Guid()).toBool())
      subPage->Delete();
  }
  RefreshLayout();
}

} // namespace kordel::addin
