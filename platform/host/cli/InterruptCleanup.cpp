#include "cli/InterruptCleanup.h"

#include <QFile>

#include <csignal>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

namespace kordel::host::cli {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// The paths are made before the handler is installed, so that the handler
// only reads memory and calls what a signal handler may call.
std::vector<std::string> paths;
volatile std::sig_atomic_t armed = 0;
std::array<struct sigaction, kSignals.size()> previous{};

void removeAndEnd(int signal) {
  if (armed)
    for (const std::string &path : paths)
      ::unlink(path.c_str());
  ::signal(signal, SIG_DFL);
  ::raise(signal);
}

} // namespace

InterruptCleanup::InterruptCleanup(const QStringList &files) {
  for (const QString &file : files)
    paths.push_back(QFile::encodeName(file).toStdString());
  armed = 1;
  struct sigaction action {};
  action.sa_handler = removeAndEnd;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    ::sigaction(kSignals[i], &action, &previous[i]);
}

InterruptCleanup::~InterruptCleanup() {
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    ::sigaction(kSignals[i], &previous[i], nullptr);
  armed = 0;
  paths.clear();
}

} // namespace kordel::host::cli
