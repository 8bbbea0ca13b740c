#include "support/CupsTestQueues.h"

#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <cups/cups.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kordel::test {

ScopedCupsServer::ScopedCupsServer(const QString &server)
    : had_(qEnvironmentVariableIsSet("CUPS_SERVER")), old_(qgetenv("CUPS_SERVER")) {
  qputenv("CUPS_SERVER", server.toUtf8());
  cupsSetServer(nullptr); // forget the server and connection of before
}

ScopedCupsServer::~ScopedCupsServer() {
  if (had_)
    qputenv("CUPS_SERVER", old_);
  else
    qunsetenv("CUPS_SERVER");
  cupsSetServer(nullptr);
}

ScopedTempFolder::ScopedTempFolder(const QString &folder)
    : had_(qEnvironmentVariableIsSet("TMPDIR")), old_(qgetenv("TMPDIR")) {
  qputenv("TMPDIR", folder.toUtf8());
}

ScopedTempFolder::~ScopedTempFolder() {
  if (had_)
    qputenv("TMPDIR", old_);
  else
    qunsetenv("TMPDIR");
}

ScopedHome::ScopedHome(const QString &home, const QString &documentsName)
    : oldHome_(qgetenv("HOME")), hadConfigHome_(qEnvironmentVariableIsSet("XDG_CONFIG_HOME")),
      oldConfigHome_(qgetenv("XDG_CONFIG_HOME")), documents_(home + u'/' + documentsName) {
  const QString config = home + QStringLiteral("/.config");
  QDir().mkpath(config);
  writeFile(config + QStringLiteral("/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/" + documentsName.toUtf8() + "\"\n");
  qputenv("HOME", home.toUtf8());
  qputenv("XDG_CONFIG_HOME", config.toUtf8());
}

ScopedHome::~ScopedHome() {
  qputenv("HOME", oldHome_);
  if (hadConfigHome_)
    qputenv("XDG_CONFIG_HOME", oldConfigHome_);
  else
    qunsetenv("XDG_CONFIG_HOME");
}

TestPrintServer::TestPrintServer(const TempDir &dir) : folder_(dir.path()) {
  // The scheduler runs filters under a user of its own, which must reach
  // the spool and temporary folders.
  ::chmod(QFile::encodeName(folder_).constData(), 0755);
  QDir().mkpath(dir.file(QStringLiteral("tmp")));
  ::chmod(QFile::encodeName(dir.file(QStringLiteral("tmp"))).constData(), 01777);
  cupsd_ = std::make_unique<PrivateCupsd>(folder_);
  if (!cupsd_->running())
    return;
  server_ = std::make_unique<ScopedCupsServer>(cupsd_->socket());
  QDir().mkpath(dir.file(QStringLiteral("client-tmp")));
  tempFolder_ = std::make_unique<ScopedTempFolder>(dir.file(QStringLiteral("client-tmp")));
}

TestPrintServer::~TestPrintServer() {
  tempFolder_.reset();
  server_.reset();
  cupsd_.reset();
}

bool TestPrintServer::running() const { return cupsd_->running(); }

QString TestPrintServer::failure() const { return cupsd_->failure(); }

QStringList TestPrintServer::clientTemporaryFiles() const {
  return QDir(folder_ + QStringLiteral("/client-tmp")).entryList(QDir::Files | QDir::Hidden);
}

QByteArray TestPrintServer::errorLog() const {
  return readFile(folder_ + QStringLiteral("/log/error_log")).right(2000);
}

QString TestPrintServer::addPdfPrinterQueue(const QString &name) {
  if (pdfPrinterBackend().isEmpty() || pdfPrinterPpd().isEmpty())
    return QStringLiteral("the PDF printer is not installed");
  if (geteuid() != 0)
    return QStringLiteral("the PDF printer's backend runs only under a scheduler started as root");
  QString error;
  // The default renderer makes text that pdftotext cannot read back.
  if (!addQueue(*cupsd_, name, QStringLiteral("cups-pdf:/"), pdfPrinterPpd(),
                {QStringLiteral("-o"), QStringLiteral("pdftops-renderer-default=pdftocairo")}, error))
    return QStringLiteral("the PDF printer queue cannot be set up: ") + error;
  return {};
}

QString TestPrintServer::addQueueWithBins(const QString &name, const QString &defaultPaper) {
  const QString ppd = pdfPrinterPpd();
  if (ppd.isEmpty())
    return QStringLiteral("the PDF printer's driver description is not installed");
  QByteArray description = readFile(ppd);
  description += "*OpenUI *InputSlot/Paper Source: PickOne\n"
                 "*OrderDependency: 20 AnySetup *InputSlot\n"
                 "*DefaultInputSlot: Upper\n"
                 "*InputSlot Upper/Upper Tray: \"\"\n"
                 "*InputSlot Lower/Lower Tray: \"\"\n"
                 "*InputSlot Manual/Manual Feed: \"\"\n"
                 "*CloseUI: *InputSlot\n";
  const QString withBins = folder_ + QStringLiteral("/") + name + QStringLiteral(".ppd");
  if (!writeFile(withBins, description))
    return QStringLiteral("cannot write ") + withBins;
  QString error;
  // The scheduler gives a new queue the system's paper; the option makes
  // it the one asked for.
  if (!addQueue(*cupsd_, name, QStringLiteral("file:///dev/null"), withBins,
                {QStringLiteral("-o"), QStringLiteral("PageSize=") + defaultPaper}, error))
    return error;
  return {};
}

PdfPrinterOutput::PdfPrinterOutput(const QString &jobTitle)
    : folder_(pdfPrinterOutputFolder()), since_(QDateTime::currentSecsSinceEpoch()) {
  // The printer names a file after the job's title, each character outside
  // letters and digits made an underscore.
  for (const QChar c : jobTitle)
    stem_ += (c.isLetterOrNumber() && c.unicode() < 128) ? c : QChar(u'_');
}

QStringList PdfPrinterOutput::written() const {
  QStringList paths;
  const auto files =
      QDir(folder_).entryInfoList({stem_ + QStringLiteral("*.pdf")}, QDir::Files, QDir::Time | QDir::Reversed);
  for (const QFileInfo &file : files)
    if (file.lastModified().toSecsSinceEpoch() >= since_)
      paths << file.filePath();
  return paths;
}

QString PdfPrinterOutput::waitForFile() const {
  const QDeadlineTimer deadline(60000);
  while (!deadline.hasExpired()) {
    const QStringList files = written();
    if (!files.isEmpty()) {
      // The printer writes the file in pieces: it is whole once it reads.
      QProcess reader;
      reader.start(QStringLiteral("pdfinfo"), {files.front()});
      if (reader.waitForFinished(10000) && reader.exitCode() == 0)
        return files.front();
    }
    QThread::msleep(100);
  }
  return {};
}

bool addQueue(const PrivateCupsd &cupsd, const QString &name, const QString &device, const QString &ppd,
              const QStringList &extraArguments, QString &error) {
  QString lpadmin = QStandardPaths::findExecutable(QStringLiteral("lpadmin"));
  if (lpadmin.isEmpty())
    lpadmin = QStandardPaths::findExecutable(QStringLiteral("lpadmin"), {QStringLiteral("/usr/sbin")});
  QProcess admin;
  admin.setProcessChannelMode(QProcess::MergedChannels);
  admin.start(lpadmin, QStringList{QStringLiteral("-h"), cupsd.socket(), QStringLiteral("-p"), name,
                                   QStringLiteral("-E"), QStringLiteral("-v"), device, QStringLiteral("-P"), ppd} +
                           extraArguments);
  if (!admin.waitForFinished(30000) || admin.exitStatus() != QProcess::NormalExit || admin.exitCode() != 0) {
    error = admin.errorString() + u' ' + QString::fromUtf8(admin.readAll());
    return false;
  }
  return true;
}

QString pdfPrinterBackend() {
  const QString path = QStringLiteral("/usr/lib/cups/backend/cups-pdf");
  return QFileInfo::exists(path) ? path : QString();
}

QString pdfPrinterPpd() {
  const QString path = QStringLiteral("/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd");
  return QFileInfo::exists(path) ? path : QString();
}

QString pdfPrinterOutputFolder() {
  QString folder = QStringLiteral("/var/spool/cups-pdf/${USER}");
  const QString config = QString::fromUtf8(readFile(QStringLiteral("/etc/cups/cups-pdf.conf")));
  for (const QString &line : config.split(u'\n')) {
    if (line.startsWith(QStringLiteral("Out ")))
      folder = line.mid(4).trimmed();
  }
  const passwd *user = getpwuid(geteuid());
  if (user) {
    folder.replace(QStringLiteral("${HOME}"), QString::fromUtf8(user->pw_dir));
    folder.replace(QStringLiteral("${USER}"), QString::fromUtf8(user->pw_name));
  }
  return folder;
}

JobAttributes jobAttributes(int jobId) {
  ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
  const QByteArray uri = "ipp://localhost/jobs/" + QByteArray::number(jobId);
  ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, uri.constData());
  ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
  ipp_t *response = cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/");
  JobAttributes job;
  if (!response)
    return job;
  const auto integer = [response](const char *name, ipp_tag_t tag) {
    ipp_attribute_t *attribute = ippFindAttribute(response, name, tag);
    return attribute ? ippGetInteger(attribute, 0) : 0;
  };
  const auto text = [response](const char *name) {
    ipp_attribute_t *attribute = ippFindAttribute(response, name, IPP_TAG_ZERO);
    return attribute ? QString::fromUtf8(ippGetString(attribute, 0, nullptr)) : QString();
  };
  job.state = integer("job-state", IPP_TAG_ENUM);
  job.stateMessage = text("job-printer-state-message");
  job.name = text("job-name");
  job.copies = integer("copies", IPP_TAG_INTEGER);
  job.orientation = integer("orientation-requested", IPP_TAG_ENUM);
  job.mediaSource = text("media-source");
  ippDelete(response);
  return job;
}

JobAttributes waitForJobEnd(int jobId) {
  const QDeadlineTimer deadline(60000);
  JobAttributes job = jobAttributes(jobId);
  while (job.state < IPP_JSTATE_CANCELED && !deadline.hasExpired()) {
    QThread::msleep(100);
    job = jobAttributes(jobId);
  }
  return job;
}

} // namespace kordel::test
