#include "tqbinning/binvarlist.h"

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binusermissing.h"
#include "tqcommon/missingvalue.h"

namespace {

using metadata::Give;
using metadata::NotingNumericMissing;
using metadata::NumericMissing;
using metadata::OccurInOrder;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using metadata::StringMissing;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kUndefined = IBINVariable::kUndefinedRole;
constexpr auto kAttribute = IBINVariable::kAttribute;
constexpr auto kTarget = IBINVariable::kTarget;
constexpr auto kWeightRole = IBINVariable::kFrequencyWeight;
constexpr auto kUnknown = IBINVariable::kUnknownLevel;
constexpr auto kNumeric = IBINVariable::kNumericCategorical;
constexpr auto kString = IBINVariable::kStringCategorical;
constexpr auto kTruncate = IBINVariable::kTruncate;
constexpr auto kRound = IBINVariable::kRoundToClosest;
constexpr int kUntouched = 12345;
constexpr int kOutOfRange[] = {-1, 4, 5, std::numeric_limits<int>::min(),
                               std::numeric_limits<int>::max()};  // for a list of four

using Doubles = std::vector<double>;
using Names = std::vector<std::string>;

int AddCont(BINVarList& list, const std::string& name, IBINVariable::VariableRole role = kAttribute) {
  return list.AddContVar(name, "label of " + name, role);
}
int AddNumeric(BINVarList& list, const std::string& name,
               IBINVariable::VariableRole role = kTarget, const Doubles& values = {0.0, 1.0}) {
  return list.AddCatVar(name, "label of " + name, values, role);
}
int AddString(BINVarList& list, const std::string& name,
              IBINVariable::VariableRole role = kTarget, const Names& values = {"no", "yes"}) {
  return list.AddCatVar(name, "label of " + name, values, role);
}
int AddWeight(BINVarList& list, const std::string& name) {
  return list.AddWeightVar(name, "label of " + name, kRound);
}

enum Index { kAge = 0, kGrade = 1, kTown = 2, kWeight = 3 };

// One variable of each kind; the target is in the middle.
BINVarList FourVariables() {
  BINVarList list;
  EXPECT_EQ(kAge, AddCont(list, "age"));
  EXPECT_EQ(kGrade, AddNumeric(list, "grade"));
  EXPECT_EQ(kTown, AddString(list, "town", kAttribute));
  EXPECT_EQ(kWeight, AddWeight(list, "w"));
  return list;
}

// Continuous attributes of these names.
BINVarList Attributes(const Names& names) {
  BINVarList list;
  for (const std::string& name : names) AddCont(list, name);
  return list;
}

Names NamesOf(const BINVarList& list) {
  Names names;
  for (int i = 0; i < list.Size(); ++i) names.push_back(list.GetVarAt(i)->GetVariableName());
  return names;
}

BINCatNumEncoder& NumericEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINCatNumEncoder&>(*list.GetEncoderAt(index));
}
BINStringEncoder& StringEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINStringEncoder&>(*list.GetEncoderAt(index));
}
BINRoundEncoder& RoundEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINRoundEncoder&>(*list.GetEncoderAt(index));
}

// The definition of a variable that has a numeric one.
const BINNumericUserMissing& NumericMissingAt(const BINVarList& list, int index) {
  return dynamic_cast<const BINNumericUserMissing&>(*list.GetVarAt(index)->GetUserMissingInfo());
}
const BINStringUserMissing& StringMissingAt(const BINVarList& list, int index) {
  return dynamic_cast<const BINStringUserMissing&>(*list.GetVarAt(index)->GetUserMissingInfo());
}
bool HasMissingAt(const BINVarList& list, int index) {
  return list.GetVarAt(index)->GetUserMissingInfo() != nullptr;
}

// The counters, to see that a refusal or a removal left the right ones.
struct Counters {
  int size, continuous, categorical, target, weight;
  bool operator==(const Counters&) const = default;
};
Counters CountersOf(const BINVarList& list) {
  return {list.Size(), list.GetNumContVar(), list.GetNumCatVar(), list.GetTargetIndex(),
          list.GetWeightIndex()};
}
void PrintTo(const Counters& c, std::ostream* os) {
  *os << c.size << " variables, " << c.continuous << " continuous, " << c.categorical
      << " categorical, target " << c.target << ", weight " << c.weight;
}

// What the validity test says and hands out.
struct Validity {
  bool valid;
  std::vector<int> oneCategory;
  std::vector<int> empty;
};
Validity ValidityOf(const BINVarList& list) {
  Validity validity{false, {77}, {78, 79}};  // stale contents, to be cleared
  validity.valid = list.IsValidList(validity.oneCategory, validity.empty);
  return validity;
}

// Where the second list differs from the first; kUntouched when they can be merged.
int FirstDifference(const BINVarList& list, const BINVarList& other) {
  int index = kUntouched;
  const bool mergeable = list.CanMergeWith(other, index);
  EXPECT_EQ(mergeable, index == kUntouched);
  return index;
}

// Copied by construction, and assigned over a list that held something else.
std::vector<BINVarList> CopiesOfList(const BINVarList& list) {
  std::vector<BINVarList> copies;
  copies.reserve(2);
  copies.push_back(list);
  copies.push_back(Attributes({"x", "y", "z", "u", "v"}));
  AddWeight(copies.back(), "w");
  copies.back() = list;
  return copies;
}

TEST(BINVarList, ANewListIsEmpty) {
  const BINVarList list;
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
  EXPECT_EQ(0, list.GetNumAttributeVars());
  EXPECT_EQ(0, list.GetNTargetCats());
  EXPECT_EQ(-1, list.FindVariable(""));
  EXPECT_EQ(nullptr, list.GetVarAt(0));
}

TEST(BINVarList, EveryAddReturnsTheNextIndexAndCounts) {
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(FourVariables()));
  EXPECT_THAT(NamesOf(FourVariables()), ElementsAre("age", "grade", "town", "w"));
}

TEST(BINVarList, VariablesAreOfTheirKindWithTheirLabels) {
  const BINVarList list = FourVariables();
  EXPECT_EQ(IBINVariable::kContinuous, list.GetVarAt(kAge)->GetMeasureLevel());
  EXPECT_EQ(kNumeric, list.GetVarAt(kGrade)->GetMeasureLevel());
  EXPECT_EQ(kString, list.GetVarAt(kTown)->GetMeasureLevel());
  EXPECT_EQ(IBINVariable::kWeightLevel, list.GetVarAt(kWeight)->GetMeasureLevel());
  EXPECT_EQ("label of age", list.GetVarAt(kAge)->GetVariableLabel());
  EXPECT_EQ("label of grade", list.GetVarAt(kGrade)->GetVariableLabel());
  EXPECT_EQ("label of town", list.GetVarAt(kTown)->GetVariableLabel());
  EXPECT_EQ("label of w", list.GetVarAt(kWeight)->GetVariableLabel());
}

TEST(BINVarList, RolesAreReadByIndex) {
  const BINVarList list = FourVariables();
  EXPECT_EQ(kAttribute, list.GetVariableRole(kAge));
  EXPECT_EQ(kTarget, list.GetVariableRole(kGrade));
  EXPECT_EQ(kAttribute, list.GetVariableRole(kTown));
  EXPECT_EQ(kWeightRole, list.GetVariableRole(kWeight));
}

