#include "tqbinning/bindatapreparator.h"

#include <climits>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/preparatorpass.h"

namespace {

using namespace metadata;

// ---- the whole pass ----

TEST(ProcessSource, SpoolsEveryColumnInCaseOrder) {
  Pass pass(Variables("AWT"));
  EXPECT_EQ(TQStatus(), pass.Run({{1.5, 2.0, 0.0}, {kMissing, 3.0, 1.0}, {-0.5, 4.0, kMissing}}));
  EXPECT_EQ((Doubles{0.0, 1.0, kMissing}), pass.Column(0));
  EXPECT_EQ((Doubles{2.0, 3.0, 4.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.5, kMissing, -0.5}), pass.Column(2));
  EXPECT_EQ(3u, pass.preparator.GetNumberOfKeptCases());
  EXPECT_EQ(1, pass.preparator.GetLargestCode(0));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
}

TEST(ProcessSource, BlocksFollowOneAnotherInTheFile) {
  for (int capacity = 1; capacity <= 6; ++capacity) {
    SCOPED_TRACE(capacity);
    Pass pass(Variables("TA"));
    pass.preparator.fCacheCapacity = capacity;
    EXPECT_EQ(TQStatus(), pass.Run({{0, 1}, {1, 2}, {0, 3}, {1, 4}, {0, 5}}));
    EXPECT_EQ((Doubles{0.0, 1.0, 0.0, 1.0, 0.0}), pass.Column(0));
    EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0, 5.0}), pass.Column(1));
    EXPECT_EQ(5u, pass.preparator.GetNumberOfKeptCases());
  }
}

TEST(ProcessSource, TransfersABlockAsSoonAsTenThousandCasesAreKept) {
  Rows rows;
  for (int i = 0; i < 10002; ++i) rows.push_back({static_cast<double>(i)});
  Pass pass(Variables("A"));
  std::vector<std::size_t> lengths;  // of the file, whenever a case is asked for
  EventfulRecords records(rows, [&] {
    const std::string& name = pass.preparator.GetFileNames()[0];
    lengths.push_back(std::filesystem::exists(name) ? std::filesystem::file_size(name) : 0);
  });
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ(0u, lengths[9999]);
  EXPECT_EQ(80000u, lengths[10000]);
  EXPECT_EQ(80000u, lengths[10001]);
  EXPECT_EQ(10002u, pass.Column(0).size());
}

TEST(ProcessSource, ACaseThatIsDroppedIsNeitherKeptNorWritten) {
  Pass pass(Variables("TWA"));
  EXPECT_EQ(TQStatus(), pass.Run({{0, 1, 1}, {1, kMissing, 2}, {1, 0.25, 3}, {1, 2, 4}}));
  EXPECT_EQ((Doubles{0.0, 1.0}), pass.Column(0));
  EXPECT_EQ((Doubles{1.0, 2.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.0, 4.0}), pass.Column(2));
  EXPECT_EQ(2u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, AnIteratorThatYieldsNoCaseIsALastingError) {
  Pass pass(Variables("A"));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.Run({}));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.GetStatus());
  EXPECT_EQ(0u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, AnIteratorWhoseEveryCaseIsDroppedIsALastingError) {
  Pass pass(Variables("WA"));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.Run({{0.0, 1.0}, {kMissing, 2.0}}));
  EXPECT_EQ(Error(TQBinning::kNoCases), pass.preparator.GetStatus());
}

TEST(ProcessSource, ANullFromTheIteratorIsNotTheEndOfTheData) {
  Pass pass(Variables("A"));
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  for (const std::size_t call : {0u, 2u, 3u}) records.YieldNullAt(call);
  EXPECT_EQ(TQStatus(), pass.preparator.ProcessSource(records));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0}), pass.Column(0));
  EXPECT_EQ(6u, records.NextCalls());
  EXPECT_EQ(7u, records.HasMoreCalls());
}

// ---- columns that become unusable ----

