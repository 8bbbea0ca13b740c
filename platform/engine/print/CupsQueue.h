#pragma once

#include "engine/print/PrintSystem.h"

#include <cups/cups.h>

namespace kordel::engine {

// A queue of the print system as CUPS sees it, looked up by name ("queue"
// or "queue/instance"; an empty name is the default queue). Part of the
// print system's module.
class CupsQueue : public PrintQueue {
public:
  // Raises 5 naming the queue and the print system's reason when there is
  // no such queue; source names the caller.
  CupsQueue(const QString &queue, const QString &source);
  ~CupsQueue() override;
  CupsQueue(const CupsQueue &) = delete;
  CupsQueue &operator=(const CupsQueue &) = delete;

  QString name() const override { return QString::fromUtf8(dest_->name); }
  QString instance() const override { return QString::fromUtf8(dest_->instance); }
  QStringList mediaSources() const override;
  std::vector<std::pair<int, QString>> paperBins() const override;
  QString deviceUri() const override;
  std::optional<QSize> defaultPaper() const override;
  int printFile(const QString &file, const QString &jobName,
                const std::vector<std::pair<QByteArray, QByteArray>> &options, const QString &shownName,
                const QString &source) const override;

private:
  cups_dinfo_t *info() const;
  // The driver's display name of a media-source keyword; the keyword when
  // the print system has no translation for it (as when the printer's
  // strings cannot be fetched).
  QString mediaSourceName(const QString &keyword) const;

  cups_dest_t *dest_ = nullptr;
  mutable cups_dinfo_t *info_ = nullptr;
};

// The print system's description of its last error, for messages.
QString lastCupsError();

} // namespace kordel::engine
