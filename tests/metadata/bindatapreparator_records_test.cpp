#include "tqbinning/bindatapreparator.h"

#include <cmath>
#include <filesystem>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/preparatorpass.h"

namespace {

using namespace metadata;

// ---- one record ----

struct Processed {
  TQStatus status;
  Doubles fields;
  bool dropped;
};

Processed Process(Pass& pass, const Doubles& fields) {
  const int columns = pass.preparator.fProcRecSize;
  TQCommon::Record out(columns);
  for (int i = 0; i < columns; ++i) out[i] = 77.0;  // is to be overwritten
  pass.preparator.fDropCase = false;
  Processed result;
  result.status = pass.preparator.ProcessRecord(support::MakeRecord(fields), out);
  for (int i = 0; i < columns; ++i) result.fields.push_back(out[i]);
  result.dropped = pass.preparator.fDropCase;
  return result;
}

TEST(ProcessRecord, PutsTargetWeightAndAttributesIntoTheirColumns) {
  Pass pass(Variables("AWTC"));
  const Processed result = Process(pass, {1.5, 2.0, 3.0, 4.0});
  EXPECT_EQ(TQStatus(), result.status);
  EXPECT_EQ((Doubles{3.0, 2.0, 1.5, 4.0}), result.fields);
  EXPECT_FALSE(result.dropped);
}

TEST(ProcessRecord, WithoutTargetOrWeightAttributesMoveUp) {
  Pass neither(Variables("AA"));
  EXPECT_EQ((Doubles{1.5, 2.5}), Process(neither, {1.5, 2.5}).fields);
  Pass noTarget(Variables("AWA"));
  EXPECT_EQ((Doubles{3.0, 1.5, 2.5}), Process(noTarget, {1.5, 3.0, 2.5}).fields);
  Pass noWeight(Variables("AAT"));
  EXPECT_EQ((Doubles{3.0, 1.5, 2.5}), Process(noWeight, {1.5, 2.5, 3.0}).fields);
}

TEST(ProcessRecord, TheWeightIsEncoded) {
  Pass pass(Variables("WA"));
  EXPECT_EQ((Doubles{3.0, 1.5}), Process(pass, {2.5, 1.5}).fields);
  EXPECT_EQ((Doubles{kInfinity, 1.5}), Process(pass, {kInfinity, 1.5}).fields);
  const Processed result = Process(pass, {kNaN, 1.5});
  EXPECT_TRUE(std::isnan(result.fields[0]));
  EXPECT_EQ(1.5, result.fields[1]);
  EXPECT_FALSE(result.dropped);
}

TEST(ProcessRecord, AWeightThatEncodesToMissingDropsTheCaseAndWritesOnlyZeros) {
  BINVarList variables = Variables("TWA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(1, 9.0, ""));
  Pass pass(variables);
  for (const double weight : {kMissing, 0.0, 0.25, -3.0, 9.0, -kInfinity}) {
    SCOPED_TRACE(weight);
    const Processed result = Process(pass, {300.0, weight, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_TRUE(result.dropped);
    EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));  // a dropped case's target is not looked at
}

// ---- the target's code ----

TEST(ProcessRecord, ATargetThatIsMissingOrMinusOneAfterTruncationBecomesMissing) {
  Pass pass(Variables("TA"));
  for (const double target : {kMissing, -1.0, -1.5, -1.9999999999999998}) {
    SCOPED_TRACE(target);
    const Processed result = Process(pass, {target, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{kMissing, 1.5}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));
}

TEST(ProcessRecord, ATargetCodeIsWrittenAsItIsAndItsWholePartRaisesTheLargestCode) {
  Pass pass(Variables("TA"));
  const std::vector<std::pair<double, int>> cases = {{0.0, 0}, {-0.5, 0},    {7.75, 7},
                                                     {3.0, 7}, {255.0, 255}, {255.9, 255}};
  for (const auto& [target, largest] : cases) {
    SCOPED_TRACE(target);
    const Processed result = Process(pass, {target, 1.5});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{target, 1.5}), result.fields);
    EXPECT_EQ(largest, pass.preparator.GetLargestCode(0));
  }
}

// Codes beyond 32 bits are out of range too, whatever their lower bits say.
const Doubles kTargetsOutOfRange = {256.0,        300.0,        -2.0,          -2.5,
                                    2147483647.0, 2147483648.0, -2147483648.0, -2147483649.0,
                                    4294967295.0, 4294967296.0, 4294967297.0,  1e300,
                                    -1e300,       kNaN,         kInfinity,     -kInfinity};

TEST(ProcessRecord, ATargetCodeOutOfRangeIsAnErrorWhenItIsTheOnlyCategoricalVariable) {
  for (const double target : kTargetsOutOfRange) {
    SCOPED_TRACE(target);
    Pass pass(Variables("ATA"));
    const Processed result = Process(pass, {1.5, target, 2.5});
    EXPECT_EQ(Error(TQBinning::kCodeOutOfRange, 1), result.status);
    EXPECT_EQ((Doubles{0.0, 0.0, 0.0}), result.fields);  // returned at once
    EXPECT_FALSE(pass.IsValid(0));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  }
}

TEST(ProcessRecord, ATargetCodeOutOfRangeIsAWarningBesideAnotherCategoricalVariable) {
  for (const double target : kTargetsOutOfRange) {
    SCOPED_TRACE(target);
    Pass pass(Variables("ACT"));
    const Processed result = Process(pass, {1.5, 2.0, target});
    EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
    EXPECT_EQ((Doubles{0.0, 1.5, 2.0}), result.fields);  // the attributes go on
    EXPECT_FALSE(pass.IsValid(0));
    EXPECT_TRUE(pass.IsValid(1));
  }
}

TEST(ProcessRecord, ATargetWhoseColumnIsClearedIsLeftAtZeroUnlessItIsMissing) {
  Pass pass(Variables("TC"));
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0, 1.0}).status);
  const Processed good = Process(pass, {5.0, 1.0});
  EXPECT_EQ(TQStatus(), good.status);
  EXPECT_EQ((Doubles{0.0, 1.0}), good.fields);
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  const Processed bad = Process(pass, {256.0, 1.0});
  EXPECT_EQ(TQStatus(), bad.status);
  EXPECT_EQ((Doubles{0.0, 1.0}), bad.fields);
  EXPECT_EQ((Doubles{kMissing, 1.0}), Process(pass, {-1.5, 1.0}).fields);
}

