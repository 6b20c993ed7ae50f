#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "data/sortmemory.h"
#include "data/vectorsort.h"
#include "tqbinning/bindatatuple.h"

namespace TQBinning {

// Collects the valid cases of one attribute and hands them out as sorted tuples.  It
// relies on what most data has: no NaN, and only a few kinds of cases.  A kind is a
// target category with a small whole weight; cases of one kind differ by their values
// alone, so that plain numbers can be sorted.  For other data, SortByValue.
class CaseSorter {
 public:
  // For at most `mostCases` cases.  `memory` is borrowed.
  CaseSorter(SortMemory& memory, std::size_t mostCases);
  CaseSorter(const CaseSorter&) = delete;
  CaseSorter& operator=(const CaseSorter&) = delete;
  ~CaseSorter();

  // Takes cases in, in their order.  What it counts and compares it keeps to itself
  // until it ends, so that the loop around Add can keep it in registers.
  class Intake {
   public:
    explicit Intake(CaseSorter& sorter)
        : fSorter(sorter),
          fValue(sorter.fMemory.values[0].get()),
          fKind(sorter.fMemory.kinds[0].get()),
          fKindOf(sorter.fMemory.kindOf.data()) {}
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;
    ~Intake() {
      fSorter.fCount = static_cast<std::size_t>(fValue - fSorter.fMemory.values[0].get());
      fSorter.fIsSorted = fIsSorted;
      fSorter.fIsSuitable = fSorter.fIsSuitable && fIsSuitable;
    }

    void Add(double value, unsigned char target, double weight) {
      const double number = value + 0.0;  // no negative zero
      fIsSuitable &= number == number;
      fIsSorted &= fPrevious <= number;
      fPrevious = number;
      *fValue++ = number;
      *fKind++ = KindOf(target, weight);
    }

    // Adds cases of weight 1 without a target.  Without a branch, and without keeping each
    // number until the next one comes.
    void AddAll(std::span<const double> values) {
      if (values.empty()) return;
      Add(values.front(), 0, 1.0);
      bool isUnsuitable = false;
      bool isUnsorted = false;
      for (const double value : values.subspan(1)) {
        const double number = value + 0.0;  // no negative zero
        isUnsuitable |= number != number;
        isUnsorted |= number < fValue[-1];
        *fValue++ = number;
      }
      fKind = std::fill_n(fKind, values.size() - 1, fKind[-1]);
      fPrevious = fValue[-1];
      fIsSuitable &= !isUnsuitable;
      fIsSorted &= !isUnsorted;
    }

   private:
    unsigned char KindOf(unsigned char target, double weight) {
      const bool isSmall = weight >= 0.0 && weight < kWeights;
      const auto whole = isSmall ? static_cast<unsigned int>(static_cast<int>(weight)) : 0U;
      fIsSuitable &= static_cast<double>(whole) == weight;
      const std::size_t place = target * kWeights + whole;
      const unsigned char kind = fKindOf[place];
      return kind != 0 ? kind : fSorter.NewKind(place);
    }

    CaseSorter& fSorter;
    double* fValue;
    unsigned char* fKind;
    const unsigned char* fKindOf;
    double fPrevious = -std::numeric_limits<double>::infinity();
    bool fIsSorted = true;
    bool fIsSuitable = true;
  };

  // False for data that it cannot sort: a NaN, or too many kinds.
  bool IsSuitable() const { return fIsSuitable; }

  // Ascending by value.  Unsupervised tuples of equal value are in the order of their
  // weights; supervised ones in no defined order.  `tuples` has room for all cases.
  // Returns the number of distinct values.
  unsigned int Sort(std::span<BINDataTuple> tuples);
  unsigned int Sort(std::span<EFBINDataTuple> tuples);

  // Ascending, without tuples: for cases that all have the weight 1 and no target.  What is
  // returned stays in the memory's values[1], also while other cases are taken in, until
  // those are sorted.  `distinct` becomes the number of distinct values.
  std::span<const double> SortValues(unsigned int& distinct);

 private:
  static constexpr std::size_t kMostKinds = 255;
  static constexpr unsigned int kWeights = 256;  // weights below are small
  // Up to so many kinds, sorting each and merging is faster than the radix sort.
  static constexpr std::size_t kFewKinds = 16;
  // Cases of a range and kind, numbered in a byte.
  static constexpr std::size_t kMostParts = 256;
  // Ranges with fewer cases would be no faster.
  static constexpr std::size_t kRangeCases = 16384;

  struct KindMeanings;

  unsigned char NewKind(std::size_t place);

  std::vector<unsigned char> KindsByWeight() const;
  template <typename Put>
  bool SortByCounting(unsigned int& distinct, Put put) const;
  NumberRanges ChooseRanges(std::size_t kinds) const;
  std::vector<std::size_t> Split(const NumberRanges& ranges,
                                 const std::vector<unsigned char>& kinds);
  template <typename Tuple>
  void SortRange(double* values, std::vector<std::size_t> ends,
                 const std::vector<unsigned char>& kinds, const KindMeanings& meanings,
                 Tuple* tuples);
  template <typename Tuple>
  unsigned int SortByRanges(std::span<Tuple> tuples);
  unsigned int SortValuesByRanges();
  unsigned int SortBareValues();
  void SortByRadix();
  template <typename Tuple>
  unsigned int HandOut(std::span<Tuple> tuples) const;
  template <typename Tuple>
  unsigned int SortTuples(std::span<Tuple> tuples, bool weightOrdersTies);

  SortMemory& fMemory;
  std::size_t fCount = 0;
  bool fIsSorted = true;
  bool fIsSuitable = true;
  std::vector<std::size_t> fPlaces;  // of the kinds in the table, from kind 1 on
};

}  // namespace TQBinning