TEST(ProcessSource, ATargetCodeOutOfRangeEndsThePassWhenItIsTheOnlyCategoricalVariable) {
  Pass pass(Variables("AT"));
  support::MemoryRecords records({{1.0, 0.0}, {2.0, 300.0}, {3.0, 1.0}});
  EXPECT_EQ(Error(TQBinning::kCodeOutOfRange, 1), pass.preparator.ProcessSource(records));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());  // not a lasting one
  EXPECT_EQ(2u, records.NextCalls());
  EXPECT_EQ(1u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, ATargetCodeOutOfRangeClearsColumnZeroBesideAnotherCategoricalVariable) {
  Pass pass(Variables("TCA"));
  EXPECT_EQ(TQStatus(), pass.Run({{1, 0, 1}, {300, 1, 2}, {1, 0, 3}, {-1, 1, 4}}));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_FALSE(pass.IsValid(0));
  EXPECT_TRUE(pass.IsValid(1));
  EXPECT_EQ((Doubles{1.0}), pass.Column(0));
  EXPECT_EQ((Doubles{0.0, 1.0, 0.0, 1.0}), pass.Column(1));
  EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0}), pass.Column(2));
  EXPECT_EQ(4u, pass.preparator.GetNumberOfKeptCases());
}

TEST(ProcessSource, ACategoricalColumnTakesTwoHundredFiftyFiveAndMissingButNoMore) {
  Pass pass(Variables("CCC"));
  EXPECT_EQ(TQStatus(), pass.Run({{255, 256, -2}, {-1, 1, 1}, {kMissing, 1, 1}}));
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(1));
  EXPECT_FALSE(pass.IsValid(2));
  EXPECT_EQ((Doubles{255.0, kMissing, kMissing}), pass.Column(0));
}

// Its file is as long as the pass had got, over several blocks; one that fails at
// the first case has an empty file.
TEST(ProcessSource, AColumnThatBecomesUnusableStopsBeingWritten) {
  for (int capacity = 1; capacity <= 6; ++capacity) {
    SCOPED_TRACE(capacity);
    Pass pass(Variables("ACC"));
    pass.preparator.fCacheCapacity = capacity;
    EXPECT_EQ(TQStatus(), pass.Run({{1, 5, 256}, {2, 6, 1}, {3, 256, 2}, {4, 7, 3}, {5, 8, 4}}));
    EXPECT_EQ((Doubles{1.0, 2.0, 3.0, 4.0, 5.0}), pass.Column(0));
    EXPECT_EQ((Doubles{5.0, 6.0}), pass.Column(1));
    EXPECT_EQ(Doubles{}, pass.Column(2));
    EXPECT_TRUE(std::filesystem::exists(pass.preparator.GetFileNames()[2]));
    EXPECT_EQ(5u, pass.preparator.GetNumberOfKeptCases());
  }
}

TEST(ProcessSource, ACodeBeyondTheDeclaredCategoriesClearsItsColumnAtTheEnd) {
  Pass pass(Variables("TCCA", 3));
  EXPECT_EQ(TQStatus(), pass.Run({{3, 2, 0, 9}, {1, 2, 3, 9}}));
  EXPECT_FALSE(pass.IsValid(0));
  EXPECT_TRUE(pass.IsValid(1));
  EXPECT_FALSE(pass.IsValid(2));
  EXPECT_TRUE(pass.IsValid(3));
  EXPECT_EQ((Doubles{3.0, 1.0}), pass.Column(0));  // written all the same
}

TEST(ProcessSource, AVariableDeclaredWithoutCategoriesLosesItsColumnEvenWithoutACode) {
  BINVarList variables = Variables("CA");
  variables.AddCatVar("string", "", 0, IBINVariable::kStringCategorical, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{0.0, 1.0, kMissing}}));
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(2));
}

TEST(ProcessSource, OnlyNumericAndStringCategoricalVariablesAreHeldToTheirDeclaration) {
  BINVarList variables = Variables("WA");
  variables.AddCatVar("unknown", "", 1, IBINVariable::kUnknownLevel, IBINVariable::kAttribute);
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{9.0, 9.0, 9.0}}));
  for (const int column : {0, 1, 2}) EXPECT_TRUE(pass.IsValid(column));
}