TEST(BINVarList, EncodersAreThoseOfTheVariables) {
  BINVarList list = FourVariables();
  const BINVarList& fixed = list;
  EXPECT_EQ(nullptr, list.GetEncoderAt(kAge));
  EXPECT_EQ(nullptr, fixed.GetEncoderAt(kAge));
  for (const int i : {kGrade, kTown, kWeight}) {
    ASSERT_NE(nullptr, list.GetEncoderAt(i));
    EXPECT_EQ(list.GetVarAt(i)->GetEncoder(), list.GetEncoderAt(i));
    EXPECT_EQ(list.GetEncoderAt(i), fixed.GetEncoderAt(i));
    EXPECT_EQ(list.GetVarAt(i), fixed.GetVarAt(i));
  }
}

TEST(BINVarList, OutOfRangeIndicesGiveNothingAndFalse) {
  BINVarList list = FourVariables();
  const BINVarList& fixed = list;
  for (const int index : kOutOfRange) {
    SCOPED_TRACE(index);
    EXPECT_EQ(nullptr, list.GetVarAt(index));
    EXPECT_EQ(nullptr, fixed.GetVarAt(index));
    EXPECT_EQ(nullptr, list.GetEncoderAt(index));
    EXPECT_EQ(nullptr, fixed.GetEncoderAt(index));
    EXPECT_EQ(kUndefined, list.GetVariableRole(index));
    EXPECT_FALSE(list.SetVariableRole(index, kTarget));
    EXPECT_FALSE(list.SetVariableRole(index, kAttribute));
    EXPECT_FALSE(list.RemoveVar(index));
    EXPECT_FALSE(list.SetMissingInterval(index, 0.0, 1.0));
    EXPECT_FALSE(list.AddDiscreteUserMissing(index, 9.0, ""));
    EXPECT_FALSE(list.AddDiscreteUserMissing(index, "N/A", ""));
  }
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

TEST(BINVarList, AContinuousTargetIsRefused) {
  BINVarList list;
  EXPECT_EQ(-1, list.AddContVar("x", "", kTarget));
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
}

TEST(BINVarList, AContinuousVariableMayHaveAnyOtherRole) {
  BINVarList list;
  EXPECT_EQ(0, list.AddContVar("x", "", kUndefined));
  EXPECT_EQ(1, list.AddContVar("y", "", kWeightRole));
  EXPECT_EQ(2, list.AddContVar("z", "", static_cast<IBINVariable::VariableRole>(9)));
  EXPECT_EQ((Counters{3, 3, 0, -1, -1}), CountersOf(list));  // the role makes no weight
}

TEST(BINVarList, AnEmptyNameIsRefused) {
  BINVarList list;
  EXPECT_EQ(-1, list.AddContVar("", "", kAttribute));
  EXPECT_EQ(-1, list.AddCatVar("", "", 3, kNumeric, kTarget));
  EXPECT_EQ(-1, list.AddCatVar("", "", Doubles{0.0, 1.0}, kTarget));
  EXPECT_EQ(-1, list.AddCatVar("", "", Names{"a", "b"}, kTarget));
  EXPECT_EQ(-1, list.AddCatVar("", "", Doubles{0.0, 1.0}, Names{"a", "b"}, kTarget));
  EXPECT_EQ(-1, list.AddCatVar("", "", Names{"a", "b"}, Names{"a", "b"}, kTarget));
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
}

TEST(BINVarList, ANameThatIsInTheListIsRefused) {
  BINVarList list = FourVariables();
  for (const char* name : {"age", "grade", "town", "w"}) {
    EXPECT_EQ(-1, list.AddContVar(name, "", kAttribute));
    EXPECT_EQ(-1, list.AddCatVar(name, "", 3, kNumeric, kTarget));
    EXPECT_EQ(-1, list.AddCatVar(name, "", Doubles{0.0, 1.0}, kTarget));
    EXPECT_EQ(-1, list.AddCatVar(name, "", Names{"a", "b"}, kTarget));
    EXPECT_EQ(-1, list.AddCatVar(name, "", Doubles{0.0, 1.0}, Names{"a", "b"}, kTarget));
    EXPECT_EQ(-1, list.AddCatVar(name, "", Names{"a", "b"}, Names{"a", "b"}, kTarget));
  }
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

TEST(BINVarList, NamesAreCaseSensitive) {
  BINVarList list = Attributes({"age", "Age", "age "});
  EXPECT_EQ(3, list.Size());
  EXPECT_EQ(0, list.FindVariable("age"));
  EXPECT_EQ(1, list.FindVariable("Age"));
  EXPECT_EQ(2, list.FindVariable("age "));
  EXPECT_EQ(-1, list.FindVariable("AGE"));
}

TEST(BINVarList, ADeclaredCategoricalVariableHasCountLevelAndRole) {
  BINVarList list;
  EXPECT_EQ(0, list.AddCatVar("x", "label", 3, kNumeric, kAttribute));
  EXPECT_EQ(3, list.GetVarAt(0)->GetNumberOfCategories());
  EXPECT_EQ(kNumeric, list.GetVarAt(0)->GetMeasureLevel());
  EXPECT_EQ(kAttribute, list.GetVariableRole(0));
  EXPECT_EQ(0, list.GetEncoderAt(0)->GetNumberOfCategories());
  EXPECT_EQ((Counters{1, 0, 1, -1, -1}), CountersOf(list));
}

TEST(BINVarList, NeitherCountNorLevelOfADeclaredCategoricalVariableIsTested) {
  BINVarList list;
  EXPECT_EQ(0, list.AddCatVar("none", "", 0, kString, kAttribute));
  EXPECT_EQ(1, list.AddCatVar("negative", "", -3, kNumeric, kAttribute));
  EXPECT_EQ(2, list.AddCatVar("level 1", "", 2, IBINVariable::kContinuous, kAttribute));
  EXPECT_EQ(3, list.AddCatVar("level 0", "", 2, kUnknown, kAttribute));
  EXPECT_EQ(-3, list.GetVarAt(1)->GetNumberOfCategories());
  EXPECT_EQ(3, list.GetEncoderAt(2)->GetEncoderType());
  EXPECT_EQ(3, list.GetEncoderAt(3)->GetEncoderType());
  EXPECT_EQ(4, list.GetNumCatVar());
  EXPECT_EQ(0, list.GetNumContVar());
}

TEST(BINVarList, FewerThanTwoValuesAreRefused) {
  BINVarList list;
  for (const Doubles& values : {Doubles{}, Doubles{1.0}}) {
    EXPECT_EQ(-1, list.AddCatVar("x", "", values, kTarget));
    EXPECT_EQ(-1, list.AddCatVar("x", "", values, Names{"a", "b"}, kTarget));
  }
  for (const Names& values : {Names{}, Names{"a"}}) {
    EXPECT_EQ(-1, list.AddCatVar("x", "", values, kTarget));
    EXPECT_EQ(-1, list.AddCatVar("x", "", values, Names{"a", "b"}, kTarget));
  }
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
}

TEST(BINVarList, ValuesAreEncodedInOrderAndTheirNumberIsTheDeclaredCount) {
  BINVarList list;
  ASSERT_EQ(0, list.AddCatVar("x", "", Doubles{2.0, 1.0, 2.0}, kTarget));
  EXPECT_EQ(kNumeric, list.GetVarAt(0)->GetMeasureLevel());
  EXPECT_EQ(0.0, NumericEncoderAt(list, 0).EncodeConst(2.0));
  EXPECT_EQ(1.0, NumericEncoderAt(list, 0).EncodeConst(1.0));
  EXPECT_EQ(2, list.GetEncoderAt(0)->GetNumberOfCategories());
  EXPECT_EQ(3, list.GetVarAt(0)->GetNumberOfCategories());
  EXPECT_EQ(3, list.UpdateNumbersOfCategories());
  EXPECT_EQ(3, list.GetVarAt(0)->GetNumberOfCategories());
}

TEST(BINVarList, StringValuesAreEncodedInOrder) {
  BINVarList list;
  ASSERT_EQ(0, list.AddCatVar("x", "", Names{"b", "", "a", "b"}, kAttribute));
  EXPECT_EQ(kString, list.GetVarAt(0)->GetMeasureLevel());
  EXPECT_EQ(0.0, StringEncoderAt(list, 0).EncodeConst("b"));
  EXPECT_EQ(1.0, StringEncoderAt(list, 0).EncodeConst(""));
  EXPECT_EQ(2.0, StringEncoderAt(list, 0).EncodeConst("a"));
  EXPECT_EQ(4, list.GetVarAt(0)->GetNumberOfCategories());
}

// The number of elements counts, not the number of different ones.
TEST(BINVarList, TwoEqualValuesAreAccepted) {
  BINVarList list;
  EXPECT_EQ(0, list.AddCatVar("x", "", Doubles{1.0, 1.0}, kTarget));
  EXPECT_EQ(2, list.GetNTargetCats());
  EXPECT_EQ(1, list.GetEncoderAt(0)->GetNumberOfCategories());
}

TEST(BINVarList, TheSystemMissingValueAmongTheValuesGetsNoCode) {
  BINVarList list;
  ASSERT_EQ(0, list.AddCatVar("x", "", Doubles{TQMV::gMissingValue, 5.0}, kTarget));
  EXPECT_EQ(0.0, NumericEncoderAt(list, 0).EncodeConst(5.0));
  EXPECT_EQ(1, list.GetEncoderAt(0)->GetNumberOfCategories());
  EXPECT_EQ(2, list.GetVarAt(0)->GetNumberOfCategories());
}

TEST(BINVarList, ValueLabelsAreHandedToTheEncoder) {
  BINVarList list;
  ASSERT_EQ(0, list.AddCatVar("x", "", Doubles{2.0, 1.0}, Names{"two", "one"}, kAttribute));
  ASSERT_EQ(1, list.AddCatVar("y", "", Names{"b", "a"}, Names{"B", "A", "spare"}, kTarget));
  EXPECT_THAT(*list.GetEncoderAt(0)->GetValueLabels(), ElementsAre("two", "one"));
  EXPECT_THAT(*list.GetEncoderAt(1)->GetValueLabels(), ElementsAre("B", "A", "spare"));
  EXPECT_EQ(0.0, NumericEncoderAt(list, 0).EncodeConst(2.0));
  EXPECT_EQ(0.0, StringEncoderAt(list, 1).EncodeConst("b"));
  EXPECT_EQ((Counters{2, 0, 2, 1, -1}), CountersOf(list));
}

TEST(BINVarList, EveryFormOfAddCatVarSetsTheTarget) {
  BINVarList list;
  EXPECT_EQ(0, list.AddCatVar("a", "", 2, kString, kTarget));
  EXPECT_EQ(0, list.GetTargetIndex());
  EXPECT_EQ(1, list.AddCatVar("b", "", Doubles{0.0, 1.0}, kTarget));
  EXPECT_EQ(1, list.GetTargetIndex());
  EXPECT_EQ(2, list.AddCatVar("c", "", Names{"0", "1"}, kTarget));
  EXPECT_EQ(2, list.GetTargetIndex());
  EXPECT_EQ(3, list.AddCatVar("d", "", Doubles{0.0, 1.0}, Names{"x"}, kTarget));
  EXPECT_EQ(3, list.GetTargetIndex());
  EXPECT_EQ(4, list.AddCatVar("e", "", Names{"0", "1"}, Names{"x"}, kTarget));
  EXPECT_EQ(4, list.GetTargetIndex());
  EXPECT_EQ(5, list.GetNumCatVar());
}

TEST(BINVarList, ALaterTargetReplacesTheIndexAndTheEarlierKeepsItsRole) {
  BINVarList list;
  AddNumeric(list, "first", kTarget, {1.0, 2.0, 3.0});
  AddNumeric(list, "second", kTarget, {1.0, 2.0});
  EXPECT_EQ(1, list.GetTargetIndex());
  EXPECT_EQ(kTarget, list.GetVariableRole(0));
  EXPECT_EQ(3, list.GetNTargetCats());  // that of the first in the role
}

TEST(BINVarList, ACategoricalVariableInAnotherRoleIsNoTarget) {
  BINVarList list;
  AddNumeric(list, "a", kAttribute);
  AddNumeric(list, "b", kUndefined);
  AddNumeric(list, "c", kWeightRole);
  EXPECT_EQ((Counters{3, 0, 3, -1, -1}), CountersOf(list));
}

TEST(BINVarList, ASecondWeightIsRefused) {
  BINVarList list;
  EXPECT_EQ(0, AddWeight(list, "w"));
  EXPECT_EQ(-1, AddWeight(list, "v"));
  EXPECT_EQ((Counters{1, 0, 0, -1, 0}), CountersOf(list));
}

TEST(BINVarList, AWeightMayHaveAnEmptyName) {
  BINVarList list = Attributes({"x"});
  EXPECT_EQ(1, list.AddWeightVar("", "", kRound));
  EXPECT_EQ(1, list.FindVariable(""));
  EXPECT_EQ((Counters{2, 1, 0, -1, 1}), CountersOf(list));
}

TEST(BINVarList, AWeightMayRepeatANameAndTheFirstIsFound) {
  BINVarList list = Attributes({"x", "y"});
  EXPECT_EQ(2, AddWeight(list, "y"));
  EXPECT_EQ(1, list.FindVariable("y"));
  EXPECT_THAT(NamesOf(list), ElementsAre("x", "y", "y"));
}

TEST(BINVarList, AWeightIsBuiltWithItsOption) {
  BINVarList truncating;
  truncating.AddWeightVar("w", "", kTruncate);
  EXPECT_EQ(2.0, RoundEncoderAt(truncating, 0).Encode(2.9));
  BINVarList rounding;
  rounding.AddWeightVar("w", "", kRound);
  EXPECT_EQ(3.0, RoundEncoderAt(rounding, 0).Encode(2.9));
}

TEST(BINVarList, AWeightCanBeAddedAgainAfterItsRemoval) {
  BINVarList list;
  AddWeight(list, "w");
  EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ(0, AddWeight(list, "w"));
}

TEST(BINVarList, AttributesAreCountedByRole) {
  BINVarList list = FourVariables();
  EXPECT_EQ(2, list.GetNumAttributeVars());
  EXPECT_TRUE(list.SetVariableRole(kGrade, kAttribute));
  EXPECT_EQ(3, list.GetNumAttributeVars());
  EXPECT_TRUE(list.SetVariableRole(kAge, kUndefined));
  EXPECT_EQ(2, list.GetNumAttributeVars());
}

TEST(BINVarList, TheTargetsCategoriesAreThoseDeclared) {
  BINVarList list = Attributes({"x"});
  EXPECT_EQ(0, list.GetNTargetCats());
  list.AddCatVar("y", "", 6, kNumeric, kTarget);
  EXPECT_EQ(6, list.GetNTargetCats());
  BINVarList continuous = Attributes({"x"});
  EXPECT_TRUE(continuous.SetVariableRole(0, kTarget));
  EXPECT_EQ(0, continuous.GetNTargetCats());
}

TEST(BINVarList, UpdatingSumsTheNumbersOfAllVariables) {
  BINVarList list = FourVariables();
  EXPECT_EQ(4, list.UpdateNumbersOfCategories());  // 0 + 2 + 2 + 0
  NumericEncoderAt(list, kGrade).Encode(7.0);
  EXPECT_EQ(2, list.GetNTargetCats());
  EXPECT_EQ(5, list.UpdateNumbersOfCategories());
  EXPECT_EQ(3, list.GetNTargetCats());
  EXPECT_EQ(0, BINVarList().UpdateNumbersOfCategories());
}

TEST(BINVarList, RemovingACategoricalVariableClosesTheGap) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.RemoveVar(kTown));
  EXPECT_THAT(NamesOf(list), ElementsAre("age", "grade", "w"));
  EXPECT_EQ((Counters{3, 1, 1, kGrade, 2}), CountersOf(list));
}

