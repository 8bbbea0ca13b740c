#include "HostedFixture.h"

#include "common/ApplicationManager.h"

namespace kordel::test {

void HostedTest::SetUp() {
  ui = std::make_shared<ScriptedUi>();
  hostapi::installUi(ui);
  app = std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(dir.file("registry.ini")),
                                                std::make_shared<host::FileLog>(dir.file("orvex.log")),
                                                QStringLiteral("en"));
  addin::Connect(app);
}

void HostedTest::TearDown() {
  while (addin::ConnectionCount() > 0)
    addin::Disconnect();
  hostapi::installUi(nullptr);
}

QStringList HostedTest::logLines() const {
  const QString text = QString::fromUtf8(readFile(dir.file("orvex.log")));
  return text.split(u'\n', Qt::SkipEmptyParts);
}

} // namespace kordel::test
