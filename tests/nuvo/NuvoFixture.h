#pragma once

#include "support/TempDir.h"

#include "nuvo/Engine.h"
#include "nuvo/SqlConnection.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace kordel::test {

// One fresh database per test, SQLite or PostgreSQL by the test's
// parameter. A PostgreSQL test skips when no server can be had.
class DatabaseTest : public ::testing::TestWithParam<nuvo::Dialect> {
protected:
  void SetUp() override;

  // Fills the database with demo data.
  void createDemo(int companies = 40, std::uint64_t seed = 3);
  // Opens the database for a user, in a language.
  std::shared_ptr<nuvo::Engine> open(const QString &language = QStringLiteral("en"),
                                     const QString &login = QStringLiteral("anna"));

  // Dropped last, after every engine of the test has closed.
  struct Cleanup {
    std::optional<nuvo::DatabaseAddress> postgres;
    ~Cleanup();
  } cleanup;
  TempDir dir;
  nuvo::DatabaseAddress address;
};

// "SQLite" and "PostgreSQL" as test name suffixes.
std::string dialectName(const ::testing::TestParamInfo<nuvo::Dialect> &info);

// The values Value and Text read of every record of a class, for comparing
// databases: "id|value|value..." per record, in id order.
QStringList dumpClass(nuvo::Engine &engine, const QString &className);

} // namespace kordel::test

#define KORDEL_ON_BOTH_DATABASES(Suite)                                                                                \
  INSTANTIATE_TEST_SUITE_P(Databases, Suite,                                                                           \
                           ::testing::Values(kordel::nuvo::Dialect::SQLite, kordel::nuvo::Dialect::PostgreSQL),        \
                           kordel::test::dialectName)