TEST(BINVarList, RemovingTheVariableBeforeTheTargetMovesTheTargetIndexDown) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.RemoveVar(kAge));
  EXPECT_THAT(NamesOf(list), ElementsAre("grade", "town", "w"));
  EXPECT_EQ((Counters{3, 0, 2, 0, 2}), CountersOf(list));
}

TEST(BINVarList, RemovingTheTargetLeavesTheListWithoutOne) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.RemoveVar(kGrade));
  EXPECT_EQ((Counters{3, 1, 1, -1, 2}), CountersOf(list));
}

TEST(BINVarList, RemovingTheWeightLeavesTheListWithoutOneAndTheCountersAlone) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.RemoveVar(kWeight));
  EXPECT_EQ((Counters{3, 1, 2, kGrade, -1}), CountersOf(list));
}

TEST(BINVarList, RemovingAVariableBehindTargetAndWeightMovesNeither) {
  BINVarList list = FourVariables();
  EXPECT_EQ(4, AddCont(list, "last"));
  EXPECT_TRUE(list.RemoveVar(4));
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

TEST(BINVarList, RemovingAWeightBeforeTheTargetMovesTheTargetIndexDown) {
  BINVarList list;
  AddWeight(list, "w");
  AddNumeric(list, "y");
  EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ((Counters{1, 0, 1, 0, -1}), CountersOf(list));
}

TEST(BINVarList, RemovingAnyVariableInTheTargetRoleForgetsTheTarget) {
  BINVarList list;
  AddNumeric(list, "first");
  AddNumeric(list, "second");
  ASSERT_EQ(1, list.GetTargetIndex());
  EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ((Counters{1, 0, 1, -1, -1}), CountersOf(list));
  EXPECT_EQ(kTarget, list.GetVariableRole(0));  // yet no longer recorded
}

// The weight's own role never becomes target, and it is the role that decides.
TEST(BINVarList, RemovingAWeightThatIsRecordedAsTargetKeepsTheRecord) {
  BINVarList list;
  AddWeight(list, "w");
  AddCont(list, "x");
  ASSERT_TRUE(list.SetVariableRole(0, kTarget));
  EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ((Counters{1, 1, 0, 0, -1}), CountersOf(list));
}

// Only measure level 1 counts as continuous, whatever the class.
TEST(BINVarList, RemovingACategoricalVariableOfTheContinuousLevelCountsAsContinuous) {
  BINVarList list = Attributes({"x"});
  list.AddCatVar("y", "", 2, IBINVariable::kContinuous, kAttribute);
  EXPECT_EQ((Counters{2, 1, 1, -1, -1}), CountersOf(list));
  EXPECT_TRUE(list.RemoveVar(1));
  EXPECT_EQ((Counters{1, 0, 1, -1, -1}), CountersOf(list));
}

TEST(BINVarList, RemovingDeletesTheVariable) {
  int deletions = 0;
  BINVarList list = FourVariables();
  ASSERT_TRUE(Give(*list.GetVarAt(kAge), std::make_unique<NotingNumericMissing>(deletions)));
  EXPECT_TRUE(list.RemoveVar(kAge));
  EXPECT_EQ(1, deletions);
}

TEST(BINVarList, RemovingByNameRemovesTheFirstOfThatName) {
  BINVarList list = FourVariables();
  AddCont(list, "last");
  EXPECT_TRUE(list.RemoveVar("grade"));
  EXPECT_FALSE(list.RemoveVar("grade"));
  EXPECT_FALSE(list.RemoveVar("GRADE"));
  EXPECT_FALSE(list.RemoveVar(""));
  EXPECT_THAT(NamesOf(list), ElementsAre("age", "town", "w", "last"));

  BINVarList repeated = Attributes({"x"});
  AddWeight(repeated, "x");
  EXPECT_TRUE(repeated.RemoveVar("x"));
  EXPECT_EQ((Counters{1, 0, 0, -1, 0}), CountersOf(repeated));
}

TEST(BINVarList, ARemovedNameIsFreeAgain) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.RemoveVar("age"));
  EXPECT_EQ(3, AddCont(list, "age"));
}

