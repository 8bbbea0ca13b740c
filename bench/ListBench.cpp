// list_bench: how fast a list window opens on a large class and scrolls to
// its end, against reading every row of the list the way a list would be
// filled all at once, in the same run.
//
//   list_bench [--db FILE] [--companies N]
//
// A missing database is made first with the demo data (100,000 companies
// by default). The window's table is shown offscreen; each step counts
// until it is painted. The baseline opens the class's records with the
// description fields of every row and reads each row's texts, which is
// what a list that loads before it shows must do. Prints each time, the
// ratio of opening to the baseline, and the peak memory after each part;
// the aim is first rows in well under a second whatever the size.

#include "BenchTools.h"

#include "desktop/RecordListModel.h"

#include "nuvo/Engine.h"
#include "nuvo/Catalog.h"
#include "nuvo/ExplorerObject.h"
#include "nuvo/ListQuery.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/ViewObject.h"

#include "hostapi/Records.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QTableView>

#include <cstdio>

using namespace kordel;

namespace {

QString argument(const QStringList &words, const QString &name, const QString &fallback) {
  const qsizetype at = words.indexOf(name);
  return at >= 0 && at + 1 < words.size() ? words[at + 1] : fallback;
}

} // namespace

int main(int argc, char **argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(argc, argv);
  const QStringList words = QCoreApplication::arguments();
  const int companies = argument(words, QStringLiteral("--companies"), QStringLiteral("100000")).toInt();
  const QString file = argument(words, QStringLiteral("--db"), QStringLiteral("list-bench-%1.db").arg(companies));
  const auto engine = nuvo::Engine::open(demoDatabase(file, companies), QStringLiteral("en"));

  // Opening: the ids of the list, then the rows the window shows.
  QElapsedTimer clock;
  clock.start();
  auto explorer = std::make_shared<nuvo::ExplorerObject>(engine, QStringLiteral("company"));
  host::desktop::RecordListModel model(explorer);
  QTableView table;
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.setModel(&model);
  table.resize(1000, 700);
  table.show();
  table.grab();
  const qint64 opened = clock.elapsed();
  const long openedMegabytes = peakMegabytes();

  clock.restart();
  table.scrollToBottom();
  table.grab();
  const qint64 toEnd = clock.elapsed();

  clock.restart();
  table.sortByColumn(0, Qt::AscendingOrder);
  table.scrollToTop();
  table.grab();
  const qint64 sorted = clock.elapsed();

  // The baseline: every row of the list read before anything shows.
  clock.restart();
  auto view = std::make_shared<nuvo::ViewObject>();
  for (int column = 0; column < explorer->listQuery().columnCount(); ++column)
    view->add(explorer->listQuery().columnField(column).name, 0, -1, QString());
  nuvo::RecordsObject records(engine);
  records.open(Variant(QStringLiteral("company")), nullptr, view, 0);
  qsizetype characters = 0;
  for (int row = 0; row < records.count(); ++row)
    characters += records.at(row)->description().size();
  const qint64 baseline = clock.elapsed();

  std::printf("list_bench: %d companies (%lld characters of descriptions)\n", int(explorer->listedIds().size()),
              static_cast<long long>(characters));
  std::printf("  first rows shown   %6lld ms   peak %ld MB\n", static_cast<long long>(opened), openedMegabytes);
  std::printf("  scrolled to end    %6lld ms\n", static_cast<long long>(toEnd));
  std::printf("  sorted by name     %6lld ms\n", static_cast<long long>(sorted));
  std::printf("  baseline, all rows %6lld ms   peak %ld MB\n", static_cast<long long>(baseline), peakMegabytes());
  std::printf("  opening takes %.1f%% of the baseline\n", baseline > 0 ? 100.0 * double(opened) / double(baseline) : 0.0);
  return 0;
}
