#pragma once

namespace TQBinning {

constexpr int kNumberOfCodes = 256;  // a code is kept in 8 bits

// Whether a number, truncated towards zero, is a category code.  Compared as a
// double, since a number that does not fit an int cannot be converted.
inline bool IsCategoryCode(double value) { return value > -1.0 && value < kNumberOfCodes; }

// The code; 0 for a number that is none, which only a foreign file can hold.
inline unsigned char CategoryCode(double value) {
  return IsCategoryCode(value) ? static_cast<unsigned char>(value) : static_cast<unsigned char>(0);
}

}  // namespace TQBinning
