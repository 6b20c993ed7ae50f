#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace property {

// The numbers that problems are made from: splitmix64, whole numbers only, so that
// a seed means the same problem with every compiler, library and machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : fState(seed) {}

  std::uint64_t Next() {
    fState += 0x9E3779B97F4A7C15u;
    std::uint64_t z = fState;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }

  // A whole number from `low` to `high`, both included; low <= high.
  int Between(int low, int high) {
    const auto span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(Next() % span));
  }

  // True `perMille` times out of 1000.
  bool Chance(int perMille) { return Between(0, 999) < perMille; }

  // One of the elements; there must be one.
  template <typename T>
  T Pick(const std::vector<T>& elements) {
    return elements[Next() % elements.size()];
  }

  template <typename T>
  void Shuffle(std::vector<T>& elements) {
    for (std::size_t i = elements.size(); i > 1; --i) {
      std::swap(elements[i - 1], elements[Next() % i]);
    }
  }

 private:
  std::uint64_t fState;
};

}  // namespace property
