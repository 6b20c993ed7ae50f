#pragma once

#include <cstddef>

// The test program defines operator new itself (exhaustedmemory_test.cpp), so that
// memory can run out on demand.
namespace support {

// While one is alive, the nth allocation (from 1) by operator new fails, and every
// later one.
class MemoryThatEnds {
 public:
  explicit MemoryThatEnds(std::size_t n);
  MemoryThatEnds(const MemoryThatEnds&) = delete;
  MemoryThatEnds& operator=(const MemoryThatEnds&) = delete;
  ~MemoryThatEnds();

  bool HasEnded() const;
};

}  // namespace support
