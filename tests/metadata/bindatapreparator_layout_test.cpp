#include "tqbinning/bindatapreparator.h"

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/preparatorpass.h"

namespace {

using namespace metadata;

// ---- the layout of columns ----

TEST(BINDataPreparator, WithoutTargetAndWeightAttributesStartAtColumnZero) {
  const Pass pass(Variables("ACA"));
  EXPECT_EQ((Ints{0, 1, 2}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(3, pass.preparator.fProcRecSize);
  EXPECT_EQ(3, pass.preparator.fOrigRecSize);
  EXPECT_EQ(3, pass.preparator.fInputRecSize);
  EXPECT_EQ((Ints{0, 1, 2}), pass.preparator.fInputIndices);
  EXPECT_EQ(-1, pass.preparator.fTargetIndex);
  EXPECT_EQ(-1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(-1, pass.preparator.fWeightNewIndex);
  EXPECT_EQ(0, pass.preparator.fHasTarget);
  EXPECT_EQ(0, pass.preparator.fHasWeight);
  EXPECT_EQ(nullptr, pass.preparator.fWeightEncoder);
}

TEST(BINDataPreparator, ColumnsAreTargetThenWeightThenAttributesInListOrder) {
  Pass pass(Variables("AWCT"));
  EXPECT_EQ((Ints{2, 1, 3, 0}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(4, pass.preparator.fProcRecSize);
  EXPECT_EQ(2, pass.preparator.fInputRecSize);
  EXPECT_EQ((Ints{0, 2}), pass.preparator.fInputIndices);
  EXPECT_EQ(3, pass.preparator.fTargetIndex);
  EXPECT_EQ(1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(1, pass.preparator.fWeightNewIndex);
  EXPECT_EQ(1, pass.preparator.fHasTarget);
  EXPECT_EQ(1, pass.preparator.fHasWeight);
  EXPECT_EQ(static_cast<IBINEncoder*>(pass.preparator.fWeightEncoder), pass.list.GetEncoderAt(1));
}

TEST(BINDataPreparator, WithoutATargetTheWeightIsColumnZero) {
  const Pass pass(Variables("AWA"));
  EXPECT_EQ((Ints{1, 0, 2}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(1, pass.preparator.fWeightNewIndex);
}

TEST(BINDataPreparator, WithoutAWeightAttributesFollowTheTarget) {
  const Pass pass(Variables("AAT"));
  EXPECT_EQ((Ints{1, 2, 0}), pass.preparator.GetVariableIndex());
}

TEST(BINDataPreparator, AVariableOfAnotherRoleHasNoColumn) {
  const Pass pass(Variables("UAUA"));
  EXPECT_EQ((Ints{-1, 0, -1, 1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(4, pass.preparator.fOrigRecSize);
  EXPECT_EQ(2, pass.preparator.fProcRecSize);
}

TEST(BINDataPreparator, OfAnEmptyListHasNoColumns) {
  const Pass pass{BINVarList()};
  EXPECT_EQ(Ints{}, pass.preparator.GetVariableIndex());
  EXPECT_EQ(0, pass.preparator.fProcRecSize);
}

TEST(BINDataPreparator, RemembersLevelsRolesAndUserMissingDefinitions) {
  BINVarList variables = Variables("AWTC");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, "nine"));
  Pass pass(variables);
  EXPECT_EQ((std::vector<IBINVariable::MeasureLevel>{
                IBINVariable::kContinuous, IBINVariable::kWeightLevel,
                IBINVariable::kNumericCategorical, IBINVariable::kNumericCategorical}),
            pass.preparator.fMeasureLevels);
  EXPECT_EQ((std::vector<IBINVariable::VariableRole>{
                IBINVariable::kAttribute, IBINVariable::kFrequencyWeight, IBINVariable::kTarget,
                IBINVariable::kAttribute}),
            pass.preparator.fRoles);
  ASSERT_EQ(4u, pass.preparator.fUserMissing.size());
  EXPECT_EQ(pass.list.GetVarAt(0)->GetUserMissingInfo(), pass.preparator.fUserMissing[0]);
  EXPECT_EQ(nullptr, pass.preparator.fUserMissing[1]);
}

TEST(BINDataPreparator, IsBornOKWithoutFilesOrCasesAndWithAllColumnsUsable) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_EQ(&pass.list, &pass.preparator.GetVarList());
  EXPECT_TRUE(pass.preparator.GetFileNames().empty());
  EXPECT_EQ(0u, pass.preparator.GetNumberOfKeptCases());
  EXPECT_FALSE(pass.preparator.fDropCase);
  EXPECT_EQ(10000, pass.preparator.fCacheCapacity);
  EXPECT_EQ(18446744073709551616.0, pass.preparator.fTwoToThe64);
  for (const int column : {0, 1, 2}) {
    EXPECT_TRUE(pass.IsValid(column));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(column));
  }
  EXPECT_TRUE(pass.scratch.IsEmpty());
}

TEST(BINDataPreparator, KeepFailureReplacesTheLastingStatus) {
  Pass pass(Variables("A"));
  pass.preparator.KeepFailure(Error(TQBinning::kCannotAppend, 7));
  EXPECT_EQ(Error(TQBinning::kCannotAppend, 7), pass.preparator.GetStatus());
}

TEST(BINDataPreparatorDeathTest, MoreVariablesThanColumnsAreABrokenPrecondition) {
  Pass pass(Variables("AU"));
  EXPECT_DEATH((void)pass.preparator.SetUpTempFiles(), "fOrigRecSize <= fProcRecSize");
  support::MemoryRecords records({{1.0, 1.0}});
  EXPECT_DEATH((void)pass.preparator.ProcessSource(records), "fOrigRecSize <= fProcRecSize");
}

TEST(BINDataPreparatorDeathTest, ASecondTargetIsABrokenPrecondition) {
  Pass pass(Variables("TTA"));
  EXPECT_DEATH((void)pass.preparator.SetUpTempFiles(), "fOrigRecSize <= fProcRecSize");
}

TEST(BINDataPreparator, TheDestructorRemovesTheFilesAndNoOthers) {
  const support::ScratchDirectory scratch;
  support::WriteColumn(scratch.File("another"), {1.0});
  BINVarList list = Variables("TA");
  BINCancelInfo cancelInfo(nullptr);
  {
    Preparator preparator(list, cancelInfo, scratch.Path(), nullptr, 0);
    support::MemoryRecords records({{0.0, 1.0}});
    EXPECT_EQ(TQStatus(), preparator.ProcessSource(records));
    EXPECT_EQ(3u, scratch.CountFiles());
  }
  EXPECT_EQ(1u, scratch.CountFiles());
  EXPECT_EQ(2, list.Size());  // borrowed
}

TEST(BINDataPreparator, TheDestructorRemovesTheFilesOfAPassThatFailedAndMissesNoneThatNeverWas) {
  const support::ScratchDirectory scratch;
  BINVarList list = Variables("TA");
  BINCancelInfo cancelInfo(nullptr);
  {
    Preparator preparator(list, cancelInfo, scratch.Path(), nullptr, 0);
    preparator.fCacheCapacity = 1;
    support::MemoryRecords records({{0.0, 1.0}, {300.0, 1.0}});
    EXPECT_EQ(Error(TQBinning::kCodeOutOfRange), preparator.ProcessSource(records));
    EXPECT_EQ(2u, scratch.CountFiles());
    std::filesystem::remove(preparator.GetFileNames()[0]);
  }
  EXPECT_TRUE(scratch.IsEmpty());
}

// ---- Display ----

std::string DisplayOf(const BINDataPreparator& preparator) {
  std::ostringstream os;
  EXPECT_EQ(&os, &preparator.Display(os));
  return os.str();
}

std::string DisplayOf(const BINVarList& list) {
  std::ostringstream os;
  list.Display(os);
  return os.str();
}

TEST(BINDataPreparator, DisplaysItsLayoutAndItsListAndTheProcessedSizeTwice) {
  Pass pass(Variables("AWCT"));
  pass.preparator.fOrigRecSize = 9;  // is not shown
  EXPECT_EQ(
      "BINDataPreparator object: \n"
      "\tPossible inputs used? \tOriginal record size = 4\n"
      "\tProcessed record size = 4\n"
      "\tInput-only record size = 2\n"
      "\tFrequency weight original and new indices: 1   1\n"
      "\tVariable index: 2 1 3 0 \n"
      "\tIndices of input variables in the variable list: 0 2 \n"
      "\tVariable measurement levels: 1 4 2 2 \n"
      "\tVariable roles: 1 3 1 2 \n"
      "\tStatus is OK.\n" +
          DisplayOf(pass.list),
      DisplayOf(pass.preparator));
}

TEST(BINDataPreparator, DisplaysTheCodeOfAStatusThatIsNotOK) {
  for (const TQStatus& status : {Error(TQBinning::kNoCases), Warning(TQBinning::kSomeNotOK)}) {
    Pass pass(Variables("A"));
    pass.preparator.KeepFailure(status);
    EXPECT_EQ(
        "BINDataPreparator object: \n"
        "\tPossible inputs used? \tOriginal record size = 1\n"
        "\tProcessed record size = 1\n"
        "\tInput-only record size = 1\n"
        "\tFrequency weight original and new indices: -1   -1\n"
        "\tVariable index: 0 \n"
        "\tIndices of input variables in the variable list: 0 \n"
        "\tVariable measurement levels: 1 \n"
        "\tVariable roles: 1 \n"
        "\tStatus has error code " +
            std::to_string(status.GetErrorCode()) + "\n" + DisplayOf(pass.list),
        DisplayOf(pass.preparator));
  }
}

// The list holds the role against such a variable's level; only the weight's own
// encoder can be asked for weights.
TEST(BINDataPreparator, AVariableOfAnotherLevelInTheWeightsRoleHasNoColumn) {
  BINVarList list = Variables("AA");
  ASSERT_TRUE(list.SetVariableRole(1, IBINVariable::kFrequencyWeight));
  const Pass pass(list);
  EXPECT_EQ((Ints{0, -1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(-1, pass.preparator.fWeightOriginalIndex);
  EXPECT_EQ(nullptr, pass.preparator.fWeightEncoder);
}

}  // namespace
