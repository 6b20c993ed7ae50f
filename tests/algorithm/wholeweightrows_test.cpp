// The fast way of splitting against the plain formulas: the same cuts, always.
#include "algorithm/wholeweightrows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "algorithm/nlogn.h"
#include "algorithm/wholeweightsplit.h"
#include "support/random.h"
#include "tqbinning/binalgorithm.h"

namespace TQBinning {
namespace {

using support::Random;

class PlainAlgorithm : public BINAlgorithm {
 public:
  PlainAlgorithm(BINSettings& settings, BINVarList& list) : BINAlgorithm(settings, list) {}
  using BINAlgorithm::fNumCategories;
  using BINAlgorithm::fRightBorderClosed;
};

// The cut rows that the plain formulas choose over a dense table of the same tuples.
std::set<int> PlainCuts(const std::vector<BINDataTuple>& tuples, std::size_t classes,
                        bool rightClosed) {
  std::vector<double> rows;
  std::vector<double> table;
  for (std::size_t i = 0; i < tuples.size(); ++i) {
    if (i == 0 || tuples[i].value != tuples[i - 1].value) {
      rows.push_back(static_cast<double>(rows.size()));
      table.resize(table.size() + classes, 0.0);
    }
    table[table.size() - classes + tuples[i].target] += tuples[i].weight;
  }
  BINSettings settings;
  BINVarList list;
  PlainAlgorithm algorithm(settings, list);
  algorithm.fNumCategories = static_cast<unsigned int>(classes);
  algorithm.fRightBorderClosed = rightClosed;
  std::set<double> cuts;
  EXPECT_TRUE(algorithm.MDLPCut(&rows, &table, 0, static_cast<int>(rows.size()) - 1, cuts).IsOK());
  return {cuts.begin(), cuts.end()};
}

// The class counts of the bins between the cuts, counted tuple by tuple.  Rows are
// numbered by their values.
std::vector<double> PlainCells(const std::vector<BINDataTuple>& tuples, std::size_t classes,
                               bool rightClosed, const std::set<int>& cuts) {
  std::vector<double> cells((cuts.size() + 1) * (classes + 1), 0.0);
  for (const BINDataTuple& tuple : tuples) {
    const auto isBelow = [&](int cut) {
      return rightClosed ? cut < tuple.value : cut <= tuple.value;
    };
    const auto bin = static_cast<std::size_t>(std::count_if(cuts.begin(), cuts.end(), isBelow));
    cells[bin * (classes + 1)] += tuple.weight;
    cells[bin * (classes + 1) + 1 + tuple.target] += tuple.weight;
  }
  return cells;
}

// The values that the fast way cuts at, which are the numbers of the rows.
std::set<int> FastCuts(const std::vector<BINDataTuple>& tuples, std::size_t classes,
                       bool rightClosed, std::size_t mostEntries,
                       std::size_t rowsPerClass = WholeWeightRows::kRowsPerClass) {
  WholeWeightRows rows(rowsPerClass);
  const auto distinct = static_cast<std::size_t>(tuples.back().value) + 1;
  EXPECT_TRUE(rows.FillByValue(tuples, distinct, classes, rightClosed));
  NLogN nLogN;
  nLogN.Prepare(rows.TotalWeight(), mostEntries);
  const WholeWeightSplit::Bins bins = WholeWeightSplit(rows, nLogN).Split();
  std::set<int> cuts;
  for (const int row : bins.cutRows) {
    cuts.insert(static_cast<int>(tuples[rows.TupleAtCut(row)].value));
  }
  EXPECT_EQ(PlainCells(tuples, classes, rightClosed, cuts), bins.cellCounts);
  return cuts;
}

enum class Kind { kAny, kMirrored, kRepeated, kBlocks, kRuns, kHeavy, kKinds };

struct Problem {
  std::vector<BINDataTuple> tuples;
  std::size_t classes;
};

std::uint64_t WeightOf(Kind kind, Random& random) {
  if (kind == Kind::kHeavy) return 1 + random.Below(1ULL << (1 + random.Below(29)));
  return random.Below(3) == 0 ? 1 + random.Below(6) : 1;
}

// Mirrored and repeated tables have positions whose split entropies are equal in
// exact arithmetic and may differ in the last bit as the formula computes them.
Problem MakeProblem(std::uint64_t seed) {
  Random random(seed);
  const Kind kind = static_cast<Kind>(random.Below(static_cast<std::uint64_t>(Kind::kKinds)));
  Problem problem;
  problem.classes = random.Below(8) == 0 ? 2 + random.Below(40) : 2 + random.Below(3);
  std::vector<std::vector<BINDataTuple>> rows(1 + random.Below(12));
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const std::size_t block = kind == Kind::kBlocks ? r / 4
                              : kind == Kind::kRuns ? r / 3
                                                    : random.Below(problem.classes);
    for (std::uint64_t n = 1 + random.Below(3); n > 0; --n) {
      const bool strays = kind != Kind::kRuns && random.Below(4) == 0;
      const std::uint64_t target = strays ? random.Below(problem.classes) : block;
      rows[r].push_back({0.0, static_cast<unsigned char>(target % problem.classes),
                         static_cast<double>(WeightOf(kind, random))});
    }
  }
  const std::size_t half = rows.size();
  if (kind == Kind::kMirrored) {
    for (std::size_t r = half; r-- > 0;) rows.push_back(rows[r]);
  } else if (kind == Kind::kRepeated) {
    for (std::size_t r = 0; r < 2 * half; ++r) rows.push_back(rows[r]);
  }
  for (std::size_t r = 0; r < rows.size(); ++r) {
    for (BINDataTuple tuple : rows[r]) {
      tuple.value = static_cast<double>(r);
      problem.tuples.push_back(tuple);
    }
  }
  return problem;
}

TEST(WholeWeightRows, CutsWhereThePlainFormulasCutInAHundredThousandTables) {
  std::size_t cutsSeen = 0;
  for (std::uint64_t seed = 1; seed <= 100000; ++seed) {
    const Problem problem = MakeProblem(seed);
    const bool rightClosed = seed % 2 == 0;
    const std::set<int> plain = PlainCuts(problem.tuples, problem.classes, rightClosed);
    ASSERT_EQ(plain, FastCuts(problem.tuples, problem.classes, rightClosed, 1000))
        << "seed " << seed;
    cutsSeen += plain.size();
  }
  EXPECT_GT(cutsSeen, 20000U);  // the tables do have something to cut
}

// Stretches of a few rows, so that tables as small as these have many that the search can
// pass over.
TEST(WholeWeightRows, PassesOverNoStretchThatHasACutOfThePlainFormulas) {
  for (std::uint64_t seed = 1; seed <= 40000; ++seed) {
    const Problem problem = MakeProblem(seed);
    const bool rightClosed = seed % 2 == 1;
    ASSERT_EQ(PlainCuts(problem.tuples, problem.classes, rightClosed),
              FastCuts(problem.tuples, problem.classes, rightClosed, 1000, 1))
        << "seed " << seed;
  }
}

TEST(WholeWeightRows, CutsALongAttributeAsThePlainFormulasDo) {
  for (const std::size_t classes : {2U, 7U, 256U}) {
    for (const bool rightClosed : {true, false}) {
      Random random(classes);
      std::vector<BINDataTuple> tuples(5000);
      for (std::size_t i = 0; i < tuples.size(); ++i) {
        const std::size_t likely = i * classes / tuples.size();
        const std::uint64_t target = random.Below(3) == 0 ? random.Below(classes) : likely;
        tuples[i] = {std::floor(static_cast<double>(i) / 1.5), static_cast<unsigned char>(target),
                     static_cast<double>(1 + random.Below(2))};
      }
      EXPECT_EQ(PlainCuts(tuples, classes, rightClosed),
                FastCuts(tuples, classes, rightClosed, 100000))
          << classes << " classes";
    }
  }
}

TEST(WholeWeightRows, MayComputeWhatNoTableHolds) {
  const Problem problem = MakeProblem(4711);
  EXPECT_EQ(FastCuts(problem.tuples, problem.classes, true, 1000),
            FastCuts(problem.tuples, problem.classes, true, 0));
}

bool Accepts(double value, double weight, bool rightClosed = true) {
  WholeWeightRows rows;
  return rows.FillByValue(std::vector<BINDataTuple>{{0.0, 0, 1.0}, {value, 1, weight}}, 2, 2,
                          rightClosed);
}

TEST(WholeWeightRows, LeavesToThePlainWayWhatItCannotDoExactly) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(Accepts(1.0, 1.0));
  EXPECT_TRUE(Accepts(1.0, 4294967295.0));
  EXPECT_FALSE(Accepts(1.0, 4294967296.0));
  EXPECT_FALSE(Accepts(1.0, 1.5));
  EXPECT_FALSE(Accepts(1.0, 0.0));
  EXPECT_FALSE(Accepts(1.0, -1.0));
  EXPECT_FALSE(Accepts(1.0, kNaN));
  EXPECT_FALSE(Accepts(1.0, kInfinity));
  EXPECT_FALSE(Accepts(kNaN, 1.0));
  EXPECT_FALSE(Accepts(kInfinity, 1.0));
  EXPECT_TRUE(Accepts(std::numeric_limits<double>::max(), 1.0));
  EXPECT_FALSE(Accepts(std::numeric_limits<double>::max(), 1.0, false));
}

