#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace bench {

// One stream of pseudo-random numbers (splitmix64).  Whole-number arithmetic and
// libm only, so that a seed gives the same numbers wherever libm does.
class Random {
 public:
  // Streams of different seeds or numbers are independent of each other.
  Random(std::uint64_t seed, std::uint64_t stream) : fState(Mix(seed + Mix(stream))) {}

  std::uint64_t Next() { return Mix(fState += 0x9E3779B97F4A7C15U); }

  // Above 0 and below 1.
  double Uniform() { return (static_cast<double>(Next() >> 11U) + 0.5) * 0x1p-53; }

  // A whole number from 0 to below `count`.
  int Below(int count) { return static_cast<int>(Uniform() * count); }

  // Box and Muller's, of which the second number is kept for the next call.
  double Normal() {
    if (fHasSpare) {
      fHasSpare = false;
      return fSpare;
    }
    const double radius = std::sqrt(-2.0 * std::log(Uniform()));
    const double angle = 2.0 * std::numbers::pi * Uniform();
    fSpare = radius * std::sin(angle);
    fHasSpare = true;
    return radius * std::cos(angle);
  }

 private:
  static std::uint64_t Mix(std::uint64_t z) {
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
  }

  std::uint64_t fState;
  double fSpare = 0.0;
  bool fHasSpare = false;
};

}  // namespace bench
