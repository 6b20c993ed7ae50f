// Radix sort of order-preserving keys.  Doubles that are mapped to whole numbers of
// the same order can be sorted digit by digit, without a comparison: about a third of
// the time of std::sort for a million tuples.
#include "data/tuplesort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace TQBinning {

namespace {

using Key = std::uint64_t;

constexpr Key kSignBit = Key{1} << 63;
constexpr Key kNaNKey = ~Key{0};  // no number has it: it would be a NaN itself

// A whole number that orders like the value: NaN last, both zeros alike.
inline Key KeyOf(double value) {
  if (std::isnan(value)) return kNaNKey;
  const Key bits = std::bit_cast<Key>(value + 0.0);  // turns -0 into 0
  return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

inline double ValueOf(Key key) {
  if (key == kNaNKey) return std::numeric_limits<double>::quiet_NaN();
  return std::bit_cast<double>((key & kSignBit) != 0 ? key & ~kSignBit : ~key);
}

constexpr int kDigitBits = 11;  // 2048 counters fit the first-level cache
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
// So many of the highest bits that vary tell nearly all of a million values apart;
// what they leave equal is put in order by insertion.
constexpr int kLeadingBits = 3 * kDigitBits;
// Below this size comparisons are faster than counting.
constexpr std::size_t kFewTuples = 512;

struct NoPayload {};

// Keys and what travels with them, in two buffers between which the digits move them.
template <typename Payload>
class RadixSorter {
 public:
  RadixSorter(SortScratch& scratch, std::size_t count) : fCount(count) {
    for (std::size_t b = 0; b < 2; ++b) {
      fKeys[b] = scratch.keys[b].get();
      fPayloads[b] = reinterpret_cast<Payload*>(scratch.payloads[b].get());
    }
  }

  Key* Keys() { return fKeys[0]; }
  Payload* Payloads() { return fPayloads[0]; }
  Key* SpareKeys() { return fKeys[1]; }
  void* SparePayloads() { return fPayloads[1]; }

  // Stable.  `varying` has a bit set wherever two keys differ.
  void Sort(Key varying) {
    if (varying == 0) return;
    const int lowest = std::countr_zero(varying);
    const int highest = static_cast<int>(std::bit_width(varying));
    const int leading = std::max(lowest, highest - kLeadingBits);
    SortDigits(leading, highest);
    if (leading > lowest && !FinishByInsertion()) {
      // Too many keys agree in their leading bits: all digits, from the lowest on.
      SortDigits(lowest, highest);
    }
  }

 private:
  void SortDigits(int from, int to) {
    const int digits = (to - from + kDigitBits - 1) / kDigitBits;
    for (int d = 0; d < digits; ++d) SortDigit(from + d * kDigitBits);
  }

  void SortDigit(int shift) {
    std::array<std::uint32_t, kDigitValues> next{};
    const Key* const keys = fKeys[0];
    for (std::size_t i = 0; i < fCount; ++i) ++next[DigitOf(keys[i], shift)];
    std::uint32_t start = 0;
    for (std::uint32_t& count : next) start += std::exchange(count, start);
    for (std::size_t i = 0; i < fCount; ++i) {
      const std::uint32_t to = next[DigitOf(keys[i], shift)]++;
      fKeys[1][to] = keys[i];
      if constexpr (!std::is_same_v<Payload, NoPayload>) fPayloads[1][to] = fPayloads[0][i];
    }
    std::swap(fKeys[0], fKeys[1]);
    std::swap(fPayloads[0], fPayloads[1]);
  }

  static std::size_t DigitOf(Key key, int shift) { return (key >> shift) & (kDigitValues - 1); }

  // False, with the keys in some other order, when it would take more than a few
  // moves a key.
  bool FinishByInsertion() {
    std::size_t moves = 0;
    const std::size_t mostMoves = 4 * fCount;
    Key* const keys = fKeys[0];
    for (std::size_t i = 1; i < fCount; ++i) {
      if (keys[i - 1] <= keys[i]) continue;
      const Key key = keys[i];
      const Payload payload = fPayloads[0][i];
      std::size_t to = i;
      for (; to > 0 && key < keys[to - 1]; --to) {
        keys[to] = keys[to - 1];
        fPayloads[0][to] = fPayloads[0][to - 1];
      }
      keys[to] = key;
      fPayloads[0][to] = payload;
      moves += i - to;
      if (moves > mostMoves) return false;
    }
    return true;
  }

  std::size_t fCount;
  Key* fKeys[2];
  Payload* fPayloads[2];
};

// What one look at the tuples tells about the work to do.
struct Survey {
  bool isSorted = true;
  bool hasOneWeight = true;
};

template <typename Tuple>
Survey SurveyOf(std::span<const Tuple> tuples) {
  Survey survey;
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    if (!(tuples[i - 1].value <= tuples[i].value)) survey.isSorted = false;
    if (tuples[i - 1].weight != tuples[i].weight) survey.hasOneWeight = false;
    if (!survey.isSorted && !survey.hasOneWeight) break;
  }
  return survey;
}

template <typename Tuple>
Key FillKeys(std::span<const Tuple> tuples, Key* keys) {
  const Key first = KeyOf(tuples.front().value);
  Key varying = 0;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    keys[i] = KeyOf(tuples[i].value);
    varying |= keys[i] ^ first;
  }
  return varying;
}

