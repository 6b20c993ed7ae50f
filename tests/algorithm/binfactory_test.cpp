#include "tqbinning/binfactory.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"

namespace {

using support::CancelAtPoll;
using support::Columns;
using support::Error;
using support::MemoryRecords;
using support::OK;
using support::TQStatus;
using support::VarList;

std::unique_ptr<IBINAlgorithm> Create(BINFactory& factory, BINVarList list,
                                      BINSettings settings = BINSettings()) {
  return std::unique_ptr<IBINAlgorithm>(factory.CreateBINAlgorithm(settings, list));
}

TQStatus InvalidList(long index) {
  TQStatus status(120003, false);
  status.SetDiscreteDatum(1, index);
  return status;
}

// A variable with no or one category is not fit for binning.
void AddCategorical(BINVarList& list, const std::string& name, int categories) {
  ASSERT_NE(-1, list.AddCatVar(name, "", categories, IBINVariable::kNumericCategorical,
                               IBINVariable::kAttribute));
}

TEST(BINFactory, ANewOneIsOK) { EXPECT_EQ(OK(), BINFactory().GetStatus()); }

TEST(BINFactory, MakesAnAlgorithmOfAValidList) {
  BINFactory factory;
  const auto algorithm = Create(factory, VarList("xyw"));
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(OK(), factory.GetStatus());
  EXPECT_EQ(OK(), algorithm->GetStatus());
  const auto* binning = dynamic_cast<const BINAlgorithm*>(algorithm.get());
  ASSERT_NE(nullptr, binning);
  EXPECT_EQ(3, binning->GetVarList().Size());
}

TEST(BINFactory, TheAlgorithmHasItsOwnCopyOfTheSettings) {
  BINFactory factory;
  BINSettings settings;
  BINVarList list = VarList("xy");
  ASSERT_TRUE(settings.SetNumberOfBins(5));
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  EXPECT_EQ(5, algorithm->GetSettings().GetNumberOfBins());
}

TEST(BINFactory, DoesNotLookAtTheNumberOfBins) {
  const support::ScratchDirectory directory;
  BINSettings settings;
  settings.SetTempDirName(directory.Path());
  BINFactory factory;
  const auto algorithm = Create(factory, VarList("xy"), settings);
  ASSERT_NE(nullptr, algorithm);
  MemoryRecords records(Columns({{1, 2}, {0, 1}}));
  EXPECT_EQ(Error(120009), algorithm->CreateBins(records, nullptr, nullptr));
}

TEST(BINFactory, AlgorithmsOutliveTheFactoryAndAreIndependent) {
  const support::ScratchDirectory directory;
  BINSettings settings;
  settings.SetTempDirName(directory.Path());
  ASSERT_TRUE(settings.SetNumberOfBins(2));
  auto factory = std::make_unique<BINFactory>();
  const auto first = Create(*factory, VarList("xy"), settings);
  auto second = Create(*factory, VarList("xy"), settings);
  factory.reset();
  EXPECT_NE(first, second);
  second.reset();
  MemoryRecords records(Columns({{1, 2, 3, 4}, {0, 0, 1, 1}}));
  EXPECT_EQ(OK(), first->CreateBins(records, nullptr, nullptr));
}

TEST(BINFactory, AListWithoutAttributesIsInvalidAndNamesNoVariable) {
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
  EXPECT_EQ(nullptr, Create(factory, BINVarList()));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
}

TEST(BINFactory, AVariableOfOneCategoryIsNamed) {
  BINVarList list = VarList("xy");
  AddCategorical(list, "one", 1);
  AddCategorical(list, "another", 1);
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(2), factory.GetStatus());
}

TEST(BINFactory, AVariableWithoutCategoriesIsNamed) {
  BINVarList list = VarList("x");
  AddCategorical(list, "none", 0);
  AddCategorical(list, "nothing", 0);
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(1), factory.GetStatus());
}

TEST(BINFactory, AVariableWithoutCategoriesIsNamedBeforeOneOfASingleCategory) {
  BINVarList list = VarList("xy");
  AddCategorical(list, "one", 1);
  AddCategorical(list, "two", 2);
  AddCategorical(list, "none", 0);
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(4), factory.GetStatus());
}

TEST(BINFactory, EveryCreationBeginsWithAnOKStatus) {
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_TRUE(factory.GetStatus().IsError());
  EXPECT_NE(nullptr, Create(factory, VarList("xy")));
  EXPECT_EQ(OK(), factory.GetStatus());
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
}

TEST(BINFactory, AQueryThatAlreadyCancelsMakesNoAlgorithm) {
  CancelAtPoll query(1);
  BINSettings settings;
  settings.SetCancelPointer(&query);
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("xy"), settings));
  EXPECT_EQ(Error(1), factory.GetStatus());
}

TEST(BINFactory, AnInvalidListIsFoundBeforeTheQueryIsAsked) {
  CancelAtPoll query(1);
  BINSettings settings;
  settings.SetCancelPointer(&query);
  BINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y"), settings));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
  EXPECT_EQ(0, query.Polls());
}

TEST(BINFactory, AQueryThatDoesNotCancelIsKeptByTheAlgorithm) {
  CancelAtPoll query(2);
  BINSettings settings;
  settings.SetCancelPointer(&query);
  BINFactory factory;
  const auto algorithm = Create(factory, VarList("xy"), settings);
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(1, query.Polls());
  EXPECT_EQ(Error(1), algorithm->GetStatus());
}

}  // namespace