TEST(BINVarList, AllVariablesCanBeRemoved) {
  BINVarList list = FourVariables();
  while (list.Size() > 0) EXPECT_TRUE(list.RemoveVar(0));
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
  EXPECT_FALSE(list.RemoveVar(0));
}

TEST(BINVarList, SettingAFirstTargetRecordsIt) {
  BINVarList list = Attributes({"x", "y"});
  EXPECT_TRUE(list.SetVariableRole(1, kTarget));  // the measure level is not tested
  EXPECT_EQ(1, list.GetTargetIndex());
  EXPECT_EQ(kTarget, list.GetVariableRole(1));
}

TEST(BINVarList, SettingASecondTargetKeepsTheRecordedOne) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetVariableRole(kAge, kTarget));
  EXPECT_EQ(kGrade, list.GetTargetIndex());
  EXPECT_EQ(kTarget, list.GetVariableRole(kAge));
  EXPECT_EQ(kTarget, list.GetVariableRole(kGrade));
  EXPECT_EQ(0, list.GetNTargetCats());  // the first in the role is continuous now
}

TEST(BINVarList, SettingTheTargetAgainChangesNothing) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetVariableRole(kGrade, kTarget));
  EXPECT_EQ(kGrade, list.GetTargetIndex());
  EXPECT_EQ(kTarget, list.GetVariableRole(kGrade));
}