// With an open border it would be cut where the axis begins.
TEST(WholeWeightRows, LeavesTheLeastDoubleToThePlainWayWhenOpenOnTheRight) {
  const std::vector<BINDataTuple> tuples{{std::numeric_limits<double>::lowest(), 0, 1.0},
                                         {0.0, 1, 1.0}};
  WholeWeightRows rows;
  EXPECT_TRUE(rows.FillByValue(tuples, 2, 2, true));
  EXPECT_FALSE(rows.FillByValue(tuples, 2, 2, false));
}

TEST(WholeWeightRows, RefusesEqualWeightsThatAddUpBeyondOneEntry) {
  WholeWeightRows rows;
  EXPECT_FALSE(rows.FillByValue(
      std::vector<BINDataTuple>{{0.0, 0, 4294967295.0}, {0.0, 0, 1.0}, {1.0, 1, 1.0}}, 2, 2, true));
}

TEST(WholeWeightRows, RefusesARowOfWhichOneClassIsTooHeavyForAnEntry) {
  WholeWeightRows rows;
  EXPECT_FALSE(rows.FillByValue(
      std::vector<BINDataTuple>{{0.0, 0, 4294967295.0}, {0.0, 0, 1.0}, {0.0, 1, 1.0}}, 1, 2, true));
}