// ---- attributes ----

TEST(ProcessRecord, AContinuousValueIsWrittenUnchanged) {
  Pass pass(Variables("A"));
  for (const double value :
       {0.0, -1.0, -1.5, 256.0, 1e300, 5e-324, kMissing, kInfinity, -kInfinity}) {
    const Processed result = Process(pass, {value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{value}), result.fields);
  }
  EXPECT_TRUE(std::isnan(Process(pass, {kNaN}).fields[0]));
  EXPECT_TRUE(std::signbit(Process(pass, {-0.0}).fields[0]));
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
}

TEST(ProcessRecord, AContinuousValueThatIsUserMissingBecomesMissing) {
  BINVarList variables = Variables("AA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, ""));
  ASSERT_TRUE(variables.SetMissingInterval(0, -5.0, -1.0));
  Pass pass(variables);
  for (const double value : {9.0, -5.0, -3.0, -1.0}) {
    SCOPED_TRACE(value);
    EXPECT_EQ((Doubles{kMissing, value}), Process(pass, {value, value}).fields);
  }
  EXPECT_EQ((Doubles{0.0, 9.0}), Process(pass, {0.0, 9.0}).fields);
  EXPECT_EQ((Doubles{kMissing, 9.0}), Process(pass, {kMissing, 9.0}).fields);
  EXPECT_TRUE(std::isnan(Process(pass, {kNaN, 0.0}).fields[0]));
}

TEST(ProcessRecord, ACategoricalValueThatIsMissingOrExactlyMinusOneBecomesMissing) {
  Pass pass(Variables("C"));
  for (const double value : {kMissing, -1.0}) {
    const Processed result = Process(pass, {value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{kMissing}), result.fields);
  }
  EXPECT_TRUE(pass.IsValid(0));
}

// Unlike a target's, which is compared after truncation.
TEST(ProcessRecord, ACategoricalValueOfMinusOneAndAHalfIsOutOfRange) {
  Pass pass(Variables("C"));
  const Processed result = Process(pass, {-1.5});
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), result.status);
  EXPECT_EQ((Doubles{0.0}), result.fields);
  EXPECT_FALSE(pass.IsValid(0));
}

