#include "data/casesorter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <numeric>
#include <utility>

#include "data/radixsort.h"
#include "data/vectorsort.h"

namespace TQBinning {

namespace {

// Below this size the tables for counting cost more than they save.
constexpr std::size_t kManyCases = 4096;
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

// Merges two runs; of equal values those of the first come first.  Without a branch
// on the comparison, which no processor can foretell, and from both ends at once,
// since each end has to wait for its own last comparison only.
void Merge(Cases a, Cases b, double* values, unsigned char* kinds) {
  std::size_t count = a.Count() + b.Count();
  for (;;) {
    const std::size_t steps = std::min(a.Count(), b.Count()) / 2;
    if (steps == 0) break;
    for (std::size_t s = 0; s < steps; ++s) {
      const bool takesB = *b.value < *a.value;
      values[s] = takesB ? *b.value : *a.value;
      kinds[s] = takesB ? *b.kind : *a.kind;
      a.value += !takesB;
      a.kind += !takesB;
      b.value += takesB;
      b.kind += takesB;

      const bool leavesB = b.valueEnd[-1] < a.valueEnd[-1];
      values[count - 1 - s] = leavesB ? a.valueEnd[-1] : b.valueEnd[-1];
      kinds[count - 1 - s] = leavesB ? a.kindEnd[-1] : b.kindEnd[-1];
      a.valueEnd -= leavesB;
      a.kindEnd -= leavesB;
      b.valueEnd -= !leavesB;
      b.kindEnd -= !leavesB;
    }
    values += steps;
    kinds += steps;
    count -= 2 * steps;
  }
  while (count-- > 0) {
    const bool takesB = a.Count() == 0 || (b.Count() > 0 && *b.value < *a.value);
    Cases& from = takesB ? b : a;
    *values++ = *from.value++;
    *kinds++ = *from.kind++;
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

// Counts the cases of each value and kind; false, with nothing done, when there are
// more than a few thousand of these.  Three times as fast as sorting.
bool CaseSorter::SortByCounting() {
  ValueNumbers numbers;
  const std::size_t kinds = fPlaces.size() + 1;
  std::vector<std::uint32_t> counts;
  for (std::size_t i = 0; i < fCount; ++i) {
    const std::size_t number = numbers.NumberOf(fMemory.values[0][i]);
    if (number * kinds >= counts.size()) {
      if (number == ValueNumbers::kMost || (number + 1) * kinds > kMostCounts) return false;
      counts.resize((number + 1) * kinds, 0);
    }
    ++counts[number * kinds + fMemory.kinds[0][i]];
  }
  const std::vector<unsigned char> order = KindsByWeight();
  double* value = fMemory.values[0].get();
  unsigned char* kind = fMemory.kinds[0].get();
  for (const auto& [number, place] : numbers.Sorted()) {
    for (const unsigned char k : order) {
      const std::uint32_t count = counts[place * kinds + k];
      value = std::fill_n(value, count, number);
      kind = std::fill_n(kind, count, k);
    }
  }
  return true;
}

// Moves the cases of each kind together, kinds in the order of their weights: where
// each kind's cases end.
std::vector<std::size_t> CaseSorter::SplitByKind() {
  if (fPlaces.size() == 1) return {fCount};
  const std::vector<unsigned char> order = KindsByWeight();
  std::array<std::size_t, kMostKinds + 1> next{};
  const unsigned char* const kinds = fMemory.kinds[0].get();
  for (std::size_t i = 0; i < fCount; ++i) ++next[kinds[i]];
  std::vector<std::size_t> ends;
  std::size_t start = 0;
  for (const unsigned char kind : order) {
    start += std::exchange(next[kind], start);
    ends.push_back(start);
  }

  const double* const values = fMemory.values[0].get();
  double* const split = fMemory.values[1].get();
  for (std::size_t i = 0; i < fCount; ++i) split[next[kinds[i]]++] = values[i];
  unsigned char* kind = fMemory.kinds[1].get();
  for (std::size_t k = 0; k < ends.size(); ++k) {
    unsigned char* const end = fMemory.kinds[1].get() + ends[k];
    std::fill(kind, end, order[k]);
    kind = end;
  }
  fMemory.values[0].swap(fMemory.values[1]);
  fMemory.kinds[0].swap(fMemory.kinds[1]);
  return ends;
}

void CaseSorter::MergeRuns(std::vector<std::size_t> runEnds) {
  const auto run = [this](std::size_t first, std::size_t end) {
    const double* const values = fMemory.values[0].get();
    const unsigned char* const kinds = fMemory.kinds[0].get();
    return Cases{values + first, values + end, kinds + first, kinds + end};
  };
  while (runEnds.size() > 1) {
    std::vector<std::size_t> mergedEnds;
    std::size_t first = 0;
    for (std::size_t r = 0; r < runEnds.size(); r += 2) {
      const std::size_t middle = runEnds[r];
      const std::size_t end = r + 1 < runEnds.size() ? runEnds[r + 1] : middle;
      Merge(run(first, middle), run(middle, end), fMemory.values[1].get() + first,
            fMemory.kinds[1].get() + first);
      mergedEnds.push_back(end);
      first = end;
    }
    fMemory.values[0].swap(fMemory.values[1]);
    fMemory.kinds[0].swap(fMemory.kinds[1]);
    runEnds.swap(mergedEnds);
  }
}

void CaseSorter::SortValues(bool weightOrdersTies) {
  if (fIsSorted && (fPlaces.size() <= 1 || !weightOrdersTies)) return;
  if (fCount >= kManyCases && SortByCounting()) return;
  const std::vector<std::size_t> runEnds = SplitByKind();
  if (fPlaces.size() <= kFewKinds && CanSortByVector()) {
    std::size_t first = 0;
    for (const std::size_t end : runEnds) {
      SortByVector(fMemory.values[0].get() + first, fMemory.values[1].get(), end - first);
      first = end;
    }
    MergeRuns(runEnds);
  } else {
    RadixSorter<unsigned char> sorter(fMemory.values[0].get(), fMemory.values[1].get(),
                                      fMemory.kinds[0].get(), fMemory.kinds[1].get(), fCount);
    sorter.Sort();
    if (sorter.Values() != fMemory.values[0].get()) {
      fMemory.values[0].swap(fMemory.values[1]);
      fMemory.kinds[0].swap(fMemory.kinds[1]);
    }
  }
}

template <typename Tuple>
unsigned int CaseSorter::HandOut(std::span<Tuple> tuples) const {
  std::array<double, kMostKinds + 1> weightOf;
  std::array<unsigned char, kMostKinds + 1> targetOf;
  for (std::size_t k = 0; k < fPlaces.size(); ++k) {
    weightOf[k + 1] = static_cast<double>(fPlaces[k] % kWeights);
    targetOf[k + 1] = static_cast<unsigned char>(fPlaces[k] / kWeights);
  }
  const double* const values = fMemory.values[0].get();
  const unsigned char* const kinds = fMemory.kinds[0].get();
  const bool hasOneKind = fPlaces.size() == 1;
  for (std::size_t i = 0; i < fCount; ++i) {
    const std::size_t kind = hasOneKind ? 1 : kinds[i];
    Tuple& tuple = tuples[i];
    tuple.value = values[i];
    tuple.weight = weightOf[kind];
    if constexpr (requires { tuple.target; }) tuple.target = targetOf[kind];
  }
  unsigned int distinct = fCount > 0 ? 1 : 0;
  for (std::size_t i = 1; i < fCount; ++i) distinct += values[i] != values[i - 1] ? 1U : 0U;
  return distinct;
}

unsigned int CaseSorter::Sort(std::span<BINDataTuple> tuples) {
  SortValues(false);
  return HandOut(tuples);
}

unsigned int CaseSorter::Sort(std::span<EFBINDataTuple> tuples) {
  SortValues(true);
  return HandOut(tuples);
}

}  // namespace TQBinning