TEST(WholeWeightRows, RefusesAFractionalWeightAmongTheCasesOfOneValue) {
  WholeWeightRows rows;
  EXPECT_FALSE(
      rows.FillByValue(std::vector<BINDataTuple>{{0.0, 0, 1.0}, {0.0, 1, 1.5}}, 1, 2, true));
}

TEST(WholeWeightRows, RefusesBinsThatAreTooHeavyForAnEntry) {
  constexpr double kMost = 4294967295.0;
  constexpr double kEnd = std::numeric_limits<double>::max();
  const std::vector<double> borders{-kEnd, 1.0, kEnd};
  WholeWeightRows rows;
  EXPECT_FALSE(rows.FillByBorders(
      std::vector<BINDataTuple>{{0.0, 0, kMost}, {1.0, 0, 1.0}, {2.0, 1, 1.0}}, 2, true, borders));
  EXPECT_FALSE(rows.FillByBorders(
      std::vector<BINDataTuple>{{0.0, 1, 1.0}, {2.0, 0, kMost}, {3.0, 0, 1.0}}, 2, true, borders));
}

// Beyond, not all whole numbers are doubles.
TEST(WholeWeightRows, RefusesATotalBeyondTwoToThe53) {
  std::vector<BINDataTuple> tuples;
  for (int i = 0; i < (1 << 21); ++i) {
    tuples.push_back({double(i), static_cast<unsigned char>(i % 2), 4294967295.0});
  }
  const double rest = std::ldexp(1.0, 21);  // to 2^53 exactly
  tuples.push_back({double(tuples.size()), 0, rest});
  WholeWeightRows rows;
  EXPECT_TRUE(rows.FillByValue(tuples, tuples.size(), 2, true));
  tuples.back().weight += 1.0;
  EXPECT_FALSE(rows.FillByValue(tuples, tuples.size(), 2, true));
}