TEST(PreparatorIsValidTarget, AColumnOutOfRangeIsAnErrorAndLeavesTheFlag) {
  Pass pass(Variables("TA"));
  for (const int column : {-1, 2, INT_MIN, INT_MAX}) {
    SCOPED_TRACE(column);
    for (const bool before : {false, true}) {
      bool isValid = before;
      EXPECT_EQ(Error(TQBinning::kInvalidIndex), pass.preparator.IsValidTarget(column, isValid));
      EXPECT_EQ(before, isValid);
    }
  }
}

TEST(PreparatorIsValidTarget, AnswersForEveryColumnWhateverItHolds) {
  Pass pass(Variables("TWA"));
  pass.preparator.fPossibleInputs = {true, false, true};
  EXPECT_TRUE(pass.IsValid(0));
  EXPECT_FALSE(pass.IsValid(1));
  EXPECT_TRUE(pass.IsValid(2));
}

// ---- files that cannot be written ----

TEST(ProcessSource, ABlockThatCannotBeWrittenEndsThePass) {
  Options options;
  options.suffix = "/missing";
  Pass pass(Variables("A"), options);
  pass.preparator.fCacheCapacity = 2;
  support::MemoryRecords records(OneFieldEach({1.0, 2.0, 3.0}));
  EXPECT_EQ(Error(TQBinning::kCannotAppend), pass.preparator.ProcessSource(records));
  EXPECT_EQ(2u, records.NextCalls());
  EXPECT_EQ(1u, pass.preparator.GetNumberOfKeptCases());  // the second failed to be one
}

TEST(ProcessSource, TheStatusOfTheFinalTransferIsNotExamined) {
  Options options;
  options.suffix = "/missing";
  Pass pass(Variables("A"), options);
  EXPECT_EQ(TQStatus(), pass.Run(OneFieldEach({1.0, 2.0, 3.0})));
  EXPECT_EQ(TQStatus(), pass.preparator.GetStatus());
  EXPECT_EQ(3u, pass.preparator.GetNumberOfKeptCases());
}

// A role that is changed behind the list's back leaves it a target column that no
// variable fills, which makes room for one without a column.
TEST(ProcessSource, AVariableWithoutAColumnIsHeldToNoDeclaration) {
  BINVarList list = Variables("TAC", 2);
  list.GetVarAt(0)->SetVariableRole(IBINVariable::kAttribute);
  list.GetVarAt(2)->SetVariableRole(IBINVariable::kUndefinedRole);
  Pass pass(list);
  EXPECT_EQ((Ints{1, 2, -1}), pass.preparator.GetVariableIndex());
  EXPECT_EQ(TQStatus(), pass.Run({{1.0, 5.0, 9.0}, {0.0, 6.0, 9.0}}));
  EXPECT_EQ((Doubles{0.0, 0.0}), pass.Column(0));
  EXPECT_EQ((Doubles{1.0, 0.0}), pass.Column(1));
  EXPECT_EQ((Doubles{5.0, 6.0}), pass.Column(2));
  for (const int column : {0, 1, 2}) EXPECT_TRUE(pass.IsValid(column)) << column;
}

TEST(ProcessSource, UserMissingValuesAreSpooledAsMissing) {
  BINVarList variables = Variables("AA");
  ASSERT_TRUE(variables.AddDiscreteUserMissing(0, 9.0, ""));
  ASSERT_TRUE(variables.SetMissingInterval(0, -5.0, -1.0));
  Pass pass(variables);
  EXPECT_EQ(TQStatus(), pass.Run({{9.0, 9.0}, {8.0, -2.0}, {-2.0, kMissing}}));
  EXPECT_EQ((Doubles{kMissing, 8.0, kMissing}), pass.Column(0));
  EXPECT_EQ((Doubles{9.0, -2.0, kMissing}), pass.Column(1));
}

}  // namespace
