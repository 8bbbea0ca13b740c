#include "host/HostApplication.h"

#include "host/EngineTranslator.h"
#include "host/FileLog.h"
#include "host/HostDialogObject.h"
#include "host/HostToolsObject.h"
#include "host/IniTranslator.h"
#include "host/PrinterList.h"
#include "host/RegistryKeyObject.h"
#include "host/SettingsObject.h"
#include "host/SettingsStore.h"

#include "engine/export/HtmlExporterObject.h"
#include "engine/export/PdfExporterObject.h"
#include "engine/export/RtfExporterObject.h"
#include "engine/export/TextExporterObject.h"
#include "engine/export/TiffExporterObject.h"
#include "engine/export/XlsExporterObject.h"
#include "engine/designer/DesignerControl.h"
#include "engine/model/LayoutReport.h"
#include "engine/preview/Presenters.h"
#include "engine/render/TextCanvas.h"
#include "nuvo/ExplorerList.h"
#include "nuvo/ProgIds.h"
#include "script/vbscript/RegExpObject.h"

#include "hostapi/ActiveUser.h"
#include "hostapi/Classes.h"
#include "hostapi/Database.h"
#include "hostapi/Explorer.h"
#include "hostapi/HostDialog.h"
#include "hostapi/Layout.h"
#include "hostapi/Printers.h"
#include "hostapi/Ui.h"

#include "core/Dictionary.h"
#include "core/Error.h"
#include "core/ScriptRights.h"

#include "engine/run/RunSettings.h"

#include <QCoreApplication>
#include <QLocale>

#include <cstdio>

