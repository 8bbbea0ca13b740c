#include "support/PrivateCupsd.h"

#include "support/TempDir.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

namespace kordel::test {

namespace {

const QStringList kSystemFolders{QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};

QString findTool(const QString &name) {
  const QString found = QStandardPaths::findExecutable(name);
  return found.isEmpty() ? QStandardPaths::findExecutable(name, kSystemFolders) : found;
}

} // namespace

PrivateCupsd::PrivateCupsd(const QString &folder) : folder_(folder), socket_(folder + QStringLiteral("/cups.sock")) {
  const QString cupsd = findTool(QStringLiteral("cupsd"));
  if (cupsd.isEmpty()) {
    failure_ = QStringLiteral("cupsd is not installed");
    return;
  }
  for (const char *sub : {"root", "spool", "cache", "state", "tmp", "log"})
    QDir().mkpath(folder + u'/' + QLatin1String(sub));

  const QByteArray config = "Listen " + socket_.toUtf8() +
                            "\nLogLevel warn\nBrowsing No\nWebInterface No\nDefaultAuthType None\n"
                            "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                            "<Location /admin>\n  Order allow,deny\n  Allow all\n</Location>\n"
                            "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n";
  const QByteArray root = folder.toUtf8();
  const QByteArray files = "ServerRoot " + root + "/root\nRequestRoot " + root + "/spool\nCacheDir " + root +
                           "/cache\nStateDir " + root + "/state\nTempDir " + root + "/tmp\nErrorLog " + root +
                           "/log/error_log\nAccessLog " + root + "/log/access_log\nPageLog " + root +
                           "/log/page_log\nFileDevice Yes\nSandboxing Relaxed\n";
  writeFile(folder + QStringLiteral("/cupsd.conf"), config);
  writeFile(folder + QStringLiteral("/root/cupsd.conf"), config);
  writeFile(folder + QStringLiteral("/cups-files.conf"), files);

  daemon_.setProcessChannelMode(QProcess::MergedChannels);
  daemon_.start(cupsd, {QStringLiteral("-f"), QStringLiteral("-c"), folder + QStringLiteral("/cupsd.conf"),
                        QStringLiteral("-s"), folder + QStringLiteral("/cups-files.conf")});
  if (!daemon_.waitForStarted(5000)) {
    failure_ = QStringLiteral("cupsd does not start: ") + daemon_.errorString();
    return;
  }
  // The socket appears once the scheduler listens; a scheduler that cannot
  // run (no rights, bad configuration) ends at once instead.
  const QDeadlineTimer deadline(10000);
  while (!QFileInfo(socket_).exists() && daemon_.state() == QProcess::Running && !deadline.hasExpired())
    QThread::msleep(20);
  if (!QFileInfo(socket_).exists()) {
    failure_ = QStringLiteral("cupsd did not listen: ") + QString::fromUtf8(daemon_.readAll()) +
               QString::fromUtf8(readFile(folder + QStringLiteral("/log/error_log")));
  }
}

PrivateCupsd::~PrivateCupsd() {
  if (daemon_.state() == QProcess::NotRunning)
    return;
  daemon_.terminate();
  if (!daemon_.waitForFinished(5000)) {
    daemon_.kill();
    daemon_.waitForFinished(5000);
  }
}

bool PrivateCupsd::runAdmin(const QStringList &arguments, QString &error) {
  QProcess admin;
  admin.setProcessChannelMode(QProcess::MergedChannels);
  admin.start(findTool(QStringLiteral("lpadmin")), QStringList{QStringLiteral("-h"), socket_} + arguments);
  if (!admin.waitForFinished(30000) || admin.exitStatus() != QProcess::NormalExit || admin.exitCode() != 0) {
    error = admin.errorString() + u' ' + QString::fromUtf8(admin.readAll());
    return false;
  }
  return true;
}

bool PrivateCupsd::addQueue(const QString &name, QString &error) {
  const QStringList queue{QStringLiteral("-p"), name, QStringLiteral("-E"), QStringLiteral("-v"),
                          QStringLiteral("file:///dev/null")};
  if (runAdmin(queue + QStringList{QStringLiteral("-m"), QStringLiteral("raw")}, error))
    return true;
  // Schedulers that no longer take raw queues get the PDF printer's driver.
  return runAdmin(
      queue + QStringList{QStringLiteral("-P"), QStringLiteral("/usr/share/ppd/cups-pdf/CUPS-PDF_noopt.ppd")}, error);
}

bool PrivateCupsd::setDefault(const QString &name, QString &error) {
  return runAdmin({QStringLiteral("-d"), name}, error);
}

} // namespace kordel::test
