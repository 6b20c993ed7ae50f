#pragma once

#include "common/raise.h"

namespace TQBinning {

// Runs a step at the library's boundary, which no exception crosses: whatever is
// thrown (no memory, or a host object that throws) becomes error 3.
template <typename Step>
TQStatus WithoutThrowing(Step step) {
  try {
    return step();
  } catch (...) {
    return Error(kResourceFailure);
  }
}

}  // namespace TQBinning
