#include "design/ReportDesigner.h"

#include "design/ControlFactory.h"
#include "document/Page.h"
#include "document/Report.h"
#include "document/StringCollection.h"
#include "dialogs/DlgCustomize.h"
#include "dialogs/DlgOptions.h"
#include "dialogs/DlgPageProperties.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/LayoutWalk.h"
#include "common/ScriptExpression.h"
#include "common/Settings.h"

#include "hostapi/Classes.h"
#include "hostapi/EmbeddedWindow.h"
#include "hostapi/Layout.h"
#include "hostapi/Ui.h"

#include "core/Error.h"

#include <QVBoxLayout>

namespace kordel::addin {

namespace {

constexpr std::int32_t kDefaultTopPageWidth = 11906;
constexpr int kUserDefinedPaper = -1;
constexpr int kDefaultToolbars = 146;
constexpr int kLayoutInMemory = 2;

// The designer's action codes used here.
constexpr int kActionCut = 4;
constexpr int kActionPaste = 5;
constexpr int kActionCopy = 6;

// Change kinds of the designer's events.
constexpr int kControlMoved = 0;
constexpr int kControlResized = 1;
constexpr int kControlDeleting = 2;
constexpr int kSectionDeleted = 4;
constexpr int kPrintWidthChanging = 6;
constexpr int kControlAdded = 7;

const QString kScriptPrefix = QStringLiteral("vbscript:");
// The designer's own settings (made at each use: the root is a global of
// another file).
QString designerKey() { return kSettingsRoot + QStringLiteral("\\Designer"); }

QString text(const ObjectRef &object, const char *name) { return object->get(QString::fromLatin1(name)).toString(); }

} // namespace

// The designer's event sink: it answers the designer's events by name and
// hands them to the control, whose handlers catch their own failures.
class ReportDesigner::Events : public Object {
public:
  explicit Events(ReportDesigner &owner) : owner_(owner) {}
  QString typeName() const override { return QStringLiteral("ReportDesignerEvents"); }

protected:
  const MemberTable &memberTable() const override {
    using E = Events;
    static const MemberTable table{{
        method<E>("LayoutChanged",
                  [](E &e, Args &a) {
                    e.owner_.ard_LayoutChanged(a[0].toObject(), a[1].toLong());
                    return Variant();
                  }),
        method<E>("ValidateChange",
                  [](E &e, Args &a) {
                    bool cancel = a[2].toBool();
                    e.owner_.ard_ValidateChange(a[0].toObject(), a[1].toLong(), cancel);
                    a[2] = cancel;
                    return Variant();
                  }),
        method<E>("ContextMenuOpen",
                  [](E &e, Args &a) {
                    bool cancel = a[2].toBool();
                    e.owner_.ard_ContextMenuOpen(a[0].toObject(), a[1].toLong(), cancel);
                    a[2] = cancel;
                    return Variant();
                  }),
        method<E>("SelectionChanged",
                  [](E &e, Args &) {
                    e.owner_.ard_SelectionChanged();
                    return Variant();
                  }),
        method<E>("Message",
                  [](E &e, Args &a) {
                    a[3] = e.owner_.ard_Message(a[0].toLong(), a[1].toString(), a[2].toLong());
                    return Variant();
                  }),
        method<E>("GotFocus",
                  [](E &e, Args &) {
                    e.owner_.ard_GotFocus();
                    return Variant();
                  }),
        method<E>("LostFocus",
                  [](E &e, Args &) {
                    e.owner_.ard_LostFocus();
                    return Variant();
                  }),
    }};
    return table;
  }

private:
  ReportDesigner &owner_;
};

ReportDesigner::ReportDesigner(QWidget *parent)
    : QWidget(parent), designer_(CreateObject(QString::fromLatin1(hostapi::kDesignerProgId))),
      events_(std::make_shared<Events>(*this)), deletedSubPages_(std::make_shared<StringCollection>()) {
  setObjectName(QStringLiteral("Designer"));
  designer_->set(QStringLiteral("EventSink"), Variant(ObjectRef(events_)));
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  if (auto *embedded = dynamic_cast<hostapi::EmbeddedWindow *>(designer_.get()))
    layout->addWidget(embedded->window());
}

ReportDesigner::~ReportDesigner() {
  // The designer's window goes with this widget; its events must not
  // reach a half-destroyed owner.
  designer_->set(QStringLiteral("EventSink"), Variant(ObjectRef()));
}

ObjectRef ReportDesigner::Layout() const { return designer_->get(QStringLiteral("Report")).toObject(); }

ControlFactory ReportDesigner::Factory(bool withSection) const {
  ControlFactory factory;
  factory.SetActiveReport(Layout());
  if (withSection)
    factory.SetActiveSection(activeSection_);
  factory.SetReportPage(page_);
  return factory;
}

bool ReportDesigner::HasFixedWidth() const {
  return page_->Parent() || page_->Report()->PaperSize() != kUserDefinedPaper;
}

ObjectRef ReportDesigner::ScratchLayout(const QByteArray &layout) const {
  const ObjectRef scratch = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  scratch->invoke(QStringLiteral("LoadLayout"), {Variant(layout)});
  return scratch;
}

QByteArray ReportDesigner::SavedLayout(const ObjectRef &layout) const {
  Args args{QString(), kLayoutInMemory, Variant()};
  layout->call(QStringLiteral("SaveLayout"), args);
  return args[2].isByteArray() ? args[2].rawBytes() : args[2].toString().toUtf8();
}

// ---- showing and saving a page

bool ReportDesigner::ShowPage(const std::shared_ptr<Page> &page) {
  try {
    if (page_ && page_->Guid() != page->Guid())
      SavePage();
    page_ = page;
    activeSection_.reset();

    const Variant stored = page->LayoutTemplate();
    const bool empty =
        stored.isEmpty() || (stored.isByteArray() ? stored.rawBytes().isEmpty() : stored.toString().isEmpty());
    ObjectRef scratch;
    if (empty) {
      designer_->invoke(QStringLiteral("NewReport"));
      scratch = ScratchLayout(SavedLayout(Layout()));
      scratch->set(QStringLiteral("PrintWidth"), page->Width());
      isNewPage_ = true;
    } else {
      scratch = ScratchLayout(stored.isByteArray() ? stored.rawBytes() : stored.toString().toUtf8());
      scratch->set(QStringLiteral("ScriptLanguage"), page->Report()->ScriptLanguage());
      if (!page->Parent()) {
        if (page->Width() == 0)
          page->SetWidth(kDefaultTopPageWidth);
      } else if (!page->Edited()) {
        // A sub page nobody edited yet loses the page header and footer
        // of the layout it started from.
        ControlFactory factory;
        factory.SetActiveReport(scratch);
        factory.SetReportPage(page);
        factory.RemoveSectionByType(3);
        factory.RemoveSectionByType(2);
      }
      scratch->set(QStringLiteral("PrintWidth"), page->Width());
      ConvertDataFields(scratch, 1);
      isNewPage_ = false;
    }
    Layout()->invoke(QStringLiteral("LoadLayout"), {Variant(SavedLayout(scratch))});
    designer_->set(QStringLiteral("IsDirty"), false);
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.ShowPage"));
    return false;
  }
}

void ReportDesigner::SavePage() {
  if (!page_ || (!designer_->get(QStringLiteral("IsDirty")).toBool() && !isNewPage_))
    return;
  ControlFactory factory = Factory(false);
  factory.UpdateSubPages();
  emit UpdatePageOverview();
  factory.UpdateReportFields();
  const ObjectRef layout = Layout();
  if (!page_->Parent() && page_->Report()->PaperSize() == kUserDefinedPaper) {
    const std::int32_t width = layout->get(QStringLiteral("PrintWidth")).toLong();
    page_->Report()->SetPrintWidth(width);
    page_->SetWidth(width);
  }
  page_->SetLayoutTemplate(Variant(StoredLayout()));
  page_->SetEdited(true);
  isNewPage_ = false;
}

QByteArray ReportDesigner::StoredLayout() const {
  // The page keeps internal paths; the designer goes on with local ones.
  const ObjectRef stored = ScratchLayout(SavedLayout(Layout()));
  ConvertDataFields(stored, 0);
  return SavedLayout(stored);
}

void ReportDesigner::Refresh() {
  ShowPage(page_);
  designer_->set(QStringLiteral("IsDirty"), true);
}

void ReportDesigner::ConvertDataFields(const ObjectRef &layout, int direction) const {
  const auto fields = page_->Class()->fields();
  // One unknown name must not stop the others: every step ignores its
  // own failure.
  for (const ObjectRef &section : LayoutSections(layout)) {
    try {
      const QString dataField = text(section, "DataField");
      if (dataField.startsWith(kScriptPrefix, Qt::CaseInsensitive))
        section->set(QStringLiteral("DataField"), ConvertScriptExpression(fields, dataField, direction));
      else if (!dataField.isEmpty() && fields->lookup(dataField, hostapi::LookupMode::Either))
        section->set(QStringLiteral("DataField"), fields->translatePath(dataField, direction));
    } catch (const Error &) {
      // a section without a data field of its own
    }
    for (const ObjectRef &control : SectionControls(section)) {
      try {
        if (control->typeName() != QLatin1String("Field"))
          continue;
        const QString dataField = text(control, "DataField");
        if (dataField.isEmpty())
          continue;
        const bool script = dataField.startsWith(kScriptPrefix, Qt::CaseInsensitive);
        if (!script && fields->lookup(dataField, hostapi::LookupMode::Either)) {
          const QString converted = fields->translatePath(dataField, direction);
          control->set(QStringLiteral("DataField"), converted);
          if (direction == 1)
            control->set(QStringLiteral("Text"), u'<' + converted + u'>');
        } else if (script && direction == 1) {
          control->set(QStringLiteral("Text"), ConvertScriptExpression(fields, text(control, "Text"), 1));
        }
      } catch (const Error &) {
        // the field keeps its texts
      }
    }
  }
  layout->invoke(QStringLiteral("RefreshLayout"));
}

// ---- commands

void ReportDesigner::CustomizeDesigner() {
  try {
    DlgCustomize dialog;
    dialog.SetToolBars(std::int16_t(designer_->get(QStringLiteral("ToolbarsVisible")).toLong()));
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
    if (dialog.Status())
      LoadSettings();
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.CustomizeDesigner"));
  }
}

void ReportDesigner::EditOptions() {
  try {
    DlgOptions dialog;
    dialog.SetAlignToGrid(designer_->get(QStringLiteral("AlignToGrid")).toBool());
    dialog.SetGridX(designer_->get(QStringLiteral("GridX")).toInteger());
    dialog.SetGridY(designer_->get(QStringLiteral("GridY")).toInteger());
    dialog.SetRulerUnits(designer_->get(QStringLiteral("RulerUnits")).toInteger());
    dialog.SetShowGrid(designer_->get(QStringLiteral("ShowGrid")).toBool());
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
    if (!dialog.Status())
      return;
    designer_->set(QStringLiteral("AlignToGrid"), dialog.AlignToGrid());
    designer_->set(QStringLiteral("GridX"), dialog.GridX());
    designer_->set(QStringLiteral("GridY"), dialog.GridY());
    designer_->set(QStringLiteral("RulerUnits"), dialog.RulerUnits());
    designer_->set(QStringLiteral("ShowGrid"), dialog.ShowGrid());
    LoadSettings();
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.EditOptions"));
  }
}

void ReportDesigner::EditPageProperties() {
  try {
    Factory(false).UpdateReportFields();
    DlgPageProperties dialog;
    dialog.SetDesigner(this);
    dialog.SetPage(page_);
    dialog.Form_Load();
    hostapi::ui().showModal(dialog);
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.EditPageProperties"));
  }
}

void ReportDesigner::InsertBuiltInField(std::int16_t fieldType) {
  try {
    SetBusyCursor();
    if (!activeSection_) {
      ResetCursor();
      ShowMessage(GetMessage(QStringLiteral("ReportDesigner.NoActiveSection")), 64);
      return;
    }
    Factory(true).CreateBuiltInField(fieldType, text(activeSection_, "Name"));
    ResetCursor();
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ReportDesigner.InsertBuiltInField"));
  }
}

void ReportDesigner::InsertGroupSection() {
  try {
    Factory(true).CreateGroupSection();
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.InsertGroupSection"));
  }
}

void ReportDesigner::InsertPageFields() {
  try {
    SetBusyCursor();
    Factory(true).CreatePageFields();
    ResetCursor();
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ReportDesigner.InsertPageFields"));
  }
}

void ReportDesigner::InsertScriptFields() {
  try {
    SetBusyCursor();
    Factory(true).CreateScriptFields();
    ResetCursor();
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ReportDesigner.InsertScriptFields"));
  }
}

bool ReportDesigner::InsertSubPage(ObjectRef &subReportControl) {
  try {
    SetBusyCursor();
    const bool made = Factory(true).CreateSubPage(subReportControl);
    if (made && subReportControl)
      emit SubPageAdded(text(subReportControl, "Tag"), text(subReportControl, "ReportName"), page_->Guid());
    ResetCursor();
    return made;
  } catch (...) {
    ResetCursor();
    ErrorMessage(QStringLiteral("ReportDesigner.InsertSubPage"));
    return false;
  }
}

void ReportDesigner::MoveSubReport() {
  try {
    const ObjectRef selected =
        designer_->get(QStringLiteral("Selection")).toObject()->invoke(QStringLiteral("Item"), {0}).toObject();
    Factory(true).MoveSubReport(selected);
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.MoveSubReport"));
  }
}

void ReportDesigner::RemoveSubPage(const QString &pageGuid) {
  try {
    ObjectRef none;
    Factory(false).RemoveSubPage(none, pageGuid);
    emit SubPageRemoved(pageGuid);
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.RemoveSubPage"));
  }
}

bool ReportDesigner::IsActionEnabled(int action) const {
  return (designer_->invoke(QStringLiteral("QueryAction"), {action}).toLong() & 1) != 0;
}

bool ReportDesigner::IsAddSectionEnabled(int sectionType) const {
  if (sectionType < 0 || sectionType == 4 || sectionType == 5 || sectionType > 6)
    return true;
  if (sectionType == 6 || page_->Parent())
    return false;
  return !Factory(false).SectionTypeExists(sectionType);
}

void ReportDesigner::OnKeyDown(int &keyCode, int &shift) {
  try {
    if (!hasFocus_ || (shift & 2) == 0)
      return;
    const QChar key = QChar(keyCode).toLower();
    const int action = key == u'c' ? kActionCopy : key == u'x' ? kActionCut : key == u'v' ? kActionPaste : 0;
    if (action == 0 || !IsActionEnabled(action))
      return;
    if (action == kActionPaste)
      SetBusyCursor();
    designer_->invoke(QStringLiteral("ExecuteAction"), {action});
    if (action == kActionPaste)
      ResetCursor();
    keyCode = 0;
    shift = 0;
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.OnKeyDown"));
  }
}

bool ReportDesigner::SetActiveSection() {
  try {
    activeSection_.reset();
    const ObjectRef selection = designer_->get(QStringLiteral("Selection")).toObject();
    if (selection->get(QStringLiteral("Count")).toLong() == 0)
      return false;
    const ObjectRef first = selection->invoke(QStringLiteral("Item"), {0}).toObject();
    if (first->typeName() == QLatin1String("Section")) {
      activeSection_ = first;
    } else {
      for (const ObjectRef &section : LayoutSections(Layout()))
        for (const ObjectRef &control : SectionControls(section))
          if (control == first)
            activeSection_ = section;
    }
    return activeSection_ != nullptr;
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.SetActiveSection"));
    return false;
  }
}

// ---- settings

void ReportDesigner::LoadSettings() {
  fieldFont_ = ReadFont(kSettingsRoot + QStringLiteral("\\Designer\\FieldFont"));
  labelFont_ = ReadFont(kSettingsRoot + QStringLiteral("\\Designer\\LabelFont"));
  // Menu, explorer and "none" are the add-in's to give: its window has
  // the menus and the page tree.
  int accessible = designer_->get(QStringLiteral("ToolbarsAccessible")).toLong();
  for (int bit : {64, 32, 1})
    if (accessible & bit)
      accessible -= bit;
  designer_->set(QStringLiteral("ToolbarsAccessible"), accessible);
  designer_->set(QStringLiteral("ToolbarsVisible"),
                 ReadSetting(designerKey(), QStringLiteral("ShowToolbars"), kDefaultToolbars).toLong());
}

void ReportDesigner::SaveEditorSettings() {
  try {
    WriteSetting(designerKey(), QStringLiteral("ShowToolbars"),
                 QString::number(designer_->get(QStringLiteral("ToolbarsVisible")).toLong()));
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.SaveEditorSettings"));
  }
}

// ---- the designer's events

void ReportDesigner::ard_LayoutChanged(const ObjectRef &object, int kind) {
  emit Changed();
  try {
    if (kind == kControlResized || (kind == kControlMoved && HasFixedWidth())) {
      // A control may not reach past the page's width; the layout keeps
      // the page's width. Failures leave the control as it is.
      try {
        const double pageWidth = page_->Width();
        const double left = object->get(QStringLiteral("Left")).toDouble();
        if (left + object->get(QStringLiteral("Width")).toDouble() > pageWidth) {
          object->set(QStringLiteral("Width"), pageWidth - left);
          Layout()->set(QStringLiteral("PrintWidth"), pageWidth);
        }
      } catch (const Error &) {
        // not a control with a place
      }
    } else if (kind == kSectionDeleted) {
      // The keys stay: a later deletion walks them again, finds no page
      // and tells of its removal once more.
      for (int i = 1; i <= deletedSubPages_->Count(); ++i)
        RemoveSubPage(deletedSubPages_->Item(i));
    } else if (kind == kControlAdded) {
      if (object->typeName() == QLatin1String("SubReport")) {
        if (!page_->Report()->PageExists(text(object, "Tag"))) {
          ObjectRef control = object;
          InsertSubPage(control);
        }
      } else if (const QString type = object->typeName();
                 type == QLatin1String("DataControl") || type == QLatin1String("XMLDataControl") ||
                 type == QLatin1String("DAODataControl") || type == QLatin1String("RDODataControl")) {
        // A report's data comes from the database alone.
        ShowMessage(GetMessage(QStringLiteral("ReportDesigner.OnAddDataControl")), 48);
        Layout()
            ->get(QStringLiteral("Sections"))
            .toObject()
            ->invoke(QStringLiteral("Item"), {QStringLiteral("Detail")})
            .toObject()
            ->get(QStringLiteral("Controls"))
            .toObject()
            ->invoke(QStringLiteral("Remove"), {text(object, "Name")});
      }
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.ard_LayoutChanged"));
  }
}

void ReportDesigner::ard_ValidateChange(const ObjectRef &object, int kind, bool &cancel) {
  try {
    if (kind == kControlDeleting) {
      if (object->typeName() == QLatin1String("SubReport"))
        RemoveSubPage(text(object, "Tag"));
    } else if (kind == kSectionDeleted) {
      const std::vector<ObjectRef> controls = SectionControls(object);
      for (auto it = controls.rbegin(); it != controls.rend(); ++it)
        if ((*it)->typeName() == QLatin1String("SubReport"))
          deletedSubPages_->Add(text(*it, "Tag"));
    } else if (kind == kPrintWidthChanging) {
      cancel = HasFixedWidth();
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.ard_ValidateChange"));
  }
}

void ReportDesigner::ard_ContextMenuOpen(const ObjectRef &sourceObject, int menuType, bool &cancel) {
  emit ContextMenuOpen(sourceObject, menuType, cancel);
}

void ReportDesigner::ard_SelectionChanged() { emit SelectionChanged(); }

int ReportDesigner::ard_Message(int number, const QString &text, int flags) {
  try {
    return ShowDesignerMessage(number, text, flags);
  } catch (...) {
    ErrorMessage(QStringLiteral("ReportDesigner.ard_Message"));
    return 0;
  }
}

int ReportDesigner::ShowDesignerMessage(int number, const QString &text, int flags) {
  int added = -1;
  switch (number) {
  case 6:
  case 18: added = 64; break;
  case 19: added = 48; break;
  case 1:
  case 8:
  case 9:
  case 10:
  case 11:
  case 12:
  case 13:
  case 20: added = 16; break;
  default: break;
  }
  if (added < 0)
    return ShowMessage(text, flags);
  return ShowMessage(GetMessage(QStringLiteral("ReportDesigner.") + QString::number(number), text), flags | added);
}

} // namespace kordel::addin
