#include "engine/print/PaperBins.h"

#include "engine/print/PrintSystem.h"

namespace kordel::engine {

std::vector<std::pair<int, QString>> printerPaperBins(const QString &queue) {
  const QString source = QStringLiteral("PaperBins");
  return printSystem(source).queue(queue, source)->paperBins();
}

} // namespace kordel::engine
