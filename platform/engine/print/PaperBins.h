#pragma once

#include <QString>

#include <utility>
#include <vector>

namespace kordel::engine {

// The paper bins the driver of a print queue offers: each bin's number,
// from 1 in the driver's order, and its name (the driver's display name, or
// the bin's media-source keyword when the print system cannot translate
// it). Empty when the driver offers
// no choice of bin. Raises 5 naming the queue and the print system's
// reason when there is no such queue; an empty name is the default queue.
std::vector<std::pair<int, QString>> printerPaperBins(const QString &queue);

} // namespace kordel::engine