TEST(ProcessRecord, ACategoricalCodeIsWrittenAsItIsAndItsWholePartRaisesTheLargestCode) {
  Pass pass(Variables("AC"));
  const std::vector<std::pair<double, int>> cases = {{0.0, 0}, {-0.5, 0},    {7.75, 7},
                                                     {3.0, 7}, {255.0, 255}, {255.9, 255}};
  for (const auto& [value, largest] : cases) {
    SCOPED_TRACE(value);
    const Processed result = Process(pass, {1.5, value});
    EXPECT_EQ(TQStatus(), result.status);
    EXPECT_EQ((Doubles{1.5, value}), result.fields);
    EXPECT_EQ(largest, pass.preparator.GetLargestCode(1));
  }
}

TEST(ProcessRecord, ACategoricalCodeOutOfRangeClearsItsColumnWithAWarningThatNamesIt) {
  Doubles values = kTargetsOutOfRange;
  values.push_back(-1.0000000000000002);
  for (const double value : values) {
    SCOPED_TRACE(value);
    Pass pass(Variables("CTWA"));  // variable 0 is in column 2
    const Processed result = Process(pass, {value, 1.0, 2.0, 3.5});
    EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
    EXPECT_EQ((Doubles{1.0, 2.0, 0.0, 3.5}), result.fields);
    EXPECT_FALSE(pass.IsValid(2));
    EXPECT_TRUE(pass.IsValid(0));
    EXPECT_EQ(0, pass.preparator.GetLargestCode(2));
  }
}

TEST(ProcessRecord, ACategoricalColumnThatIsClearedIsLeftAtZeroUnlessTheValueIsMissing) {
  Pass pass(Variables("C"));
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0}).status);
  const Processed good = Process(pass, {5.0});
  EXPECT_EQ(TQStatus(), good.status);
  EXPECT_EQ((Doubles{0.0}), good.fields);
  EXPECT_EQ(0, pass.preparator.GetLargestCode(0));
  const Processed bad = Process(pass, {256.0});
  EXPECT_EQ(TQStatus(), bad.status);
  EXPECT_EQ((Doubles{0.0}), bad.fields);
  EXPECT_EQ((Doubles{kMissing}), Process(pass, {-1.0}).fields);
}

TEST(ProcessRecord, TheLastOfSeveralWarningsIsReturned) {
  Pass pass(Variables("TCC"));
  const Processed result = Process(pass, {256.0, 257.0, 258.0});
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 2), result.status);
  for (const int column : {0, 1, 2}) EXPECT_FALSE(pass.IsValid(column));
}

// Categorical values are codes already: definitions speak of values.
TEST(ProcessRecord, UserMissingDefinitionsOfCategoricalVariablesAreNotAsked) {
  BINVarList variables = Variables("TC");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 3.0, ""));
  ASSERT_TRUE(variables.AddDiscreteUserMissing(1, 4.0, ""));
  Pass pass(variables);
  EXPECT_EQ((Doubles{3.0, 4.0}), Process(pass, {3.0, 4.0}).fields);
}

