#pragma once

#include <cstdint>
#include <vector>

#include "reference/reference.h"

// Small hard problems.  All that is random about a problem follows from its seed.
//
// Tuples of equal value have no defined order in a supervised run, so that sums of
// their weights must not depend on one: where values can be equal, weights are
// whole numbers or multiples of one power of two (their sums are exact), or so far
// apart that the smaller vanish in any order.  Arbitrary weights meet distinct
// values only.  Equal-frequency runs order ties by weight and need no such care.
//
// A list with two targets, two weights or a variable without a role breaks a
// documented precondition and is never made.
namespace property {

// What makes a problem hard.
enum class Kind {
  kTies,               // few distinct values, whole weights
  kEqualEntropies,     // mirrored and pure classes
  kPreBinned,          // more distinct values than the threshold allows
  kMerged,             // small-bin thresholds over many bins
  kSeveralTargets,     // explicit pairs, with and without a target of the list's own
  kIndexLists,         // lists with bad, repeated and ill-assorted entries
  kWeights,            // whole, zero, negative, missing and rounded weights
  kFractionalWeights,  // eighths that are used as they are
  kArbitraryWeights,   // any weights over distinct values
  kHugeWeights,        // far apart, overflowing, subnormal, infinite, NaN
  kOddValues,          // NaN, infinities, both zeros, subnormals, neighbours
  kOddCodes,           // codes out of range or beyond the declaration
  kLists,              // variable lists that are refused, or hold unusual variables
  kManyRecords,        // more than the data pass keeps in memory at once
  kEqualFrequency,
  kExactTargets,  // percentiles met exactly, heavy values spanning several
  kStaleTails,    // attributes of unequal numbers of valid cases
  kEqualFrequencyWeights,
  kEqualFrequencyLists,
  kLast = kEqualFrequencyLists
};

const char* NameOf(Kind kind);
std::vector<Kind> AllKinds();

struct GeneratedProblem {
  Kind kind;
  reference::Problem problem;
};

GeneratedProblem Generate(std::uint64_t seed);

}  // namespace property
