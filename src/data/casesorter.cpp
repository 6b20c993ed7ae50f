#include "data/casesorter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

#include "data/radixsort.h"
#include "data/tuplesort.h"
#include "data/vectorsort.h"

namespace TQBinning {

namespace {

// Below this size the tables for counting cost more than they save.
constexpr std::size_t kManyCases = 4096;
// Below this number of values ranges cost more than they save.
constexpr std::size_t kManyValues = 2000000;
// A table of more counters than these leaves the second-level cache.
constexpr std::size_t kMostCounts = 65536;

// Sorted cases next to each other.
struct Cases {
  const double* value;
  const double* valueEnd;
  const unsigned char* kind;
  const unsigned char* kindEnd;

  std::size_t Count() const { return static_cast<std::size_t>(valueEnd - value); }
};

// Merges two runs; of equal values those of the first come first.  `put(i, value, kind)`
// takes case i of the merged ones.  Without a branch on the comparison, which no
// processor can foretell, and from both ends at once, since each end has to wait for
// its own last comparison only.
template <typename Put>
void Merge(Cases a, Cases b, Put put) {
  std::size_t first = 0;
  std::size_t end = a.Count() + b.Count();
  for (;;) {
    const std::size_t steps = std::min(a.Count(), b.Count()) / 2;
    if (steps == 0) break;
    for (std::size_t s = 0; s < steps; ++s) {
      const bool takesB = *b.value < *a.value;
      put(first + s, takesB ? *b.value : *a.value, takesB ? *b.kind : *a.kind);
      a.value += !takesB;
      a.kind += !takesB;
      b.value += takesB;
      b.kind += takesB;

      const bool leavesB = b.valueEnd[-1] < a.valueEnd[-1];
      put(end - 1 - s, leavesB ? a.valueEnd[-1] : b.valueEnd[-1],
          leavesB ? a.kindEnd[-1] : b.kindEnd[-1]);
      a.valueEnd -= leavesB;
      a.kindEnd -= leavesB;
      b.valueEnd -= !leavesB;
      b.kindEnd -= !leavesB;
    }
    first += steps;
    end -= steps;
  }
  while (a.Count() > 0 && b.Count() > 0) {
    Cases& from = *b.value < *a.value ? b : a;
    put(first++, *from.value++, *from.kind++);
  }
  for (Cases& rest = a.Count() > 0 ? a : b; first < end; ++first) {
    put(first, *rest.value++, *rest.kind++);
  }
}

// Numbers the distinct values of a sequence, in the order of their first appearance.
class ValueNumbers {
 public:
  static constexpr std::size_t kMost = 4096;

  // kMost when there are more than so many.
  std::size_t NumberOf(double value) {
    // The golden ratio spreads what differs in any bits over the leading ones.
    constexpr std::uint64_t kSpread = 0x9e3779b97f4a7c15U;
    std::size_t slot = (std::bit_cast<std::uint64_t>(value) * kSpread) >> (64 - kSlotBits);
    for (;; slot = (slot + 1) % kSlots) {
      const std::uint16_t number = fNumberAt[slot];
      if (number == 0) break;
      if (fValues[number - 1U] == value) return number - 1U;
    }
    if (fValues.size() == kMost) return kMost;
    fValues.push_back(value);
    fNumberAt[slot] = static_cast<std::uint16_t>(fValues.size());
    return fValues.size() - 1;
  }

  // The values, ascending, with their numbers.
  std::vector<std::pair<double, std::size_t>> Sorted() const {
    std::vector<std::pair<double, std::size_t>> sorted;
    for (std::size_t n = 0; n < fValues.size(); ++n) sorted.emplace_back(fValues[n], n);
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

 private:
  static constexpr int kSlotBits = 14;
  static constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;

  std::vector<std::uint16_t> fNumberAt = std::vector<std::uint16_t>(kSlots, 0);  // from 1 on
  std::vector<double> fValues;
};

// Numbers the values and counts the cases of each number n and kind k, of which there are
// `kinds`: counts[n * kinds + k].  False when there is too much to count.
bool CountCases(std::span<const double> values, const unsigned char* kindOf, std::size_t kinds,
                ValueNumbers& numbers, std::vector<std::uint32_t>& counts) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t number = numbers.NumberOf(values[i]);
    if (number * kinds >= counts.size()) {
      if (number == ValueNumbers::kMost || (number + 1) * kinds > kMostCounts) return false;
      counts.resize((number + 1) * kinds, 0);
    }
    ++counts[number * kinds + kindOf[i]];
  }
  return true;
}

}  // namespace

