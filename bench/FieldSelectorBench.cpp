// field_selector_bench: how fast the designer's field tree opens on a
// large data model, against reading the same fields through the host
// interface in the same run.
//
//   field_selector_bench [--db FILE] [--rounds R]
//
// The model has 300 classes and 20,000 fields whose relations lead round
// in circles (LargeModel.h); a missing database is made first. The tree
// is filled at its root, then a relation is opened, a relation of that
// class, and so on round the circle, each level as the user's click opens
// it. The baseline of each step is walking the fields of that level and
// reading what the tree reads of each (local name, type, hidden). The
// tree is shown offscreen, and each step counts until it is painted.
// Prints each step's time, its ratio to its baseline and the number of
// nodes the tree holds; the aim is the whole walk in well under a second,
// with a tree that holds no more than the levels opened.

#include "BenchTools.h"
#include "LargeModel.h"

#include "common/ApplicationManager.h"
#include "dialogs/FieldSelector.h"
#include "host/BatchUi.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/SettingsStore.h"
#include "hostapi/Database.h"
#include "nuvo/Catalog.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"

#include "core/Error.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdio>
#include <functional>

using namespace kordel;

namespace {

// How many relations the walk opens, one level below the other.
constexpr int kOpened = 5;

// The best of a few rounds, in nanoseconds, so that a busy machine
// disturbs less.
qint64 best(int rounds, const std::function<void()> &work) {
  qint64 fastest = 0;
  for (int i = 0; i < rounds; ++i) {
    QElapsedTimer timer;
    timer.start();
    work();
    const qint64 elapsed = timer.nsecsElapsed();
    if (i == 0 || elapsed < fastest)
      fastest = elapsed;
  }
  return fastest;
}

// The baseline: every field of a level read as the tree reads it.
qint64 readLevel(const std::shared_ptr<hostapi::Fields> &fields, int rounds, int &count) {
  qint64 checksum = 0;
  const qint64 time = best(rounds, [&] {
    count = 0;
    const auto all = fields->enumerate();
    Variant value;
    while (all->next(value)) {
      const auto field = objectAs<hostapi::Field>(value);
      checksum += field->localName().size() + field->type() + (field->hidden() ? 1 : 0);
      ++count;
    }
  });
  return checksum > 0 ? time : 0;
}

int nodeCount(QTreeWidget &tree) {
  int nodes = 0;
  for (QTreeWidgetItemIterator it(&tree); *it; ++it)
    ++nodes;
  return nodes;
}

// The first relation to one among a node's children, the one the walk
// opens next.
QTreeWidgetItem *firstRelation(QTreeWidgetItem *parent, QTreeWidget &tree) {
  const int count = parent ? parent->childCount() : tree.topLevelItemCount();
  for (int i = 0; i < count; ++i) {
    QTreeWidgetItem *node = parent ? parent->child(i) : tree.topLevelItem(i);
    if (node->text(0).startsWith(QStringLiteral("Link 0 to")))
      return node;
  }
  return nullptr;
}

void report(const QString &what, qint64 time, qint64 baseline, int fields) {
  std::printf("%-34s %5d fields  %8.2f ms  baseline %7.3f ms  ratio %6.1f\n", what.toUtf8().constData(), fields,
              time / 1e6, baseline / 1e6, baseline ? double(time) / double(baseline) : 0.0);
}

} // namespace

