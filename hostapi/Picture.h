#pragma once

#include "core/Object.h"

#include <QImage>

namespace kordel::hostapi {

// A picture the host hands over, such as an icon. Late-bound: Width,
// Height (pixels).
class Picture : public Object {
public:
  virtual QImage image() const = 0;
};

} // namespace kordel::hostapi
