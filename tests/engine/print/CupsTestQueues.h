#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kordel::test {

class PrivateCupsd;

// Points the print client of this process at a server while it lives.
class ScopedCupsServer {
public:
  explicit ScopedCupsServer(const QString &server);
  ~ScopedCupsServer();
  ScopedCupsServer(const ScopedCupsServer &) = delete;
  ScopedCupsServer &operator=(const ScopedCupsServer &) = delete;

private:
  bool had_;
  QByteArray old_;
};

// Adds an enabled queue to the scheduler with a driver description (PPD
// file) and device; true on success, else error holds lpadmin's complaint.
bool addQueue(const PrivateCupsd &cupsd, const QString &name, const QString &device, const QString &ppd,
              const QStringList &extraArguments, QString &error);

// The PDF printer's files, empty when it is not installed.
QString pdfPrinterBackend();
QString pdfPrinterPpd();
// The folder the PDF printer writes the jobs of the current user into, as
// its configuration says.
QString pdfPrinterOutputFolder();

// A job as the scheduler reports it.
struct JobAttributes {
  int state = 0; // IPP job-state; 9 is completed
  QString stateMessage;
  QString name;
  int copies = 0;
  int orientation = 0;
  QString mediaSource;
};

// Asks the scheduler of the process about a job; state 0 when it does not
// answer.
JobAttributes jobAttributes(int jobId);
// Polls the job until it is completed, cancelled or aborted, or a minute
// has passed.
JobAttributes waitForJobEnd(int jobId);

} // namespace kordel::test