CaseSorter::CaseSorter(SortMemory& memory, std::size_t mostCases) : fMemory(memory) {
  memory.ReserveForKinds(mostCases);
  memory.kindOf.resize(std::size_t{kWeights} * kWeights, 0);
}

CaseSorter::~CaseSorter() {
  for (const std::size_t place : fPlaces) fMemory.kindOf[place] = 0;
}

unsigned char CaseSorter::NewKind(std::size_t place) {
  if (fPlaces.size() == kMostKinds) {
    fIsSuitable = false;
    return 1;
  }
  fPlaces.push_back(place);
  return fMemory.kindOf[place] = static_cast<unsigned char>(fPlaces.size());
}

// The kinds in the order of their weights, then of their targets.
std::vector<unsigned char> CaseSorter::KindsByWeight() const {
  const auto weightThenTarget = [this](unsigned char kind) {
    const std::size_t place = fPlaces[kind - 1U];
    return std::pair(place % kWeights, place / kWeights);
  };
  std::vector<unsigned char> kinds(fPlaces.size());
  std::iota(kinds.begin(), kinds.end(), static_cast<unsigned char>(1));
  std::sort(kinds.begin(), kinds.end(), [&](unsigned char a, unsigned char b) {
    return weightThenTarget(a) < weightThenTarget(b);
  });
  return kinds;
}

// Counts the cases of each value and kind, and puts them in order: `put(value, kind, count)`.
// False, with nothing put, when it does not pay: for few cases, or more than a few thousand
// values.  Three times as fast as sorting.
template <typename Put>
bool CaseSorter::SortByCounting(unsigned int& distinct, Put put) const {
  if (fCount < kManyCases) return false;
  ValueNumbers numbers;
  std::vector<std::uint32_t> counts;
  const std::size_t kinds = fPlaces.size() + 1;
  if (!CountCases({fMemory.values[0].get(), fCount}, fMemory.kinds[0].get(), kinds, numbers,
                  counts)) {
    return false;
  }
  const std::vector<unsigned char> order = KindsByWeight();
  distinct = 0;
  for (const auto& [value, number] : numbers.Sorted()) {
    // cppcheck-suppress containerOutOfBounds ; every number has its counts
    for (const unsigned char kind : order) put(value, kind, counts[number * kinds + kind]);
    ++distinct;
  }
  return true;
}

// As many ranges of about equally many cases as have kRangeCases at least, judged by a
// sample at even distances.
NumberRanges CaseSorter::ChooseRanges(std::size_t kinds) const {
  NumberRanges ranges;
  while (ranges.levels < NumberRanges::kMostLevels &&
         (kinds << (ranges.levels + 1)) <= kMostParts &&
         (fCount >> (ranges.levels + 1)) >= kRangeCases) {
    ++ranges.levels;
  }
  if (ranges.levels == 0) return ranges;
  constexpr std::size_t kSample = 1024;
  const double* const values = fMemory.values[0].get();
  std::vector<double> sample;
  for (std::size_t i = 0; i < kSample; ++i) sample.push_back(values[i * (fCount / kSample)]);
  std::sort(sample.begin(), sample.end());
  for (int level = 0; level < ranges.levels; ++level) {
    const std::size_t width = kSample >> level;
    for (std::size_t i = 0; i < kSample / width; ++i) {
      ranges.splitters[level][i] = sample[i * width + width / 2];
    }
  }
  return ranges;
}

