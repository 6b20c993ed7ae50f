// Quicksort on vectors of eight doubles (AVX-512): a million numbers in about a tenth
// of std::sort's time and half of the radix sort's.  The idea of the partition, to
// compress each vector's smaller and larger numbers to either side, is that of B.
// Bramas, "A Novel Hybrid Quicksort Algorithm Vectorized using AVX-512", 2017; the
// short ranges are sorted by a bitonic network (K. Batcher, 1968).
//
// This file alone is compiled for that processor.  It includes nothing that has
// functions of its own, so that none of them can end up in what others run.
#include "data/vectorsort.h"

#if defined(__AVX512F__)

#if !defined(__clang__)
// g++'s own intrinsics read variables that they call undefined.
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>

namespace TQBinning {
namespace {

using Vector = __m512d;

// The network pays only when all of its vectors stay in registers.
#define TQ_INLINE [[gnu::always_inline]] inline

constexpr std::size_t kLanes = 8;
constexpr std::size_t kMostVectors = 16;  // that the network takes at once
constexpr std::size_t kFewNumbers = kMostVectors * kLanes;
constexpr double kLast = __builtin_inf();

// The first `lanes` lanes, all when there are more.
__mmask8 FirstLanes(std::size_t lanes) {
  return static_cast<__mmask8>(lanes >= kLanes ? 0xff : (1U << lanes) - 1U);
}

Vector Load(const double* values, std::size_t lanes) {
  return _mm512_mask_loadu_pd(_mm512_set1_pd(kLast), FirstLanes(lanes), values);
}

// ---- The network.  In step with a partner lane, the lanes in `upper` keep the larger.

template <__mmask8 kUpper>
TQ_INLINE Vector Exchange(Vector v, Vector partner) {
  return _mm512_mask_max_pd(_mm512_min_pd(v, partner), kUpper, v, partner);
}

TQ_INLINE Vector Reverse(Vector v) {
  const __m512i lanes = _mm512_set_epi64(0, 1, 2, 3, 4, 5, 6, 7);
  return _mm512_permutexvar_pd(lanes, v);
}

TQ_INLINE Vector ExchangePairs(Vector v) { return Exchange<0xaa>(v, _mm512_permute_pd(v, 0x55)); }

// Sorts lanes that first rise and then fall, or the other way round.
TQ_INLINE Vector SortBitonic(Vector v) {
  v = Exchange<0xf0>(v, _mm512_shuffle_f64x2(v, v, 0x4e));
  v = Exchange<0xcc>(v, _mm512_permutex_pd(v, 0x4e));
  return ExchangePairs(v);
}

TQ_INLINE Vector SortLanes(Vector v) {
  v = ExchangePairs(v);
  v = Exchange<0xcc>(v, _mm512_permutex_pd(v, 0x1b));
  v = ExchangePairs(v);
  v = Exchange<0xf0>(v, Reverse(v));
  v = Exchange<0xcc>(v, _mm512_permutex_pd(v, 0x4e));
  return ExchangePairs(v);
}

template <std::size_t kCount>
TQ_INLINE void SortBitonic(Vector* v) {
  if constexpr (kCount == 1) {
    v[0] = SortBitonic(v[0]);
  } else {
    constexpr std::size_t kHalf = kCount / 2;
#pragma GCC unroll 16
    for (std::size_t i = 0; i < kHalf; ++i) {
      const Vector low = _mm512_min_pd(v[i], v[i + kHalf]);
      v[i + kHalf] = _mm512_max_pd(v[i], v[i + kHalf]);
      v[i] = low;
    }
    SortBitonic<kHalf>(v);
    SortBitonic<kHalf>(v + kHalf);
  }
}

template <std::size_t kCount>
TQ_INLINE void SortVectors(Vector* v) {
  if constexpr (kCount == 1) {
    v[0] = SortLanes(v[0]);
  } else {
    constexpr std::size_t kHalf = kCount / 2;
    SortVectors<kHalf>(v);
    SortVectors<kHalf>(v + kHalf);
#pragma GCC unroll 16
    for (std::size_t i = 0; i < kHalf; ++i) {
      const Vector mirrored = Reverse(v[kCount - 1 - i]);
      v[kCount - 1 - i] = Reverse(_mm512_max_pd(v[i], mirrored));
      v[i] = _mm512_min_pd(v[i], mirrored);
    }
    SortBitonic<kHalf>(v);
    SortBitonic<kHalf>(v + kHalf);
  }
}

// Missing lanes are filled up with the largest number, which sorts to the end.
template <std::size_t kCount>
void SortUpTo(double* values, std::size_t count) {
  Vector v[kCount];
#pragma GCC unroll 16
  for (std::size_t i = 0; i < kCount; ++i) {
    v[i] =
        i * kLanes < count ? Load(values + i * kLanes, count - i * kLanes) : _mm512_set1_pd(kLast);
  }
  SortVectors<kCount>(v);
#pragma GCC unroll 16
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i * kLanes < count) {
      _mm512_mask_storeu_pd(values + i * kLanes, FirstLanes(count - i * kLanes), v[i]);
    }
  }
}

