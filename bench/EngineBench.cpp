// engine_bench: how fast the layout engine turns rows into a PDF, against
// writing the same text on the same number of pages with Qt's PDF writer
// alone in the same run, the limit of our stack.
//
//   engine_bench [--rows N] [--out FILE]
//
// The report is a list of N rows of six fields, grouped on one of them,
// with a page header and a page footer showing page X of Y. Prints pages
// per second of both roads, their ratio, the time of the run and of the
// export, and the peak memory of the process.

#include "BenchTools.h"
#include "PlainList.h"

#include "engine/export/PdfExporter.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/Page.h"
#include "engine/render/PageDocument.h"
#include "engine/render/PageFont.h"
#include "engine/render/TwipsFont.h"

#include "core/Error.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <cstdio>

using namespace kordel;
using namespace kordel::engine;

namespace {

// The same text on the same pages, drawn straight with Qt's PDF writer.
void writePlain(const PageDocument &pages, const QString &path) {
  QPdfWriter writer(path);
  writer.setResolution(1440);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter painter(&writer);
  painter.setFont(twipsFont(PageFont().toQFont()));
  for (int i = 0; i < pages.pageCount(); ++i) {
    if (i > 0)
      writer.newPage();
    const Page page = pages.page(i);
    for (const PageItem &item : page.items())
      if (const auto *run = std::get_if<TextRun>(&item))
        painter.drawText(QPointF(run->box.x, run->box.y + 190), page.text(*run));
  }
}

} // namespace

int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  int rows = 100000;
  QTemporaryDir scratch;
  QString out = scratch.filePath(QStringLiteral("engine_bench.pdf"));
  const QStringList args = app.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--rows"))
      rows = args[i + 1].toInt();
    else if (args[i] == QLatin1String("--out"))
      out = args[i + 1];
  }
  try {
    const PlainListRun engineRun = runPlainList(rows, out);
    const auto &report = engineRun.report;
    const qint64 runTime = qint64(engineRun.runSeconds * 1e9);
    const qint64 exportTime = qint64(engineRun.exportSeconds * 1e9);
    const long engineMemory = peakMegabytes();
    const int pages = engineRun.pages;

    QElapsedTimer timer;
    timer.start();
    writePlain(*report->pages(), scratch.filePath(QStringLiteral("plain.pdf")));
    const qint64 plainTime = timer.nsecsElapsed();

    const double engineSeconds = double(runTime + exportTime) / 1e9;
    std::printf("rows %d, pages %d, run errors %lld\n", rows, pages,
                static_cast<long long>(report->runErrors().size()));
    std::printf("run    %8.1f ms\nexport %8.1f ms  (%s)\n", runTime / 1e6, exportTime / 1e6, out.toUtf8().constData());
    std::printf("engine %8.1f pages/s\nplain  %8.1f pages/s\nratio  %8.2f (engine time / plain time)\n",
                pages / engineSeconds, pages / (plainTime / 1e9), engineSeconds / (plainTime / 1e9));
    std::printf("peak memory %ld MB after the engine's run and export (%zu bytes of pages)\n", engineMemory,
                report->pages()->approximateBytes());
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "engine_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
