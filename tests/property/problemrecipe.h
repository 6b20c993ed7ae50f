#pragma once

#include <vector>

#include "property/problemgenerator.h"

// Of what a generated problem is made.
namespace property {

enum class Values {
  kFew,       // up to four integers
  kSome,      // up to twenty integers
  kQuarters,  // both signs
  kDecimals,  // tenths, not exact in binary
  kDistinct,
  kGroups,      // each value equally often, see GroupSize
  kHeavy,       // groups, and one value that outweighs them
  kPowers,      // of two, of both signs of the exponent
  kNeighbours,  // adjacent doubles, so that midpoints fall on them
  kOdd,
  kConstant,
  kAllMissing
};

enum class Weights {
  kNone,
  kWhole,        // 1 to 5
  kRough,        // whole, zero, negative, missing, fractional; rounded
  kEighths,      // used as they are
  kScaled,       // multiples of one power of two, huge or tiny
  kFarApart,     // 1 and powers of two that swallow it
  kOverflowing,  // two make infinity
  kOdd,          // NaN and infinity among whole ones
  kArbitrary
};

enum class Classes { kRandom, kThreshold, kBlocks, kCyclic, kMirror, kConstant };

struct Recipe {
  bool supervised = true;
  int minRows = 1;
  int maxRows = 40;
  int maxAttributes = 3;
  int maxCategorical = 1;  // besides the target
  int maxCategories = 3;
  int target = 950;  // chances are per mille
  std::vector<Values> values = {Values::kFew, Values::kSome, Values::kQuarters, Values::kDecimals,
                                Values::kGroups};
  std::vector<int> missing = {0, 0, 100, 300};
  std::vector<Weights> weights = {Weights::kNone, Weights::kNone, Weights::kWhole};
  std::vector<Classes> classes = {Classes::kRandom, Classes::kThreshold, Classes::kBlocks,
                                  Classes::kCyclic};
  int preBinned = 300;
  int merged = 200;
  int lists = 100;   // calls with index lists
  int badEntry = 0;  // per entry
  int maxCalls = 1;
  int oddCode = 0;      // per code
  int declaration = 0;  // chance to declare another number of categories than are used
  int userMissing = 50;
  int unset = 2;  // chance not to set the number of bins
  int empty = 5;  // chance of no record at all
};

// What problems of a kind are made of.
Recipe RecipeOf(Kind kind);

}  // namespace property
