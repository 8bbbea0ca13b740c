#pragma once

#include "core/Object.h"

#include <QString>

#include <memory>
#include <vector>

namespace kordel::hostapi {
class IDTExtensibility2;
class IReportFactory;
} // namespace kordel::hostapi

namespace kordel::host {

class HostApplication;

// The add-ins of the host: plugin libraries found in a folder by the
// ProgIDs their metadata lists, made through the application's
// CreateObject, connected through IDTExtensibility2 and disconnected in
// the reverse order when the host lets them go.
class AddinHost {
public:
  explicit AddinHost(HostApplication &application);
  ~AddinHost();
  AddinHost(const AddinHost &) = delete;
  AddinHost &operator=(const AddinHost &) = delete;

  // Registers with the application every ProgID that a plugin library in
  // the folder offers. Returns the ProgIDs found.
  QStringList loadPlugins(const QString &folder);

  // Makes and connects the add-in of the ProgID and returns the report
  // factory it sets as its instance's "Object". Raises 429 for a ProgID no
  // plugin offers and 5 for an add-in that offers no report factory; a
  // failed connection's error comes through unchanged.
  std::shared_ptr<hostapi::IReportFactory> connectReportFactory(const QString &progId);

  // Disconnects every connected add-in, the last connected first.
  void disconnectAll();

private:
  struct Connection {
    std::shared_ptr<hostapi::IDTExtensibility2> addin;
    ObjectRef instance;
  };

  HostApplication &application_;
  std::vector<Connection> connections_;
};

} // namespace kordel::host