TEST(ProcessRecord, AVariableOfUnknownLevelIsCategorical) {
  BINVarList variables;
  variables.AddCatVar("unknown", "", 2, IBINVariable::kUnknownLevel, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ((Doubles{kMissing}), Process(pass, {-1.0}).fields);
  EXPECT_EQ(Warning(TQBinning::kCodeOutOfRange, 0), Process(pass, {256.0}).status);
}

// ---- transferring a block ----

TEST(TransferData, AppendsEveryRowToItsFileAndEmptiesTheCache) {
  Pass pass(Variables("AA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  support::WriteColumn(pass.preparator.GetFileNames()[0], {9.0});
  for (const double value : {1.0, 2.0}) ASSERT_TRUE(pass.preparator.fCache.AddElem(0, value));
  ASSERT_TRUE(pass.preparator.fCache.AddElem(1, 3.0));
  EXPECT_EQ(TQStatus(), pass.preparator.TransferData());
  EXPECT_EQ((Doubles{9.0, 1.0, 2.0}), pass.Column(0));
  EXPECT_EQ((Doubles{3.0}), pass.Column(1));
  EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(0));
  EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(1));
}

TEST(TransferData, CreatesAnEmptyFileForAnEmptyRow) {
  Pass pass(Variables("AA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  EXPECT_EQ(TQStatus(), pass.preparator.TransferData());
  EXPECT_EQ(2u, pass.scratch.CountFiles());
  EXPECT_EQ(Doubles{}, pass.Column(0));
}

TEST(TransferData, AFileThatCannotBeOpenedEndsTheTransferAndEmptiesTheCacheAllTheSame) {
  Pass pass(Variables("AAA"));
  ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
  pass.preparator.fFileNames[1] = pass.scratch.File("no/such/directory");
  for (const int row : {0, 1, 2}) ASSERT_TRUE(pass.preparator.fCache.AddElem(row, row + 0.5));
  EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.TransferData());
  EXPECT_EQ((Doubles{0.5}), pass.Column(0));
  EXPECT_FALSE(std::filesystem::exists(pass.preparator.GetFileNames()[2]));
  for (const int row : {0, 1, 2}) EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(row));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
}

// A full disk shows when a block is written, or, for what still fits a buffer, when
// the file is closed.
TEST(TransferData, AFullDiskIsAnErrorForLargeBlocksAndForSmallOnes) {
  for (const int cases : {1, 10000}) {
    SCOPED_TRACE(cases);
    Pass pass(Variables("A"));
    ASSERT_EQ(TQStatus(), pass.preparator.SetUpTempFiles());
    // Through a link, since the preparator removes its files in the end.
    std::filesystem::create_symlink("/dev/full", pass.preparator.GetFileNames()[0]);
    for (int i = 0; i < cases; ++i) ASSERT_TRUE(pass.preparator.fCache.AddElem(0, 1.0));
    EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.TransferData());
    EXPECT_EQ(0u, pass.preparator.fCache.GetRowSize(0));
  }
}

// ---- variables whose kind and declaration disagree

TEST(MismatchedVariables, AStringDefinitionOfAVariableDeclaredContinuousHoldsNoNumber) {
  BINVarList list;
  list.AddCatVar("declared continuous", "", 2, IBINVariable::kContinuous, IBINVariable::kAttribute);
  auto* const strings = new BINStringUserMissing;
  strings->AddValue("9", "");
  ASSERT_TRUE(list.GetVarAt(0)->SetUserMissingInfo(strings));
  BINCancelInfo cancelInfo(nullptr);
  BINDataPreparator preparator(list, cancelInfo, "", nullptr, 0);
  TQCommon::Record out(1);
  EXPECT_TRUE(preparator.ProcessRecord(support::MakeRecord({9.0}), out).IsOK());
  EXPECT_EQ(9.0, out[0]);
}

TEST(MismatchedVariables, AWeightRoleGivenToACategoricalVariableMakesNoWeight) {
  for (const auto level : {IBINVariable::kStringCategorical, IBINVariable::kWeightLevel}) {
    BINVarList list;
    list.AddContVar("x", "", IBINVariable::kAttribute);
    list.AddCatVar("c", "", 2, level, IBINVariable::kFrequencyWeight);
    BINCancelInfo cancelInfo(nullptr);
    BINDataPreparator preparator(list, cancelInfo, "", nullptr, 0);
    TQCommon::Record out(1);
    EXPECT_TRUE(preparator.ProcessRecord(support::MakeRecord({5.0, 0.25}), out).IsOK());
    EXPECT_EQ(5.0, out[0]);
  }
}

}  // namespace
