#include "engine/print/BuiltInPdfPrinter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/PdfExporter.h"

#include "hostapi/Printers.h"

#include "core/Error.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUuid>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("Orvex PDF");

// Characters that no file name may hold here or on the machines a file
// is copied to, and control characters.
bool unfitForFileName(QChar c) {
  return c.category() == QChar::Other_Control || QStringLiteral("/\\:*?\"<>|").contains(c);
}

// Keeps a name with its number and extension below the usual limit of 255
// bytes per file name.
constexpr int kMaxStemBytes = 200;

QString cleanStem(const QString &jobName) {
  QString stem;
  for (const QChar c : jobName)
    stem += unfitForFileName(c) ? u'_' : c;
  if (stem.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
    stem.chop(4);
  // A leading dot would hide the file; trailing dots and blanks are lost on
  // some file systems.
  while (stem.startsWith(u'.') || stem.startsWith(u' '))
    stem.remove(0, 1);
  while (stem.endsWith(u'.') || stem.endsWith(u' '))
    stem.chop(1);
  while (stem.toUtf8().size() > kMaxStemBytes)
    stem.chop(1);
  return stem.isEmpty() ? QStringLiteral("Report") : stem;
}

} // namespace

bool isBuiltInPdfPrinter(const QString &deviceName) { return deviceName == builtInPdfPrinterName(); }

QString builtInPdfPrinterName() { return QString::fromUtf8(hostapi::kBuiltInPdfPrinterName); }

QString builtInPdfFolder() { return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation); }

QString pdfFileNameForJob(const QString &jobName) { return cleanStem(jobName) + QStringLiteral(".pdf"); }

QString printToBuiltInPdfPrinter(const PageDocument &document, int firstPage, int lastPage, const QString &jobName) {
  checkPageRange(document, firstPage, lastPage, kSource);
  const QString folder = builtInPdfFolder();
  if (folder.isEmpty() || !QDir().mkpath(folder))
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("The documents folder \"%1\" cannot be made to print into").arg(folder));
  const QDir documents(folder);

  // The file is written under a name of its own and then renamed to the
  // first free name; a rename never replaces a file that is there, so two
  // jobs of one name, even at once, both keep their files.
  const QString written =
      documents.filePath(QStringLiteral(".orvex-pdf-%1.pdf").arg(QUuid::createUuid().toString(QUuid::Id128)));
  PdfExporter exporter;
  exporter.setTitle(jobName);
  exporter.exportPages(document, written, firstPage, lastPage);

  const QString stem = cleanStem(jobName);
  for (int number = 1;; ++number) {
    const QString name =
        number == 1 ? stem + QStringLiteral(".pdf") : QStringLiteral("%1 (%2).pdf").arg(stem).arg(number);
    const QString target = documents.filePath(name);
    if (QFile::rename(written, target))
      return target;
    if (!QFile::exists(target)) {
      QFile::remove(written);
      raiseExportWriteError(target, QStringLiteral("the finished file cannot be given its name"), kSource);
    }
  }
}

} // namespace kordel::engine
