#pragma once

#include "core/Object.h"

#include <QtPlugin>

#include <memory>

namespace kordel::hostapi {

class Application;
class IReport;

// The add-in class the host loads and connects; the report type its
// factory offers, by which the host pairs stored reports with it.
inline constexpr const char *kAddinProgId = "OrvexKordel.Addin";
inline constexpr const char *kCustomReportType = "orvexReportCustomReport";

// How the host connects an add-in. OnConnection receives the host's
// application and the host's add-in instance, whose late-bound property
// "Object" the add-in sets to itself; the host reaches the add-in's
// factories through that property. The mode arguments and custom values
// are the host's and are passed through unread.
class IDTExtensibility2 {
public:
  virtual ~IDTExtensibility2() = default;
  virtual void IDTExtensibility2_OnConnection(const std::shared_ptr<Application> &application, int connectMode,
                                              const ObjectRef &addInInst, const Variant &custom) = 0;
  virtual void IDTExtensibility2_OnDisconnection(int removeMode, const Variant &custom) = 0;
  virtual void IDTExtensibility2_OnAddInsUpdate(const Variant &custom) = 0;
  virtual void IDTExtensibility2_OnStartupComplete(const Variant &custom) = 0;
  virtual void IDTExtensibility2_OnBeginShutdown(const Variant &custom) = 0;
};

// A factory of one report type. Each Create makes a new report object
// that the caller owns; the factory keeps no list of them.
class IReportFactory {
public:
  virtual ~IReportFactory() = default;
  virtual std::shared_ptr<IReport> IReportFactory_Create() = 0;
  virtual QString IReportFactory_Name() const = 0;
  virtual QString IReportFactory_Type() const = 0;
};

// The root object of an add-in plugin library: it makes the objects of the
// ProgIDs the library's metadata lists under "ProgIds".
class AddinPlugin {
public:
  virtual ~AddinPlugin() = default;
  // Raises 429 for a ProgID the library does not offer.
  virtual ObjectRef createObject(const QString &progId) = 0;
};

} // namespace kordel::hostapi

#define KORDEL_ADDIN_PLUGIN_IID "org.orvex.AddinPlugin/1.0"
Q_DECLARE_INTERFACE(kordel::hostapi::AddinPlugin, KORDEL_ADDIN_PLUGIN_IID)
