#include "tqbinning/binvarlist.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "metadata/varlists.h"
#include "metadata/vocabulary.h"
#include "tqbinning/binusermissing.h"

namespace {

using namespace metadata;

constexpr int kUntouched = 12345;

// Where the second list differs from the first; kUntouched when they can be merged.
int FirstDifference(const BINVarList& list, const BINVarList& other) {
  int index = kUntouched;
  const bool mergeable = list.CanMergeWith(other, index);
  EXPECT_EQ(mergeable, index == kUntouched);
  return index;
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

}  // namespace
