#pragma once

#include "engine/print/SystemPrinters.h"

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kordel::engine {

// A queue of the print system, with what its driver supports as the print
// system reports it.
class PrintQueue {
public:
  virtual ~PrintQueue();

  // The queue's own name, without an instance, and its instance, if any.
  virtual QString name() const = 0;
  virtual QString instance() const = 0;
  // The paper sources the driver offers as media-source keywords, in the
  // driver's order; empty when it offers no choice.
  virtual QStringList mediaSources() const = 0;
  // Each paper source's number, from 1 in the driver's order, and its name:
  // the driver's display name, or the keyword when the print system has
  // no translation for it.
  virtual std::vector<std::pair<int, QString>> paperBins() const = 0;
  // Where the queue sends its jobs ("ipp://…", "file:///dev/null"); empty
  // when the print system does not say.
  virtual QString deviceUri() const = 0;
  // The size of the queue's default paper in twips, width before height;
  // nothing when the print system does not say.
  virtual std::optional<QSize> defaultPaper() const = 0;
  // Submits the file as a job with the queue's saved options and these on
  // top, and gives the job's number. Raises 5 naming the queue as shown
  // to the user, the job and the print system's reason when the queue
  // does not take it.
  virtual int printFile(const QString &file, const QString &jobName,
                        const std::vector<std::pair<QByteArray, QByteArray>> &options, const QString &shownName,
                        const QString &source) const = 0;
};

// The machine's print system.
class PrintSystem {
public:
  virtual ~PrintSystem();

  // The queues in the print system's order; empty without a scheduler.
  // Never raises and does not wait for a print server that is not there.
  virtual std::vector<SystemPrinter> queues() const = 0;
  // The queue by name ("queue" or "queue/instance"; an empty name is the
  // default queue). Raises 5 naming the queue and the print system's
  // reason when there is none; source names the caller.
  virtual std::unique_ptr<PrintQueue> queue(const QString &name, const QString &source) const = 0;
};

// How the engine finds the print system: its module, the entry that gives
// it, and the entry's type.
inline constexpr const char *kPrintSystemModule = "libkordel_cups.so";
inline constexpr const char *kPrintSystemEntry = "kordel_print_system";
using PrintSystemEntry = const PrintSystem *(*)();

// The print system, from its module, loaded on first use: the print
// system's libraries stay out of processes that never print. Raises 429
// when the module cannot be loaded.
const PrintSystem &printSystem(const QString &source);

} // namespace kordel::engine
