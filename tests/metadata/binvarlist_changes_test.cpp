#include "tqbinning/binvarlist.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/varlists.h"
#include "metadata/vocabulary.h"

namespace {

using namespace metadata;
using testing::ElementsAre;

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

}  // namespace
