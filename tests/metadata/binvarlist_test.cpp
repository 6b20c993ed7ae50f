#include "tqbinning/binvarlist.h"

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/varlists.h"
#include "metadata/vocabulary.h"
#include "tqbinning/binusermissing.h"
#include "tqcommon/missingvalue.h"

namespace {

using namespace metadata;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kOutOfRange[] = {-1, 4, 5, std::numeric_limits<int>::min(),
                               std::numeric_limits<int>::max()};  // for a list of four

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
