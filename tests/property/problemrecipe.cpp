#include "property/problemrecipe.h"

namespace property {
namespace {

Recipe EqualFrequencyRecipe() {
  Recipe recipe;
  recipe.supervised = false;
  recipe.target = 0;
  recipe.maxRows = 60;
  recipe.values = {Values::kFew,    Values::kSome,     Values::kQuarters, Values::kDecimals,
                   Values::kGroups, Values::kDistinct, Values::kHeavy,    Values::kPowers};
  return recipe;
}

Recipe TiesRecipe() {
  Recipe recipe;
  recipe.values.push_back(Values::kConstant);
  recipe.values.push_back(Values::kAllMissing);
  recipe.classes.push_back(Classes::kConstant);
  recipe.maxCategories = 5;
  recipe.maxCalls = 2;
  return recipe;
}

Recipe EqualEntropiesRecipe() {
  Recipe recipe;
  recipe.classes = {Classes::kMirror, Classes::kBlocks, Classes::kCyclic, Classes::kThreshold};
  recipe.values = {Values::kGroups, Values::kSome, Values::kDistinct};
  recipe.missing = {0, 0, 0, 100};
  recipe.minRows = 12;
  recipe.maxRows = 90;
  recipe.preBinned = 200;
  return recipe;
}

Recipe PreBinnedRecipe() {
  Recipe recipe;
  recipe.preBinned = 1000;
  recipe.maxRows = 120;
  recipe.values = {Values::kSome,  Values::kDistinct, Values::kGroups,
                   Values::kHeavy, Values::kQuarters, Values::kPowers};
  recipe.maxCalls = 2;
  return recipe;
}

Recipe MergedRecipe() {
  Recipe recipe;
  recipe.merged = 1000;
  recipe.minRows = 60;
  recipe.maxRows = 300;
  recipe.maxCategories = 4;
  recipe.classes = {Classes::kBlocks, Classes::kCyclic, Classes::kMirror};
  recipe.values = {Values::kSome, Values::kHeavy, Values::kDistinct};
  recipe.weights = {Weights::kNone, Weights::kWhole, Weights::kRough};
  return recipe;
}

Recipe SeveralTargetsRecipe() {
  Recipe recipe;
  recipe.target = 600;
  recipe.maxCategorical = 4;
  recipe.lists = 800;
  recipe.maxCalls = 3;
  recipe.oddCode = 3;
  recipe.declaration = 150;
  return recipe;
}

Recipe IndexListsRecipe() {
  Recipe recipe;
  recipe.target = 700;
  recipe.maxCategorical = 3;
  recipe.lists = 900;
  recipe.badEntry = 200;
  recipe.maxCalls = 3;
  return recipe;
}

Recipe WeightsRecipe() {
  Recipe recipe;
  recipe.weights = {Weights::kRough};
  recipe.userMissing = 150;
  return recipe;
}

Recipe FractionalWeightsRecipe() {
  Recipe recipe;
  recipe.weights = {Weights::kEighths};
  recipe.merged = 400;
  recipe.preBinned = 500;
  return recipe;
}

Recipe ArbitraryWeightsRecipe() {
  Recipe recipe;
  recipe.weights = {Weights::kArbitrary};
  recipe.values = {Values::kDistinct};
  recipe.maxCategorical = 0;
  recipe.lists = 0;
  recipe.merged = 400;
  recipe.preBinned = 500;
  recipe.maxRows = 80;
  return recipe;
}

Recipe HugeWeightsRecipe() {
  Recipe recipe;
  recipe.weights = {Weights::kScaled, Weights::kFarApart, Weights::kOverflowing, Weights::kOdd};
  return recipe;
}

Recipe OddValuesRecipe() {
  Recipe recipe;
  recipe.values = {Values::kOdd, Values::kOdd, Values::kNeighbours, Values::kPowers};
  recipe.preBinned = 400;
  return recipe;
}

Recipe OddCodesRecipe() {
  Recipe recipe;
  recipe.maxCategorical = 3;
  recipe.target = 850;
  recipe.oddCode = 40;
  recipe.declaration = 300;
  recipe.lists = 400;
  recipe.maxCalls = 2;
  recipe.maxCategories = 6;
  return recipe;
}

Recipe ListsRecipe() {
  Recipe recipe;
  recipe.declaration = 600;
  recipe.maxCategorical = 2;
  recipe.unset = 100;
  recipe.empty = 60;
  recipe.maxCalls = 2;
  recipe.target = 800;
  return recipe;
}

Recipe ManyRecordsRecipe() {
  Recipe recipe;
  recipe.minRows = 10001;
  recipe.maxRows = 20500;
  recipe.maxAttributes = 2;
  recipe.values = {Values::kDistinct, Values::kSome, Values::kGroups};
  recipe.preBinned = 700;
  recipe.empty = 0;
  return recipe;
}

Recipe AnyEqualFrequencyRecipe() {
  Recipe recipe = EqualFrequencyRecipe();
  recipe.values.push_back(Values::kOdd);
  recipe.values.push_back(Values::kNeighbours);
  recipe.values.push_back(Values::kConstant);
  recipe.values.push_back(Values::kAllMissing);
  recipe.target = 60;
  return recipe;
}

Recipe ExactTargetsRecipe() {
  Recipe recipe = EqualFrequencyRecipe();
  recipe.values = {Values::kGroups, Values::kGroups, Values::kHeavy, Values::kDistinct};
  recipe.missing = {0, 0, 0, 200};
  return recipe;
}

Recipe StaleTailsRecipe() {
  Recipe recipe = EqualFrequencyRecipe();
  recipe.missing = {0, 200, 500, 800, 950};
  recipe.maxAttributes = 5;
  recipe.values.push_back(Values::kAllMissing);
  recipe.maxCalls = 2;
  recipe.weights = {Weights::kNone, Weights::kWhole, Weights::kEighths};
  return recipe;
}

Recipe EqualFrequencyWeightsRecipe() {
  Recipe recipe = EqualFrequencyRecipe();
  recipe.weights = {Weights::kRough,     Weights::kEighths,  Weights::kArbitrary,
                    Weights::kScaled,    Weights::kFarApart, Weights::kOverflowing,
                    Weights::kArbitrary, Weights::kOdd};
  recipe.values.push_back(Values::kOdd);
  recipe.userMissing = 150;
  return recipe;
}

Recipe EqualFrequencyListsRecipe() {
  Recipe recipe = EqualFrequencyRecipe();
  recipe.lists = 850;
  recipe.badEntry = 200;
  recipe.maxCalls = 3;
  recipe.target = 100;
  recipe.maxCategorical = 2;
  recipe.oddCode = 5;
  recipe.declaration = 100;
  return recipe;
}

}  // namespace

Recipe RecipeOf(Kind kind) {
  switch (kind) {
    case Kind::kTies: return TiesRecipe();
    case Kind::kEqualEntropies: return EqualEntropiesRecipe();
    case Kind::kPreBinned: return PreBinnedRecipe();
    case Kind::kMerged: return MergedRecipe();
    case Kind::kSeveralTargets: return SeveralTargetsRecipe();
    case Kind::kIndexLists: return IndexListsRecipe();
    case Kind::kWeights: return WeightsRecipe();
    case Kind::kFractionalWeights: return FractionalWeightsRecipe();
    case Kind::kArbitraryWeights: return ArbitraryWeightsRecipe();
    case Kind::kHugeWeights: return HugeWeightsRecipe();
    case Kind::kOddValues: return OddValuesRecipe();
    case Kind::kOddCodes: return OddCodesRecipe();
    case Kind::kLists: return ListsRecipe();
    case Kind::kManyRecords: return ManyRecordsRecipe();
    case Kind::kEqualFrequency: return AnyEqualFrequencyRecipe();
    case Kind::kExactTargets: return ExactTargetsRecipe();
    case Kind::kStaleTails: return StaleTailsRecipe();
    case Kind::kEqualFrequencyWeights: return EqualFrequencyWeightsRecipe();
    case Kind::kEqualFrequencyLists: return EqualFrequencyListsRecipe();
  }
  return Recipe();
}

}  // namespace property