TEST(BINVarList, TakingTheTargetsRoleAwayForgetsTheTarget) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetVariableRole(kGrade, kUndefined));
  EXPECT_EQ(-1, list.GetTargetIndex());
  EXPECT_EQ(kUndefined, list.GetVariableRole(kGrade));
}

TEST(BINVarList, TakingTheRoleFromAnyTargetForgetsTheRecordedOne) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetVariableRole(kTown, kTarget));
  EXPECT_TRUE(list.SetVariableRole(kTown, kAttribute));
  EXPECT_EQ(-1, list.GetTargetIndex());
  EXPECT_EQ(kTarget, list.GetVariableRole(kGrade));
}

TEST(BINVarList, ChangingTheRoleOfAVariableThatIsNoTargetKeepsTheTarget) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetVariableRole(kAge, kUndefined));
  EXPECT_TRUE(list.SetVariableRole(kTown, kWeightRole));
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

TEST(BINVarList, AWeightIsRecordedAsTargetAndKeepsItsRole) {
  BINVarList list = Attributes({"x"});
  AddWeight(list, "w");
  EXPECT_TRUE(list.SetVariableRole(1, kTarget));
  EXPECT_EQ((Counters{2, 1, 0, 1, 1}), CountersOf(list));
  EXPECT_EQ(kWeightRole, list.GetVariableRole(1));
  EXPECT_EQ(0, list.GetNTargetCats());
}

// Its current role is not target, so there is nothing to take away.
TEST(BINVarList, AWeightRecordedAsTargetStaysRecorded) {
  BINVarList list = Attributes({"x"});
  AddWeight(list, "w");
  ASSERT_TRUE(list.SetVariableRole(1, kTarget));
  EXPECT_TRUE(list.SetVariableRole(1, kAttribute));
  EXPECT_EQ(1, list.GetTargetIndex());
}

TEST(BINVarList, AMissingIntervalMakesADefinition) {
  BINVarList list = FourVariables();
  for (const int i : {kAge, kGrade, kWeight}) {
    SCOPED_TRACE(i);
    EXPECT_TRUE(list.SetMissingInterval(i, -5.0, -1.0));
    ASSERT_TRUE(HasMissingAt(list, i));
    ASSERT_TRUE(NumericMissingAt(list, i).HasInterval());
    EXPECT_TRUE(*NumericMissingAt(list, i).GetInterval() == BINNumericInterval(-5.0, -1.0));
    EXPECT_EQ(0, NumericMissingAt(list, i).GetNDiscreteValues());
  }
}

TEST(BINVarList, ASecondMissingIntervalIsRefusedAndTheFirstKept) {
  BINVarList list = FourVariables();
  for (const int i : {kAge, kGrade, kWeight}) {
    SCOPED_TRACE(i);
    ASSERT_TRUE(list.SetMissingInterval(i, -5.0, -1.0));
    EXPECT_FALSE(list.SetMissingInterval(i, 1.0, 2.0));
    EXPECT_TRUE(*NumericMissingAt(list, i).GetInterval() == BINNumericInterval(-5.0, -1.0));
  }
}

TEST(BINVarList, AMissingIntervalOfAStringVariableIsRefused) {
  BINVarList list = FourVariables();
  EXPECT_FALSE(list.SetMissingInterval(kTown, 1.0, 2.0));
  EXPECT_FALSE(HasMissingAt(list, kTown));
}

TEST(BINVarList, AMissingIntervalJoinsTheListedValues) {
  BINVarList list = FourVariables();
  ASSERT_TRUE(list.AddDiscreteUserMissing(kAge, 9.0, "nine"));
  EXPECT_TRUE(list.SetMissingInterval(kAge, -5.0, -1.0));
  EXPECT_THAT(NumericMissingAt(list, kAge).GetDiscreteValues(), ElementsAre(9.0));
  EXPECT_TRUE(NumericMissingAt(list, kAge).Contains(-3.0));
}

TEST(BINVarList, AnEmptyMissingIntervalIsAnIntervalAllTheSame) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.SetMissingInterval(kAge, 5.0, 1.0));
  EXPECT_TRUE(NumericMissingAt(list, kAge).GetInterval()->IsEmpty());
  EXPECT_FALSE(list.SetMissingInterval(kAge, 1.0, 5.0));
}

TEST(BINVarList, NumericValuesAreAddedToOneDefinition) {
  BINVarList list = FourVariables();
  for (const int i : {kAge, kGrade, kWeight}) {
    SCOPED_TRACE(i);
    EXPECT_TRUE(list.AddDiscreteUserMissing(i, 99.0, "no answer"));
    EXPECT_TRUE(list.AddDiscreteUserMissing(i, 9.0, "unknown"));
    EXPECT_TRUE(list.AddDiscreteUserMissing(i, 9.0, "again"));
    EXPECT_THAT(NumericMissingAt(list, i).GetDiscreteValues(), ElementsAre(99.0, 9.0, 9.0));
    EXPECT_THAT(NumericMissingAt(list, i).GetValueLabels(),
                ElementsAre("no answer", "unknown", "again"));
    EXPECT_FALSE(NumericMissingAt(list, i).HasInterval());
  }
}

TEST(BINVarList, ANumericValueJoinsTheInterval) {
  BINVarList list = FourVariables();
  ASSERT_TRUE(list.SetMissingInterval(kAge, -5.0, -1.0));
  EXPECT_TRUE(list.AddDiscreteUserMissing(kAge, 9.0, ""));
  EXPECT_TRUE(NumericMissingAt(list, kAge).HasInterval());
  EXPECT_TRUE(NumericMissingAt(list, kAge).Contains(9.0));
}

TEST(BINVarList, StringValuesAreAddedToOneDefinition) {
  BINVarList list = FourVariables();
  EXPECT_TRUE(list.AddDiscreteUserMissing(kTown, "N/A", "not available"));
  EXPECT_TRUE(list.AddDiscreteUserMissing(kTown, "", "left empty"));
  EXPECT_THAT(StringMissingAt(list, kTown).GetDiscreteValues(), ElementsAre("N/A", ""));
  EXPECT_THAT(StringMissingAt(list, kTown).GetValueLabels(),
              ElementsAre("not available", "left empty"));
}

TEST(BINVarList, AStringValueOfANumericVariableIsRefused) {
  BINVarList list = FourVariables();
  for (const int i : {kAge, kGrade, kWeight}) {
    EXPECT_FALSE(list.AddDiscreteUserMissing(i, "9", "nine"));
    EXPECT_FALSE(HasMissingAt(list, i));
  }
}

TEST(BINVarList, ANumericValueOfAStringVariableIsRefused) {
  BINVarList list = FourVariables();
  EXPECT_FALSE(list.AddDiscreteUserMissing(kTown, 9.0, "nine"));
  EXPECT_FALSE(HasMissingAt(list, kTown));
}