void SortFew(double* values, std::size_t count) {
  if (count <= kLanes) return SortUpTo<1>(values, count);
  if (count <= 2 * kLanes) return SortUpTo<2>(values, count);
  if (count <= 4 * kLanes) return SortUpTo<4>(values, count);
  if (count <= 8 * kLanes) return SortUpTo<8>(values, count);
  SortUpTo<kMostVectors>(values, count);
}

// ---- The partition.

// Where a vector's lanes go: those of the mask to the right, the others to the left.
struct Parts {
  double* left;
  double* right;

  void Take(Vector v, __mmask8 toTheRight, __mmask8 valid) {
    const auto toTheLeft = static_cast<__mmask8>(valid & ~toTheRight);
    _mm512_storeu_pd(left, _mm512_maskz_compress_pd(toTheLeft, v));
    _mm512_storeu_pd(right, _mm512_maskz_compress_pd(toTheRight, v));
    left += _mm_popcnt_u32(toTheLeft);
    right += _mm_popcnt_u32(toTheRight);
  }
};

// Moves the numbers above the pivot, or those not below it, behind the others; how
// many are not moved.  The left part is written over what has been read already; the
// right one gathers in `spare`.
template <int kComparison>
std::size_t Partition(double* values, double* spare, std::size_t count, double pivot) {
  const Vector pivots = _mm512_set1_pd(pivot);
  Parts parts{values, spare};
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    const Vector v = _mm512_loadu_pd(values + i);
    parts.Take(v, _mm512_cmp_pd_mask(v, pivots, kComparison), 0xff);
  }
  if (i < count) {
    const __mmask8 valid = FirstLanes(count - i);
    const Vector v = Load(values + i, count - i);
    const __mmask8 toTheRight = _mm512_mask_cmp_pd_mask(valid, v, pivots, kComparison);
    const auto toTheLeft = static_cast<__mmask8>(valid & ~toTheRight);
    _mm512_mask_compressstoreu_pd(parts.left, toTheLeft, v);
    _mm512_mask_compressstoreu_pd(parts.right, toTheRight, v);
    parts.left += _mm_popcnt_u32(toTheLeft);
  }
  const auto left = static_cast<std::size_t>(parts.left - values);
  __builtin_memcpy(parts.left, spare, (count - left) * sizeof(double));
  return left;
}

// The median of a sample taken at even distances.
double ChoosePivot(const double* values, std::size_t count) {
  double sample[kFewNumbers / 2];
  const std::size_t size = count < 4096 ? 16 : kFewNumbers / 2;
  const std::size_t distance = count / size;
  for (std::size_t i = 0; i < size; ++i) sample[i] = values[i * distance + distance / 2];
  SortFew(sample, size);
  return sample[size / 2];
}

bool Sort(double* values, double* spare, std::size_t count, int depthLeft) {
  while (count > kFewNumbers) {
    if (depthLeft-- == 0) return false;
    const double pivot = ChoosePivot(values, count);
    std::size_t left = Partition<_CMP_GE_OQ>(values, spare, count, pivot);
    if (left == 0) {
      // The pivot is the least number, and perhaps a frequent one.
      left = Partition<_CMP_GT_OQ>(values, spare, count, pivot);
    } else if (!Sort(values, spare, left, depthLeft)) {
      return false;
    }
    values += left;
    count -= left;
  }
  SortFew(values, count);
  return true;
}

}  // namespace

bool CanSortByVector() { return __builtin_cpu_supports("avx512f") != 0; }

bool SortByVector(double* values, double* spare, std::size_t count) {
  int depth = 8;  // twice the logarithm, and some more
  for (std::size_t n = count; n > 0; n /= 2) depth += 2;
  return Sort(values, spare, count, depth);
}

}  // namespace TQBinning

#undef TQ_INLINE

#else

namespace TQBinning {

bool CanSortByVector() { return false; }
bool SortByVector(double*, double*, std::size_t) { return false; }

}  // namespace TQBinning

#endif
