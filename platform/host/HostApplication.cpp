#include "host/HostApplication.h"

#include "host/FileLog.h"
#include "host/HostToolsObject.h"
#include "host/IniTranslator.h"
#include "host/PrinterList.h"
#include "host/RegistryKeyObject.h"
#include "host/SettingsStore.h"

#include "engine/export/HtmlExporterObject.h"
#include "engine/export/PdfExporterObject.h"
#include "engine/export/RtfExporterObject.h"
#include "engine/export/TextExporterObject.h"
#include "engine/export/TiffExporterObject.h"
#include "engine/export/XlsExporterObject.h"
#include "engine/model/LayoutReport.h"
#include "engine/preview/Presenters.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ProgIds.h"

#include "hostapi/ActiveUser.h"
#include "hostapi/Classes.h"
#include "hostapi/Database.h"
#include "hostapi/Explorer.h"
#include "hostapi/Layout.h"
#include "hostapi/Printers.h"
#include "hostapi/Ui.h"

#include "core/Dictionary.h"
#include "core/Error.h"

#include <QCoreApplication>
#include <QLocale>

namespace kordel::host {

HostApplication::HostApplication(std::shared_ptr<SettingsStore> settings, std::shared_ptr<FileLog> log,
                                 QString language)
    : settings_(std::move(settings)), log_(std::move(log)), explorers_(std::make_shared<nuvo::ExplorerList>()),
      language_(language.isEmpty() ? defaultLanguage() : std::move(language)) {
  registerProgId(QString::fromLatin1(hostapi::kTranslatorProgId), [] { return std::make_shared<IniTranslator>(); });
  registerProgId(QString::fromLatin1(hostapi::kRegistryProgId),
                 [store = settings_] { return std::make_shared<RegistryKeyObject>(store); });
  registerProgId(QString::fromLatin1(hostapi::kHostToolsProgId), [] { return std::make_shared<HostToolsObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kPrintersProgId), [] { return PrinterList::fromSystem(); });
  registerProgId(QString::fromLatin1(hostapi::kLayoutReportProgId), [] { return engine::LayoutReport::create(); });
  registerProgId(QString::fromLatin1(hostapi::kLayoutPrinterProgId),
                 [] { return std::make_shared<engine::LayoutPrinter>(); });
  registerProgId(QString::fromLatin1(hostapi::kPdfExportProgId),
                 [] { return std::make_shared<engine::PdfExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kXlsExportProgId),
                 [] { return std::make_shared<engine::XlsExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kHtmlExportProgId),
                 [] { return std::make_shared<engine::HtmlExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kRtfExportProgId),
                 [] { return std::make_shared<engine::RtfExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kTextExportProgId),
                 [] { return std::make_shared<engine::TextExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kTiffExportProgId),
                 [] { return std::make_shared<engine::TiffExporterObject>(); });
  registerProgId(QStringLiteral("Scripting.Dictionary"), [] { return std::make_shared<Dictionary>(); });
  nuvo::registerProgIds(
      [this](const QString &progId, nuvo::ProgIdFactory factory) { registerProgId(progId, std::move(factory)); },
      [this] { return database_; });
  presentEngineWindowsThroughUi();
}

void HostApplication::presentEngineWindowsThroughUi() {
  engine::setModalPresenter([](QWidget &window) { hostapi::ui().showModal(window); });
  engine::setMessagePresenter([](const QString &title, const QString &text) {
    hostapi::ui().messageBox(text, hostapi::MsgBox::Exclamation, title);
  });
}

QString HostApplication::defaultLanguage() {
  const QString configured = qEnvironmentVariable("ORVEX_LANGUAGE");
  if (!configured.isEmpty())
    return configured;
  const QString system = QLocale::system().name().left(2).toLower();
  return system == QStringLiteral("sv") ? system : QStringLiteral("en");
}

void HostApplication::setMousePointer(int pointer) {
  mousePointer_ = pointer;
  if (hostapi::hasUi())
    hostapi::ui().setWaitCursor(pointer == hostapi::MousePointer::Hourglass);
}

ObjectRef HostApplication::createObject(const QString &progId) {
  const auto it = factories_.constFind(progId.toCaseFolded());
  if (it == factories_.constEnd())
    raiseError(ErrorNumber::CannotCreateObject, typeName(),
               QStringLiteral("ActiveX component can't create object: no class is registered as '%1'").arg(progId));
  return (*it)();
}

std::shared_ptr<hostapi::ApplicationLog> HostApplication::applicationLog() { return log_; }

QString HostApplication::version() const { return QCoreApplication::applicationVersion(); }

void HostApplication::setDatabase(std::shared_ptr<hostapi::Database> database) {
  if (database != database_)
    explorers_ = std::make_shared<nuvo::ExplorerList>();
  database_ = std::move(database);
}

std::shared_ptr<hostapi::Classes> HostApplication::classes() {
  auto classes = database_ ? database_->classes() : nullptr;
  if (!classes)
    raiseError(ErrorNumber::ObjectNotSet, typeName(), QStringLiteral("No database is open"));
  return classes;
}

std::shared_ptr<hostapi::Explorers> HostApplication::explorers() { return explorers_; }

std::shared_ptr<hostapi::Explorer> HostApplication::activeExplorer() { return explorers_->active(); }

std::shared_ptr<hostapi::ActiveUser> HostApplication::activeUser() {
  return database_ ? database_->activeUser() : nullptr;
}

void HostApplication::registerReportFactory(const QString &progId) {
  if (!reportFactories_.contains(progId, Qt::CaseInsensitive))
    reportFactories_ << progId;
}

void HostApplication::registerProgId(const QString &progId, Factory factory) {
  factories_.insert(progId.toCaseFolded(), std::move(factory));
}

const MemberTable &HostApplication::memberTable() const {
  static const MemberTable table{{
      property<HostApplication>(
          "MousePointer", [](HostApplication &a) { return a.mousePointer(); },
          [](HostApplication &a, const Variant &v) { a.setMousePointer(v.toInteger()); }),
      property<HostApplication>("Language", [](HostApplication &a) { return a.language(); }),
      method<HostApplication>("CreateObject",
                              [](HostApplication &a, Args &args) {
                                expectArgs(args, 1, 1);
                                return a.createObject(args[0].toString());
                              }),
      property<HostApplication>("ApplicationLog", [](HostApplication &a) { return Variant(a.applicationLog()); }),
      property<HostApplication>("Database", [](HostApplication &a) { return Variant(ObjectRef(a.database())); }),
      property<HostApplication>("Version", [](HostApplication &a) { return a.version(); }),
      property<HostApplication>("Classes", [](HostApplication &a) { return Variant(a.classes()); }),
      property<HostApplication>("Explorers", [](HostApplication &a) { return Variant(a.explorers()); }),
      property<HostApplication>("ActiveExplorer",
                                [](HostApplication &a) { return Variant(ObjectRef(a.activeExplorer())); }),
      property<HostApplication>("ActiveUser", [](HostApplication &a) { return Variant(ObjectRef(a.activeUser())); }),
      method<HostApplication>("RegisterReportFactory",
                              [](HostApplication &a, Args &args) {
                                expectArgs(args, 1, 1);
                                a.registerReportFactory(args[0].toString());
                                return Variant();
                              }),
  }};
  return table;
}

} // namespace kordel::host
