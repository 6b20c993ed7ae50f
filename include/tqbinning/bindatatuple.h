#pragma once

// One case of one attribute, for supervised binning.  Ordered by value alone;
// equal values have no order.
struct BINDataTuple {
  double value;          // never missing
  unsigned char target;  // category code
  double weight;         // 1 without a frequency weight
};

// One case of one attribute, for equal-frequency binning.
struct EFBINDataTuple {
  double value;   // never missing
  double weight;  // 1 without a frequency weight
};

inline bool operator<(const BINDataTuple& a, const BINDataTuple& b) { return a.value < b.value; }
inline bool operator<(const EFBINDataTuple& a, const EFBINDataTuple& b) {
  return a.value < b.value;
}
