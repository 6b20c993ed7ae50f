#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "data/vectorsort.h"

namespace TQBinning {

// What sorting needs beside the tuples: at most one more tuple vector.
struct SortMemory {
  // Two of everything, between which a sort moves the data.
  std::unique_ptr<double[]> values[2];
  std::unique_ptr<unsigned char[]> kinds[2];      // what travels with a value,
  std::unique_ptr<std::uint32_t[]> positions[2];  // one or the other
  std::size_t capacity = 0;
  std::size_t kindCapacity = 0;
  std::size_t positionCapacity = 0;
  std::vector<unsigned char> kindOf;  // see CaseSorter
  // Whether the processor's vectors are made use of; tests sort without them as well.
  bool usesVectors = CanSortByVector();
  // For whom values[1] holds sorted values; null when it holds nothing of use.
  const void* sortedFor = nullptr;

  void ReserveForKinds(std::size_t count) {
    ReserveValues(count);
    Reserve(kinds, kindCapacity, count);
  }
  void ReserveForPositions(std::size_t count) {
    sortedFor = nullptr;
    ReserveValues(count);
    Reserve(positions, positionCapacity, count);
  }

 private:
  void ReserveValues(std::size_t count) {
    if (count > capacity) sortedFor = nullptr;
    Reserve(values, capacity, count);
  }

  template <typename T>
  static void Reserve(std::unique_ptr<T[]> (&buffers)[2], std::size_t& capacity,
                      std::size_t count) {
    if (count <= capacity) return;
    capacity = 0;
    for (std::unique_ptr<T[]>& buffer : buffers) {
      buffer.reset();  // not both, the old one and the new one
      buffer = std::make_unique_for_overwrite<T[]>(count);
    }
    capacity = count;
  }
};

}  // namespace TQBinning
