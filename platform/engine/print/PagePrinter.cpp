#include "engine/print/PagePrinter.h"

#include "engine/export/PdfExporter.h"
#include "engine/print/BuiltInPdfPrinter.h"
#include "engine/print/PrintSystem.h"
#include "engine/print/SystemPrinters.h"

#include "core/Error.h"
#include "engine/export/ExportFile.h"

#include <QDir>
#include <QTemporaryFile>

#include <atomic>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PagePrinter");

// The values of the orientation-requested option.
constexpr const char *kPortrait = "3";
constexpr const char *kLandscape = "4";

bool isLandscape(const PrintSettings &settings, const Page &firstPrinted) {
  if (settings.orientation)
    return *settings.orientation == PrintOrientation::Landscape;
  return firstPrinted.width() > firstPrinted.height();
}

// The media-source keyword of the bin, or empty for the printer's choice.
QByteArray mediaSourceFor(const PrintQueue &destination, const QString &queue, int paperBin) {
  if (paperBin == 0)
    return {};
  const QStringList sources = destination.mediaSources();
  if (paperBin < 0 || paperBin > sources.size())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("The printer \"%1\" has no paper bin %2; it has %3")
                   .arg(queue)
                   .arg(paperBin)
                   .arg(sources.size()));
  return sources[paperBin - 1].toUtf8();
}

} // namespace

int PagePrinter::printToPdfFile(const PageDocument &document, int firstPage, int lastPage,
                                const QString &jobName) const {
  if (settings_.paperBin != 0)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("The printer \"%1\" has no paper bin %2; it has none")
                   .arg(builtInPdfPrinterName())
                   .arg(settings_.paperBin));
  printToBuiltInPdfPrinter(document, firstPage, lastPage, jobName);
  static std::atomic<int> jobs{0};
  return ++jobs;
}

int PagePrinter::printDocument(const PageDocument &document) const {
  return printPages(document, 0, document.pageCount() - 1);
}

int PagePrinter::printPages(const PageDocument &document, int firstPage, int lastPage) const {
  checkPageRange(document, firstPage, lastPage, kSource);
  if (settings_.copies < 1)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("%1 copies cannot be printed; at least one is needed").arg(settings_.copies));
  const QString queue = settings_.queue.isEmpty() ? defaultPrinterName() : settings_.queue;
  const QString jobName = settings_.jobName.isEmpty() ? QStringLiteral("Report") : settings_.jobName;
  if (isBuiltInPdfPrinter(queue))
    return printToPdfFile(document, firstPage, lastPage, jobName);
  const auto destination = printSystem(kSource).queue(queue, kSource);
  const QByteArray mediaSource = mediaSourceFor(*destination, queue, settings_.paperBin);

  // The print system reads the file while the job is submitted, so it can
  // go as soon as that is done.
  QTemporaryFile pdf(QDir::tempPath() + QStringLiteral("/kordel-print-XXXXXX.pdf"));
  if (!pdf.open())
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("Cannot make a temporary file to print from: %1").arg(pdf.errorString()));
  pdf.close();
  PdfExporter exporter;
  exporter.setTitle(jobName);
  exporter.exportPages(document, pdf.fileName(), firstPage, lastPage);

  std::vector<std::pair<QByteArray, QByteArray>> options{
      {"copies", QByteArray::number(settings_.copies)},
      {"orientation-requested", isLandscape(settings_, document.page(firstPage)) ? kLandscape : kPortrait}};
  if (!mediaSource.isEmpty())
    options.emplace_back("media-source", mediaSource);
  return destination->printFile(pdf.fileName(), jobName, options, queue, kSource);
}

} // namespace kordel::engine
