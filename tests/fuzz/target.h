#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// What every fuzz target defines: tries one input and returns 0.  An input that shows a
// fault ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

// Ends the process, as a fault found, unless `holds`.
inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "found: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

}  // namespace fuzz