// Moves the cases of each range and kind together, ranges ascending and within them kinds
// in the order given: where each part ends.
std::vector<std::size_t> CaseSorter::Split(const NumberRanges& ranges,
                                           const std::vector<unsigned char>& kinds) {
  const std::size_t countOfKinds = kinds.size();
  const std::size_t parts = countOfKinds << ranges.levels;
  if (parts == 1) return {fCount};
  std::array<unsigned char, kMostKinds + 1> placeOf{};
  for (std::size_t k = 0; k < countOfKinds; ++k) placeOf[kinds[k]] = static_cast<unsigned char>(k);
  unsigned char* partOf = fMemory.kinds[0].get();  // where the kinds were
  unsigned char* rangeOf = fMemory.kinds[1].get();
  const double* const values = fMemory.values[0].get();
  const std::size_t count = fCount;
  if (ranges.levels > 0) {
    FindRanges(ranges, values, count, rangeOf);
  } else {
    std::fill_n(rangeOf, count, static_cast<unsigned char>(0));
  }
  if (countOfKinds == 1) {
    std::swap(partOf, rangeOf);
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      partOf[i] = static_cast<unsigned char>(rangeOf[i] * countOfKinds + placeOf[partOf[i]]);
    }
  }
  std::array<std::size_t, kMostParts> next{};
  for (std::size_t i = 0; i < count; ++i) ++next[partOf[i]];
  std::vector<std::size_t> ends;
  std::size_t start = 0;
  for (std::size_t part = 0; part < parts; ++part) {
    start += std::exchange(next[part], start);
    ends.push_back(start);
  }

  double* const split = fMemory.values[1].get();
  for (std::size_t i = 0; i < count; ++i) split[next[partOf[i]]++] = values[i];
  fMemory.values[0].swap(fMemory.values[1]);
  return ends;
}

// What the kinds stand for.
struct CaseSorter::KindMeanings {
  explicit KindMeanings(const std::vector<std::size_t>& places) {
    for (std::size_t k = 0; k < places.size(); ++k) {
      weightOf[k + 1] = static_cast<double>(places[k] % kWeights);
      targetOf[k + 1] = static_cast<unsigned char>(places[k] / kWeights);
    }
  }

  template <typename Tuple>
  void Put(Tuple& tuple, double value, std::size_t kind) const {
    tuple.value = value;
    tuple.weight = weightOf[kind];
    if constexpr (requires { tuple.target; }) tuple.target = targetOf[kind];
  }

  std::array<double, kMostKinds + 1> weightOf;
  std::array<unsigned char, kMostKinds + 1> targetOf;
};

// Sorts the values of one range, whose parts are one for each kind, and merges them into
// tuples.  Every range uses the same working memory, which so stays in the cache.
template <typename Tuple>
void CaseSorter::SortRange(double* values, std::vector<std::size_t> ends,
                           const std::vector<unsigned char>& kinds, const KindMeanings& meanings,
                           Tuple* tuples) {
  double* otherValues = fMemory.values[1].get();
  unsigned char* kindOf = fMemory.kinds[0].get();
  unsigned char* otherKindOf = fMemory.kinds[1].get();
  const auto run = [&](std::size_t first, std::size_t end) {
    return Cases{values + first, values + end, kindOf + first, kindOf + end};
  };
  std::size_t first = 0;
  for (std::size_t k = 0; k < ends.size(); ++k) {
    SortByVector(values + first, otherValues, ends[k] - first);
    std::fill(kindOf + first, kindOf + ends[k], kinds[k]);
    first = ends[k];
  }
  while (ends.size() > 2) {
    std::vector<std::size_t> mergedEnds;
    first = 0;
    for (std::size_t r = 0; r < ends.size(); r += 2) {
      const std::size_t end = r + 1 < ends.size() ? ends[r + 1] : ends[r];
      Merge(run(first, ends[r]), run(ends[r], end),
            [toValues = otherValues + first, toKinds = otherKindOf + first](
                std::size_t i, double value, unsigned char kind) {
              toValues[i] = value;
              toKinds[i] = kind;
            });
      mergedEnds.push_back(end);
      first = end;
    }
    std::swap(values, otherValues);
    std::swap(kindOf, otherKindOf);
    ends.swap(mergedEnds);
  }
  Merge(run(0, ends.front()), run(ends.front(), ends.back()),
        [&meanings, tuples](std::size_t i, double value, unsigned char kind) {
          meanings.Put(tuples[i], value, kind);
        });
}

// Range by range, since what fits into a cache is sorted, merged and handed out in half
// the time.
template <typename Tuple>
unsigned int CaseSorter::SortByRanges(std::span<Tuple> tuples) {
  const KindMeanings meanings(fPlaces);
  const std::vector<unsigned char> kinds = KindsByWeight();
  const std::vector<std::size_t> ends = Split(ChooseRanges(kinds.size()), kinds);
  unsigned int distinct = 0;
  std::size_t first = 0;
  for (auto end = ends.begin(); end != ends.end();) {
    std::vector<std::size_t> rangeEnds;
    for (std::size_t k = 0; k < kinds.size(); ++k) rangeEnds.push_back(*end++ - first);
    const std::span<Tuple> range = tuples.subspan(first, rangeEnds.back());
    SortRange(fMemory.values[0].get() + first, rangeEnds, kinds, meanings, range.data());
    distinct += CountDistinct(std::span<const Tuple>(range));
    first += range.size();
  }
  return distinct;
}

