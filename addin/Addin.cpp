#include "addin/Addin.h"

#include "common/ApplicationManager.h"
#include "addin/CustomReport.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "core/Error.h"
#include "hostapi/Application.h"

namespace kordel::addin {

void Addin::IDTExtensibility2_OnConnection(const std::shared_ptr<hostapi::Application> &application, int,
                                           const ObjectRef &addInInst, const Variant &) {
  try {
    if (!application)
      raiseError(ErrorNumber::ObjectRequired, QStringLiteral("Addin.OnConnection"),
                 QStringLiteral("The host gave no application"));
    Connect(application);
    if (!addInInst)
      raiseError(ErrorNumber::ObjectRequired, QStringLiteral("Addin.OnConnection"),
                 QStringLiteral("The host gave no add-in instance"));
    addInInst->set(QStringLiteral("Object"), Variant(shared_from_this()));
    application->registerReportFactory(QString::fromLatin1(hostapi::kAddinProgId));
    StartTranslation(application->language());
    name_ = GetMessage(QStringLiteral("Addin.Name"));
    SetApplicationTitle(name_);
  } catch (...) {
    // The translator may not run yet, so the reporter cannot be used: the
    // process log gets the failure and the host learns of it unchanged.
    const Error error = pendingError();
    LogEvent(QStringLiteral("%1: %2 (%3)").arg(error.source(), error.description()).arg(error.number()));
    throw error;
  }
}

void Addin::IDTExtensibility2_OnDisconnection(int, const Variant &) {
  Disconnect();
  StopTranslation();
}

std::shared_ptr<hostapi::IReport> Addin::IReportFactory_Create() { return std::make_shared<CustomReport>(); }

QString Addin::IReportFactory_Type() const { return QString::fromLatin1(hostapi::kCustomReportType); }

const MemberTable &Addin::memberTable() const {
  static const MemberTable table{{
      property<Addin>("Name", [](Addin &a) { return a.IReportFactory_Name(); }),
      property<Addin>("Type", [](Addin &a) { return a.IReportFactory_Type(); }),
      method<Addin>("Create",
                    [](Addin &a, Args &args) {
                      expectArgs(args, 0, 0);
                      return Variant(std::dynamic_pointer_cast<Object>(a.IReportFactory_Create()));
                    }),
  }};
  return table;
}

} // namespace kordel::addin
