#include "tqbinning/binvariable.h"

#include <algorithm>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/examplevariables.h"

namespace {

using namespace metadata;

TEST(BINWeightVar, ANewVariableHasNameAndLabelAndTheWeightsRole) {
  BINWeightVar variable = Weight();
  EXPECT_EQ("w", variable.GetVariableName());
  EXPECT_EQ("Weight", variable.GetVariableLabel());
  EXPECT_EQ(kWeightRole, variable.GetVariableRole());
  EXPECT_EQ(IBINVariable::kWeightLevel, variable.GetMeasureLevel());
  EXPECT_EQ(0, variable.GetNumberOfCategories());
  EXPECT_EQ(0, variable.UpdateNumberOfCategories());
  EXPECT_EQ(0, variable.GetVarStatus());
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
}

TEST(BINWeightVar, TheEncoderRoundsByTheOption) {
  BINWeightVar truncating = Weight();
  EXPECT_EQ(2.0, RoundEncoder(truncating).Encode(2.9));
  BINWeightVar rounding("w", "", IBINVariable::kRoundToClosest);
  EXPECT_EQ(3.0, RoundEncoder(rounding).Encode(2.9));
  const BINWeightVar& fixed = rounding;
  EXPECT_EQ(rounding.GetEncoder(), fixed.GetEncoder());
}

TEST(BINWeightVar, SettingItsRoleHasNoEffect) {
  BINWeightVar variable = Weight();
  for (const auto role : {kUndefined, kAttribute, kTarget}) {
    variable.SetVariableRole(role);
    EXPECT_EQ(kWeightRole, variable.GetVariableRole());
  }
}

TEST(BINWeightVar, ItsLabelCanBeSet) {
  BINWeightVar variable = Weight();
  variable.SetVariableLabel("Count");
  EXPECT_EQ("Count", variable.GetVariableLabel());
  EXPECT_EQ("w", variable.GetVariableName());
}

TEST(BINWeightVar, ANumericDefinitionIsOwnedAndSharedWithTheEncoder) {
  int deletions = 0;
  {
    BINWeightVar variable = Weight();
    auto* const missing = new NotingNumericMissing(deletions);
    missing->AddValue(9.0, "");
    EXPECT_TRUE(variable.SetUserMissingInfo(missing));
    EXPECT_EQ(missing, variable.GetUserMissingInfo());
    ExpectSharedDefinition(variable);
    EXPECT_EQ(kMissing, RoundEncoder(variable).Encode(9.0));
  }
  EXPECT_EQ(1, deletions);
}

TEST(BINWeightVar, ANewDefinitionDeletesTheOldOneAndReachesTheEncoder) {
  int deletions = 0;
  BINWeightVar variable = Weight();
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  EXPECT_EQ(1, deletions);
  ExpectSharedDefinition(variable);
  EXPECT_EQ(kMissing, RoundEncoder(variable).Encode(9.0));
}

TEST(BINWeightVar, NullDeletesTheDefinitionAndReachesTheEncoder) {
  int deletions = 0;
  BINWeightVar variable = Weight();
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  EXPECT_TRUE(variable.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, variable.GetUserMissingInfo());
  EXPECT_EQ(nullptr, variable.GetEncoder()->GetUserMissingInfo());
  EXPECT_EQ(9.0, RoundEncoder(variable).Encode(9.0));
}

TEST(BINWeightVar, AStringDefinitionIsRefusedAndTheOldOneStays) {
  int deletions = 0;
  int refusedDeletions = 0;
  NotingStringMissing refused(refusedDeletions);
  {
    BINWeightVar variable = Weight();
    auto* const kept = new NotingNumericMissing(deletions);
    ASSERT_TRUE(variable.SetUserMissingInfo(kept));
    EXPECT_FALSE(variable.SetUserMissingInfo(&refused));
    EXPECT_EQ(kept, variable.GetUserMissingInfo());
    ExpectSharedDefinition(variable);
    EXPECT_EQ(0, deletions);
  }
  EXPECT_EQ(0, refusedDeletions);
}

TEST(BINWeightVar, EveryCopyHasEveryField) {
  BINWeightVar source = Weight();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  BINWeightVar other("v", "Other", IBINVariable::kRoundToClosest);
  for (const auto& copy : CopiesOf(source, other)) {
    EXPECT_EQ("w", copy->GetVariableName());
    EXPECT_EQ("Weight", copy->GetVariableLabel());
    EXPECT_NE(source.GetEncoder(), copy->GetEncoder());
    EXPECT_EQ(2.0, RoundEncoder(*copy).Encode(2.9));
    ASSERT_NE(nullptr, copy->GetUserMissingInfo());
    EXPECT_TRUE(source.GetUserMissingInfo()->IsEqualTo(copy->GetUserMissingInfo()));
  }
}

TEST(BINWeightVar, TheEncoderOfEveryCopyBorrowsTheCopysOwnDefinition) {
  BINWeightVar source = Weight();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  BINWeightVar other = Weight();
  ASSERT_TRUE(Give(other, NumericMissing({8.0})));
  for (const auto& copy : CopiesOf(source, other)) {
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    ExpectSharedDefinition(*copy);
    EXPECT_EQ(kMissing, RoundEncoder(*copy).Encode(9.0));
    EXPECT_EQ(8.0, RoundEncoder(*copy).Encode(8.0));
  }
  ExpectSharedDefinition(source);
}

TEST(BINWeightVar, EveryCopyEncodesAfterItsSourceIsGone) {
  std::vector<std::unique_ptr<BINWeightVar>> copies;
  {
    BINWeightVar source = Weight();
    ASSERT_TRUE(Give(source, NumericMissing({9.0})));
    copies = CopiesOf(source, Weight());
  }
  for (const auto& copy : copies) {
    EXPECT_EQ(kMissing, RoundEncoder(*copy).Encode(9.0));
    EXPECT_EQ(8.0, RoundEncoder(*copy).Encode(8.0));
  }
}

TEST(BINWeightVar, TheSourceEncodesAfterEveryCopyIsGone) {
  BINWeightVar source = Weight();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  EXPECT_EQ(3U, CopiesOf(source, Weight()).size());
  ExpectSharedDefinition(source);
  EXPECT_EQ(kMissing, RoundEncoder(source).Encode(9.0));
}

TEST(BINWeightVar, EveryCopyOfAVariableWithoutDefinitionHasNoneInItsEncoderEither) {
  BINWeightVar other = Weight();
  ASSERT_TRUE(Give(other, NumericMissing({9.0})));
  for (const auto& copy : CopiesOf(Weight(), other)) {
    EXPECT_EQ(nullptr, copy->GetUserMissingInfo());
    EXPECT_EQ(nullptr, copy->GetEncoder()->GetUserMissingInfo());
    EXPECT_EQ(9.0, RoundEncoder(*copy).Encode(9.0));
  }
}

// A host may lend the encoder a definition of its own; a copy of the variable
// cannot know how long that one lives.
TEST(BINWeightVar, ACopyDoesNotBorrowWhatOnlyTheSourcesEncoderWasLent) {
  const std::unique_ptr<BINNumericUserMissing> lent = NumericMissing({9.0});
  BINWeightVar source = Weight();
  ASSERT_TRUE(source.GetEncoder()->SetUserMissingInfo(lent.get()));
  for (const auto& copy : CopiesOf(source, Weight())) ExpectSharedDefinition(*copy);
  EXPECT_EQ(lent.get(), source.GetEncoder()->GetUserMissingInfo());
}

TEST(BINWeightVar, NoCopyReachesItsSource) {
  BINWeightVar source = Weight();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  for (const auto& copy : CopiesOf(source, Weight())) {
    copy->SetVariableLabel("changed");
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_EQ("Weight", source.GetVariableLabel());
  ExpectSharedDefinition(source);
  EXPECT_EQ(kMissing, RoundEncoder(source).Encode(9.0));
}

TEST(BINWeightVar, AssignmentDeletesTheOldDefinition) {
  int deletions = 0;
  BINWeightVar variable = Weight();
  ASSERT_TRUE(Give(variable, std::make_unique<NotingNumericMissing>(deletions)));
  variable = Weight();
  EXPECT_EQ(1, deletions);
  ExpectSharedDefinition(variable);
}

TEST(BINWeightVar, SelfAssignmentKeepsEverything) {
  BINWeightVar variable = Weight();
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  const BINWeightVar& itself = variable;
  variable = itself;
  EXPECT_EQ("w", variable.GetVariableName());
  ExpectSharedDefinition(variable);
  EXPECT_EQ(kMissing, RoundEncoder(variable).Encode(9.0));
}

TEST(BINWeightVar, ACloneIsDeletedThroughTheInterface) {
  BINWeightVar source = Weight();
  ASSERT_TRUE(Give(source, NumericMissing({9.0})));
  const IBINVariable& variable = source;
  const std::unique_ptr<IBINVariable> clone(variable.Clone());
  EXPECT_EQ(kWeightRole, clone->GetVariableRole());
  EXPECT_EQ(clone->GetUserMissingInfo(), clone->GetEncoder()->GetUserMissingInfo());
}

TEST(BINWeightVar, ItIsShownWithItsEncoder) {
  const BINWeightVar variable = Weight();
  EXPECT_EQ("Frequency weight variable: name = w, label = Weight\n" + Shown(*variable.GetEncoder()),
            Shown(variable));
}

TEST(BINWeightVar, ADefinitionIsShownBeforeTheEncoder) {
  BINWeightVar variable = Weight();
  ASSERT_TRUE(Give(variable, NumericMissing({9.0})));
  EXPECT_EQ("Frequency weight variable: name = w, label = Weight\n" +
                Shown(*variable.GetUserMissingInfo()) + Shown(*variable.GetEncoder()),
            Shown(variable));
}

}  // namespace
