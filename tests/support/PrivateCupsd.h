#pragma once

#include <QProcess>
#include <QString>

namespace kordel::test {

// A print scheduler of the test's own, listening on a socket in a given
// folder and keeping all its state there. It stops with the object.
class PrivateCupsd {
public:
  explicit PrivateCupsd(const QString &folder);
  ~PrivateCupsd();
  PrivateCupsd(const PrivateCupsd &) = delete;
  PrivateCupsd &operator=(const PrivateCupsd &) = delete;

  bool running() const { return failure_.isEmpty(); }
  // Why the scheduler did not start.
  const QString &failure() const { return failure_; }
  // The socket, as a server name for the client library and tools.
  const QString &socket() const { return socket_; }

  // Adds an enabled queue that prints into nothing; true on success, else
  // error holds the tool's complaint.
  bool addQueue(const QString &name, QString &error);
  bool setDefault(const QString &name, QString &error);

private:
  bool runAdmin(const QStringList &arguments, QString &error);

  QString folder_;
  QString socket_;
  QString failure_;
  QProcess daemon_;
};

} // namespace kordel::test
