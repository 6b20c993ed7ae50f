#include "tqbinning/efbinfactory.h"

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

std::unique_ptr<IEFBINAlgorithm> Create(EFBINFactory& factory, BINVarList list,
                                        EFBINSettings settings = EFBINSettings()) {
  return std::unique_ptr<IEFBINAlgorithm>(factory.CreateEFBINAlgorithm(settings, list));
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

TEST(EFBINFactory, ANewOneIsOK) { EXPECT_EQ(OK(), EFBINFactory().GetStatus()); }

TEST(EFBINFactory, MakesAnAlgorithmOfAValidList) {
  EFBINFactory factory;
  const auto algorithm = Create(factory, VarList("xxw"));
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(OK(), factory.GetStatus());
  EXPECT_EQ(OK(), algorithm->GetStatus());
  const auto* binning = dynamic_cast<const EFBINAlgorithm*>(algorithm.get());
  ASSERT_NE(nullptr, binning);
  EXPECT_EQ(3, binning->GetVarList().Size());
}

TEST(EFBINFactory, TheAlgorithmHasItsOwnCopyOfTheSettings) {
  EFBINFactory factory;
  EFBINSettings settings;
  BINVarList list = VarList("xx");
  ASSERT_TRUE(settings.SetNumberOfBins(5));
  const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  EXPECT_EQ(5, algorithm->GetSettings().GetNumberOfBins());
}

TEST(EFBINFactory, DoesNotLookAtTheNumberOfBins) {
  const support::ScratchDirectory directory;
  EFBINSettings settings;
  settings.SetTempDirName(directory.Path());
  EFBINFactory factory;
  const auto algorithm = Create(factory, VarList("xx"), settings);
  ASSERT_NE(nullptr, algorithm);
  MemoryRecords records(Columns({{1, 2}, {1, 2}}));
  EXPECT_EQ(Error(120009), algorithm->CreateBins(records, nullptr));
}

TEST(EFBINFactory, AlgorithmsOutliveTheFactoryAndAreIndependent) {
  const support::ScratchDirectory directory;
  EFBINSettings settings;
  settings.SetTempDirName(directory.Path());
  ASSERT_TRUE(settings.SetNumberOfBins(2));
  auto factory = std::make_unique<EFBINFactory>();
  const auto first = Create(*factory, VarList("xx"), settings);
  auto second = Create(*factory, VarList("xx"), settings);
  factory.reset();
  EXPECT_NE(first, second);
  second.reset();
  MemoryRecords records(Columns({{1, 2, 3, 4}, {1, 2, 3, 4}}));
  EXPECT_EQ(OK(), first->CreateBins(records, nullptr));
}

TEST(EFBINFactory, AListWithoutAttributesIsInvalidAndNamesNoVariable) {
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
  EXPECT_EQ(nullptr, Create(factory, BINVarList()));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
}

TEST(EFBINFactory, AVariableOfOneCategoryIsNamed) {
  BINVarList list = VarList("xx");
  AddCategorical(list, "one", 1);
  AddCategorical(list, "another", 1);
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(2), factory.GetStatus());
}

TEST(EFBINFactory, AVariableWithoutCategoriesIsNamed) {
  BINVarList list = VarList("x");
  AddCategorical(list, "none", 0);
  AddCategorical(list, "nothing", 0);
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(1), factory.GetStatus());
}

TEST(EFBINFactory, AVariableWithoutCategoriesIsNamedBeforeOneOfASingleCategory) {
  BINVarList list = VarList("xx");
  AddCategorical(list, "one", 1);
  AddCategorical(list, "two", 2);
  AddCategorical(list, "none", 0);
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, list));
  EXPECT_EQ(InvalidList(4), factory.GetStatus());
}

TEST(EFBINFactory, EveryCreationBeginsWithAnOKStatus) {
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_TRUE(factory.GetStatus().IsError());
  EXPECT_NE(nullptr, Create(factory, VarList("xx")));
  EXPECT_EQ(OK(), factory.GetStatus());
  EXPECT_EQ(nullptr, Create(factory, VarList("y")));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
}

TEST(EFBINFactory, AQueryThatAlreadyCancelsMakesNoAlgorithm) {
  CancelAtPoll query(1);
  EFBINSettings settings;
  settings.SetCancelPointer(&query);
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("xx"), settings));
  EXPECT_EQ(Error(1), factory.GetStatus());
}

TEST(EFBINFactory, AnInvalidListIsFoundBeforeTheQueryIsAsked) {
  CancelAtPoll query(1);
  EFBINSettings settings;
  settings.SetCancelPointer(&query);
  EFBINFactory factory;
  EXPECT_EQ(nullptr, Create(factory, VarList("y"), settings));
  EXPECT_EQ(InvalidList(-1), factory.GetStatus());
  EXPECT_EQ(0, query.Polls());
}

TEST(EFBINFactory, AQueryThatDoesNotCancelIsKeptByTheAlgorithm) {
  CancelAtPoll query(2);
  EFBINSettings settings;
  settings.SetCancelPointer(&query);
  EFBINFactory factory;
  const auto algorithm = Create(factory, VarList("xx"), settings);
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(1, query.Polls());
  EXPECT_EQ(Error(1), algorithm->GetStatus());
}

}  // namespace
