#include "CupsTestQueues.h"

#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <cups/cups.h>

#include <pwd.h>
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
