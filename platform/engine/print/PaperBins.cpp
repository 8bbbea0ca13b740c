#include "engine/print/PaperBins.h"

#include "engine/print/CupsDestination.h"

namespace kordel::engine {

std::vector<std::pair<int, QString>> printerPaperBins(const QString &queue) {
  return CupsDestination(queue, QStringLiteral("PaperBins")).paperBins();
}

} // namespace kordel::engine
