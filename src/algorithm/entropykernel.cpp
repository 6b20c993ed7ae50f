#include "algorithm/entropykernel.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace TQBinning {

namespace {

// The last row of the left part when the cut is at position p.
int LastLeftRow(int p, bool rightBorderClosed) { return rightBorderClosed ? p : p - 1; }

std::size_t CountPresentClasses(std::span<const double> classCounts) {
  return static_cast<std::size_t>(
      std::count_if(classCounts.begin() + 1, classCounts.end(), [](double w) { return w != 0.0; }));
}

// Whether a cut between two rows can be the best: no cut inside a run of rows that
// are pure in one class ever is (Fayyad and Irani, 1992).
bool IsBoundary(std::span<const double> row, std::span<const double> next) {
  std::size_t shared = 0;
  for (std::size_t j = 0; j < row.size(); ++j) {
    const bool inRow = row[j] != 0.0;
    const bool inNext = next[j] != 0.0;
    if (inRow != inNext) return true;
    if (inRow) ++shared;
  }
  return shared != 1;
}

// Moves a row's weights from one part to the other, entry 0 along with each class.
void MoveRow(std::span<const double> row, std::span<double> from, std::span<double> to) {
  for (std::size_t j = 0; j < row.size(); ++j) {
    to[j + 1] += row[j];
    to[0] += row[j];
    from[j + 1] -= row[j];
    from[0] -= row[j];
  }
}

// The total and what is left of it per class; entry 0 becomes the sum of the others.
void Subtract(std::span<const double> totals, std::span<const double> part,
              std::span<double> rest) {
  rest[0] = 0.0;
  for (std::size_t j = 1; j < totals.size(); ++j) {
    rest[j] = totals[j] - part[j];
    rest[0] += rest[j];
  }
}

}  // namespace

double Log2(double x) { return std::log(x) / 0.6931471805599453; }

double Entropy(std::span<const double> classCounts) {
  const double total = classCounts[0];
  if (total == 0.0) return 0.0;
  double entropy = 0.0;
  for (const double weight : classCounts.subspan(1)) {
    const double p = weight / total;
    if (p != 0.0) entropy += -p * Log2(p);
  }
  return entropy;
}

double SplitEntropy(std::span<const double> left, std::span<const double> right) {
  return (left[0] * Entropy(left) + right[0] * Entropy(right)) / (left[0] + right[0]);
}

double SplitDelta(std::span<const double> left, std::span<const double> right, double entropyAll) {
  const auto k1 = static_cast<double>(CountPresentClasses(left));
  const auto k2 = static_cast<double>(CountPresentClasses(right));
  const double k = k1 + k2;
  return Log2(std::pow(3.0, k) - 2.0) - (k * entropyAll - k1 * Entropy(left) - k2 * Entropy(right));
}

bool IsWorthSplitting(std::span<const double> left, std::span<const double> right,
                      double entropyAll, double weight) {
  const double gain = entropyAll - SplitEntropy(left, right);
  const double delta = SplitDelta(left, right, entropyAll);
  return gain > delta / weight + Log2(weight - 1.0) / weight;
}

void CountsTable::Sum(int first, int last, std::span<double> classCounts) const {
  std::fill(classCounts.begin(), classCounts.end(), 0.0);
  for (int row = first; row <= last; ++row) {
    const std::span<const double> weights = Row(row);
    for (std::size_t j = 0; j < fClasses; ++j) classCounts[j + 1] += weights[j];
  }
  for (std::size_t j = 1; j <= fClasses; ++j) classCounts[0] += classCounts[j];
}

int FindBestCut(const CountsTable& table, int first, int last, bool rightBorderClosed,
                std::span<double> left, std::span<double> right) {
  const std::vector<double> totals(right.begin(), right.end());
  int best = 0;
  double least = 0.0;
  bool isFirstEvaluated = true;
  bool followsBoundary = false;
  int nextToMove = first;
  for (int p = first; p <= last; ++p) {
    const bool isBoundary = p < last && IsBoundary(table.Row(p), table.Row(p + 1));
    const bool isEvaluated = isBoundary || followsBoundary;
    followsBoundary = isBoundary;
    if (!isEvaluated) continue;

    for (; nextToMove <= LastLeftRow(p, rightBorderClosed); ++nextToMove) {
      MoveRow(table.Row(nextToMove), right, left);
    }
    const double entropy = SplitEntropy(left, right);
    if (isFirstEvaluated || entropy < least) {  // strict: the leftmost of equals stays
      best = p;
      least = entropy;
      isFirstEvaluated = false;
    }
  }

  // The shorter side is summed, the longer one is what remains.
  const int lastLeft = LastLeftRow(best, rightBorderClosed);
  if ((static_cast<double>(first) + static_cast<double>(last)) * 0.5 < best) {
    table.Sum(lastLeft + 1, last, right);
    Subtract(totals, right, left);
  } else {
    table.Sum(first, lastLeft, left);
    Subtract(totals, left, right);
  }
  return best;
}

}  // namespace TQBinning
