#include "document/Report.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Error.h"
#include "core/VbDate.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/PropertyStorage.h"
#include "hostapi/ActiveUser.h"
#include "hostapi/HostFile.h"

#include <QDateTime>

namespace kordel::addin {

namespace {

const QString kSystem = QStringLiteral("system");
const QString kSettings = QStringLiteral("settings");
const QString kDefaultMargin = QStringLiteral("1134");
constexpr std::int32_t kPaperA4 = 9;
constexpr std::int32_t kPaperCustom = -1;

hostapi::Application &application() {
  const auto app = CurrentApplication();
  if (!app)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report"), QStringLiteral("The add-in is not connected"));
  return *app;
}

QString activeUserName() {
  const auto user = application().activeUser();
  if (!user)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report"), QStringLiteral("No user is signed in"));
  return user->name();
}

// The current date and time as CStr(Now) gives it.
QString nowText() { return Variant(dateFromQt(QDateTime::currentDateTime())).toString(); }

std::shared_ptr<hostapi::Document> newDocument() {
  auto document =
      std::dynamic_pointer_cast<hostapi::Document>(CreateObject(QString::fromLatin1(hostapi::kDocumentProgId)));
  if (!document)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Report"));
  return document;
}

} // namespace

// ---- Store access ----

PropertyStorage &Report::storage() const {
  if (!storage_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report"), QStringLiteral("The report has no contents yet"));
  return *storage_;
}

QString Report::setting(const QString &section, const QString &key, const QString &defaultValue) const {
  return storage().GetSetting(section, key, defaultValue);
}

void Report::putSetting(const QString &section, const QString &key, const QString &value) {
  storage().PutSetting(section, key, value);
}

// ---- Properties ----

std::shared_ptr<hostapi::Class> Report::Class() const {
  const auto classes = application().classes();
  const QString source = Source();
  return classes->exists(source) ? classes->item(source) : nullptr;
}

QString Report::CreatedBy() const { return setting(kSystem, QStringLiteral("createdby"), QString()); }
void Report::SetCreatedBy() { putSetting(kSystem, QStringLiteral("createdby"), activeUserName()); }
QString Report::CreatedTime() const { return setting(kSystem, QStringLiteral("createdtime"), nowText()); }
void Report::SetCreatedTime(const QString &time) { putSetting(kSystem, QStringLiteral("createdtime"), time); }
QString Report::Version() const { return setting(kSystem, QStringLiteral("version"), QString()); }
void Report::SetVersion(const QString &version) { putSetting(kSystem, QStringLiteral("version"), version); }
QString Report::UpdatedTime() const { return setting(kSystem, QStringLiteral("timestamp"), nowText()); }
void Report::SetUpdatedTime(const QString &time) { putSetting(kSystem, QStringLiteral("timestamp"), time); }
QString Report::UpdatedBy() const { return setting(kSystem, QStringLiteral("changedby"), QString()); }
void Report::SetUpdatedBy() { putSetting(kSystem, QStringLiteral("changedby"), activeUserName()); }
QString Report::Name() const { return setting(kSystem, QStringLiteral("name"), QString()); }
void Report::SetName(const QString &name) { putSetting(kSystem, QStringLiteral("name"), name); }

QString Report::Guid() const { return setting(kSettings, QStringLiteral("toppage"), QString()); }
void Report::SetGuid(const QString &guid) { putSetting(kSettings, QStringLiteral("toppage"), guid); }
QString Report::Source() const { return setting(kSettings, QStringLiteral("source"), QString()); }
void Report::SetSource(const QString &source) { putSetting(kSettings, QStringLiteral("source"), source); }

std::int32_t Report::MarginLeft() const { return Variant(setting(kSettings, "marginleft", kDefaultMargin)).toLong(); }
void Report::SetMarginLeft(std::int32_t t) { putSetting(kSettings, "marginleft", QString::number(t)); }
std::int32_t Report::MarginRight() const { return Variant(setting(kSettings, "marginright", kDefaultMargin)).toLong(); }
void Report::SetMarginRight(std::int32_t t) { putSetting(kSettings, "marginright", QString::number(t)); }
std::int32_t Report::MarginTop() const { return Variant(setting(kSettings, "margintop", kDefaultMargin)).toLong(); }
void Report::SetMarginTop(std::int32_t t) { putSetting(kSettings, "margintop", QString::number(t)); }
std::int32_t Report::MarginBottom() const {
  return Variant(setting(kSettings, "marginbottom", kDefaultMargin)).toLong();
}
void Report::SetMarginBottom(std::int32_t t) { putSetting(kSettings, "marginbottom", QString::number(t)); }

std::int16_t Report::Orientation() const { return Variant(setting(kSettings, "orientation", "1")).toInteger(); }
void Report::SetOrientation(std::int16_t o) { putSetting(kSettings, "orientation", QString::number(o)); }
std::int32_t Report::PrintWidth() const { return Variant(setting(kSettings, "width", "0")).toLong(); }
void Report::SetPrintWidth(std::int32_t t) { putSetting(kSettings, "width", QString::number(t)); }

std::int32_t Report::PaperSize() const {
  const QString text = setting(kSettings, QStringLiteral("papersize"), QString());
  const std::int32_t width = PrintWidth();
  if (text.isEmpty() && width >= 1)
    return kPaperCustom; // a width without a paper size is custom paper
  if (!text.isEmpty())
    return Variant(text).toLong();
  return kPaperA4;
}

void Report::SetPaperSize(std::int32_t paperSize) { putSetting(kSettings, "papersize", QString::number(paperSize)); }

QString Report::ScriptLanguage() const {
  const QString stored =
      setting(kSettings, QStringLiteral("scriptlanguage"), GetMessage(QStringLiteral("Scripts.VBScript")));
  const QString lower = stored.toLower();
  if (lower == QStringLiteral("vbscript") || lower == QStringLiteral("jscript"))
    return stored;
  return QStringLiteral("VBScript");
}

void Report::SetScriptLanguage(const QString &language) {
  putSetting(kSettings, QStringLiteral("scriptlanguage"), language);
}

bool Report::Modified() const {
  if (storage().Modified())
    return true;
  const auto guids = PageGuids();
  for (int i = 1; i <= guids->Count(); ++i) {
    const auto page = LookupPage(guids->Item(i));
    if (page && page->Modified())
      return true;
  }
  return false;
}

std::shared_ptr<StringCollection> Report::PageGuids() const {
  return storage().GetSectionNames(QStringLiteral("pages"));
}

std::int16_t Report::PageCount() const { return std::int16_t(PageGuids()->Count()); }

// ---- The page tree ----

std::shared_ptr<Page> Report::LookupPage(const QString &guid) const {
  if (!topPage_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.LookupPage"));
  if (topPage_->Guid() == guid)
    return topPage_;
  return topPage_->Pages()->Lookup(guid);
}

bool Report::PageExists(const QString &guid) const { return PageGuids()->Exists(guid).toBool(); }

std::shared_ptr<Page> Report::GetPageByIndex(int index) const {
  static const auto never = std::make_shared<addin::Pages>();
  return (pages_ ? pages_ : never)->Page(QString::number(index - 1));
}

bool Report::AddPage(const QString &guid, const QString &name, const QString &source, const QString &parentGuid,
                     const Variant &layoutTemplate) {
  try {
    const auto parent = LookupPage(parentGuid);
    if (!parent)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.AddPage"),
                 QStringLiteral("The page %1 does not exist").arg(parentGuid));
    int parentDepth = 1;
    for (auto above = parent->Parent(); above; above = above->Parent())
      ++parentDepth;
    if (parentDepth >= kMaxPageDepth)
      raiseError(ErrorNumber::UserMessage, QStringLiteral("Report.AddPage"),
                 GetMessage(QStringLiteral("Pages.NoDeeper"), QString::number(kMaxPageDepth), name, parent->Name()));
    auto page = std::make_shared<addin::Page>();
    page->Create(std::static_pointer_cast<Report>(shared_from_this()), storage_, guid, name, source, parentGuid,
                 layoutTemplate);
    parent->Pages()->Add(page);
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Report.AddPage"));
    return false;
  }
}

// ---- Life cycle ----

bool Report::Create(const QString &source) {
  try {
    storage().Clear();
    SetCreatedTime(nowText());
    SetCreatedBy();
    SetVersion(application().version());
    SetGuid(HostTools()->newGuid());
    SetSource(source);
    SetScriptLanguage(GetMessage(QStringLiteral("Scripts.VBScript")));
    const auto reportClass = Class();
    if (!reportClass)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.Create"),
                 QStringLiteral("The class '%1' does not exist").arg(source));
    topPage_ = std::make_shared<addin::Page>();
    return topPage_->Create(std::static_pointer_cast<Report>(shared_from_this()), storage_, Guid(),
                            reportClass->localName(), source, QString(), Variant());
  } catch (...) {
    ErrorMessage(QStringLiteral("Report.Create"));
    return false;
  }
}

void Report::LoadContents(const Variant &contents) {
  storage_ = std::make_shared<PropertyStorage>();
  if (contents.isEmpty() || contents.isNull())
    return;
  const auto document = newDocument();
  document->setContents(contents);
  const QString path = TempFilePath(QString(), QStringLiteral("xml"));
  document->saveToFile(path);
  storage_->Load(path);
  DeleteFile(path);
  topPage_ = std::make_shared<addin::Page>();
  topPage_->Load(std::static_pointer_cast<Report>(shared_from_this()), storage_, Guid(), QString());
}

void Report::stampChange() {
  SetUpdatedTime(nowText());
  SetUpdatedBy();
  SetVersion(application().version());
}

Variant Report::SaveContents() {
  stampChange();
  if (!topPage_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.SaveContents"));
  topPage_->Save();
  const QString path = TempFilePath(QString(), QStringLiteral("xml"));
  const auto document = newDocument();
  storage().Save(path);
  document->loadFromFile(path);
  DeleteFile(path);
  return document->contents();
}

bool Report::Save(const QString &path) {
  try {
    stampChange();
    if (!topPage_)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.Save"));
    if (!topPage_->Save())
      return false;
    storage().Save(path);
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("Report.Save"));
    return false;
  }
}

bool Report::Load(const QString &path) {
  try {
    storage().Load(path);
    topPage_ = std::make_shared<addin::Page>();
    topPage_->Load(std::static_pointer_cast<Report>(shared_from_this()), storage_, Guid(), QString());
    storage().SetModified(false);
  } catch (...) {
    ErrorMessage(QStringLiteral("Report.Load"));
  }
  return false;
}

void Report::Validate() const {
  if (!Class())
    raiseError(ErrorNumber::UserMessage, QStringLiteral("Report.Validate"),
               GetMessage(QStringLiteral("Report.InvalidClass")));
  if (!topPage_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Report.Validate"));
  topPage_->Validate();
}

bool Report::IsValid() const {
  try {
    Validate();
    return true;
  } catch (...) {
    return false; // a report that does not validate is simply not valid: nothing is reported
  }
}

} // namespace kordel::addin
