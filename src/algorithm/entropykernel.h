#pragma once

#include <cstddef>
#include <span>

// The arithmetic of minimum-entropy splitting: pure functions over class weights.
// Class counts are K+1 numbers, the total weight and then the weight per class;
// logarithms are to base 2.
namespace TQBinning {

// The natural logarithm / 0.6931471805599453.
double Log2(double x);

// The class entropy in bits: the sum of -p log2 p; 0 without weight or classes.
double Entropy(std::span<const double> classCounts);

// The mean entropy of the parts of a split, weighted by their totals.
double SplitEntropy(std::span<const double> left, std::span<const double> right);

// What describing a split costs beyond its data (Fayyad and Irani, 1993, section
// 3): log2(3^k - 2) - (k E(all) - k1 E(left) - k2 E(right)).  k is k1 + k2, the
// classes present in either part counted once for each part.
double SplitDelta(std::span<const double> left, std::span<const double> right, double entropyAll);

// The MDL test: whether a split's gain in entropy pays for describing it (Fayyad and
// Irani, 1993).  False when the comparison is unordered, as for a weight below 1.
bool IsWorthSplitting(std::span<const double> left, std::span<const double> right,
                      double entropyAll, double weight);

// Rows of class weights, ascending by the attribute value they stand for.
class CountsTable {
 public:
  CountsTable(std::span<const double> weights, std::size_t classes)
      : fWeights(weights), fClasses(classes) {}

  std::size_t Classes() const { return fClasses; }
  std::span<const double> Row(int row) const {
    return fWeights.subspan(static_cast<std::size_t>(row) * fClasses, fClasses);
  }

  // The class counts of rows first..last; zeros when there are none.
  void Sum(int first, int last, std::span<double> classCounts) const;

 private:
  std::span<const double> fWeights;
  std::size_t fClasses;
};

// The best position at which to split rows first..last.  A position p puts rows up
// to p (right border closed), or up to p - 1 (open), into the left part.  Evaluated
// are the boundaries, positions whose rows p and p+1 are not both pure in the same
// class, and the one position that follows a boundary.  Least split entropy wins,
// the leftmost of equals; 0 when nothing was evaluated.  On entry `left` is zero and
// `right` the whole interval; afterwards they are the parts at the result.
int FindBestCut(const CountsTable& table, int first, int last, bool rightBorderClosed,
                std::span<double> left, std::span<double> right);

}  // namespace TQBinning
