#include "tqbinning/binvarlist.h"

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

}  // namespace
