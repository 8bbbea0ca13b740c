#include "DemoFixture.h"

#include "common/ApplicationManager.h"
#include "common/ResourceManager.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "nuvo/demo/DemoDatabase.h"

#include <QTemporaryDir>

namespace kordel::test {

namespace {
std::unique_ptr<QTemporaryDir> &demoFolder() {
  static std::unique_ptr<QTemporaryDir> folder;
  return folder;
}
} // namespace

QString DemoHostedTest::databaseFile() { return demoFolder()->filePath(QStringLiteral("demo.db")); }

void DemoHostedTest::SetUpTestSuite() {
  demoFolder() = std::make_unique<QTemporaryDir>();
  nuvo::DatabaseAddress address;
  address.file = databaseFile();
  nuvo::demo::DemoOptions options;
  options.companies = 6;
  options.seed = 11;
  nuvo::demo::createDemoDatabase(address, options);
}

void DemoHostedTest::TearDownTestSuite() { demoFolder().reset(); }

void DemoHostedTest::SetUp() {
  HostedTest::SetUp();
  nuvo::DatabaseAddress address;
  address.file = databaseFile();
  app->setDatabase(std::make_shared<nuvo::DatabaseObject>(
      nuvo::Engine::open(address, QStringLiteral("en"), QStringLiteral("anna"))));
  addin::StartTranslation(QStringLiteral("en"));
}

void DemoHostedTest::TearDown() {
  addin::StopTranslation();
  app->setDatabase(nullptr);
  HostedTest::TearDown();
}

} // namespace kordel::test
