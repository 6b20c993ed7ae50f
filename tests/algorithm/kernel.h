#pragma once

#include <cmath>
#include <cstddef>
#include <set>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "tqbinning/binalgorithm.h"

// What the tests of a pair's arithmetic share.
namespace support {

inline constexpr bool kClosed = true;
inline constexpr bool kOpen = false;
inline constexpr double kLn2 = 0.6931471805599453;
inline const double k2To53 = std::ldexp(1.0, 53);  // from here on doubles have gaps of 2

// The algorithm as far as its arithmetic goes: K categories and a border side.
class Kernel {
 public:
  explicit Kernel(unsigned int categories, bool closed = kClosed)
      : fList(support::VarList("xy")), fAlgorithm(fSettings, fList) {
    fAlgorithm.fNumCategories = categories;
    fAlgorithm.fRightBorderClosed = closed;
  }
  const OpenAlgorithm* operator->() const { return &fAlgorithm; }

 private:
  BINSettings fSettings;
  BINVarList fList;
  OpenAlgorithm fAlgorithm;
};

inline double Log2(double x) { return std::log(x) / kLn2; }

inline double EntropyOf(const Numbers& classCounts) {
  return Kernel(static_cast<unsigned int>(classCounts.size() - 1))->Entropy(&classCounts);
}

inline double SplitEntropyOf(const Numbers& left, const Numbers& right) {
  return Kernel(static_cast<unsigned int>(left.size() - 1))->ComputeEntropy(&left, &right);
}

inline double DeltaOf(const Numbers& left, const Numbers& right, double entropyAll) {
  return Kernel(static_cast<unsigned int>(left.size() - 1))
      ->ComputeDelta(&left, &right, entropyAll);
}

inline Numbers Flat(const Table& rows) {
  Numbers flat;
  for (const Numbers& row : rows) flat.insert(flat.end(), row.begin(), row.end());
  return flat;
}

// The class counts of rows first..last: entries 1 to K, and their sum in front.
inline Numbers CountsOf(const Table& rows, int first, int last) {
  Numbers counts(rows.at(0).size() + 1, 0.0);
  for (int r = first; r <= last; ++r) {
    for (std::size_t j = 0; j < rows[static_cast<std::size_t>(r)].size(); ++j) {
      counts[j + 1] += rows[static_cast<std::size_t>(r)][j];
    }
  }
  for (std::size_t j = 1; j < counts.size(); ++j) counts[0] += counts[j];
  return counts;
}

struct Split {
  int position = -1;
  Numbers left;
  Numbers right;
};

inline Split BestSplit(const Table& rows, int first, int last, bool closed) {
  const Kernel kernel(static_cast<unsigned int>(rows.at(0).size()), closed);
  const Numbers flat = Flat(rows);
  Split split;
  split.left.assign(rows.at(0).size() + 1, 0.0);
  split.right = CountsOf(rows, first, last);
  split.position = kernel->FindBestCutPoint(&flat, first, last, &split.left, &split.right);
  return split;
}

inline int BestPosition(const Table& rows, int first, int last, bool closed) {
  return BestSplit(rows, first, last, closed).position;
}

inline int BestPosition(const Table& rows, bool closed) {
  return BestPosition(rows, 0, static_cast<int>(rows.size()) - 1, closed);
}

// The cuts of the table's rows, whose values are 1, 2, 3, ...
inline std::set<double> CutsOf(const Table& rows, int first, int last, bool closed) {
  const Kernel kernel(static_cast<unsigned int>(rows.at(0).size()), closed);
  Numbers values;
  for (std::size_t r = 0; r < rows.size(); ++r) values.push_back(static_cast<double>(r + 1));
  const Numbers flat = Flat(rows);
  std::set<double> cuts;
  EXPECT_EQ(OK(), kernel->MDLPCut(&values, &flat, first, last, cuts));
  return cuts;
}

inline std::set<double> CutsOf(const Table& rows, bool closed) {
  return CutsOf(rows, 0, static_cast<int>(rows.size()) - 1, closed);
}

inline Table Times(const Table& rows, double factor) {
  Table scaled = rows;
  for (Numbers& row : scaled) {
    for (double& weight : row) weight *= factor;
  }
  return scaled;
}

inline const Table kA_B{{1, 0}, {0, 1}};
inline const Table kAABB{{1, 0}, {1, 0}, {0, 1}, {0, 1}};
using Cuts = std::set<double>;

}  // namespace support
