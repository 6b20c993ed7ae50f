#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/binfactory.h"
#include "tqbinning/efbinfactory.h"

// What both factories make, what they refuse, and what they then say of it.
namespace {

using support::CancelAtPoll;
using support::Columns;
using support::Error;
using support::MemoryRecords;
using support::OK;
using support::TQStatus;
using support::VarList;

class SupervisedFactory : public BINFactory {
 public:
  using Settings = BINSettings;
  using Algorithm = BINAlgorithm;
  static BINVarList ValidList() { return VarList("xy"); }
  std::unique_ptr<IBINAlgorithm> Create(BINVarList list, BINSettings& settings) {
    return std::unique_ptr<IBINAlgorithm>(CreateBINAlgorithm(settings, list));
  }
  static TQStatus CreateBins(IBINAlgorithm& algorithm) {
    MemoryRecords records(Columns({{1, 2, 3, 4}, {0, 0, 1, 1}}));
    return algorithm.CreateBins(records, nullptr, nullptr);
  }
};

class EqualFrequencyFactory : public EFBINFactory {
 public:
  using Settings = EFBINSettings;
  using Algorithm = EFBINAlgorithm;
  static BINVarList ValidList() { return VarList("xx"); }
  std::unique_ptr<IEFBINAlgorithm> Create(BINVarList list, EFBINSettings& settings) {
    return std::unique_ptr<IEFBINAlgorithm>(CreateEFBINAlgorithm(settings, list));
  }
  static TQStatus CreateBins(IEFBINAlgorithm& algorithm) {
    MemoryRecords records(Columns({{1, 2, 3, 4}, {1, 2, 3, 4}}));
    return algorithm.CreateBins(records, nullptr);
  }
};

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

template <typename FactoryOfAFamily>
class Factory : public testing::Test {
 protected:
  FactoryOfAFamily factory;
  typename FactoryOfAFamily::Settings settings;

  auto Create(const BINVarList& list) { return factory.Create(list, settings); }
  auto CreateOfAValidList() { return Create(FactoryOfAFamily::ValidList()); }
};

using Factories = testing::Types<SupervisedFactory, EqualFrequencyFactory>;
TYPED_TEST_SUITE(Factory, Factories);

TYPED_TEST(Factory, ANewOneIsOK) { EXPECT_EQ(OK(), this->factory.GetStatus()); }

TYPED_TEST(Factory, MakesAnAlgorithmOfAValidList) {
  BINVarList list = TypeParam::ValidList();
  ASSERT_NE(-1, list.AddWeightVar("weight", "", IBINVariable::kRoundToClosest));
  const auto algorithm = this->Create(list);
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(OK(), this->factory.GetStatus());
  EXPECT_EQ(OK(), algorithm->GetStatus());
  const auto* binning = dynamic_cast<const typename TypeParam::Algorithm*>(algorithm.get());
  ASSERT_NE(nullptr, binning);
  EXPECT_EQ(3, binning->GetVarList().Size());
}

TYPED_TEST(Factory, TheAlgorithmHasItsOwnCopyOfTheSettings) {
  ASSERT_TRUE(this->settings.SetNumberOfBins(5));
  const auto algorithm = this->CreateOfAValidList();
  ASSERT_NE(nullptr, algorithm);
  ASSERT_TRUE(this->settings.SetNumberOfBins(6));
  EXPECT_EQ(5, algorithm->GetSettings().GetNumberOfBins());
}

TYPED_TEST(Factory, DoesNotLookAtTheNumberOfBins) {
  const support::ScratchDirectory directory;
  this->settings.SetTempDirName(directory.Path());
  const auto algorithm = this->CreateOfAValidList();
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(Error(120009), TypeParam::CreateBins(*algorithm));
}

TYPED_TEST(Factory, AlgorithmsOutliveTheFactoryAndAreIndependent) {
  const support::ScratchDirectory directory;
  this->settings.SetTempDirName(directory.Path());
  ASSERT_TRUE(this->settings.SetNumberOfBins(2));
  auto shortLived = std::make_unique<TypeParam>();
  const auto first = shortLived->Create(TypeParam::ValidList(), this->settings);
  auto second = shortLived->Create(TypeParam::ValidList(), this->settings);
  shortLived.reset();
  ASSERT_NE(nullptr, first);
  EXPECT_NE(first, second);
  second.reset();
  EXPECT_EQ(OK(), TypeParam::CreateBins(*first));
}

TYPED_TEST(Factory, AListWithoutAttributesIsInvalidAndNamesNoVariable) {
  EXPECT_EQ(nullptr, this->Create(VarList("y")));
  EXPECT_EQ(InvalidList(-1), this->factory.GetStatus());
  EXPECT_EQ(nullptr, this->Create(BINVarList()));
  EXPECT_EQ(InvalidList(-1), this->factory.GetStatus());
}

TYPED_TEST(Factory, AVariableOfOneCategoryIsNamed) {
  BINVarList list = TypeParam::ValidList();
  AddCategorical(list, "one", 1);
  AddCategorical(list, "another", 1);
  EXPECT_EQ(nullptr, this->Create(list));
  EXPECT_EQ(InvalidList(2), this->factory.GetStatus());
}

TYPED_TEST(Factory, AVariableWithoutCategoriesIsNamed) {
  BINVarList list = VarList("x");
  AddCategorical(list, "none", 0);
  AddCategorical(list, "nothing", 0);
  EXPECT_EQ(nullptr, this->Create(list));
  EXPECT_EQ(InvalidList(1), this->factory.GetStatus());
}

TYPED_TEST(Factory, AVariableWithoutCategoriesIsNamedBeforeOneOfASingleCategory) {
  BINVarList list = TypeParam::ValidList();
  AddCategorical(list, "one", 1);
  AddCategorical(list, "two", 2);
  AddCategorical(list, "none", 0);
  EXPECT_EQ(nullptr, this->Create(list));
  EXPECT_EQ(InvalidList(4), this->factory.GetStatus());
}

TYPED_TEST(Factory, EveryCreationBeginsWithAnOKStatus) {
  EXPECT_EQ(nullptr, this->Create(VarList("y")));
  EXPECT_TRUE(this->factory.GetStatus().IsError());
  EXPECT_NE(nullptr, this->CreateOfAValidList());
  EXPECT_EQ(OK(), this->factory.GetStatus());
  EXPECT_EQ(nullptr, this->Create(VarList("y")));
  EXPECT_EQ(InvalidList(-1), this->factory.GetStatus());
}

TYPED_TEST(Factory, AQueryThatAlreadyCancelsMakesNoAlgorithm) {
  CancelAtPoll query(1);
  this->settings.SetCancelPointer(&query);
  EXPECT_EQ(nullptr, this->CreateOfAValidList());
  EXPECT_EQ(Error(1), this->factory.GetStatus());
}

TYPED_TEST(Factory, AnInvalidListIsFoundBeforeTheQueryIsAsked) {
  CancelAtPoll query(1);
  this->settings.SetCancelPointer(&query);
  EXPECT_EQ(nullptr, this->Create(VarList("y")));
  EXPECT_EQ(InvalidList(-1), this->factory.GetStatus());
  EXPECT_EQ(0, query.Polls());
}

TYPED_TEST(Factory, AQueryThatDoesNotCancelIsKeptByTheAlgorithm) {
  CancelAtPoll query(2);
  this->settings.SetCancelPointer(&query);
  const auto algorithm = this->CreateOfAValidList();
  ASSERT_NE(nullptr, algorithm);
  EXPECT_EQ(1, query.Polls());
  EXPECT_EQ(Error(1), algorithm->GetStatus());
}

}  // namespace
