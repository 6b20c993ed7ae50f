#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "support/random.h"

namespace property {

// The numbers that problems are made from.
class Random : public support::Random {
 public:
  using support::Random::Random;

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
};

}  // namespace property
