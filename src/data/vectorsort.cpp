// Quicksort on vectors of eight doubles (AVX-512): a million numbers in about a tenth
// of std::sort's time and half of the radix sort's.  The idea of the partition, to
// compress each vector's smaller and larger numbers to either side, is that of B.
// Bramas, "A Novel Hybrid Quicksort Algorithm Vectorized using AVX-512", 2017; here one
// permutation does both, and the numbers go to and fro between two arrays.  The short
// ranges are sorted by a bitonic network (K. Batcher, 1968).
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

// Sorts to `to`, which may be `from`.  Missing lanes are filled up with the largest
// number, which sorts to the end.
template <std::size_t kCount>
void SortUpTo(const double* from, double* to, std::size_t count) {
  Vector v[kCount];
#pragma GCC unroll 16
  for (std::size_t i = 0; i < kCount; ++i) {
    v[i] = i * kLanes < count ? Load(from + i * kLanes, count - i * kLanes) : _mm512_set1_pd(kLast);
  }
  SortVectors<kCount>(v);
#pragma GCC unroll 16
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i * kLanes < count) {
      _mm512_mask_storeu_pd(to + i * kLanes, FirstLanes(count - i * kLanes), v[i]);
    }
  }
}

void SortFew(const double* from, double* to, std::size_t count) {
  if (count <= kLanes) return SortUpTo<1>(from, to, count);
  if (count <= 2 * kLanes) return SortUpTo<2>(from, to, count);
  if (count <= 4 * kLanes) return SortUpTo<4>(from, to, count);
  if (count <= 8 * kLanes) return SortUpTo<8>(from, to, count);
  SortUpTo<kMostVectors>(from, to, count);
}

// ---- The partition.

// For each mask the lanes that are not in it, then those that are.
struct LaneOrders {
  unsigned char lanes[256][kLanes];
};

constexpr LaneOrders OrderLanes() {
  LaneOrders orders{};
  for (unsigned int mask = 0; mask < 256; ++mask) {
    unsigned char* next = orders.lanes[mask];
    for (unsigned int side = 0; side < 2; ++side) {
      for (unsigned char lane = 0; lane < kLanes; ++lane) {
        if ((mask >> lane & 1U) == side) *next++ = lane;
      }
    }
  }
  return orders;
}

constexpr LaneOrders kLaneOrders = OrderLanes();

Vector MoveMaskedLast(Vector v, __mmask8 mask) {
  const __m128i lanes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kLaneOrders.lanes[mask]));
  return _mm512_permutexvar_pd(_mm512_cvtepu8_epi64(lanes), v);
}

// Moves the numbers to `to`, those above the pivot, or those not below it, behind the
// others; how many are before.
template <int kComparison>
std::size_t Partition(const double* from, double* to, std::size_t count, double pivot) {
  const Vector pivots = _mm512_set1_pd(pivot);
  double* left = to;
  double* right = to + count;
  std::size_t i = 0;
  // While there is room for two vectors between the sides, a whole one can be stored on
  // each: what of it belongs to the other side is written over later.
  for (; i + 2 * kLanes <= count; i += kLanes) {
    Vector v = _mm512_loadu_pd(from + i);
    const __mmask8 toTheRight = _mm512_cmp_pd_mask(v, pivots, kComparison);
    v = MoveMaskedLast(v, toTheRight);
    _mm512_storeu_pd(left, v);
    _mm512_storeu_pd(right - kLanes, v);
    const auto moved = static_cast<std::size_t>(_mm_popcnt_u32(toTheRight));
    left += kLanes - moved;
    right -= moved;
  }
  for (; i < count; i += kLanes) {
    const __mmask8 valid = FirstLanes(count - i);
    const Vector v = Load(from + i, count - i);
    const __mmask8 toTheRight = _mm512_mask_cmp_pd_mask(valid, v, pivots, kComparison);
    const auto toTheLeft = static_cast<__mmask8>(valid & ~toTheRight);
    _mm512_mask_compressstoreu_pd(left, toTheLeft, v);
    left += _mm_popcnt_u32(toTheLeft);
    right -= _mm_popcnt_u32(toTheRight);
    _mm512_mask_compressstoreu_pd(right, toTheRight, v);
  }
  return static_cast<std::size_t>(left - to);
}

