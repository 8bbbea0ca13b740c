#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

#include <cups/cups.h>

namespace kordel::engine {

// A queue of the print system, looked up by name ("queue" or
// "queue/instance"; an empty name is the default queue), with what its
// driver supports as the print system reports it. Used by the printing
// code of this folder only.
class CupsDestination {
public:
  // Raises 5 naming the queue and the print system's reason when there is
  // no such queue; source names the caller.
  CupsDestination(const QString &queue, const QString &source);
  ~CupsDestination();
  CupsDestination(const CupsDestination &) = delete;
  CupsDestination &operator=(const CupsDestination &) = delete;

  // The queue's own name, without an instance.
  QString name() const { return QString::fromUtf8(dest_->name); }
  // The queue's saved options (those of its instance, if any).
  cups_dest_t &dest() const { return *dest_; }

  // The paper sources the driver offers as media-source keywords, in the
  // driver's order; empty when it offers no choice.
  QStringList mediaSources() const;
  // The driver's display name of a media-source keyword; the keyword when
  // the print system has no translation for it (as when the printer's
  // strings cannot be fetched).
  QString mediaSourceName(const QString &keyword) const;
  // The paper bins as printerPaperBins gives them.
  std::vector<std::pair<int, QString>> paperBins() const;
  // Where the queue sends its jobs ("ipp://…", "file:///dev/null"); empty
  // when the print system does not say.
  QString deviceUri() const;
  // The size of the queue's default paper in twips, width before height;
  // nothing when the print system does not say.
  std::optional<QSize> defaultPaper() const;

private:
  cups_dinfo_t *info() const;

  cups_dest_t *dest_ = nullptr;
  mutable cups_dinfo_t *info_ = nullptr;
};

// The print system's description of its last error, for messages.
QString lastCupsError();

} // namespace kordel::engine