TEST(WholeWeightRows, RefusesMoreValuesThanItWasTold) {
  const std::vector<BINDataTuple> singles{{0.0, 0, 1.0}, {1.0, 1, 1.0}, {2.0, 0, 1.0}};
  const std::vector<BINDataTuple> pairs{{0.0, 0, 1.0}, {0.0, 1, 1.0}, {1.0, 1, 1.0}, {1.0, 1, 1.0}};
  WholeWeightRows rows;
  EXPECT_TRUE(rows.FillByValue(singles, 3, 2, true));
  EXPECT_FALSE(rows.FillByValue(singles, 2, 2, true));
  EXPECT_TRUE(rows.FillByValue(pairs, 2, 2, true));
  EXPECT_FALSE(rows.FillByValue(pairs, 1, 2, true));
}

TEST(WholeWeightRows, RefusesBordersThatDoNotEndWithTheTuples) {
  const std::vector<BINDataTuple> tuples{{1.0, 0, 1.0}, {2.0, 1, 1.0}};
  const double highest = std::numeric_limits<double>::max();
  WholeWeightRows rows;
  EXPECT_TRUE(rows.FillByBorders(tuples, 2, true, std::vector<double>{-highest, 1.0, highest}));
  EXPECT_EQ(2, rows.Count());
  EXPECT_FALSE(rows.FillByBorders(tuples, 2, true, std::vector<double>{-highest, 2.0, highest}));
}

TEST(WholeWeightRows, OfARunInOneClassTheFirstValueStandsAloneWhenClosedOnTheRight) {
  const std::vector<BINDataTuple> tuples{{0.0, 0, 1.0}, {1.0, 0, 2.0}, {2.0, 0, 3.0},
                                         {3.0, 1, 4.0}, {4.0, 0, 1.0}, {4.0, 1, 1.0}};
  WholeWeightRows rows;
  ASSERT_TRUE(rows.FillByValue(tuples, 5, 2, true));
  ASSERT_EQ(4, rows.Count());
  EXPECT_EQ(0.0, tuples[rows.TupleAtCut(0)].value);
  EXPECT_EQ(2.0, tuples[rows.TupleAtCut(1)].value);
  EXPECT_EQ(3.0, tuples[rows.TupleAtCut(2)].value);
}

TEST(WholeWeightRows, OfARunInOneClassTheLastValueStandsAloneWhenOpenOnTheRight) {
  const std::vector<BINDataTuple> tuples{{0.0, 0, 1.0}, {1.0, 0, 2.0}, {2.0, 0, 3.0},
                                         {3.0, 1, 4.0}, {4.0, 0, 1.0}, {4.0, 1, 1.0}};
  WholeWeightRows rows;
  ASSERT_TRUE(rows.FillByValue(tuples, 5, 2, false));
  ASSERT_EQ(4, rows.Count());
  EXPECT_EQ(0.0, tuples[rows.TupleAtCut(0)].value);
  EXPECT_EQ(2.0, tuples[rows.TupleAtCut(1)].value);
  EXPECT_EQ(3.0, tuples[rows.TupleAtCut(2)].value);
}

TEST(WholeWeightRows, RefusesARunWhoseWeightsAddUpBeyondOneEntry) {
  const double heavy = 4294967295.0;
  const std::vector<BINDataTuple> tuples{{0.0, 0, heavy}, {1.0, 0, heavy}, {2.0, 0, 1.0}};
  for (const bool rightClosed : {true, false}) {
    WholeWeightRows rows;
    EXPECT_FALSE(rows.FillByValue(tuples, 3, 2, rightClosed));
  }
}

TEST(WholeWeightRows, RefusesWithinBordersWhatItRefusesByValue) {
  const double highest = std::numeric_limits<double>::max();
  const std::vector<double> borders{-highest, 1.0, highest};
  WholeWeightRows rows;
  EXPECT_FALSE(rows.FillByBorders(std::vector<BINDataTuple>{{1.0, 0, 1.0}, {2.0, 1, 0.5}}, 2, true,
                                  borders));
  EXPECT_FALSE(rows.FillByBorders(std::vector<BINDataTuple>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}, 0, true,
                                  borders));
}

TEST(NLogN, KeepsATableThatReachesFarEnough) {
  NLogN nLogN;
  nLogN.Prepare(1000, 2000);
  const std::int64_t before = nLogN(700);
  nLogN.Prepare(10, 2000);  // alone, it would be scaled by more
  EXPECT_EQ(before, nLogN(700));
  EXPECT_LT(nLogN(10), before);
}

}  // namespace
}  // namespace TQBinning