// The median of a sample taken at even distances.
double ChoosePivot(const double* values, std::size_t count) {
  double sample[kFewNumbers / 2];
  const std::size_t size = count < 4096 ? 16 : kFewNumbers / 2;
  const std::size_t distance = count / size;
  for (std::size_t i = 0; i < size; ++i) sample[i] = values[i * distance + distance / 2];
  SortFew(sample, sample, size);
  return sample[size / 2];
}

// ---- The sort.

// Moves a number down from the top of a heap, whose largest number is on top.
void Sink(double* heap, std::size_t top, std::size_t count) {
  const double number = heap[top];
  for (std::size_t child = 2 * top + 1; child < count; child = 2 * top + 1) {
    if (child + 1 < count && heap[child] < heap[child + 1]) ++child;
    if (!(number < heap[child])) break;
    heap[top] = heap[child];
    top = child;
  }
  heap[top] = number;
}

// Heapsort (J. W. J. Williams, 1964), which no input makes slow.
void SortByHeap(double* values, std::size_t count) {
  for (std::size_t top = count / 2; top-- > 0;) Sink(values, top, count);
  for (std::size_t last = count; last-- > 1;) {
    const double largest = values[0];
    values[0] = values[last];
    values[last] = largest;
    Sink(values, 0, last);
  }
}

// Sorts what is in `numbers`, where it is or to `other`.  Each partition moves the
// numbers from the one to the other.
void Sort(double* numbers, double* other, std::size_t count, bool toOther, int levelsLeft) {
  while (count > kFewNumbers) {
    if (levelsLeft-- == 0) {
      SortByHeap(numbers, count);
      if (toOther) __builtin_memcpy(other, numbers, count * sizeof(double));
      return;
    }
    const double pivot = ChoosePivot(numbers, count);
    std::size_t left = Partition<_CMP_GE_OQ>(numbers, other, count, pivot);
    double* const moved = other;
    other = numbers;
    numbers = moved;
    toOther = !toOther;
    if (left > 0) {
      Sort(numbers, other, left, toOther, levelsLeft);
    } else {
      // The pivot is the least number, and perhaps a frequent one.
      left = Partition<_CMP_GT_OQ>(numbers, other, count, pivot);
      double* const sorted = toOther ? other : numbers;
      for (std::size_t i = 0; i < left; ++i) sorted[i] = pivot;
      numbers = other;
      other = moved;
      toOther = !toOther;
    }
    numbers += left;
    other += left;
    count -= left;
  }
  SortFew(numbers, toOther ? other : numbers, count);
}

// ---- The ranges.

__m512i RangesOf(const NumberRanges& ranges, Vector v) {
  __m512i range = _mm512_setzero_si512();
  for (int level = 0; level < ranges.levels; ++level) {
    const double* const splitters = ranges.splitters[level];
    const Vector splitter = _mm512_permutex2var_pd(_mm512_loadu_pd(splitters), range,
                                                   _mm512_loadu_pd(splitters + kLanes));
    const __mmask8 toTheRight = _mm512_cmp_pd_mask(v, splitter, _CMP_GE_OQ);
    range = _mm512_add_epi64(range, range);
    range = _mm512_mask_add_epi64(range, toTheRight, range, _mm512_set1_epi64(1));
  }
  return range;
}

}  // namespace

bool CanSortByVector() { return __builtin_cpu_supports("avx512f") != 0; }

void SortByVector(double* values, double* spare, std::size_t count) {
  int levels = 8;  // twice the logarithm, and some more
  for (std::size_t n = count; n > 0; n /= 2) levels += 2;
  SortByVector(values, spare, count, levels);
}

void SortByVector(double* values, double* spare, std::size_t count, int mostLevels) {
  Sort(values, spare, count, false, mostLevels);
}

void FindRanges(const NumberRanges& ranges, const double* values, std::size_t count,
                unsigned char* rangeOf) {
  for (std::size_t i = 0; i < count; i += kLanes) {
    const std::size_t lanes = count - i;
    _mm512_mask_cvtepi64_storeu_epi8(rangeOf + i, FirstLanes(lanes),
                                     RangesOf(ranges, Load(values + i, lanes)));
  }
}

}  // namespace TQBinning

#undef TQ_INLINE

#else

namespace TQBinning {

bool CanSortByVector() { return false; }
void SortByVector(double*, double*, std::size_t) {}
void SortByVector(double*, double*, std::size_t, int) {}
void FindRanges(const NumberRanges&, const double*, std::size_t, unsigned char*) {}

}  // namespace TQBinning

#endif