TEST(BINVarList, DeclaredMissingValuesReachTheEncoders) {
  BINVarList list = FourVariables();
  ASSERT_TRUE(list.AddDiscreteUserMissing(kGrade, 1.0, ""));
  ASSERT_TRUE(list.AddDiscreteUserMissing(kTown, "yes", ""));
  ASSERT_TRUE(list.SetMissingInterval(kWeight, 8.0, 10.0));
  EXPECT_EQ(-1.0, NumericEncoderAt(list, kGrade).EncodeConst(1.0));
  EXPECT_EQ(-1.0, StringEncoderAt(list, kTown).EncodeConst("yes"));
  EXPECT_EQ(TQMV::gMissingValue, RoundEncoderAt(list, kWeight).Encode(9.0));
  ASSERT_TRUE(list.AddDiscreteUserMissing(kWeight, 3.0, ""));
  EXPECT_EQ(TQMV::gMissingValue, RoundEncoderAt(list, kWeight).Encode(3.0));
}

// A variable of unknown level has a string encoder, which refuses the numeric
// definition; that it does is not looked at (and nothing may leak).
TEST(BINVarList, ANumericDeclarationOnAnUnknownLevelIsTrueWithoutEffect) {
  BINVarList list;
  list.AddCatVar("x", "", 2, kUnknown, kTarget);
  EXPECT_TRUE(list.SetMissingInterval(0, 1.0, 2.0));
  EXPECT_FALSE(HasMissingAt(list, 0));
  EXPECT_TRUE(list.SetMissingInterval(0, 3.0, 4.0));
  EXPECT_TRUE(list.AddDiscreteUserMissing(0, 9.0, ""));
  EXPECT_FALSE(HasMissingAt(list, 0));
}

TEST(BINVarList, AStringDeclarationOnAnUnknownLevelIsRefused) {
  BINVarList list;
  list.AddCatVar("x", "", 2, kUnknown, kTarget);
  EXPECT_FALSE(list.AddDiscreteUserMissing(0, "N/A", ""));
}

// Only a host that goes through the variable itself gets there.
TEST(BINVarList, ANumericDeclarationLeavesAStringDefinitionAsItIs) {
  BINVarList list;
  list.AddCatVar("x", "", 2, kUnknown, kTarget);
  ASSERT_TRUE(Give(*list.GetVarAt(0), StringMissing({"N/A"})));
  list.SetMissingInterval(0, 1.0, 2.0);
  list.AddDiscreteUserMissing(0, 9.0, "nine");
  EXPECT_THAT(StringMissingAt(list, 0).GetDiscreteValues(), ElementsAre("N/A"));
  EXPECT_EQ(1U, StringMissingAt(list, 0).GetValueLabels().size());
}

TEST(BINVarList, AListOfUsableVariablesWithAnAttributeIsValid) {
  const Validity validity = ValidityOf(FourVariables());
  EXPECT_TRUE(validity.valid);
  EXPECT_THAT(validity.oneCategory, IsEmpty());
  EXPECT_THAT(validity.empty, IsEmpty());
}

TEST(BINVarList, ATargetWithOnlyOneCategoryMakesTheListInvalidAndIsReported) {
  BINVarList list = Attributes({"x"});
  list.AddCatVar("y", "", 1, kNumeric, kTarget);
  const Validity validity = ValidityOf(list);
  EXPECT_FALSE(validity.valid);
  EXPECT_THAT(validity.oneCategory, ElementsAre(1));
  EXPECT_THAT(validity.empty, IsEmpty());
}

TEST(BINVarList, AListWithoutAttributesIsInvalidWithNothingReported) {
  BINVarList list;
  AddNumeric(list, "y");
  AddWeight(list, "w");
  AddCont(list, "x", kUndefined);
  for (const BINVarList& invalid : {list, BINVarList()}) {
    const Validity validity = ValidityOf(invalid);
    EXPECT_FALSE(validity.valid);
    EXPECT_THAT(validity.oneCategory, IsEmpty());
    EXPECT_THAT(validity.empty, IsEmpty());
  }
}

TEST(BINVarList, EveryOneCategoryAndEmptyVariableIsReportedInOrder) {
  BINVarList list = Attributes({"x"});
  list.AddCatVar("none", "", 0, kNumeric, kTarget);
  list.AddCatVar("one", "", 1, kString, kUndefined);
  list.AddCatVar("negative", "", -2, kString, kAttribute);
  list.AddCatVar("two", "", 2, kNumeric, kAttribute);
  list.AddCatVar("one more", "", 1, kNumeric, kAttribute);
  const Validity validity = ValidityOf(list);
  EXPECT_FALSE(validity.valid);
  EXPECT_THAT(validity.oneCategory, ElementsAre(2, 5));
  EXPECT_THAT(validity.empty, ElementsAre(1, 3));
}

TEST(BINVarList, ValidityCountsWhatTheEncodersHaveSeen) {
  BINVarList list = Attributes({"x"});
  list.AddCatVar("y", "", 0, kNumeric, kTarget);
  NumericEncoderAt(list, 1).Encode(1.0);
  EXPECT_THAT(ValidityOf(list).oneCategory, ElementsAre(1));
  NumericEncoderAt(list, 1).Encode(2.0);
  EXPECT_TRUE(ValidityOf(list).valid);
  EXPECT_EQ(2, list.GetNTargetCats());
}

TEST(BINVarList, ACategoricalAttributeIsEnough) {
  BINVarList list;
  AddNumeric(list, "x", kAttribute);
  EXPECT_TRUE(ValidityOf(list).valid);
}

TEST(BINVarList, NamesOfAttributesAndTargetAreListed) {
  Names names{"stale"};
  std::string target = "stale";
  FourVariables().GetVarNames(names, target);
  EXPECT_THAT(names, ElementsAre("age", "town"));
  EXPECT_EQ("grade", target);
}

TEST(BINVarList, OfSeveralTargetsTheLastOnesNameIsGiven) {
  BINVarList list = FourVariables();
  ASSERT_TRUE(list.SetVariableRole(kTown, kTarget));
  Names names;
  std::string target;
  list.GetVarNames(names, target);
  EXPECT_THAT(names, ElementsAre("age"));
  EXPECT_EQ("town", target);
}

TEST(BINVarList, WithoutTargetTheTargetsNameIsLeftAlone) {
  Names names{"stale"};
  std::string target = "kept";
  BINVarList().GetVarNames(names, target);
  EXPECT_THAT(names, IsEmpty());
  EXPECT_EQ("kept", target);
}

TEST(BINVarListMerge, AListMergesWithItselfAndItsCopies) {
  const BINVarList list = FourVariables();
  EXPECT_EQ(kUntouched, FirstDifference(list, list));
  for (const BINVarList& copy : CopiesOfList(list)) {
    EXPECT_EQ(kUntouched, FirstDifference(list, copy));
  }
}

TEST(BINVarListMerge, TwoEmptyListsMerge) {
  EXPECT_EQ(kUntouched, FirstDifference(BINVarList(), BINVarList()));
}

TEST(BINVarListMerge, OfFourAndSixVariablesTheIndexIsFour) {
  const BINVarList four = Attributes({"a", "b", "c", "d"});
  const BINVarList six = Attributes({"a", "b", "c", "d", "e", "f"});
  EXPECT_EQ(4, FirstDifference(four, six));
  EXPECT_EQ(4, FirstDifference(six, four));
  EXPECT_EQ(0, FirstDifference(BINVarList(), four));
}