int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(argc, argv);
  QString database = QStringLiteral("field_selector_bench.db");
  int rounds = 5;
  const QStringList args = qt.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--db"))
      database = args[i + 1];
    else if (args[i] == QLatin1String("--rounds"))
      rounds = std::max(1, args[i + 1].toInt());
  }
  try {
    nuvo::DatabaseAddress address;
    address.file = database;
    std::shared_ptr<nuvo::Engine> engine;
    if (QFileInfo::exists(database)) {
      engine = nuvo::Engine::open(address, QStringLiteral("en"));
    } else {
      std::printf("making a model of %d classes and %d fields in %s\n", LargeModel::kClasses, LargeModel::kFields,
                  database.toUtf8().constData());
      engine = nuvo::Engine::create(address, LargeModel::catalog(), QStringLiteral("Bench"), QStringLiteral("en"));
    }

    QTemporaryDir scratch;
    hostapi::installUi(std::make_shared<host::BatchUi>());
    auto app = std::make_shared<host::HostApplication>(
        std::make_shared<host::SettingsStore>(scratch.filePath(QStringLiteral("registry.ini"))),
        std::make_shared<host::FileLog>(scratch.filePath(QStringLiteral("bench.log"))), QStringLiteral("en"));
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(engine));
    addin::Connect(app);

    int classes = 0;
    int fieldCount = 0;
    for (const auto &cls : engine->catalog().classes()) {
      ++classes;
      fieldCount += int(cls->fields.size());
    }
    std::printf("model: %d classes, %d fields\n", classes, fieldCount);

    const auto rootFields = app->classes()->item(LargeModel::className(0))->fields();
    int levelFields = 0;
    const qint64 rootBaseline = readLevel(rootFields, rounds, levelFields);

    // Each round fills a new tree and walks the same circle of relations.
    std::vector<qint64> steps(kOpened + 1, 0);
    std::vector<QString> opened(kOpened); // the local paths of the relations opened
    int nodes = 0;
    qint64 whole = 0;
    for (int round = 0; round < rounds; ++round) {
      addin::FieldSelector selector;
      selector.SetFields(rootFields);
      QTreeWidget &tree = *selector.findChild<QTreeWidget *>(QStringLiteral("TvwFields"));
      selector.resize(320, 600);
      selector.show();
      QApplication::processEvents();
      // Each step ends when the tree has been laid out and painted again.
      QElapsedTimer timer;
      timer.start();
      selector.ShowFields();
      QApplication::processEvents();
      std::vector<qint64> times{timer.nsecsElapsed()};
      QTreeWidgetItem *node = nullptr;
      QString path;
      for (int i = 0; i < kOpened; ++i) {
        node = firstRelation(node, tree);
        if (!node)
          raiseError(ErrorNumber::InvalidCall, QStringLiteral("field_selector_bench"),
                     QStringLiteral("The model has no relation to open at level %1").arg(i + 1));
        const qint64 before = timer.nsecsElapsed();
        node->setExpanded(true);
        QApplication::processEvents();
        times.push_back(timer.nsecsElapsed() - before);
        path += (path.isEmpty() ? QString() : QStringLiteral(".")) + node->text(0);
        opened[std::size_t(i)] = path;
      }
      const qint64 total = timer.nsecsElapsed();
      for (std::size_t i = 0; i < times.size(); ++i)
        if (round == 0 || times[i] < steps[i])
          steps[i] = times[i];
      if (round == 0 || total < whole)
        whole = total;
      nodes = nodeCount(tree);
    }

    report(QStringLiteral("fill the root (class 0)"), steps[0], rootBaseline, levelFields);
    for (int i = 0; i < kOpened; ++i) {
      // The level a relation opens to: the fields of the class at its
      // other end.
      const auto relation = rootFields->lookup(opened[std::size_t(i)], hostapi::LookupMode::Either);
      const auto level = relation->relatedField()->fieldClass();
      const qint64 baseline = readLevel(level->fields(), rounds, levelFields);
      report(QStringLiteral("open level %1 (%2)").arg(i + 1).arg(level->localName()), steps[std::size_t(i) + 1],
             baseline, levelFields);
    }
    std::printf("whole walk %.2f ms, %d nodes in the tree of a model of %d fields, peak memory %ld MB\n", whole / 1e6,
                nodes, fieldCount, peakMegabytes());
    addin::Disconnect();
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "field_selector_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
