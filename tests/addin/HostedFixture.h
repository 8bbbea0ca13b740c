#pragma once

#include "support/QtPrinters.h"
#include "support/ScriptedUi.h"
#include "support/TempDir.h"

#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/SettingsStore.h"

#include <gtest/gtest.h>

#include <memory>

namespace kordel::test {

// A real host application over a settings file and a log file in a fresh
// folder, connected to the add-in, with a scripted user interface.
class HostedTest : public ::testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  // The lines of the log file.
  QStringList logLines() const;

  TempDir dir;
  std::shared_ptr<ScriptedUi> ui;
  std::shared_ptr<host::HostApplication> app;
};

} // namespace kordel::test
