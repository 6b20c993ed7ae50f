// The machinery of the comparison itself: it must see every difference, make the same
// problems everywhere, and shrink without losing what it looks for.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "property/agreement.h"
#include "property/observations.h"
#include "property/outcomes.h"
#include "property/problemgenerator.h"
#include "property/problemtext.h"
#include "property/problemwords.h"
#include "property/random.h"
#include "property/shrink.h"

namespace {

using namespace property;
using reference::Outcome;
using reference::PairResult;
using reference::Problem;
using reference::Ties;

// ------------------------------------------------------------------- generator

// Known values of splitmix64 from state 0.
TEST(Random, IsSplitMix64) {
  Random random(0);
  EXPECT_EQ(0xE220A8397B1DCDAFu, random.Next());
  EXPECT_EQ(0x6E789E6AA1B965F4u, random.Next());
  EXPECT_EQ(0x06C45D188009454Fu, random.Next());
}

TEST(Random, BetweenReachesBothEndsAndNothingBeyond) {
  Random random(1);
  std::set<int> seen;
  for (int i = 0; i < 1000; ++i) seen.insert(random.Between(-2, 3));
  EXPECT_EQ((std::set<int>{-2, -1, 0, 1, 2, 3}), seen);
}

// FNV-1a.
std::uint64_t HashOf(const std::string& text) {
  std::uint64_t hash = 0xCBF29CE484222325u;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
  return hash;
}

// A seed in a report is worth something only if it makes the same problem elsewhere.
// A deliberate change of the generator changes the number.
TEST(ProblemGenerator, ASeedMeansTheSameProblemWithEveryCompiler) {
  std::string text;
  for (std::uint64_t seed = 1; seed <= 300; ++seed) text += TextOf(Generate(seed).problem);
  EXPECT_EQ(15537520497420981407u, HashOf(text));
}

// ------------------------------------------------------------------ comparison

Problem SmallProblem() {
  Problem problem;
  problem.variables = {Continuous(), Target(2)};
  problem.records = {{1, 0}, {2, 0}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 0}, {8, 0}};
  problem.numberOfBins = 2;
  problem.calls = {All()};
  return problem;
}

TEST(Outcomes, EveryFieldThatDiffersIsSeen) {
  const Outcome outcome = reference::Run(SmallProblem());
  ASSERT_EQ(1u, outcome.results.size());
  ASSERT_FALSE(outcome.results[0].cellCounts.empty());
  const std::vector<std::function<void(Outcome&)>> changes = {
      [](Outcome& o) { o.callStatuses[0].code = 1; },
      [](Outcome& o) { o.callStatuses[0].severity = -1; },
      [](Outcome& o) { o.callStatuses[0].discrete[2] = 1; },
      [](Outcome& o) { o.callStatuses[0].scale[2] = 1.0; },
      [](Outcome& o) { o.callStatuses.emplace_back(); },
      [](Outcome& o) { o.callStatuses.clear(); },
      [](Outcome& o) { o.finalStatus.code = 7; },
      [](Outcome& o) { o.results.clear(); },
      [](Outcome& o) { o.results.push_back(o.results[0]); },
      [](Outcome& o) { o.results[0].status.discrete[0] = 1; },
      [](Outcome& o) { o.results[0].attribute = 1; },
      [](Outcome& o) { o.results[0].target = 0; },
      [](Outcome& o) { o.results[0].cuts.push_back(9.0); },
      [](Outcome& o) {
        o.results[0].cellCounts[0] = std::nextafter(o.results[0].cellCounts[0], 0);
      },
      [](Outcome& o) { o.results[0].nDistinct += 1; },
      [](Outcome& o) { o.results[0].totalWeight += 1; },
      [](Outcome& o) { o.results[0].totalWeightWithMissing = kNaN; },
      [](Outcome& o) { o.results[0].minimum = -o.results[0].minimum; },
      [](Outcome& o) { o.results[0].maximum = kInfinity; },
      [](Outcome& o) { o.results[0].modelEntropy = 5e-324; },
  };
  EXPECT_EQ("", Difference(outcome, outcome));
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Outcome changed = outcome;
    changes[i](changed);
    EXPECT_NE("", Difference(outcome, changed)) << "change " << i;
    EXPECT_NE("", Difference(changed, outcome)) << "change " << i;
  }
}

TEST(Outcomes, ZerosAreOneNumberAndSoAreNaNs) {
  EXPECT_TRUE(SameNumber(0.0, -0.0));
  EXPECT_TRUE(SameNumber(kNaN, -kNaN));
  EXPECT_FALSE(SameNumber(kNaN, 0.0));
  EXPECT_FALSE(SameNumber(kInfinity, -kInfinity));
  EXPECT_FALSE(SameNumber(1.0, std::nextafter(1.0, 2.0)));
}

// 0.1 + 0.2 + 0.3 and 0.3 + 0.2 + 0.1 are two numbers.
TEST(Agreement, AProblemThatDependsOnTheOrderOfTiesIsKnownAsSuch) {
  Problem problem = SmallProblem();
  problem.variables.push_back(Weight(2));
  problem.ties = Ties::kByWeight;
  problem.records = {{1, 0, 0.3}, {1, 0, 0.2}, {1, 0, 0.1}, {2, 1, 1.0}};
  EXPECT_TRUE(DependsOnTies(problem));
  problem.records = {{1, 0, 0.375}, {1, 0, 0.25}, {1, 0, 0.125}, {2, 1, 1.0}};
  EXPECT_FALSE(DependsOnTies(problem));
}

