#include "engine/module/EngineModule.h"

#include "core/Error.h"

#include <dlfcn.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace kordel::engine {

void *engineModuleEntry(const char *file, const char *entry, const QString &purpose, const QString &source) {
  // Entries found are kept, and their modules never unloaded; a module that
  // failed to load is tried again on the next call.
  static std::mutex loading;
  static std::map<std::pair<std::string, std::string>, void *> found;
  const std::lock_guard lock(loading);
  void *&known = found[{file, entry}];
  if (known)
    return known;
  // A bare file name is looked for along this library's own search path,
  // which leads to the folder the engine's libraries are in.
  void *module = dlopen(file, RTLD_NOW | RTLD_LOCAL);
  known = module ? dlsym(module, entry) : nullptr;
  if (!known) {
    const char *reason = dlerror();
    raiseError(ErrorNumber::CannotCreateObject, source,
               QStringLiteral("The %1 cannot be loaded: %2")
                   .arg(purpose, reason ? QString::fromLocal8Bit(reason) : QStringLiteral("no reason given")));
  }
  return known;
}

} // namespace kordel::engine
