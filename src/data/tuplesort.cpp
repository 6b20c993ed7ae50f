#include "data/tuplesort.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "data/radixsort.h"

namespace TQBinning {

namespace {

// Below this size comparisons are faster than counting.
constexpr std::size_t kFewTuples = 512;

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
void SortByComparing(std::span<Tuple> tuples) {
  std::sort(tuples.begin(), tuples.end(),
            [](const Tuple& a, const Tuple& b) { return ComesBefore(a.value, b.value); });
}

// The position of each tuple travels with its value; the rest is fetched afterwards,
// into what the sort no longer needs.
template <typename Tuple>
void SortPositions(std::span<Tuple> tuples, SortMemory& memory) {
  memory.ReserveForPositions(tuples.size());
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    memory.values[0][i] = Normalised(tuples[i].value);
    memory.positions[0][i] = static_cast<std::uint32_t>(i);
  }
  RadixSorter<std::uint32_t> sorter(memory.values[0].get(), memory.values[1].get(),
                                    memory.positions[0].get(), memory.positions[1].get(),
                                    tuples.size());
  sorter.Sort();
  const std::uint32_t* const positions = sorter.Payloads();
  double* const weights = sorter.SpareValues();
  std::uint32_t* const targets = sorter.SparePayloads();
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    const Tuple& source = tuples[positions[i]];
    weights[i] = source.weight;
    if constexpr (std::is_same_v<Tuple, BINDataTuple>) targets[i] = source.target;
  }
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    tuples[i].value = sorter.Values()[i];
    tuples[i].weight = weights[i];
    if constexpr (std::is_same_v<Tuple, BINDataTuple>) {
      tuples[i].target = static_cast<unsigned char>(targets[i]);
    }
  }
}

template <typename Tuple>
void Sort(std::span<Tuple> tuples, SortMemory& memory) {
  tuples.size() < kFewTuples ? SortByComparing(tuples) : SortPositions(tuples, memory);
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

void SortByValue(std::span<BINDataTuple> tuples, SortMemory& memory) {
  if (!SurveyOf<BINDataTuple>(tuples).isSorted) Sort(tuples, memory);
}

void SortByValue(std::span<EFBINDataTuple> tuples, SortMemory& memory) {
  const Survey survey = SurveyOf<EFBINDataTuple>(tuples);
  if (!survey.isSorted) Sort(tuples, memory);
  if (!survey.hasOneWeight) OrderRunsByWeight(tuples);
}

}  // namespace TQBinning
