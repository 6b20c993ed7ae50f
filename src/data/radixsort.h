#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace TQBinning {

// Turns a negative zero into a zero and any NaN into the one that RadixSorter knows.
inline double Normalised(double value) {
  return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value + 0.0;
}

// Sorts normalised doubles ascending, NaN last, and with each a payload.  Mapped to
// whole numbers of the same order, doubles can be sorted digit by digit, without a
// comparison: about a third of the time of std::sort for a million.  Stable.
template <typename Payload>
class RadixSorter {
 public:
  // Sorts between two buffers; the data is in the first of each, and both hold
  // `count` at least.
  RadixSorter(double* values, double* spareValues, Payload* payloads, Payload* sparePayloads,
              std::size_t count)
      : fCount(count), fValues{values, spareValues}, fPayloads{payloads, sparePayloads} {}

  void Sort() {
    const std::uint64_t varying = VaryingBits();
    if (varying == 0) return;
    const int lowest = std::countr_zero(varying);
    const int highest = static_cast<int>(std::bit_width(varying));
    const int leading = std::max(lowest, highest - kLeadingBits);
    SortDigits(leading, highest);
    if (leading > lowest && !FinishByInsertion()) {
      // Too many keys agree in their leading bits: all digits, from the lowest on.
      SortDigits(lowest, highest);
    }
  }

  // Where the sorted data is, and where it is not.
  double* Values() const { return fValues[0]; }
  double* SpareValues() const { return fValues[1]; }
  Payload* Payloads() const { return fPayloads[0]; }
  Payload* SparePayloads() const { return fPayloads[1]; }

 private:
  using Key = std::uint64_t;

  static constexpr int kDigitBits = 11;  // 2048 counters fit the first-level cache
  static constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
  // So many of the highest bits that vary tell nearly all of a million values apart;
  // what they leave equal is put in order by insertion.
  static constexpr int kLeadingBits = 3 * kDigitBits;

  // A whole number that orders like the value.
  static Key KeyOf(double value) {
    const Key bits = std::bit_cast<Key>(value);
    constexpr Key kSignBit = Key{1} << 63;
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
  }
  static std::size_t DigitOf(double value, int shift) {
    return (KeyOf(value) >> shift) & (kDigitValues - 1);
  }

  Key VaryingBits() const {
    const Key first = KeyOf(fValues[0][0]);
    Key varying = 0;
    for (std::size_t i = 0; i < fCount; ++i) varying |= KeyOf(fValues[0][i]) ^ first;
    return varying;
  }

  void SortDigits(int from, int to) {
    const int digits = (to - from + kDigitBits - 1) / kDigitBits;
    for (int d = 0; d < digits; ++d) SortDigit(from + d * kDigitBits);
  }

  void SortDigit(int shift) {
    std::array<std::uint32_t, kDigitValues> next{};
    const double* const values = fValues[0];
    for (std::size_t i = 0; i < fCount; ++i) ++next[DigitOf(values[i], shift)];
    std::uint32_t start = 0;
    for (std::uint32_t& count : next) start += std::exchange(count, start);
    for (std::size_t i = 0; i < fCount; ++i) {
      const std::uint32_t to = next[DigitOf(values[i], shift)]++;
      fValues[1][to] = values[i];
      fPayloads[1][to] = fPayloads[0][i];
    }
    std::swap(fValues[0], fValues[1]);
    std::swap(fPayloads[0], fPayloads[1]);
  }

  // False, with the values in some other order, when it would take more than a few
  // moves a value.
  bool FinishByInsertion() {
    std::size_t moves = 0;
    const std::size_t mostMoves = 4 * fCount;
    double* const values = fValues[0];
    for (std::size_t i = 1; i < fCount; ++i) {
      const Key key = KeyOf(values[i]);
      if (KeyOf(values[i - 1]) <= key) continue;
      const double value = values[i];
      const Payload payload = fPayloads[0][i];
      std::size_t to = i;
      for (; to > 0 && key < KeyOf(values[to - 1]); --to) {
        values[to] = values[to - 1];
        fPayloads[0][to] = fPayloads[0][to - 1];
      }
      values[to] = value;
      fPayloads[0][to] = payload;
      moves += i - to;
      if (moves > mostMoves) return false;
    }
    return true;
  }

  std::size_t fCount;
  double* fValues[2];
  Payload* fPayloads[2];
};

}  // namespace TQBinning
