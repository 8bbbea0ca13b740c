#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

namespace kordel::test {

class PrivateCupsd;
class TempDir;

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

// Sets the temporary folder of the process while it lives.
class ScopedTempFolder {
public:
  explicit ScopedTempFolder(const QString &folder);
  ~ScopedTempFolder();
  ScopedTempFolder(const ScopedTempFolder &) = delete;
  ScopedTempFolder &operator=(const ScopedTempFolder &) = delete;

private:
  bool had_;
  QByteArray old_;
};

// Makes a folder the home of the process while it lives, with the user's
// documents folder inside it under the given name, as the desktop's list
// of user folders names it.
class ScopedHome {
public:
  ScopedHome(const QString &home, const QString &documentsName = QStringLiteral("Documents"));
  ~ScopedHome();
  ScopedHome(const ScopedHome &) = delete;
  ScopedHome &operator=(const ScopedHome &) = delete;

  QString documentsFolder() const { return documents_; }

private:
  QByteArray oldHome_;
  bool hadConfigHome_;
  QByteArray oldConfigHome_;
  QString documents_;
};

// A print scheduler of the test's own in a folder, with the print client
// of the process pointed at it and the process's temporary folder
// ("client-tmp" in the folder) where printing leaves no files behind.
class TestPrintServer {
public:
  explicit TestPrintServer(const TempDir &dir);
  ~TestPrintServer();
  TestPrintServer(const TestPrintServer &) = delete;
  TestPrintServer &operator=(const TestPrintServer &) = delete;

  // False when no scheduler could start; failure() says why.
  bool running() const;
  QString failure() const;
  PrivateCupsd &cupsd() { return *cupsd_; }
  // The files printing left in the process's temporary folder.
  QStringList clientTemporaryFiles() const;
  // The end of the scheduler's error log, for failure messages.
  QByteArray errorLog() const;

  // Adds a queue of the PDF printer, whose jobs land as PDF files in
  // pdfPrinterOutputFolder(). Empty on success, else why it cannot be
  // had: the printer is not installed, the scheduler runs without root,
  // or lpadmin's complaint.
  QString addPdfPrinterQueue(const QString &name);
  // Adds a queue that throws its output away and whose driver offers three
  // paper bins (Upper Tray, Lower Tray, Manual Feed) and the given default
  // paper size keyword ("A4", "Letter"); empty on success, else why not.
  QString addQueueWithBins(const QString &name, const QString &defaultPaper = QStringLiteral("A4"));

private:
  QString folder_;
  std::unique_ptr<PrivateCupsd> cupsd_;
  std::unique_ptr<ScopedCupsServer> server_;
  std::unique_ptr<ScopedTempFolder> tempFolder_;
};

// The PDF printer's output folder, watched from the moment this is made for
// the files of one job title. Print tests may run side by side and each
// private scheduler numbers its jobs from 1, so a file is told by its
// title and time, not by its name alone.
class PdfPrinterOutput {
public:
  explicit PdfPrinterOutput(const QString &jobTitle);

  QString folder() const { return folder_; }
  // The paths of the title's files written since, oldest first.
  QStringList written() const;
  // Waits up to a minute for the title's file to be there and whole (its
  // text can be read); its path, or empty.
  QString waitForFile() const;

private:
  QString folder_;
  QString stem_;
  qint64 since_;
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
