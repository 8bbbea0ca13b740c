#pragma once

#include <QStringList>

#include <cstdint>

namespace kordel::nuvo::demo {

// A small random generator whose sequence depends on the seed alone, the
// same on every machine and library (splitmix64).
class DemoRandom {
public:
  explicit DemoRandom(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  // A whole number from low to high, both included.
  int between(int low, int high) { return low + int(next() % std::uint64_t(high - low + 1)); }
  // A number in [0, 1).
  double fraction() { return double(next() >> 11) / double(1ull << 53); }
  bool chance(double probability) { return fraction() < probability; }
  const QString &pick(const QStringList &list) { return list[between(0, int(list.size()) - 1)]; }

private:
  std::uint64_t state_;
};

} // namespace kordel::nuvo::demo
