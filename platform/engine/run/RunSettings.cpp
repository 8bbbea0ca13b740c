#include "engine/run/RunSettings.h"

namespace kordel::engine {

RunSettings &runSettings() {
  static RunSettings settings;
  return settings;
}

} // namespace kordel::engine