TEST(BINVarListMerge, SizesAreComparedFirst) {
  BINVarList with = Attributes({"a", "b"});
  ASSERT_TRUE(with.SetVariableRole(0, kTarget));
  EXPECT_EQ(1, FirstDifference(with, Attributes({"x"})));
}

TEST(BINVarListMerge, OfDifferentTargetIndicesTheSmallerIsGiven) {
  BINVarList one = Attributes({"a", "b", "c"});
  BINVarList other = Attributes({"a", "b", "c"});
  ASSERT_TRUE(one.SetVariableRole(1, kTarget));
  ASSERT_TRUE(other.SetVariableRole(2, kTarget));
  EXPECT_EQ(1, FirstDifference(one, other));
  EXPECT_EQ(1, FirstDifference(other, one));
}

TEST(BINVarListMerge, AgainstAListWithoutTargetTheIndexIsMinusOne) {
  const BINVarList without = Attributes({"a", "b"});
  BINVarList with = Attributes({"a", "b"});
  ASSERT_TRUE(with.SetVariableRole(1, kTarget));
  EXPECT_EQ(-1, FirstDifference(with, without));
  EXPECT_EQ(-1, FirstDifference(without, with));
}

TEST(BINVarListMerge, ADifferentNameIsADifference) {
  EXPECT_EQ(1, FirstDifference(Attributes({"a", "b", "c"}), Attributes({"a", "B", "c"})));
}

TEST(BINVarListMerge, ADifferentLabelOfTheThirdVariableGivesIndexTwo) {
  const BINVarList list = FourVariables();
  BINVarList other = list;
  other.GetVarAt(2)->SetVariableLabel("another label");
  EXPECT_EQ(2, FirstDifference(list, other));
  EXPECT_EQ(2, FirstDifference(other, list));
}

TEST(BINVarListMerge, ADifferentRoleIsADifference) {
  const BINVarList list = Attributes({"a", "b"});
  BINVarList other = list;
  ASSERT_TRUE(other.SetVariableRole(1, kUndefined));
  EXPECT_EQ(1, FirstDifference(list, other));
}

TEST(BINVarListMerge, ADifferentMeasureLevelIsADifference) {
  BINVarList one;
  BINVarList other;
  one.AddCatVar("x", "", 0, kUnknown, kAttribute);
  other.AddCatVar("x", "", 0, kString, kAttribute);
  EXPECT_EQ(0, FirstDifference(one, other));
}

TEST(BINVarListMerge, OfSeveralDifferencesTheFirstCounts) {
  const BINVarList list = FourVariables();
  BINVarList other = list;
  other.GetVarAt(3)->SetVariableLabel("another");
  other.GetVarAt(1)->SetVariableLabel("another");
  EXPECT_EQ(1, FirstDifference(list, other));
}

TEST(BINVarListMerge, ADefinitionThatOnlyOneListHasIsADifference) {
  const BINVarList without = FourVariables();
  for (const int i : {kAge, kGrade}) {
    BINVarList with = without;
    ASSERT_TRUE(with.AddDiscreteUserMissing(i, 9.0, ""));
    EXPECT_EQ(i, FirstDifference(with, without));
    EXPECT_EQ(i, FirstDifference(without, with));
  }
}

TEST(BINVarListMerge, EqualDefinitionsMergeWhateverTheirLabels) {
  BINVarList one = FourVariables();
  BINVarList other = FourVariables();
  for (const int i : {kAge, kGrade}) {
    ASSERT_TRUE(one.AddDiscreteUserMissing(i, 9.0, "refused"));
    ASSERT_TRUE(other.AddDiscreteUserMissing(i, 9.0, "unknown"));
  }
  ASSERT_TRUE(one.AddDiscreteUserMissing(kTown, "N/A", "refused"));
  ASSERT_TRUE(other.AddDiscreteUserMissing(kTown, "N/A", "unknown"));
  EXPECT_EQ(kUntouched, FirstDifference(one, other));
}

TEST(BINVarListMerge, DifferentDefinitionsAreADifference) {
  BINVarList one = FourVariables();
  BINVarList other = FourVariables();
  ASSERT_TRUE(one.AddDiscreteUserMissing(kTown, "N/A", ""));
  ASSERT_TRUE(other.AddDiscreteUserMissing(kTown, "n/a", ""));
  EXPECT_EQ(kTown, FirstDifference(one, other));
  ASSERT_TRUE(one.SetMissingInterval(kAge, 1.0, 2.0));
  ASSERT_TRUE(other.SetMissingInterval(kAge, 1.0, 3.0));
  EXPECT_EQ(kAge, FirstDifference(one, other));
}

// Agrees with every other definition there is.
class AgreeableMissing : public BINNumericUserMissing {
 public:
  bool IsEqualTo(const IBINUserMissing* other) const override { return other != nullptr; }
};

TEST(BINVarListMerge, ItIsThisListsDefinitionThatIsAsked) {
  BINVarList agreeable = FourVariables();
  ASSERT_TRUE(Give(*agreeable.GetVarAt(kAge), std::make_unique<AgreeableMissing>()));
  BINVarList other = FourVariables();
  EXPECT_EQ(kAge, FirstDifference(agreeable, other));  // asked about null
  ASSERT_TRUE(other.AddDiscreteUserMissing(kAge, 9.0, ""));
  EXPECT_EQ(kUntouched, FirstDifference(agreeable, other));
  EXPECT_EQ(kAge, FirstDifference(other, agreeable));
}

TEST(BINVarListMerge, DefinitionsOfAWeightAreNotCompared) {
  const BINVarList list = FourVariables();
  BINVarList other = list;
  ASSERT_TRUE(other.AddDiscreteUserMissing(kWeight, 9.0, ""));
  EXPECT_EQ(kUntouched, FirstDifference(list, other));
  EXPECT_EQ(kUntouched, FirstDifference(other, list));
}

TEST(BINVarListMerge, TheRoundingOfAWeightIsNotCompared) {
  BINVarList one;
  BINVarList other;
  one.AddWeightVar("w", "", kTruncate);
  other.AddWeightVar("w", "", kRound);
  EXPECT_EQ(kUntouched, FirstDifference(one, other));
}

TEST(BINVarListMerge, AVariableWithoutRoleIsComparedByNameLabelAndLevelOnly) {
  BINVarList one;
  BINVarList other;
  for (const auto role : {kUndefined, kWeightRole}) {
    const std::string name = std::to_string(role);
    one.AddCatVar(name, "", 2, kNumeric, role);
    other.AddCatVar(name, "", 7, kNumeric, role);
  }
  ASSERT_TRUE(other.AddDiscreteUserMissing(0, 9.0, ""));
  ASSERT_TRUE(other.AddDiscreteUserMissing(1, 9.0, ""));
  EXPECT_EQ(kUntouched, FirstDifference(one, other));
}