template <typename Tuple>
void SortByComparing(std::span<Tuple> tuples) {
  std::sort(tuples.begin(), tuples.end(),
            [](const Tuple& a, const Tuple& b) { return ComesBefore(a.value, b.value); });
}

// All weights are equal: only the targets travel with the keys.
void SortWithTargets(std::span<BINDataTuple> tuples, SortScratch& scratch) {
  RadixSorter<unsigned char> sorter(scratch, tuples.size());
  const Key varying = FillKeys<BINDataTuple>(tuples, sorter.Keys());
  for (std::size_t i = 0; i < tuples.size(); ++i) sorter.Payloads()[i] = tuples[i].target;
  sorter.Sort(varying);
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    tuples[i].value = ValueOf(sorter.Keys()[i]);
    tuples[i].target = sorter.Payloads()[i];
  }
}

// All weights are equal: nothing travels with the keys.
void SortValues(std::span<EFBINDataTuple> tuples, SortScratch& scratch) {
  RadixSorter<NoPayload> sorter(scratch, tuples.size());
  sorter.Sort(FillKeys<EFBINDataTuple>(tuples, sorter.Keys()));
  for (std::size_t i = 0; i < tuples.size(); ++i) tuples[i].value = ValueOf(sorter.Keys()[i]);
}

// The position of each tuple travels with its key; the rest is fetched afterwards,
// into what the sort no longer needs.
template <typename Tuple>
void SortPositions(std::span<Tuple> tuples, SortScratch& scratch) {
  RadixSorter<std::uint32_t> sorter(scratch, tuples.size());
  const Key varying = FillKeys<Tuple>(tuples, sorter.Keys());
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    sorter.Payloads()[i] = static_cast<std::uint32_t>(i);
  }
  sorter.Sort(varying);
  const std::uint32_t* const positions = sorter.Payloads();
  Key* const weights = sorter.SpareKeys();
  auto* const targets = static_cast<unsigned char*>(sorter.SparePayloads());
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    const Tuple& source = tuples[positions[i]];
    weights[i] = std::bit_cast<Key>(source.weight);
    if constexpr (std::is_same_v<Tuple, BINDataTuple>) targets[i] = source.target;
  }
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    tuples[i].value = ValueOf(sorter.Keys()[i]);
    tuples[i].weight = std::bit_cast<double>(weights[i]);
    if constexpr (std::is_same_v<Tuple, BINDataTuple>) tuples[i].target = targets[i];
  }
}

// Counts small whole weights; false, with nothing changed, when there are others.
bool OrderByCounting(std::span<EFBINDataTuple> run) {
  constexpr std::size_t kSmallWeights = 256;
  std::array<std::size_t, kSmallWeights> counts{};
  for (const EFBINDataTuple& tuple : run) {
    const double weight = tuple.weight;
    if (!(weight >= 0.0 && weight < kSmallWeights)) return false;
    const auto whole = static_cast<std::size_t>(weight);
    if (static_cast<double>(whole) != weight) return false;
    ++counts[whole];
  }
  auto tuple = run.begin();
  for (std::size_t weight = 0; weight < kSmallWeights; ++weight) {
    for (std::size_t n = 0; n < counts[weight]; ++n)
      (tuple++)->weight = static_cast<double>(weight);
  }
  return true;
}

// Equal tuples but for their weights, put in the order of these.
void OrderByWeight(std::span<EFBINDataTuple> run) {
  constexpr std::size_t kLongRun = 64;
  if (run.size() >= kLongRun && OrderByCounting(run)) return;
  std::sort(run.begin(), run.end(), [](const EFBINDataTuple& a, const EFBINDataTuple& b) {
    return ComesBefore(a.weight, b.weight);
  });
}

void OrderRunsByWeight(std::span<EFBINDataTuple> tuples) {
  for (std::size_t first = 0; first < tuples.size();) {
    std::size_t end = first + 1;
    while (end < tuples.size() && !ComesBefore(tuples[first].value, tuples[end].value)) ++end;
    if (end - first > 1) OrderByWeight(tuples.subspan(first, end - first));
    first = end;
  }
}

}  // namespace

void SortScratch::Reserve(std::size_t count) {
  if (count <= capacity) return;
  capacity = 0;
  for (int b = 0; b < 2; ++b) {
    keys[b] = std::make_unique_for_overwrite<std::uint64_t[]>(count);
    payloads[b] = std::make_unique_for_overwrite<std::uint32_t[]>(count);
  }
  capacity = count;
}

void SortByValue(std::span<BINDataTuple> tuples, SortScratch& scratch) {
  const Survey survey = SurveyOf<BINDataTuple>(tuples);
  if (survey.isSorted) return;
  if (tuples.size() < kFewTuples) return SortByComparing(tuples);
  scratch.Reserve(tuples.size());
  if (survey.hasOneWeight) return SortWithTargets(tuples, scratch);
  SortPositions(tuples, scratch);
}

void SortByValue(std::span<EFBINDataTuple> tuples, SortScratch& scratch) {
  const Survey survey = SurveyOf<EFBINDataTuple>(tuples);
  if (!survey.isSorted) {
    if (tuples.size() < kFewTuples) {
      SortByComparing(tuples);
    } else {
      scratch.Reserve(tuples.size());
      survey.hasOneWeight ? SortValues(tuples, scratch) : SortPositions(tuples, scratch);
    }
  }
  if (!survey.hasOneWeight) OrderRunsByWeight(tuples);
}

}  // namespace TQBinning