// The same without kinds, for more values than the last-level cache has room for; fewer are
// sorted at once.
unsigned int CaseSorter::SortValuesByRanges() {
  unsigned int distinct = 0;
  std::size_t first = 0;
  for (const std::size_t end :
       Split(fCount < kManyValues ? NumberRanges{} : ChooseRanges(1), {1})) {
    const std::span<double> range(fMemory.values[0].get() + first, end - first);
    SortByVector(range.data(), fMemory.values[1].get(), range.size());
    distinct += CountDistinct(std::span<const double>(range));
    first = end;
  }
  return distinct;
}

// Stable, and so kinds of equal values end in their order.
void CaseSorter::SortByRadix() {
  const std::vector<unsigned char> kinds = KindsByWeight();
  const std::vector<std::size_t> ends = Split(NumberRanges{}, kinds);
  unsigned char* kind = fMemory.kinds[0].get();
  for (std::size_t k = 0; k < ends.size(); ++k) {
    unsigned char* const end = fMemory.kinds[0].get() + ends[k];
    std::fill(kind, end, kinds[k]);
    kind = end;
  }
  RadixSorter<unsigned char> sorter(fMemory.values[0].get(), fMemory.values[1].get(),
                                    fMemory.kinds[0].get(), fMemory.kinds[1].get(), fCount);
  sorter.Sort();
  if (sorter.Values() != fMemory.values[0].get()) {
    fMemory.values[0].swap(fMemory.values[1]);
    fMemory.kinds[0].swap(fMemory.kinds[1]);
  }
}

template <typename Tuple>
unsigned int CaseSorter::HandOut(std::span<Tuple> tuples) const {
  const KindMeanings meanings(fPlaces);
  const double* const values = fMemory.values[0].get();
  const unsigned char* const kinds = fMemory.kinds[0].get();
  for (std::size_t i = 0; i < fCount; ++i) meanings.Put(tuples[i], values[i], kinds[i]);
  return CountDistinct(std::span<const Tuple>(tuples.first(fCount)));
}

template <typename Tuple>
unsigned int CaseSorter::SortTuples(std::span<Tuple> tuples, bool weightOrdersTies) {
  fMemory.sortedFor = nullptr;
  const bool isSorted = fIsSorted && (fPlaces.size() <= 1 || !weightOrdersTies);
  if (isSorted) return HandOut(tuples);
  const KindMeanings meanings(fPlaces);
  unsigned int distinct = 0;
  const auto put = [&, next = tuples.begin()](double value, std::size_t kind,
                                              std::size_t count) mutable {
    Tuple tuple;
    meanings.Put(tuple, value, kind);
    next = std::fill_n(next, count, tuple);
  };
  if (SortByCounting(distinct, put)) return distinct;
  if (fPlaces.size() <= kFewKinds && fMemory.usesVectors) return SortByRanges(tuples);
  SortByRadix();
  return HandOut(tuples);
}

unsigned int CaseSorter::Sort(std::span<BINDataTuple> tuples) { return SortTuples(tuples, false); }

unsigned int CaseSorter::Sort(std::span<EFBINDataTuple> tuples) { return SortTuples(tuples, true); }

// Leaves the values in values[0]; returns the number of distinct ones.
unsigned int CaseSorter::SortBareValues() {
  const auto countDistinct = [this] {
    return CountDistinct(std::span<const double>(fMemory.values[0].get(), fCount));
  };
  if (fIsSorted) return countDistinct();
  unsigned int distinct = 0;
  const auto put = [next = fMemory.values[0].get()](double value, unsigned char,
                                                    std::size_t count) mutable {
    next = std::fill_n(next, count, value);
  };
  if (SortByCounting(distinct, put)) return distinct;
  if (fMemory.usesVectors) return SortValuesByRanges();
  SortByRadix();
  return countDistinct();
}

std::span<const double> CaseSorter::SortValues(unsigned int& distinct) {
  fMemory.sortedFor = nullptr;
  distinct = SortBareValues();
  fMemory.values[0].swap(fMemory.values[1]);
  return {fMemory.values[1].get(), fCount};
}

}  // namespace TQBinning
