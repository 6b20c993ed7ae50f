#include <algorithm>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "property/trials.h"

// A copy equals its source, shares nothing with it, and serves as well.
namespace {

using namespace property;

// ------------------------------------------------------------------------ copies

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  os.precision(17);
  shown.Display(os);
  return os.str();
}

// Changes every part of a list that can be changed.
void ChangeEverything(BINVarList& list) {
  for (int i = 0; i < list.Size(); ++i) {
    IBINVariable* variable = list.GetVarAt(i);
    variable->SetVariableLabel("changed");
    list.SetMissingInterval(i, -5.0, -4.0);
    list.AddDiscreteUserMissing(i, 12345.0, "twelve");
    list.AddDiscreteUserMissing(i, "n/a", "not there");
    IBINEncoder* encoder = list.GetEncoderAt(i);
    if (auto* numeric = dynamic_cast<BINCatNumEncoder*>(encoder)) numeric->Encode(777.0);
    if (auto* string = dynamic_cast<BINStringEncoder*>(encoder)) string->Encode("new");
    if (encoder != nullptr) encoder->SetValueLabel(0, "zero");
    variable->SetVariableRole(IBINVariable::kUndefinedRole);
  }
  list.UpdateNumbersOfCategories();
  list.AddContVar("added", "", IBINVariable::kAttribute);
  list.RemoveVar(0);
}

// A list with every kind of variable, encoders that have seen values included.
BINVarList FullList(const Problem& problem) {
  std::string complaint;
  BINVarList list = property::MakeVarList(problem, complaint);
  EXPECT_EQ("", complaint);
  list.AddCatVar("numbers", "", std::vector<double>{3.0, 1.0, 2.0}, {"c", "a", "b"},
                 IBINVariable::kAttribute);
  list.AddCatVar("strings", "", std::vector<std::string>{"x", "y"}, {"ex", "why"},
                 IBINVariable::kAttribute);
  return list;
}

// A copy is as good as the original and has nothing in common with it.
TEST_F(Properties, ACopiedListEqualsItsSourceAndSharesNothing) {
  ForProblems([](const Problem& problem, Random&) {
    auto source = std::make_unique<BINVarList>(FullList(problem));
    const std::string text = TextOf(*source);
    BINVarList copy(*source);
    Problem other;
    other.variables = {property::Weight(0)};
    BINVarList assigned = FullList(other);
    assigned = *source;
    for (const BINVarList* list : {&copy, &assigned}) {
      EXPECT_EQ(text, TextOf(*list));
      EXPECT_EQ(source->GetWeightIndex(), list->GetWeightIndex());
      EXPECT_EQ(source->GetTargetIndex(), list->GetTargetIndex());
      EXPECT_EQ(source->GetNumAttributeVars(), list->GetNumAttributeVars());
      EXPECT_EQ(source->GetNTargetCats(), list->GetNTargetCats());
    }
    ChangeEverything(copy);
    EXPECT_NE(text, TextOf(copy));
    EXPECT_EQ(text, TextOf(*source));
    EXPECT_EQ(text, TextOf(assigned));
    ChangeEverything(*source);
    EXPECT_EQ(text, TextOf(assigned));
    source.reset();
    EXPECT_EQ(text, TextOf(assigned));
    return true;
  });
}

// The algorithm works on copies of its own: the host's objects may change, or go, once
// it has been made.
TEST_F(Properties, TheHostsListAndSettingsMayChangeOnceTheAlgorithmIsMade) {
  ForProblems([this](const Problem& problem, Random&) {
    const Outcome expected = Run(problem);
    if (problem.supervised || expected.results.empty()) return false;
    std::string complaint;
    auto list = std::make_unique<BINVarList>(property::MakeVarList(problem, complaint));
    auto settings = std::make_unique<EFBINSettings>();
    settings->SetTempDirName(fDirectory.Path());
    settings->SetRightBorderClosed(problem.rightClosed);
    settings->SetNumberOfBins(problem.numberOfBins);
    EFBINFactory factory;
    const std::unique_ptr<IEFBINAlgorithm> algorithm(
        factory.CreateEFBINAlgorithm(*settings, *list));
    settings->SetRightBorderClosed(!problem.rightClosed);
    settings->SetNumberOfBins(problem.numberOfBins + 1);
    settings->SetTempDirName("/nowhere");
    ChangeEverything(*list);
    settings.reset();
    list.reset();

    support::MemoryRecords records(problem.records);
    for (const Call& call : problem.calls) {
      // Its status is compared below, with all the others.
      static_cast<void>(
          algorithm->CreateBins(records, call.attributes ? &*call.attributes : nullptr));
    }
    std::vector<BINAttributeResults> results;
    EXPECT_TRUE(algorithm->GetBinningResults().GetAllCutPoints(results).IsOK());
    if (results.size() != expected.results.size()) {
      ADD_FAILURE() << results.size() << " results";
      return true;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
      EXPECT_EQ(expected.results[i].status.code, results[i].GetStatus().GetErrorCode());
      EXPECT_TRUE(
          std::ranges::equal(expected.results[i].cuts, results[i].GetCutPoints(), SameNumber));
      EXPECT_TRUE(std::ranges::equal(expected.results[i].cellCounts, results[i].GetCellCounts(),
                                     SameNumber));
    }
    return true;
  });
}

// Results that were copied outlive the algorithm, and keep what they held while the
// original goes on growing.
TEST_F(Properties, CopiedResultsEqualTheirSourceAndSurviveIt) {
  ForProblems([this](const Problem& problem, Random&) {
    if (!problem.supervised) return false;
    std::string complaint;
    BINVarList list = property::MakeVarList(problem, complaint);
    BINSettings settings;
    settings.SetTempDirName(fDirectory.Path());
    settings.SetNumberOfBins(3);
    BINFactory factory;
    std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
    if (algorithm == nullptr || !HasUsableCodes(problem)) return false;
    support::MemoryRecords records(problem.records);
    static_cast<void>(algorithm->CreateBins(records, nullptr, nullptr));  // seen in the results
    const std::string text = TextOf(algorithm->GetBinningResults());
    const BINOutput copy(algorithm->GetBinningResults());
    BINOutput assigned;
    static_cast<void>(assigned.SetAttributeTargetResults({}, {1.0}, {1.0, 2.0}, 7, 8, 1, 1.0, 1.0,
                                                         0.0, 1.0, 0.5));
    assigned = copy;
    EXPECT_EQ(text, TextOf(copy));
    EXPECT_EQ(text, TextOf(assigned));
    EXPECT_TRUE(
        assigned.SetAttributeTargetResults({}, {1.0}, {1.0, 2.0}, 7, 8, 1, 1.0, 1.0, 0.0, 1.0, 0.5)
            .IsOK());
    EXPECT_NE(text, TextOf(assigned));
    EXPECT_EQ(text, TextOf(copy));
    static_cast<void>(algorithm->CreateBins(records, nullptr, nullptr));
    EXPECT_EQ(text, TextOf(copy));
    algorithm.reset();
    EXPECT_EQ(text, TextOf(copy));
    return true;
  });
}

}  // namespace
