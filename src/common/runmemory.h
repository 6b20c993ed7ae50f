#pragma once

namespace TQBinning {

// Working memory that lasts from one attribute of a run to the next: fresh memory
// costs as much as a pass over it.  Whoever drives a run opens a scope; whatever runs
// inside it, on the same thread, uses its memory.
template <typename Memory>
class RunMemory {
 public:
  RunMemory() : fOuter(fCurrent) { fCurrent = &fMemory; }
  RunMemory(const RunMemory&) = delete;
  RunMemory& operator=(const RunMemory&) = delete;
  ~RunMemory() { fCurrent = fOuter; }

  // Whether there is a scope on this thread.
  static bool IsOpen() { return fCurrent != nullptr; }

  // Calls `use` with the memory of the innermost scope; without one, with memory of
  // its own.
  template <typename Use>
  static auto With(Use use) {
    if (fCurrent != nullptr) return use(*fCurrent);
    Memory memory;
    return use(memory);
  }

 private:
  static inline thread_local Memory* fCurrent = nullptr;

  Memory fMemory;
  Memory* fOuter;
};

}  // namespace TQBinning
