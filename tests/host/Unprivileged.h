#pragma once

namespace kordel::test {

// While it lives, the process has the file rights of an ordinary user, so
// that permission tests also mean something when the tests run as root:
// root takes the identity of "nobody" for the time. active() is false when
// that was refused; such a test should skip.
class Unprivileged {
public:
  Unprivileged();
  ~Unprivileged();
  Unprivileged(const Unprivileged &) = delete;
  Unprivileged &operator=(const Unprivileged &) = delete;

  bool active() const { return active_; }

private:
  bool switched_ = false;
  bool active_ = true;
};

} // namespace kordel::test
