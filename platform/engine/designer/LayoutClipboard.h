#pragma once

#include <QString>

#include <memory>
#include <vector>

class QMimeData;

namespace kordel::engine {

class Control;
class LayoutReport;

// Controls on the system clipboard: in the layout format under a MIME type
// of ours, so that designers (also of other processes) paste them whole,
// and as plain text of their captions and texts for everything else.
inline constexpr const char *kControlsMimeType = "application/x-kordel-layout-controls";

// The controls of the report as clipboard data, each keeping its place
// within its section. The caller owns the result.
QMimeData *controlsToMime(const LayoutReport &report, const std::vector<std::shared_ptr<Control>> &controls);

bool mimeHasControls(const QMimeData *mime);

// Copies of the controls the data holds, standing alone, in their order;
// empty when it holds none or what it holds is no layout this engine reads.
std::vector<std::shared_ptr<Control>> controlsFromMime(const QMimeData *mime);

} // namespace kordel::engine
