#include "desktop/DesktopMain.h"

#include "desktop/DesktopSettings.h"
#include "desktop/DesktopText.h"
#include "desktop/MainWindow.h"

#include "cli/DataCommands.h"

#include "host/AddinHost.h"
#include "host/HostApplication.h"
#include "host/HostPaths.h"
#include "host/QtUi.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Ui.h"

#include <QApplication>
#include <QFileInfo>
#include <QProgressDialog>

#include <atomic>
#include <exception>
#include <thread>

namespace kordel::host::desktop {

namespace {

// Makes the demo database with its data made on a thread of its own, while
// a progress window shows that the program is working.
void makeDemoWithProgress(HostApplication &application, const QString &database) {
  QProgressDialog progress(desktopText("Making a demo database of 1,000 companies for the first start..."), QString(),
                           0, 0);
  progress.setObjectName(QStringLiteral("DemoProgress"));
  progress.setWindowTitle(QStringLiteral("Orvex"));
  progress.setMinimumDuration(0);
  progress.show();
  cli::makeDemoDatabase(application, database, 1000, 1, [&](const std::function<void()> &build) {
    std::atomic<bool> done = false;
    std::exception_ptr failure;
    std::thread worker([&] {
      try {
        build();
      } catch (...) {
        failure = std::current_exception();
      }
      done = true;
    });
    while (!done) {
      QApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 50);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    worker.join();
    if (failure)
      std::rethrow_exception(failure);
  });
}

} // namespace

int runDesktop(HostApplication &host, const QString &database, const QString &language) {
  QString chosen = language;
  if (chosen.isEmpty())
    chosen = readDesktopSetting(host, QStringLiteral("Language"));
  if (chosen.isEmpty())
    chosen = host.language();
  auto application = std::make_shared<HostApplication>(host.settings(), host.log(), chosen);
  hostapi::installUi(std::make_shared<QtUi>());
  AddinHost addins(*application);
  addins.loadPlugins(HostPaths::addinFolder());
  const auto factory = addins.connectReportFactory(QString::fromLatin1(hostapi::kAddinProgId));

  const QString location = database.isEmpty() ? HostPaths::defaultDatabase() : database;
  try {
    if (database.isEmpty() && !QFileInfo::exists(location))
      makeDemoWithProgress(*application, location);
    cli::openDatabase(*application, location, nuvo::OpenMode::ReadWrite);
  } catch (const Error &error) {
    // Started from a desktop, the user reads no standard error.
    hostapi::ui().messageBox(desktopText("The database could not be opened.") + QStringLiteral("\n\n") +
                                 error.description(),
                             hostapi::MsgBox::Critical, QStringLiteral("Orvex"));
    throw;
  }

  MainWindow window(*application, factory, location);
  window.show();
  const int code = QApplication::exec();
  addins.disconnectAll();
  return code;
}

} // namespace kordel::host::desktop
