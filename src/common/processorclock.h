#pragma once

#include <ctime>

namespace TQBinning {

// Processor seconds since it was made, as progress reports tell them.
class ProcessorClock {
 public:
  ProcessorClock() : fStart(std::clock()) {}
  double ElapsedSeconds() const {
    return static_cast<double>(std::clock() - fStart) / CLOCKS_PER_SEC;
  }

 private:
  std::clock_t fStart;
};

}  // namespace TQBinning
