// A PostgreSQL server that does not answer: the connection gives up after
// the address's connect_timeout with a message that says so, and a
// statement that runs longer than statement_timeout is cancelled.

#include "PrivatePostgres.h"

#include "support/ErrorCapture.h"

#include "core/Error.h"
#include "nuvo/SqlConnection.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace kordel;

namespace {

// A socket that takes connections (the system completes them) but never
// reads or writes: a server that hangs.
class SilentServer {
public:
  SilentServer() {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr *>(&address), length) != 0 || ::listen(fd_, 4) != 0 ||
        ::getsockname(fd_, reinterpret_cast<sockaddr *>(&address), &length) != 0)
      return;
    port_ = ntohs(address.sin_port);
  }
  ~SilentServer() {
    if (fd_ >= 0)
      ::close(fd_);
  }
  int port() const { return port_; }

private:
  int fd_ = -1;
  int port_ = 0;
};

TEST(ServerWait, AServerThatNeverAnswersIsGivenUpWithItsReason) {
  const SilentServer server;
  ASSERT_GT(server.port(), 0);
  const auto address = nuvo::DatabaseAddress::parse(
      QStringLiteral("postgresql://nobody@127.0.0.1:%1/crm?connect_timeout=1").arg(server.port()));
  QElapsedTimer clock;
  clock.start();
  const Error error = test::errorOf([&] { nuvo::SqlConnection(address, nuvo::OpenMode::ReadOnly); });
  EXPECT_LT(clock.elapsed(), 30000) << "given up long after its time";
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains(QStringLiteral("did not answer within 2 seconds")))
      << error.description().toStdString();

  EXPECT_EQ(test::errorNumber(
                [] { nuvo::DatabaseAddress::parse(QStringLiteral("postgresql://h/crm?statement_timeout=soon")); }),
            ErrorNumber::InvalidCall);
}

TEST(ServerWait, AStatementLongerThanItsTimeoutIsCancelled) {
  auto &postgres = test::PrivatePostgres::instance();
  if (!postgres.available())
    GTEST_SKIP() << postgres.failure().toStdString();
  auto address = postgres.createDatabase();
  ASSERT_TRUE(address);
  address->statementTimeout = 1;
  {
    nuvo::SqlConnection connection(*address, nuvo::OpenMode::ReadWrite);
    const Error error = test::errorOf([&] { connection.exec(QStringLiteral("SELECT pg_sleep(5)")); });
    EXPECT_TRUE(error.description().contains(QStringLiteral("statement timeout"))) << error.description().toStdString();
    connection.exec(QStringLiteral("SELECT 1")); // the connection goes on
  }
  postgres.dropDatabase(*address);
}

} // namespace
