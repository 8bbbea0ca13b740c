#include "Unprivileged.h"

#include <unistd.h>

namespace kordel::test {

namespace {
constexpr uid_t kNobody = 65534;
constexpr gid_t kNogroup = 65534;
} // namespace

Unprivileged::Unprivileged() {
  if (geteuid() != 0)
    return;
  if (setegid(kNogroup) != 0 || seteuid(kNobody) != 0) {
    setegid(0);
    active_ = false;
    return;
  }
  switched_ = true;
}

Unprivileged::~Unprivileged() {
  if (!switched_)
    return;
  // Back to root; the saved user id still is root, so this cannot fail.
  if (seteuid(0) != 0 || setegid(0) != 0)
    _exit(70);
}

} // namespace kordel::test
