#pragma once

#include <cstdint>

namespace support {

// splitmix64, whole numbers only: a seed gives the same numbers with every compiler,
// library and machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : fState(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = fState += 0x9e3779b97f4a7c15U;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }

  // A whole number below `n`, which is above 0.
  std::uint64_t Below(std::uint64_t n) { return Next() % n; }

 private:
  std::uint64_t fState;
};

}  // namespace support
