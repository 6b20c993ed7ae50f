#pragma once

#include <valarray>

#include "tqbinning/export.h"

// Small routines over arrays of doubles.  No range is checked anywhere; a count
// below 1 means an empty range.
namespace TQBinning {

// dst[dstStart + i] = src[srcStart + i] for i = 0 .. n-1.
TQBINNING_EXPORT void VectorCopy(const std::valarray<double>& src, std::valarray<double>& dst,
                                 int n, int srcStart, int dstStart);
// dst[i] = src[srcStart + i] for i = 0 .. n-1.  The last argument is ignored by
// design: this form always writes from the start of `dst`.
TQBINNING_EXPORT void VectorCopy(const double* src, double* dst, int n, int srcStart, int dstStart);

// The sum of a[i] * b[i], added in index order; 0 for an empty range.  The
// second form runs over the size of `a` and does not look at the size of `b`.
TQBINNING_EXPORT double VectorDotProduct(const double* a, const double* b, int n);
TQBINNING_EXPORT double VectorDotProduct(const std::valarray<double>& a,
                                         const std::valarray<double>& b);

// The largest element, `index` = its first position.  For an empty range, or
// when no element exceeds the most negative finite double: that double, and -1.
TQBINNING_EXPORT double VectorMaxX(const double* x, int n, int& index);

// The sum of squares, and its square root (the Euclidean norm).
TQBINNING_EXPORT double VectorNormSquared(const std::valarray<double>& x);
TQBINNING_EXPORT double VectorNorm(const std::valarray<double>& x);

// The position of the first element that is not zero (a NaN is not zero), or -1.
TQBINNING_EXPORT int VectorXNonZero(const double* x, int n);

// The Euclidean distance of two vectors; the second form takes the shortest of
// `n` and the two sizes.
TQBINNING_EXPORT double VectorDiffNorm(const double* a, const double* b, int n);
TQBINNING_EXPORT double VectorDiffNorm(const std::valarray<double>& a,
                                       const std::valarray<double>& b, int n);

// The largest distance over all pairs of the first `count` vectors, each of
// length `n`; 0 for fewer than two.  A NaN distance never becomes the largest.
TQBINNING_EXPORT double VectorMaxNormDiff(int count, std::valarray<double*>& vectors, int n);

}  // namespace TQBinning