TEST(BINVarListMerge, ACountThatItsOwnEncoderDoesNotHaveIsADifferenceEvenToACopy) {
  BINVarList list = Attributes({"x"});
  ASSERT_EQ(1, AddNumeric(list, "y", kTarget, {2.0, 1.0, 2.0}));  // declares 3, holds 2
  EXPECT_EQ(1, FirstDifference(list, BINVarList(list)));
  EXPECT_EQ(1, FirstDifference(list, list));
}

TEST(BINVarListMerge, CategoriesBeyondTheDeclarationOfEitherListAreADifference) {
  const BINVarList list = FourVariables();
  BINVarList other = list;
  NumericEncoderAt(other, kGrade).Encode(7.0);
  EXPECT_EQ(kGrade, FirstDifference(list, other));
  EXPECT_EQ(kGrade, FirstDifference(other, list));
  other.UpdateNumbersOfCategories();  // declares what it has seen
  EXPECT_EQ(kUntouched, FirstDifference(list, other));
}

TEST(BINVarListMerge, CategoriesOfAnAttributeCountToo) {
  const BINVarList list = FourVariables();
  BINVarList other = list;
  StringEncoderAt(other, kTown).Encode("perhaps");
  EXPECT_EQ(kTown, FirstDifference(list, other));
  EXPECT_EQ(kTown, FirstDifference(other, list));
}

TEST(BINVarListMerge, TheListsCountsAreNotComparedWithEachOther) {
  BINVarList two = Attributes({"x"});
  BINVarList three = Attributes({"x"});
  AddNumeric(two, "y", kTarget, {1.0, 2.0});
  AddNumeric(three, "y", kTarget, {7.0, 8.0, 9.0});
  EXPECT_EQ(kUntouched, FirstDifference(two, three));
  EXPECT_EQ(kUntouched, FirstDifference(three, two));
}

TEST(BINVarListMerge, ComparingUpdatesNoCount) {
  BINVarList list = FourVariables();
  NumericEncoderAt(list, kGrade).Encode(7.0);
  EXPECT_EQ(kGrade, FirstDifference(list, list));
  EXPECT_EQ(2, list.GetNTargetCats());
}

TEST(BINVarListCopy, EveryCopyHasVariablesAndCounters) {
  const BINVarList list = FourVariables();
  for (const BINVarList& copy : CopiesOfList(list)) {
    EXPECT_EQ(CountersOf(list), CountersOf(copy));
    EXPECT_EQ(Shown(list), Shown(copy));
    for (int i = 0; i < list.Size(); ++i) EXPECT_NE(list.GetVarAt(i), copy.GetVarAt(i));
  }
}

TEST(BINVarListCopy, NoCopyReachesItsSource) {
  BINVarList list = FourVariables();
  ASSERT_TRUE(list.AddDiscreteUserMissing(kAge, 9.0, "nine"));
  const std::string before = Shown(list);
  for (BINVarList& copy : CopiesOfList(list)) {
    copy.GetVarAt(kAge)->SetVariableLabel("changed");
    EXPECT_TRUE(copy.AddDiscreteUserMissing(kAge, 8.0, ""));
    EXPECT_TRUE(copy.AddDiscreteUserMissing(kWeight, 8.0, ""));
    NumericEncoderAt(copy, kGrade).Encode(7.0);
    copy.UpdateNumbersOfCategories();
    EXPECT_TRUE(copy.SetVariableRole(kGrade, kUndefined));
    EXPECT_TRUE(copy.RemoveVar(kTown));
  }
  EXPECT_EQ(before, Shown(list));
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

TEST(BINVarListCopy, EveryCopyWorksAfterItsSourceIsGone) {
  std::vector<BINVarList> copies;
  {
    BINVarList list = FourVariables();
    ASSERT_TRUE(list.AddDiscreteUserMissing(kWeight, 9.0, ""));
    ASSERT_TRUE(list.AddDiscreteUserMissing(kTown, "N/A", ""));
    copies = CopiesOfList(list);
  }
  for (BINVarList& copy : copies) {
    EXPECT_EQ(TQMV::gMissingValue, RoundEncoderAt(copy, kWeight).Encode(9.0));
    EXPECT_EQ(-1.0, StringEncoderAt(copy, kTown).Encode("N/A"));
    EXPECT_EQ("yes", StringEncoderAt(copy, kTown).Decode(1));
  }
}

TEST(BINVarListCopy, AssignmentDeletesTheVariablesThatWereHeld) {
  int deletions = 0;
  BINVarList list = FourVariables();
  ASSERT_TRUE(Give(*list.GetVarAt(kAge), std::make_unique<NotingNumericMissing>(deletions)));
  list = BINVarList();
  EXPECT_EQ(1, deletions);
  EXPECT_EQ((Counters{0, 0, 0, -1, -1}), CountersOf(list));
}

TEST(BINVarListCopy, TheDestructorDeletesTheVariables) {
  int deletions = 0;
  {
    BINVarList list = FourVariables();
    ASSERT_TRUE(Give(*list.GetVarAt(kAge), std::make_unique<NotingNumericMissing>(deletions)));
  }
  EXPECT_EQ(1, deletions);
}

TEST(BINVarListCopy, SelfAssignmentDoesNothing) {
  BINVarList list = FourVariables();
  const IBINVariable* const first = list.GetVarAt(0);
  const BINVarList& itself = list;
  list = itself;
  EXPECT_EQ(first, list.GetVarAt(0));
  EXPECT_EQ((Counters{4, 1, 2, kGrade, kWeight}), CountersOf(list));
}

// Hosts know the first line by its spelling, backspace included.
TEST(BINVarListDisplay, AnEmptyListIsShownAsItsCounters) {
  EXPECT_EQ(
      "\bINegin display of BINVarList object.\n"
      "Total variables: 0\n"
      "Number of Continuous Variables = 0\n"
      "Number of Categorical Variables  = 0\n"
      "Target Index  = -1\n"
      "End of display for BINVarList object.\n",
      Shown(BINVarList()));
}

TEST(BINVarListDisplay, TheCountersAreShownFirst) {
  EXPECT_THAT(Shown(FourVariables()), testing::StartsWith("\bINegin display of BINVarList object.\n"
                                                          "Total variables: 4\n"
                                                          "Number of Continuous Variables = 1\n"
                                                          "Number of Categorical Variables  = 2\n"
                                                          "Target Index  = 1\n"
                                                          "Variable 0"));
}

TEST(BINVarListDisplay, EveryVariableIsShownAfterItsIndex) {
  const BINVarList list = FourVariables();
  EXPECT_TRUE(OccurInOrder(
      Shown(list),
      {"Variable 0", Shown(*list.GetVarAt(0)), "Variable 1", Shown(*list.GetVarAt(1)), "Variable 2",
       Shown(*list.GetVarAt(2)), "Variable 3", Shown(*list.GetVarAt(3))}))
      << Shown(list);
  EXPECT_THAT(Shown(list), testing::EndsWith("End of display for BINVarList object.\n"));
  EXPECT_THAT(Shown(list), testing::Not(testing::HasSubstr("Variable 4")));
}

TEST(BINVarListDisplay, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINVarList list = FourVariables();
  EXPECT_EQ(Shown(list), ShownWhenFlushedLast(list));
  std::ostringstream os;
  EXPECT_EQ(&os, &list.Display(os));
}

}  // namespace
