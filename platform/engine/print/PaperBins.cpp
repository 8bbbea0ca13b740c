#include "engine/print/PaperBins.h"

#include "engine/print/CupsDestination.h"

namespace kordel::engine {

std::vector<std::pair<int, QString>> printerPaperBins(const QString &queue) {
  const CupsDestination destination(queue, QStringLiteral("PaperBins"));
  std::vector<std::pair<int, QString>> bins;
  for (const QString &keyword : destination.mediaSources())
    bins.emplace_back(int(bins.size()) + 1, destination.mediaSourceName(keyword));
  return bins;
}

} // namespace kordel::engine
