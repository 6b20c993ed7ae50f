#include "algorithm/nlogn.h"

#include <algorithm>
#include <limits>

namespace TQBinning {

namespace {

double TimesItsLog(std::uint64_t n) {
  if (n < 2) return 0.0;
  const auto x = static_cast<double>(n);
  return x * std::log2(x);
}

}  // namespace

void NLogN::Prepare(std::uint64_t largest, std::size_t mostEntries) {
  if (largest <= fLargest) return;
  fLargest = largest;
  // Sums over both parts stay below 2^62.
  constexpr int kBits = 60;
  fScale = std::ldexp(1.0, kBits - std::ilogb(std::max(TimesItsLog(largest), 1.0)) - 1);
  fTable.clear();
  if (largest >= mostEntries) return;
  fTable.reserve(largest + 1);
  for (std::uint64_t n = 0; n <= largest; ++n) fTable.push_back(Compute(n));
}

std::int64_t NLogN::Compute(std::uint64_t n) const {
  return static_cast<std::int64_t>(std::nearbyint(TimesItsLog(n) * fScale));
}

std::int64_t NLogN::ToleranceFor(std::uint64_t n, std::size_t classes) const {
  constexpr double kUnit = std::numeric_limits<double>::epsilon() / 2;  // 2^-53
  const auto total = static_cast<double>(n);
  const auto k = static_cast<double>(classes);
  const double formula = total * kUnit * (16.0 * k + 200.0);
  const double table = 16.0 * kUnit * TimesItsLog(n);
  return static_cast<std::int64_t>(std::ceil((formula + table) * fScale + 2.0 * (k + 1.0))) + 2;
}

}  // namespace TQBinning
