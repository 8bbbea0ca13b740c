#pragma once

#include "core/Object.h"
#include "hostapi/Addin.h"

namespace kordel::addin {

// The add-in as the host connects it: it stores the host's application for
// the whole add-in, registers itself as a report factory, starts the
// translator and makes CustomReport objects. Late-bound as the factory:
// Name, Type, Create.
class Addin : public Object, public hostapi::IDTExtensibility2, public hostapi::IReportFactory {
public:
  QString typeName() const override { return QStringLiteral("Addin"); }

  // A failure is written to the process log and raised again unchanged;
  // what was done before it stays done.
  void IDTExtensibility2_OnConnection(const std::shared_ptr<hostapi::Application> &application, int connectMode,
                                      const ObjectRef &addInInst, const Variant &custom) override;
  void IDTExtensibility2_OnDisconnection(int removeMode, const Variant &custom) override;
  void IDTExtensibility2_OnAddInsUpdate(const Variant &) override {}
  void IDTExtensibility2_OnStartupComplete(const Variant &) override {}
  void IDTExtensibility2_OnBeginShutdown(const Variant &) override {}

  std::shared_ptr<hostapi::IReport> IReportFactory_Create() override;
  // "" until connected.
  QString IReportFactory_Name() const override { return name_; }
  QString IReportFactory_Type() const override;

protected:
  const MemberTable &memberTable() const override;

private:
  QString name_;
};

} // namespace kordel::addin
