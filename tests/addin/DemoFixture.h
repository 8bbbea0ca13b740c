#pragma once

#include "HostedFixture.h"

namespace kordel::test {

// A hosted add-in on a small demo database, made once for the test suite,
// with the translator started.
class DemoHostedTest : public HostedTest {
protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();
  void SetUp() override;
  void TearDown() override;

  static QString databaseFile();
};

} // namespace kordel::test
