#include "PrivatePostgres.h"

#include "core/Error.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace kordel::test {

namespace {

constexpr uid_t kNobody = 65534;
constexpr gid_t kNogroup = 65534;

// The folder of initdb and pg_ctl: on PATH, or the newest under
// /usr/lib/postgresql.
QString findBinaries() {
  QDir versions(QStringLiteral("/usr/lib/postgresql"));
  QStringList found = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
  for (qsizetype i = found.size() - 1; i >= 0; --i) {
    const QString bin = versions.filePath(found[i] + QStringLiteral("/bin"));
    if (QFile::exists(bin + QStringLiteral("/initdb")) && QFile::exists(bin + QStringLiteral("/pg_ctl")))
      return bin;
  }
  return {};
}

// Runs a server tool, as "nobody" when the tests run as root.
bool runTool(const QString &program, const QStringList &arguments, QString &output) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  if (geteuid() == 0) {
    process.setChildProcessModifier([] {
      if (setgid(kNogroup) != 0 || setuid(kNobody) != 0)
        _exit(126);
    });
  }
  process.start(program, arguments);
  const bool finished = process.waitForFinished(60000);
  output = QString::fromLocal8Bit(process.readAll());
  return finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void handOver(const QString &path) {
  if (geteuid() == 0 && chown(path.toLocal8Bit().constData(), kNobody, kNogroup) != 0)
    return;
}

PrivatePostgres *started = nullptr;

// Stops a private server when the tests end, while Qt is still there.
class StopServer : public ::testing::Environment {
public:
  void TearDown() override {
    if (started)
      started->stop();
  }
};

[[maybe_unused]] ::testing::Environment *const stopServer = ::testing::AddGlobalTestEnvironment(new StopServer);

} // namespace

PrivatePostgres &PrivatePostgres::instance() {
  static PrivatePostgres server;
  started = &server;
  return server;
}

PrivatePostgres::PrivatePostgres() {
  const QString given = qEnvironmentVariable("KORDEL_TEST_POSTGRES");
  if (!given.isEmpty()) {
    admin_ = nuvo::DatabaseAddress::parse(given);
    return;
  }
  if (!startPrivateServer() && failure_.isEmpty())
    failure_ = QStringLiteral("the PostgreSQL server did not start");
}

bool PrivatePostgres::startPrivateServer() {
  binaries_ = findBinaries();
  if (binaries_.isEmpty()) {
    failure_ = QStringLiteral("PostgreSQL is not installed (no initdb and pg_ctl under /usr/lib/postgresql)");
    return false;
  }
  static QTemporaryDir dir;
  if (!dir.isValid()) {
    failure_ = QStringLiteral("no temporary folder for the server");
    return false;
  }
  folder_ = dir.path();
  chmod(folder_.toLocal8Bit().constData(), 0755);
  const QString data = folder_ + QStringLiteral("/data");
  QDir().mkpath(data);
  handOver(data);
  handOver(folder_);
  QString output;
  if (!runTool(binaries_ + QStringLiteral("/initdb"),
               {QStringLiteral("-D"), data, QStringLiteral("-A"), QStringLiteral("trust"), QStringLiteral("-U"),
                QStringLiteral("kordel"), QStringLiteral("-E"), QStringLiteral("UTF8"),
                QStringLiteral("--locale=C.UTF-8"), QStringLiteral("--no-sync")},
               output)) {
    failure_ = QStringLiteral("initdb failed: ") + output.right(400);
    return false;
  }
  const QString options = QStringLiteral("-k %1 -c listen_addresses= -c fsync=off -p 5432").arg(folder_);
  if (!runTool(binaries_ + QStringLiteral("/pg_ctl"),
               {QStringLiteral("-D"), data, QStringLiteral("-o"), options, QStringLiteral("-l"),
                folder_ + QStringLiteral("/server.log"), QStringLiteral("-w"), QStringLiteral("start")},
               output)) {
    failure_ = QStringLiteral("pg_ctl start failed: ") + output.right(400);
    return false;
  }
  ownServer_ = true;
  admin_.dialect = nuvo::Dialect::PostgreSQL;
  admin_.host = folder_;
  admin_.port = 5432;
  admin_.user = QStringLiteral("kordel");
  admin_.database = QStringLiteral("postgres");
  return true;
}

void PrivatePostgres::stop() {
  if (!ownServer_)
    return;
  ownServer_ = false;
  QString output;
  runTool(binaries_ + QStringLiteral("/pg_ctl"),
          {QStringLiteral("-D"), folder_ + QStringLiteral("/data"), QStringLiteral("-m"), QStringLiteral("immediate"),
           QStringLiteral("-w"), QStringLiteral("stop")},
          output);
}

void PrivatePostgres::adminExec(const QString &sql) {
  nuvo::SqlConnection connection(admin_);
  connection.exec(sql);
}

std::optional<nuvo::DatabaseAddress> PrivatePostgres::createDatabase() {
  if (!available())
    return std::nullopt;
  nuvo::DatabaseAddress address = admin_;
  address.database = QStringLiteral("kordel_test_%1_%2").arg(QCoreApplication::applicationPid()).arg(nextDatabase_++);
  adminExec(QStringLiteral("DROP DATABASE IF EXISTS ") + address.database);
  adminExec(QStringLiteral("CREATE DATABASE ") + address.database);
  return address;
}

void PrivatePostgres::dropDatabase(const nuvo::DatabaseAddress &address) {
  if (available())
    adminExec(QStringLiteral("DROP DATABASE IF EXISTS ") + address.database);
}

} // namespace kordel::test