namespace kordel::host {

namespace {

// The layout engine's settings: ScriptSeconds, the time all scripts of one
// report run may take together (10), and ScriptMegabytes, the memory they
// may hold (256).
constexpr const char *kEngineSettingsKey = "HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\LayoutEngine";

} // namespace

HostApplication::HostApplication(std::shared_ptr<SettingsStore> settings, std::shared_ptr<FileLog> log,
                                 QString language)
    : settings_(std::move(settings)), log_(std::move(log)), explorers_(std::make_shared<nuvo::ExplorerList>()),
      inspectors_(std::make_shared<nuvo::InspectorList>()),
      settingsObject_(std::make_shared<SettingsObject>(settings_)),
      language_(language.isEmpty() ? defaultLanguage() : std::move(language)) {
  registerProgId(QString::fromLatin1(hostapi::kTranslatorProgId), [] { return std::make_shared<IniTranslator>(); });
  registerProgId(QString::fromLatin1(hostapi::kRegistryProgId),
                 [store = settings_] { return std::make_shared<RegistryKeyObject>(store); });
  registerProgId(QString::fromLatin1(hostapi::kHostToolsProgId), [] { return std::make_shared<HostToolsObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kHostDialogProgId),
                 [this] { return std::make_shared<HostDialogObject>(language_); });
  registerProgId(QString::fromLatin1(hostapi::kPrintersProgId), [] { return PrinterList::fromSystem(); });
  registerProgId(QString::fromLatin1(hostapi::kLayoutReportProgId), [] { return engine::LayoutReport::create(); });
  registerProgId(QString::fromLatin1(hostapi::kTextCanvasProgId),
                 [] { return std::make_shared<engine::TextCanvas>(); });
  registerProgId(QString::fromLatin1(hostapi::kDesignerProgId), [] { return engine::DesignerControl::create(); });
  registerProgId(QString::fromLatin1(hostapi::kLayoutPrinterProgId),
                 [] { return std::make_shared<engine::LayoutPrinter>(); });
  registerProgId(QString::fromLatin1(hostapi::kPdfExportProgId),
                 [] { return std::make_shared<engine::PdfExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kXlsExportProgId),
                 [] { return std::make_shared<engine::XlsExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kXlsxExportProgId),
                 [] { return std::make_shared<engine::XlsExporterObject>(engine::XlsExporterObject::Format::Xlsx); });
  registerProgId(QString::fromLatin1(hostapi::kHtmlExportProgId),
                 [] { return std::make_shared<engine::HtmlExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kRtfExportProgId),
                 [] { return std::make_shared<engine::RtfExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kTextExportProgId),
                 [] { return std::make_shared<engine::TextExporterObject>(); });
  registerProgId(QString::fromLatin1(hostapi::kTiffExportProgId),
                 [] { return std::make_shared<engine::TiffExporterObject>(); });
  registerProgId(QStringLiteral("Scripting.Dictionary"), [] { return std::make_shared<Dictionary>(); });
  registerProgId(QStringLiteral("VBScript.RegExp"), [] { return std::make_shared<script::vb::RegExpObject>(); });
  nuvo::registerProgIds(
      [this](const QString &progId, nuvo::ProgIdFactory factory) { registerProgId(progId, std::move(factory)); },
      [this] { return database_; });
  presentEngineWindowsThroughUi();
  configureEngineRuns();
  engineTranslator_ = EngineTranslator::install(language_);
}

HostApplication::~HostApplication() = default;

void HostApplication::configureEngineRuns() {
  engine::RunSettings &run = engine::runSettings();
  const auto setting = [this](const char *name, int fallback) {
    try {
      const auto text = settings_->read(QString::fromLatin1(kEngineSettingsKey), QString::fromLatin1(name));
      bool ok = false;
      const int value = text ? text->toInt(&ok) : 0;
      return ok && value > 0 ? value : fallback;
    } catch (...) {
      return fallback; // an unreadable settings file leaves the defaults
    }
  };
  run.scriptLimits.time = std::chrono::seconds(setting("ScriptSeconds", 10));
  run.scriptLimits.memoryBytes = qint64(setting("ScriptMegabytes", 256)) << 20;
  run.objectFactory = [this, alive = std::weak_ptr<void>(alive_)](const QString &progId) -> ObjectRef {
    return alive.expired() ? nullptr : createObject(progId);
  };
  run.reportProblems = [log = log_](const QString &documentName, const QStringList &problems) {
    const QString report = documentName.isEmpty() ? QStringLiteral("the report") : u'"' + documentName + u'"';
    std::fprintf(stderr, "%s\n",
                 qPrintable(QStringLiteral("orvex: %1 problem(s) in the run of %2:").arg(problems.size()).arg(report)));
    constexpr int kShown = 5;
    for (int i = 0; i < problems.size() && i < kShown; ++i)
      std::fprintf(stderr, "  %s\n", qPrintable(problems[i]));
    if (problems.size() > kShown)
      std::fprintf(stderr, "  ... and %d more, in the log\n", int(problems.size() - kShown));
    if (!log)
      return;
    for (const QString &problem : problems) {
      try {
        log->logEvent(QStringLiteral("Layout run of %1: %2").arg(report, problem));
      } catch (...) {
        // A log that cannot be written loses the entry; standard error has it.
      }
    }
  };
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
  if (database != database_) {
    explorers_ = std::make_shared<nuvo::ExplorerList>();
    inspectors_ = std::make_shared<nuvo::InspectorList>();
  }
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
                                const QString progId = args[0].toString();
                                // A layout script reaching the host through
                                // Extensions.Application makes no more than
                                // its own CreateObject does.
                                if (runningLayoutScript() && !layoutScriptMayCreate(progId))
                                  requireFullRights(QStringLiteral("Application.CreateObject(\"%1\")").arg(progId));
                                return a.createObject(progId);
                              }),
      property<HostApplication>("ApplicationLog", [](HostApplication &a) { return Variant(a.applicationLog()); }),
      property<HostApplication>("Database", [](HostApplication &a) { return Variant(ObjectRef(a.database())); }),
      property<HostApplication>("Version", [](HostApplication &a) { return a.version(); }),
      property<HostApplication>("Classes", [](HostApplication &a) { return Variant(a.classes()); }),
      property<HostApplication>("Explorers", [](HostApplication &a) { return Variant(a.explorers()); }),
      property<HostApplication>("ActiveExplorer",
                                [](HostApplication &a) { return Variant(ObjectRef(a.activeExplorer())); }),
      property<HostApplication>("ActiveUser", [](HostApplication &a) { return Variant(ObjectRef(a.activeUser())); }),
      property<HostApplication>("Inspectors", [](HostApplication &a) { return Variant(a.inspectors_); }),
      property<HostApplication>("ActiveInspector",
                                [](HostApplication &a) { return Variant(ObjectRef(a.inspectors_->active())); }),
      property<HostApplication>("Settings", [](HostApplication &a) { return Variant(a.settingsObject_); }),
      fullRightsOnly(method<HostApplication>("RegisterReportFactory",
                                             [](HostApplication &a, Args &args) {
                                               expectArgs(args, 1, 1);
                                               a.registerReportFactory(args[0].toString());
                                               return Variant();
                                             })),
  }};
  return table;
}

} // namespace kordel::host
