#include "addin/CustomReport.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Database.h"
#include "hostapi/Explorer.h"
#include "hostapi/HostFile.h"
#include "hostapi/HostTools.h"
#include "hostapi/Picture.h"

namespace kordel::addin {

namespace {

const QString kRefreshSource = QStringLiteral("CustomReport.IReport_Refresh");

// The capabilities every custom report has; 16 depends on the class.
bool alwaysSupported(std::int32_t capability) {
  return capability == 1 || capability == 2 || capability == 4 || capability == 8 || capability == 32;
}

hostapi::Application &connectedApplication() {
  const auto application = CurrentApplication();
  if (!application)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("CustomReport"),
               QStringLiteral("The add-in is not connected to a host"));
  return *application;
}

// The internal name of the class in the active list window.
QString classInView() {
  const auto explorer = connectedApplication().activeExplorer();
  if (!explorer)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("CustomReport"), QStringLiteral("No list window is active"));
  const auto viewed = explorer->explorerClass();
  if (!viewed)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("CustomReport"),
               QStringLiteral("The list window has no class"));
  return viewed->name();
}

} // namespace

void CustomReport::IReport_SetName(const QString &name) {
  reportName_ = name;
  modified_ = true;
}

std::shared_ptr<hostapi::Picture> CustomReport::IReport_Icon() {
  return HostTools()->loadIconPicture(AddinFolder(), QStringLiteral("customIcon"), 16, 16);
}

void CustomReport::IReport_SetCategory(const QString &category) {
  reportCategory_ = category;
  modified_ = true;
}

bool CustomReport::IReport_Supports(std::int32_t capability, const Variant &argument) {
  if (alwaysSupported(capability))
    return true;
  if (capability != hostapi::ReportCapability::AppliesToClass)
    return false;
  try {
    return SupportsClass(argument);
  } catch (...) {
    // The host asks this in passing, for menus and lists: a check that
    // cannot be made answers no.
    return false;
  }
}

bool CustomReport::SupportsClass(const Variant &argument) {
  const QString reportClass = reportClass_.toLower();
  if (argument.isNull() || argument.isEmpty())
    return reportClass == classInView().toLower();
  if (argument.isObject()) {
    const auto cls = std::dynamic_pointer_cast<hostapi::Class>(argument.toObject());
    return cls && reportClass == cls->name().toLower();
  }
  const QString name = argument.toString();
  if (!connectedApplication().classes()->lookup(name, 0))
    return false;
  return name.toLower() == reportClass;
}

void CustomReport::IReport_Refresh(bool reload) {
  try {
    if (CurrentApplication()) {
      const auto file = OpenHostFile();
      if (reload)
        file->reload();
      reportName_ = file->name();
      reportCategory_ = file->getProperty(QStringLiteral("A"));
      reportClass_ = file->getProperty(QStringLiteral("C"));
      policy_ = file->policy();
      reportContents_ = Variant(); // read when a document is needed
      modified_ = false;
    }
  } catch (...) {
    ErrorMessage(kRefreshSource);
  }
  refreshed_ = true;
}

void CustomReport::IReport_SetPolicy(std::int32_t policy) {
  policy_ = policy;
  modified_ = true;
}

QString CustomReport::IReport_GUID() {
  if (reportGuid_.isEmpty())
    reportGuid_ = HostTools()->newGuid();
  return reportGuid_;
}

void CustomReport::IReport_SetGUID(const QString &guid) {
  reportGuid_ = guid;
  modified_ = true;
}

QString CustomReport::IReport_Type() const { return QString::fromLatin1(hostapi::kCustomReportType); }

void CustomReport::Class_ReadProperties(const hostapi::PropertyBag &bag) {
  try {
    IReport_SetGUID(bag.ReadProperty(QStringLiteral("guid")).toString());
    reportClass_ = bag.ReadProperty(QStringLiteral("C")).toString();
    reportName_ = bag.ReadProperty(QStringLiteral("name")).toString();
    reportCategory_ = bag.ReadProperty(QStringLiteral("category")).toString();
    reportContents_ = bag.ReadProperty(QStringLiteral("contents"));
  } catch (...) {
    ReadOlderLayout(bag);
  }
}

