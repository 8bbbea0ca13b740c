#include "document/Page.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "document/Pages.h"
#include "document/PropertyStorage.h"
#include "document/Report.h"
#include "document/ReportFields.h"
#include "document/SortFields.h"
#include "hostapi/ScriptPolicy.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <QLoggingCategory>

namespace kordel::addin {

Q_LOGGING_CATEGORY(lcLayoutScripts, "kordel.layout.scripts")

namespace {

const QString kName = QStringLiteral("name");
const QString kSource = QStringLiteral("source");
const QString kEdited = QStringLiteral("edited");
const QString kHideEmptyPage = QStringLiteral("hideemptypage");
const QString kShowStripes = QStringLiteral("showstripes");
const QString kStripeFirst = QStringLiteral("stripefirst");
const QString kWidth = QStringLiteral("width");

QString flagText(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

// The switches are false only for the exact text "0".
bool flagFromText(const QString &text) { return text != QStringLiteral("0"); }

} // namespace

// ---- Text and bytes ----

QByteArray Page::Utf8BytesFromString(const QString &text) { return text.isEmpty() ? QByteArray() : text.toUtf8(); }

QString Page::Utf8BytesToString(const QByteArray &bytes) {
  return bytes.isEmpty() ? QString() : QString::fromUtf8(bytes);
}

// ---- Sections and settings ----

void Page::BuildSectionPaths() {
  pageSection_ = QStringLiteral("pages\\%0").replace(QStringLiteral("%0"), guid_);
  fieldsSection_ = pageSection_ + QStringLiteral("\\fields");
  fieldsPrefix_ = fieldsSection_ + u'\\';
  sortingSection_ = pageSection_ + QStringLiteral("\\sorting");
  subPagesSection_ = pageSection_ + QStringLiteral("\\subpages");
}

PropertyStorage &Page::storage() const {
  if (!storage_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Page"), QStringLiteral("The page is not loaded"));
  return *storage_;
}

QString Page::setting(const QString &key, const QString &defaultValue) const {
  return storage().GetSetting(pageSection_, key, defaultValue);
}

void Page::putSetting(const QString &key, const QString &value) { storage().PutSetting(pageSection_, key, value); }

// ---- Properties ----

std::shared_ptr<hostapi::Class> Page::Class() const {
  try {
    const auto report = Report();
    if (!report)
      return nullptr;
    const auto reportClass = report->Class();
    if (IsTopPage() || !reportClass)
      return reportClass;
    const auto link = reportClass->fields()->lookup(Source(), hostapi::LookupMode::Either);
    const auto related = link ? link->relatedField() : nullptr;
    return related ? related->fieldClass() : nullptr;
  } catch (...) {
    return nullptr; // a class that cannot be found is no class, without a report
  }
}

bool Page::Edited() const { return Variant(setting(kEdited, QStringLiteral("1"))).toInteger() > 0; }

void Page::SetEdited(bool edited) { putSetting(kEdited, flagText(edited)); }

std::shared_ptr<ReportFields> Page::Fields() {
  if (!fields_)
    fields_ = std::make_shared<ReportFields>();
  return fields_;
}

bool Page::HideEmptyPage() const { return flagFromText(setting(kHideEmptyPage, QStringLiteral("0"))); }

void Page::SetHideEmptyPage(bool hide) {
  putSetting(kHideEmptyPage, flagText(hide));
  modified_ = true;
}

bool Page::StripeDetail() const { return flagFromText(setting(kShowStripes, QStringLiteral("0"))); }

void Page::SetStripeDetail(bool stripe) {
  putSetting(kShowStripes, flagText(stripe));
  modified_ = true;
}

bool Page::StripeFirst() const { return flagFromText(setting(kStripeFirst, QStringLiteral("0"))); }

void Page::SetStripeFirst(bool first) {
  putSetting(kStripeFirst, flagText(first));
  modified_ = true;
}

QString Page::Name() const { return setting(kName, QString()); }

void Page::SetName(const QString &name) {
  putSetting(kName, name);
  modified_ = true;
}

QString Page::Source() const { return setting(kSource, QString()); }

void Page::SetSource(const QString &source) {
  putSetting(kSource, source);
  modified_ = true;
}

std::int32_t Page::Width() const {
  const std::int32_t width = Variant(setting(kWidth, QStringLiteral("0"))).toLong();
  if (width == 0 && !Parent())
    return Report()->PrintWidth();
  return width;
}

void Page::SetWidth(std::int32_t width) {
  putSetting(kWidth, QString::number(width));
  modified_ = true;
  if (!Parent())
    Report()->SetPrintWidth(width);
}

std::shared_ptr<Pages> Page::Pages() {
  if (!pages_)
    pages_ = std::make_shared<addin::Pages>();
  return pages_;
}

std::shared_ptr<Page> Page::Parent() const {
  if (parentGuid_.isEmpty())
    return nullptr;
  return Report()->LookupPage(parentGuid_);
}

std::shared_ptr<SortFields> Page::SortFields() {
  if (!sortFields_)
    sortFields_ = std::make_shared<addin::SortFields>();
  return sortFields_;
}

// ---- The layout ----

bool Page::IsNew() const { return LayoutTemplate().isEmpty(); }

void Page::SetLayoutTemplate(const Variant &layout) {
  storage().DeleteResource(guid_);
  if (!layout.isEmpty())
    storage().PutResource(guid_, layout.toBytes());
  modified_ = true;
}

Variant Page::LayoutTemplate() const {
  const Variant stored = storage().GetResource(guid_);
  const auto layout = XmlDocument::create();
  try {
    layout->load(stored.isByteArray() ? stored.rawBytes() : QByteArray());
  } catch (const Error &) {
    return stored; // no layout, or bytes that are not XML: returned unchecked
  }
  const auto policy =
      std::dynamic_pointer_cast<hostapi::ScriptPolicy>(CreateObject(QString::fromLatin1(hostapi::kScriptPolicyProgId)));
  if (!policy)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Page.LayoutTemplate"));
  QString working = Utf8BytesToString(stored.rawBytes());
  const auto scripts = layout->selectNodes(QStringLiteral("//Script"));
  for (int i = 0; i < scripts->length(); ++i) {
    const auto element = scripts->item(i);
    const auto first = element->firstChild();
    const auto node = first ? first : element;
    const QString text = node->text();
    const QString checked = policy->checkScript(text);
    if (checked == text)
      continue;
    const QString oldForm = node->xml();
    node->setText(checked);
    const QString newForm = node->xml();
    working = BlockUnsafeScript(working, oldForm, newForm);
  }
  return Variant(Utf8BytesFromString(working));
}

QString Page::BlockUnsafeScript(const QString &xml, const QString &oldText, const QString &newText) {
  qCDebug(lcLayoutScripts).noquote()
      << QStringLiteral("Blocked unsafe script: \r\n  Old: %1\r\n  New: %2\r\n").arg(oldText, newText);
  QString result = xml;
  result.replace(oldText, newText, Qt::CaseSensitive);
  if (result == xml)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Failed to block unsafe script."));
  return result;
}

// ---- Life cycle ----

bool Page::Create(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
                  const QString &guid, const QString &name, const QString &source, const QString &parentGuid,
                  const Variant &layoutTemplate) {
  try {
    report_ = report;
    storage_ = storage;
    guid_ = guid;
    parentGuid_ = parentGuid;
    BuildSectionPaths();
    SetName(name);
    SetSource(source);
    SetLayoutTemplate(layoutTemplate);
    SetEdited(false);
    modified_ = true;
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Page.Create"));
    return false;
  }
}

void Page::Reset() {
  storage_.reset();
  Fields()->RemoveAll();
  SortFields()->RemoveAll();
}

void Page::Load(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
                const QString &guid, const QString &parentGuid) {
  QStringList path;
  QSet<QString> loaded;
  LoadTree(report, storage, guid, parentGuid, path, loaded);
}

void Page::CheckSubPage(const QString &subGuid, const QStringList &path, const QSet<QString> &loaded) const {
  const QString name = storage_->GetSetting(QStringLiteral("pages\\") + subGuid, kName, QString());
  QString problem;
  if (subGuid == guid_ || path.contains(subGuid))
    problem = GetMessage(QStringLiteral("Pages.Cycle"), name, subGuid);
  else if (loaded.contains(subGuid))
    problem = GetMessage(QStringLiteral("Pages.ListedTwice"), name, subGuid);
  else if (path.size() + 1 >= kMaxPageDepth)
    problem = GetMessage(QStringLiteral("Pages.TooDeep"), QString::number(kMaxPageDepth), name, subGuid);
  if (!problem.isEmpty())
    raiseError(ErrorNumber::InvalidFileFormat, QStringLiteral("Page.Load"), problem);
}

void Page::LoadTree(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
                    const QString &guid, const QString &parentGuid, QStringList &path, QSet<QString> &loaded) {
  Reset();
  report_ = report;
  storage_ = storage;
  guid_ = guid;
  parentGuid_ = parentGuid;
  BuildSectionPaths();

  const auto sortNames = storage_->GetSettingNames(sortingSection_);
  for (int i = 1; i <= sortNames->Count(); ++i) {
    const QString key = sortNames->Item(i);
    SortFields()->Add(key, Variant(storage_->GetSetting(sortingSection_, key, QString())).toInteger());
  }

  const auto fieldNames = storage_->GetSectionNames(fieldsSection_);
  for (int i = 1; i <= fieldNames->Count(); ++i) {
    const QString name = fieldNames->Item(i);
    if (name.isEmpty())
      continue;
    auto field = std::make_shared<ReportField>();
    field->Name = name;
    field->Expression = storage_->GetSetting(fieldsPrefix_ + name, QStringLiteral("expression"), QString());
    field->DefaultValue = storage_->GetSetting(fieldsPrefix_ + name, QStringLiteral("defaultvalue"), QString());
    Fields()->AddField(field);
  }

  loaded.insert(guid_);
  const auto subPages = storage_->GetSection(subPagesSection_);
  for (int i = 1; i <= subPages->Count(); ++i) {
    const QString subGuid = subPages->Item(i);
    if (subGuid.isEmpty())
      continue;
    CheckSubPage(subGuid, path, loaded);
    auto page = std::make_shared<Page>();
    path.append(guid_);
    page->LoadTree(report, storage, subGuid, guid_, path, loaded);
    path.removeLast();
    Pages()->Add(page);
  }
}

bool Page::Save() {
  try {
    PropertyStorage &store = storage();
    store.DeleteSection(subPagesSection_);
    store.DeleteSection(sortingSection_);
    store.DeleteSection(fieldsSection_);
    const auto sorts = SortFields();
    for (int i = 1; i <= sorts->Count(); ++i) {
      const auto sort = sorts->Item(i);
      store.PutSetting(sortingSection_, sort->Name, QString::number(sort->SortOrder));
    }
    const auto fields = Fields();
    for (int i = 1; i <= fields->Count(); ++i) {
      const auto field = fields->Item(i);
      const QString section = fieldsPrefix_ + field->Name;
      store.PutSetting(section, QStringLiteral("name"), field->Name);
      store.PutSetting(section, QStringLiteral("expression"), field->Expression);
      store.PutSetting(section, QStringLiteral("defaultvalue"), field->DefaultValue);
    }
    const auto subPages = Pages();
    for (int i = 1; i <= subPages->Count(); ++i) {
      const auto page = subPages->Item(i);
      store.PutSetting(subPagesSection_, QString::number(i), page->Guid());
      page->Save();
    }
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Page.Save"));
    return false;
  }
}

void Page::Delete() {
  try {
    // Each sub page's Delete takes it out of the collection being walked
    // while the index still goes up: with two or more sub pages the walk
    // runs past the end and the failure ends the deletion here.
    const int count = Pages()->Count();
    for (int index = 1; index <= count; ++index)
      Pages()->Item(index)->Delete();
    storage().DeleteResource(guid_);
    storage().DeleteSection(QStringLiteral("pages\\") + guid_);
    const auto parent = Parent();
    if (!parent)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Page.Delete"));
    parent->Pages()->Remove(guid_);
  } catch (...) {
    ErrorMessage(QStringLiteral("Page.Delete"));
  }
}

void Page::Validate() {
  const auto pageClass = Class();
  if (!pageClass)
    raiseError(ErrorNumber::UserMessage, QStringLiteral("Page.Validate"),
               GetMessage(QStringLiteral("Report.InvalidClass")));
  const auto fields = Fields();
  for (int i = 1; i <= fields->Count(); ++i) {
    const auto field = fields->Item(i);
    if (field->Name.startsWith(QStringLiteral("vbscript:"), Qt::CaseInsensitive))
      continue;
    if (!pageClass->fields()->lookup(field->Expression, hostapi::LookupMode::Either))
      raiseError(ErrorNumber::UserMessage, QStringLiteral("Page.Validate"),
                 GetMessage(QStringLiteral("Report.InvalidFields")));
  }
  const auto subPages = Pages();
  for (int i = 1; i <= subPages->Count(); ++i)
    subPages->Item(i)->Validate();
}

} // namespace kordel::addin