// The promise that makes the whole comparison worth something.
TEST(Agreement, NoGeneratedProblemDependsOnTheOrderOfTies) {
  for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
    ASSERT_FALSE(DependsOnTies(Generate(seed).problem)) << "seed " << seed;
  }
}

// ------------------------------------------------------------------- shrinking

// Whether some record holds a NaN in the last variable, and another one a 5 anywhere.
bool HasNaNAndFive(const Problem& problem) {
  bool hasNaN = false;
  bool hasFive = false;
  for (const std::vector<double>& record : problem.records) {
    hasNaN = hasNaN || std::isnan(record.back());
    for (const double value : record) hasFive = hasFive || value == 5.0;
  }
  return hasNaN && hasFive;
}

TEST(Shrink, KeepsWhatMattersAndDropsTheRest) {
  Problem problem = SmallProblem();
  problem.variables.insert(problem.variables.begin(), Continuous({9.0}, {{1.0, 2.0}}));
  for (std::vector<double>& record : problem.records) record.insert(record.begin(), 12.5);
  problem.records[6][2] = kNaN;
  problem.numberOfBins = 17;
  problem.distinctThreshold = 3;
  problem.calls = {Pairs({0, 1, -1}, {2, 2, 2}), Attributes({1}), All()};
  const Problem small = Shrink(problem, HasNaNAndFive);
  EXPECT_TRUE(HasNaNAndFive(small));
  EXPECT_EQ(2u, small.variables.size());
  EXPECT_EQ(2u, small.records.size());
  EXPECT_EQ(2, small.numberOfBins);
  EXPECT_EQ(-1, small.distinctThreshold);
  ASSERT_EQ(1u, small.calls.size());
  EXPECT_FALSE(small.calls[0].attributes.has_value());
}

TEST(Shrink, MovesIndicesDownWithTheVariables) {
  Problem problem = SmallProblem();
  problem.variables.insert(problem.variables.begin(), Continuous());
  for (std::vector<double>& record : problem.records) record.insert(record.begin(), 0.0);
  problem.calls = {Pairs({1, 0}, {2, 2})};
  const Problem small = Shrink(problem, [](const Problem& candidate) {
    const Outcome outcome = reference::Run(candidate);
    return candidate.calls[0].targets && !outcome.results.empty() &&
           !outcome.results[0].cuts.empty();
  });
  EXPECT_EQ(2u, small.variables.size());
  EXPECT_EQ(std::vector<int>{0}, small.calls[0].attributes);
  EXPECT_EQ(std::vector<int>{1}, small.calls[0].targets);
}

// ------------------------------------------------------------------ what is shown

TEST(ProblemText, IsWhatATestWouldWrite) {
  Problem problem;
  problem.variables = {Continuous({9, 99}, {{-1, 0.5}}), Target(3, 3), Categorical(2), Weight(0)};
  problem.records = {{kMissing, 1, -0.0, 0.1}, {kNaN, 2, 1e300, -kInfinity}};
  problem.numberOfBins = 4;
  problem.calls = {All(), Attributes({0}), Pairs({0, INT_MIN}, {1, 2}), TargetsOnly({})};
  EXPECT_EQ(R"({
    .variables = {
        Continuous({9, 99}, {{-1, 0.5}}),
        Target(3, 3),
        Categorical(2),
        Weight(0),},
    .records = {
        {kMissing, 1, -0.0, 0.1},
        {kNaN, 2, 1e+300, -kInfinity},},
    .supervised = true,
    .numberOfBins = 4,
    .distinctThreshold = -1,
    .smallBinThreshold = 0,
    .rightClosed = true,
    .ties = Ties::kByWeight,
    .calls = {
        All(),
        Attributes({0}),
        Pairs({0, INT_MIN}, {1, 2}),
        TargetsOnly({}),}})",
            TextOf(problem));
}

// Eight of one class, sixteen of the other, eight of the one: two first splits are
// equally good, and both are accepted in the end.
TEST(Observations, SayWhatAProblemShowed) {
  Problem problem = SmallProblem();
  const std::vector<std::vector<double>> once = problem.records;
  for (int i = 0; i < 3; ++i) {
    problem.records.insert(problem.records.end(), once.begin(), once.end());
  }
  problem.rightClosed = false;
  problem.variables.push_back(Weight(0));
  for (std::vector<double>& record : problem.records) record.push_back(1);
  problem.records.push_back({-kInfinity, 1, 0.75});  // rounds to nothing
  EXPECT_THAT(
      Observe(problem, reference::Run(problem)),
      testing::ElementsAre("bins closed on the left", "call 0", "case dropped by its weight",
                           "equal best splits", "final 0", "result 0"));
}

TEST(Observations, AreRequiredOnceEach) {
  const std::vector<std::string>& names = RequiredObservations();
  EXPECT_EQ(names.size(), std::set<std::string>(names.begin(), names.end()).size());
}

}  // namespace