void CustomReport::ReadOlderLayout(const hostapi::PropertyBag &bag) {
  IReport_SetGUID(HostTools()->newGuid());
  reportName_ = bag.ReadProperty(QStringLiteral("Name")).toString();
  reportCategory_ = bag.ReadProperty(QStringLiteral("A")).toString();
  reportClass_ = bag.ReadProperty(QStringLiteral("C")).toString();
  reportContents_ = bag.ReadProperty(QStringLiteral("Contents"));
  try {
    // A record of the older layout without a class belongs to the class in view.
    if (reportClass_.isEmpty())
      reportClass_ = classInView();
  } catch (...) {
    // Without a list window the report simply stays without a class.
  }
}

std::shared_ptr<hostapi::HostFile> CustomReport::OpenHostFile() {
  auto attributes = std::dynamic_pointer_cast<hostapi::NamedValues>(
      CreateObject(QString::fromLatin1(hostapi::kFileOpenAttributesProgId)));
  auto file = std::dynamic_pointer_cast<hostapi::HostFile>(CreateObject(QString::fromLatin1(hostapi::kHostFileProgId)));
  if (!attributes || !file)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("CustomReport.OpenHostFile"));
  attributes->setItem(QStringLiteral("guid"), IReport_GUID());
  file->open(connectedApplication().database(), hostapi::FileKind::Report,
             hostapi::FileOpenMode::Existing | hostapi::FileOpenMode::Create, attributes);
  return file;
}

const MemberTable &CustomReport::memberTable() const {
  using R = CustomReport;
  static const MemberTable table{{
      property<R>(
          "Name", [](R &r) { return r.IReport_Name(); },
          [](R &r, const Variant &v) { r.IReport_SetName(v.toString()); }),
      property<R>("Icon", [](R &r) { return r.IReport_Icon(); }),
      property<R>(
          "Category", [](R &r) { return r.IReport_Category(); },
          [](R &r, const Variant &v) { r.IReport_SetCategory(v.toString()); }),
      method<R>("Supports",
                [](R &r, Args &a) {
                  expectArgs(a, 1, 2);
                  return r.IReport_Supports(a[0].toLong(), arg(a, 1));
                }),
      property<R>(
          "Modified", [](R &r) { return r.IReport_Modified(); },
          [](R &r, const Variant &v) { r.IReport_SetModified(v.toBool()); }),
      method<R>("Refresh",
                [](R &r, Args &a) {
                  expectArgs(a, 0, 1);
                  r.IReport_Refresh(arg(a, 0).isEmpty() ? false : a[0].toBool());
                  return Variant();
                }),
      method<R>("Update",
                [](R &r, Args &a) {
                  expectArgs(a, 0, 0);
                  r.IReport_Update();
                  return Variant();
                }),
      property<R>(
          "Policy", [](R &r) { return r.IReport_Policy(); },
          [](R &r, const Variant &v) { r.IReport_SetPolicy(v.toLong()); }),
      property<R>(
          "Database", [](R &r) { return Variant(ObjectRef(r.IReport_Database())); },
          [](R &r, const Variant &v) {
            const ObjectRef object = v.toObject();
            auto database = std::dynamic_pointer_cast<hostapi::Database>(object);
            if (object && !database)
              raiseError(ErrorNumber::TypeMismatch, QStringLiteral("CustomReport.Database"));
            r.IReport_SetDatabase(std::move(database));
          }),
      property<R>(
          "GUID", [](R &r) { return r.IReport_GUID(); },
          [](R &r, const Variant &v) { r.IReport_SetGUID(v.toString()); }),
      property<R>("Type", [](R &r) { return r.IReport_Type(); }),
  }};
  return table;
}

} // namespace kordel::addin
