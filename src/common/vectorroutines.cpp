#include "tqbinning/vectorroutines.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace TQBinning {

namespace {

std::size_t Index(int i) { return static_cast<std::size_t>(i); }

const double* DataOf(const std::valarray<double>& x) { return x.size() == 0 ? nullptr : &x[0]; }

}  // namespace

void VectorCopy(const std::valarray<double>& src, std::valarray<double>& dst, int n, int srcStart,
                int dstStart) {
  for (int i = 0; i < n; ++i) dst[Index(dstStart + i)] = src[Index(srcStart + i)];
}

void VectorCopy(const double* src, double* dst, int n, int srcStart, int /*dstStart*/) {
  for (int i = 0; i < n; ++i) dst[i] = src[srcStart + i];
}

double VectorDotProduct(const double* a, const double* b, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

double VectorDotProduct(const std::valarray<double>& a, const std::valarray<double>& b) {
  return VectorDotProduct(DataOf(a), DataOf(b), static_cast<int>(a.size()));
}

double VectorMaxX(const double* x, int n, int& index) {
  double largest = std::numeric_limits<double>::lowest();
  index = -1;
  for (int i = 0; i < n; ++i) {
    if (x[i] > largest) {  // strict: of equal elements the first one stays
      largest = x[i];
      index = i;
    }
  }
  return largest;
}

double VectorNormSquared(const std::valarray<double>& x) { return VectorDotProduct(x, x); }

double VectorNorm(const std::valarray<double>& x) { return std::sqrt(VectorNormSquared(x)); }

int VectorXNonZero(const double* x, int n) {
  for (int i = 0; i < n; ++i) {
    if (x[i] != 0.0) return i;
  }
  return -1;
}

double VectorDiffNorm(const double* a, const double* b, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
  return std::sqrt(sum);
}

double VectorDiffNorm(const std::valarray<double>& a, const std::valarray<double>& b, int n) {
  const auto shorter = static_cast<int>(std::min(a.size(), b.size()));
  return VectorDiffNorm(DataOf(a), DataOf(b), std::min(n, shorter));
}

double VectorMaxNormDiff(int count, std::valarray<double*>& vectors, int n) {
  double largest = 0.0;
  for (int i = 0; i < count; ++i) {
    for (int j = i + 1; j < count; ++j) {
      const double distance = VectorDiffNorm(vectors[Index(i)], vectors[Index(j)], n);
      if (distance > largest) largest = distance;  // never true for NaN
    }
  }
  return largest;
}

}  // namespace TQBinning
