#include "tqbinning/binvariable.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/examplevariables.h"

namespace {

using namespace metadata;

TEST(IBINVariable, TheEnumeratorsHaveTheirDocumentedValues) {
  EXPECT_EQ(0, IBINVariable::kUndefinedRole);
  EXPECT_EQ(1, IBINVariable::kAttribute);
  EXPECT_EQ(2, IBINVariable::kTarget);
  EXPECT_EQ(3, IBINVariable::kFrequencyWeight);
  EXPECT_EQ(0, IBINVariable::kUnknownLevel);
  EXPECT_EQ(1, IBINVariable::kContinuous);
  EXPECT_EQ(2, IBINVariable::kNumericCategorical);
  EXPECT_EQ(3, IBINVariable::kStringCategorical);
  EXPECT_EQ(4, IBINVariable::kWeightLevel);
  EXPECT_EQ(0, IBINVariable::kTruncate);
  EXPECT_EQ(1, IBINVariable::kRoundToClosest);
  EXPECT_EQ(4U, sizeof(IBINVariable::VariableRole));
  EXPECT_EQ(4U, sizeof(IBINVariable::MeasureLevel));
  EXPECT_EQ(4U, sizeof(IBINVariable::BINWRoundingOption));
}

TEST(BINContVar, ANewVariableHasNameLabelAndRole) {
  BINContVar variable = Income();
  EXPECT_EQ("income", variable.GetVariableName());
  EXPECT_EQ("Yearly income", variable.GetVariableLabel());
  EXPECT_EQ(kAttribute, variable.GetVariableRole());
  EXPECT_EQ(IBINVariable::kContinuous, variable.GetMeasureLevel());
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
}

TEST(BINContVar, ItHasNeitherCategoriesNorEncoder) {
  BINContVar variable = Income();
  const BINContVar& fixed = variable;
  EXPECT_EQ(0, variable.GetNumberOfCategories());
  EXPECT_EQ(0, variable.UpdateNumberOfCategories());
  EXPECT_EQ(nullptr, variable.GetEncoder());
  EXPECT_EQ(nullptr, fixed.GetEncoder());
}

TEST(BINContVar, ItsStatusIsAlwaysUsable) {
  for (const auto role : {kUndefined, kAttribute, kTarget, kWeightRole}) {
    EXPECT_EQ(0, BINContVar("x", "", role).GetVarStatus());
  }
}

TEST(BINContVar, LabelAndAnyRoleCanBeSet) {
  BINContVar variable = Income();
  variable.SetVariableLabel("Gross income");
  EXPECT_EQ("Gross income", variable.GetVariableLabel());
  EXPECT_EQ("income", variable.GetVariableName());
  for (const auto role :
       {kTarget, kUndefined, kWeightRole, static_cast<IBINVariable::VariableRole>(9)}) {
    variable.SetVariableRole(role);
    EXPECT_EQ(role, variable.GetVariableRole());
  }
}

TEST(BINContVar, ANumericDefinitionIsTakenAndOwned) {
  int deletions = 0;
  {
    BINContVar variable = Income();
    auto* const missing = new NotingNumericMissing(deletions);
    EXPECT_TRUE(variable.SetUserMissingInfo(missing));
    EXPECT_EQ(missing, variable.GetUserMissingInfo());
    EXPECT_EQ(0, deletions);
  }
  EXPECT_EQ(1, deletions);
}

TEST(BINContVar, ANewDefinitionDeletesTheOldOne) {
  int deletions = 0;
  BINContVar variable = Income();
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(1, variable.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINContVar, NullClearsAndDeletesTheDefinition) {
  int deletions = 0;
  BINContVar variable = Income();
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
}

TEST(BINContVar, AStringDefinitionIsRefusedAndTheOldOneStays) {
  int deletions = 0;
  int refusedDeletions = 0;
  NotingStringMissing refused(refusedDeletions);
  {
    BINContVar variable = Income();
    auto* const kept = new NotingNumericMissing(deletions);
    ASSERT_TRUE(variable.SetUserMissingInfo(kept));
    EXPECT_FALSE(variable.SetUserMissingInfo(&refused));
    EXPECT_EQ(kept, variable.GetUserMissingInfo());
    EXPECT_EQ(0, deletions);
  }
  EXPECT_EQ(0, refusedDeletions);
}

TEST(BINContVar, EveryCopyHasEveryField) {
  BINContVar source = Income();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  BINContVar other("age", "Age", kTarget);
  ASSERT_TRUE(Give(other, NumericMissing({1.0, 2.0})));
  for (const auto& copy : CopiesOf(source, other)) {
    EXPECT_EQ("income", copy->GetVariableName());
    EXPECT_EQ("Yearly income", copy->GetVariableLabel());
    EXPECT_EQ(kAttribute, copy->GetVariableRole());
    ASSERT_NE(nullptr, copy->GetUserMissingInfo());
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    EXPECT_TRUE(source.GetUserMissingInfo()->IsEqualTo(copy->GetUserMissingInfo()));
  }
}

TEST(BINContVar, EveryCopyOfAVariableWithoutDefinitionHasNone) {
  BINContVar other = Income();
  ASSERT_TRUE(Give(other, NumericMissing({9.0})));
  for (const auto& copy : CopiesOf(Income(), other)) {
    EXPECT_EQ(nullptr, copy->GetUserMissingInfo());
  }
}

TEST(BINContVar, NoCopyReachesItsSource) {
  BINContVar source = Income();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  for (const auto& copy : CopiesOf(source, Income())) {
    copy->SetVariableLabel("changed");
    copy->SetVariableRole(kTarget);
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_EQ("Yearly income", source.GetVariableLabel());
  EXPECT_EQ(kAttribute, source.GetVariableRole());
  EXPECT_EQ(1, source.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINContVar, AssignmentDeletesTheOldDefinition) {
  int deletions = 0;
  BINContVar variable = Income();
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  variable = Income();
  EXPECT_EQ(1, deletions);
}

TEST(BINContVar, SelfAssignmentKeepsEverything) {
  BINContVar variable = Income();
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  const BINContVar& itself = variable;
  variable = itself;
  EXPECT_EQ("income", variable.GetVariableName());
  ASSERT_NE(nullptr, variable.GetUserMissingInfo());
  EXPECT_EQ(1, variable.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINContVar, ACloneIsDeletedThroughTheInterface) {
  BINContVar source = Income();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  const IBINVariable& variable = source;
  const std::unique_ptr<IBINVariable> clone(variable.Clone());
  EXPECT_EQ(IBINVariable::kContinuous, clone->GetMeasureLevel());
  EXPECT_EQ("income", clone->GetVariableName());
}

TEST(BINContVar, ItIsShownOnOneLine) {
  EXPECT_EQ("Continuous variable: name = income, label = Yearly income, role = Attribute\n",
            Shown(Income()));
  EXPECT_EQ("Continuous variable: name = , label = , role = Variable role 7\n",
            Shown(BINContVar("", "", static_cast<IBINVariable::VariableRole>(7))));
}

TEST(BINCatVar, ANewVariableHasNameLabelCountLevelAndRole) {
  BINCatVar variable("town", "Town of birth", 5, kString, kAttribute);
  EXPECT_EQ("town", variable.GetVariableName());
  EXPECT_EQ("Town of birth", variable.GetVariableLabel());
  EXPECT_EQ(5, variable.GetNumberOfCategories());
  EXPECT_EQ(kString, variable.GetMeasureLevel());
  EXPECT_EQ(kAttribute, variable.GetVariableRole());
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
}

TEST(BINCatVar, OnlyLevelTwoGetsANumericEncoder) {
  EXPECT_NE(nullptr, dynamic_cast<BINCatNumEncoder*>(Grade(3).GetEncoder()));
}

TEST(BINCatVar, EveryOtherLevelGetsAStringEncoder) {
  for (const int level : {0, 1, 3, 4, 5, -1}) {
    BINCatVar variable("x", "", 3, static_cast<IBINVariable::MeasureLevel>(level), kTarget);
    EXPECT_NE(nullptr, dynamic_cast<BINStringEncoder*>(variable.GetEncoder())) << level;
    EXPECT_EQ(level, variable.GetMeasureLevel());
  }
}

TEST(BINCatVar, BothFormsOfGetEncoderGiveTheSameEmptyEncoder) {
  BINCatVar variable = Grade(3);
  const BINCatVar& fixed = variable;
  EXPECT_EQ(variable.GetEncoder(), fixed.GetEncoder());
  EXPECT_EQ(0, fixed.GetEncoder()->GetNumberOfCategories());
}

TEST(BINCatVar, LabelAndRoleCanBeSet) {
  BINCatVar variable = Grade(3);
  variable.SetVariableLabel("Mark");
  variable.SetVariableRole(kAttribute);
  EXPECT_EQ("Mark", variable.GetVariableLabel());
  EXPECT_EQ(kAttribute, variable.GetVariableRole());
}

TEST(BINCatVar, FiveDeclaredAndSevenSeenAreSevenAfterTheUpdate) {
  BINCatVar variable = Grade(5);
  See(variable, 7);
  EXPECT_EQ(5, variable.GetNumberOfCategories());
  EXPECT_EQ(7, variable.UpdateNumberOfCategories());
  EXPECT_EQ(7, variable.GetNumberOfCategories());
}

TEST(BINCatVar, FiveDeclaredAndTwoSeenStayFive) {
  BINCatVar variable = Grade(5);
  See(variable, 2);
  EXPECT_EQ(5, variable.UpdateNumberOfCategories());
  EXPECT_EQ(5, variable.GetNumberOfCategories());
}

TEST(BINCatVar, ANegativeNumberIsReplacedByWhatTheEncoderHasSeen) {
  BINCatVar variable = Grade(-4);
  EXPECT_EQ(-4, variable.GetNumberOfCategories());
  EXPECT_EQ(0, variable.UpdateNumberOfCategories());
}

TEST(BINCatVar, OneCategoryIsStatusOne) { EXPECT_EQ(1, Grade(1).GetVarStatus()); }

TEST(BINCatVar, NoCategoryIsStatusTwo) {
  EXPECT_EQ(2, Grade(0).GetVarStatus());
  EXPECT_EQ(2, Grade(-1).GetVarStatus());
}

TEST(BINCatVar, TwoCategoriesAreUsable) { EXPECT_EQ(0, Grade(2).GetVarStatus()); }

TEST(BINCatVar, TheStatusCountsWhatTheEncoderHasSeen) {
  BINCatVar none = Grade(0);
  See(none, 1);
  EXPECT_EQ(1, none.GetVarStatus());
  BINCatVar one = Grade(1);
  See(one, 3);
  EXPECT_EQ(0, one.GetVarStatus());
  EXPECT_EQ(3, one.GetNumberOfCategories());
}

TEST(BINCatVar, TheDefinitionLivesInTheEncoderWhichDeletesIt) {
  int deletions = 0;
  {
    BINCatVar variable = Grade(2);
    auto* const missing = new NotingNumericMissing(deletions);
    missing->AddValue(9.0, "");
    EXPECT_TRUE(variable.SetUserMissingInfo(missing));
    EXPECT_EQ(missing, variable.GetUserMissingInfo());
    EXPECT_EQ(missing, variable.GetEncoder()->GetUserMissingInfo());
    EXPECT_EQ(-1.0, NumericEncoder(variable).Encode(9.0));
  }
  EXPECT_EQ(1, deletions);
}

TEST(BINCatVar, ADefinitionGivenToTheEncoderIsTheVariables) {
  BINCatVar variable = Town(2);
  ASSERT_TRUE(Give(*variable.GetEncoder(), StringMissing({"N/A"})));
  ASSERT_NE(nullptr, variable.GetUserMissingInfo());
  EXPECT_EQ(1, variable.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINCatVar, ANumericVariableRefusesAStringDefinition) {
  int deletions = 0;
  NotingStringMissing refused(deletions);
  BINCatVar variable = Grade(2);
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  const IBINUserMissing* const kept = variable.GetUserMissingInfo();
  EXPECT_FALSE(variable.SetUserMissingInfo(&refused));
  EXPECT_EQ(kept, variable.GetUserMissingInfo());
  EXPECT_EQ(0, deletions);
}

TEST(BINCatVar, AStringVariableRefusesANumericDefinition) {
  int deletions = 0;
  NotingNumericMissing refused(deletions);
  BINCatVar variable = Town(2);
  ASSERT_TRUE(Give(variable, StringMissing({"N/A"})));
  const IBINUserMissing* const kept = variable.GetUserMissingInfo();
  EXPECT_FALSE(variable.SetUserMissingInfo(&refused));
  EXPECT_EQ(kept, variable.GetUserMissingInfo());
  EXPECT_EQ(0, deletions);
}

TEST(BINCatVar, NullClearsAndDeletesTheDefinition) {
  int deletions = 0;
  BINCatVar variable = Town(2);
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  ASSERT_TRUE(Give(variable, std::make_unique<NotingStringMissing>(deletions)));
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
  EXPECT_EQ(nullptr, variable.GetEncoder()->GetUserMissingInfo());
}

TEST(BINCatVar, EveryCopyHasEveryField) {
  BINCatVar source("town", "Town of birth", 5, kString, kAttribute);
  StringEncoder(source).Encode("Bern");
  source.GetEncoder()->SetValueLabel(0, "Berne");
  ASSERT_TRUE(Give(source, StringMissing({"N/A"})));
  for (const auto& copy : CopiesOf(source, Grade(2))) {
    EXPECT_EQ("town", copy->GetVariableName());
    EXPECT_EQ("Town of birth", copy->GetVariableLabel());
    EXPECT_EQ(5, copy->GetNumberOfCategories());
    EXPECT_EQ(kString, copy->GetMeasureLevel());
    EXPECT_EQ(kAttribute, copy->GetVariableRole());
    EXPECT_NE(source.GetEncoder(), copy->GetEncoder());
    EXPECT_EQ("Bern", StringEncoder(*copy).Decode(0));
    EXPECT_EQ("Berne", copy->GetEncoder()->GetValueLabels()->at(0));
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    EXPECT_EQ(-1.0, StringEncoder(*copy).Encode("N/A"));
  }
}

TEST(BINCatVar, NoCopyReachesItsSource) {
  BINCatVar source = Grade(1);
  See(source, 1);
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  for (const auto& copy : CopiesOf(source, Grade(3))) {
    See(*copy, 4);
    copy->UpdateNumberOfCategories();
    copy->SetVariableLabel("changed");
    copy->SetVariableRole(kAttribute);
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_EQ(1, source.GetNumberOfCategories());
  EXPECT_EQ(1, source.GetEncoder()->GetNumberOfCategories());
  EXPECT_EQ("Grade", source.GetVariableLabel());
  EXPECT_EQ(kTarget, source.GetVariableRole());
  EXPECT_NE(nullptr, source.GetUserMissingInfo());
}

TEST(BINCatVar, AssignmentDeletesTheOldDefinition) {
  int deletions = 0;
  BINCatVar variable = Grade(2);
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  variable = Grade(3);
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
}

TEST(BINCatVar, SelfAssignmentKeepsEverything) {
  BINCatVar variable = Grade(2);
  See(variable, 2);
  const BINCatVar& itself = variable;
  variable = itself;
  EXPECT_EQ("grade", variable.GetVariableName());
  EXPECT_EQ(2, variable.GetEncoder()->GetNumberOfCategories());
  EXPECT_EQ(101.0, NumericEncoder(variable).Decode(1));
}

TEST(BINCatVar, ACloneIsDeletedThroughTheInterface) {
  const BINCatVar source = Town(2);
  const IBINVariable& variable = source;
  const std::unique_ptr<IBINVariable> clone(variable.Clone());
  EXPECT_EQ(kString, clone->GetMeasureLevel());
  EXPECT_NE(source.GetEncoder(), clone->GetEncoder());
}

TEST(BINCatVar, ItIsShownWithItsEncoder) {
  BINCatVar variable = Grade(3);
  See(variable, 2);
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  EXPECT_EQ(
      "Categorical variable: name = grade, label = Grade, role = Target\n"
      "\tMeasurement Level = Numeric Categorical\n"
      "\tNumber of Categories = 3\n" +
          Shown(*variable.GetEncoder()),
      Shown(variable));
}

TEST(BINCatVar, AStringVariableIsShownWithItsEncoder) {
  const BINCatVar variable = Town(0);
  EXPECT_EQ(
      "Categorical variable: name = town, label = Town, role = Target\n"
      "\tMeasurement Level = String Categorical\n"
      "\tNumber of Categories = 0\n"
      "\tBINStringEncoder object:  Last code = -1\n",
      Shown(variable));
}

TEST(BINVariables, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINContVar income = Income();
  const BINCatVar town = Town(2);
  const BINWeightVar weight = Weight();
  for (const IBINVariable* variable : std::vector<const IBINVariable*>{&income, &town, &weight}) {
    EXPECT_EQ(Shown(*variable), ShownWhenFlushedLast(*variable));
    std::ostringstream os;
    EXPECT_EQ(&os, &variable->Display(os));
  }
}

}  // namespace
