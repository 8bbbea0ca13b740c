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

const QStringList kFields{"number", "name", "city", "phone", "amount", "date"};

// Hands out the rows through the run's FetchData event.
class BenchRows : public Object {
public:
  BenchRows(std::shared_ptr<LayoutReport> report, int rows) : report_(std::move(report)), rows_(rows) {}

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<BenchRows>("ActiveReport_DataInitialize",
                          [](BenchRows &b, Args &) {
                            for (const QString &name : kFields)
                              b.report_->fields()->add(name);
                            b.next_ = 0;
                            return Variant();
                          }),
        method<BenchRows>(
            "ActiveReport_FetchData",
            [](BenchRows &b, Args &a) {
              if (b.next_ >= b.rows_)
                return Variant();
              const int i = b.next_++;
              const auto &fields = *b.report_->fields();
              fields.item(Variant(0))->value = Variant(i + 1);
              fields.item(Variant(1))->value = QStringLiteral("Customer number %1").arg(i + 1);
              fields.item(Variant(2))->value = QStringLiteral("City %1").arg(i / 500);
              fields.item(Variant(3))->value = QStringLiteral("+46 40 %1").arg(100000 + i);
              fields.item(Variant(4))->value = Variant((i % 997) * 12.5);
              fields.item(Variant(5))->value =
                  QStringLiteral("2026-%1-%2").arg(1 + i % 12, 2, 10, QChar('0')).arg(1 + i % 28, 2, 10, QChar('0'));
              a[0] = Variant(false);
              return Variant();
            }),
    }};
    return table;
  }

private:
  std::shared_ptr<LayoutReport> report_;
  int rows_;
  int next_ = 0;
};

std::shared_ptr<LayoutReport> listReport() {
  auto report = LayoutReport::create();
  auto &sections = *report->sections();
  auto &pageHeader = *sections.add("PageHeader", 0, SectionType::PageHeader, 300);
  auto &group = *sections.add("GroupHeader1", 1, SectionType::GroupHeader, 300);
  auto &detail = *sections.add("Detail", 2, SectionType::Detail, 250);
  auto &pageFooter = *sections.add("PageFooter", 3, SectionType::PageFooter, 300);
  group.dataField = "city";
  const float widths[] = {900, 2600, 1600, 1800, 1300, 1300};
  float left = 0;
  for (int i = 0; i < kFields.size(); ++i) {
    auto label = std::static_pointer_cast<Label>(pageHeader.controls()->add("DDActiveReports2.Label"));
    label->caption = kFields[i];
    label->left = left;
    label->width = widths[i];
    auto field = std::static_pointer_cast<Field>(detail.controls()->add("DDActiveReports2.Field"));
    field->dataField = kFields[i];
    field->left = left;
    field->width = widths[i];
    field->canGrow = false;
    left += widths[i];
  }
  auto city = std::static_pointer_cast<Field>(group.controls()->add("DDActiveReports2.Field"));
  city->dataField = "city";
  city->width = 3000;
  auto number = std::static_pointer_cast<Field>(pageFooter.controls()->add("DDActiveReports2.Field"));
  number->countKind = 4;
  number->runningKind = 2;
  number->width = 800;
  auto total = std::static_pointer_cast<Field>(pageFooter.controls()->add("DDActiveReports2.Field"));
  total->countKind = 4;
  total->left = 1000;
  total->width = 800;
  return report;
}

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
    const Page &page = pages.page(i);
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
    auto report = listReport();
    auto source = std::make_shared<BenchRows>(report, rows);
    report->setEventSink(source);
    QElapsedTimer timer;
    timer.start();
    report->run();
    const qint64 runTime = timer.nsecsElapsed();
    timer.restart();
    PdfExporter().exportDocument(*report->pages(), out);
    const qint64 exportTime = timer.nsecsElapsed();
    const long engineMemory = peakMegabytes();
    const int pages = report->pages()->pageCount();

    timer.restart();
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
