#include "data/casesorter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "support/sortshapes.h"

namespace TQBinning {
namespace {

auto AsKey(const BINDataTuple& t) { return std::tuple(t.value, t.weight, t.target); }
auto AsKey(const EFBINDataTuple& t) { return std::tuple(t.value, t.weight, 0); }

template <typename Tuple>
void OrderByAll(std::vector<Tuple>& tuples) {
  std::sort(tuples.begin(), tuples.end(),
            [](const Tuple& a, const Tuple& b) { return AsKey(a) < AsKey(b); });
}

template <typename Tuple>
void ExpectEqual(const std::vector<Tuple>& expected, const std::vector<Tuple>& got) {
  ASSERT_EQ(expected.size(), got.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(AsKey(expected[i]), AsKey(got[i])) << "tuple " << i;
  }
}

// As many kinds as there are targets and weights: few are merged, many are not.
struct Mix {
  unsigned int targets;
  unsigned int weights;
  bool hasVectors = true;  // as far as the processor has them
};

class CaseSorting : public testing::TestWithParam<Mix> {
 protected:
  CaseSorting() { memory.usesVectors = memory.usesVectors && GetParam().hasVectors; }

  SortMemory memory;

  std::vector<BINDataTuple> CasesOf(const NamedShape& shape, std::size_t n) const {
    Random random(n + 1);
    std::vector<BINDataTuple> cases(n);
    for (std::size_t i = 0; i < n; ++i) {
      const double value = shape.shape(random, i, n);
      cases[i] = {std::isnan(value) ? 7.5 : value,
                  static_cast<unsigned char>(255 - random.Below(GetParam().targets)),
                  double(random.Below(GetParam().weights)) + 1.0};
    }
    return cases;
  }

  template <typename Tuple>
  static std::vector<Tuple> Sorted(const std::vector<BINDataTuple>& cases, SortMemory& memory,
                                   unsigned int& distinct) {
    CaseSorter sorter(memory, cases.size());
    {
      CaseSorter::Intake intake(sorter);
      for (const BINDataTuple& c : cases) intake.Add(c.value, c.target, c.weight);
    }
    EXPECT_TRUE(sorter.IsSuitable());
    std::vector<Tuple> tuples(cases.size());
    distinct = sorter.Sort(std::span(tuples));
    return tuples;
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, CaseSorting,
                         testing::Values(Mix{1, 1}, Mix{2, 1}, Mix{3, 1}, Mix{2, 5}, Mix{4, 4},
                                         Mix{17, 1}, Mix{15, 17}, Mix{1, 1, false},
                                         Mix{2, 5, false}));

// Beyond 4096 cases few distinct values are counted instead of sorted.
constexpr std::size_t kSizes[] = {0, 1, 2, 3, 100, 1000, 4095, 4096};

TEST_P(CaseSorting, SupervisedTuplesEndInTheOrderOfTheirValuesWithTheirTargetsAndWeights) {
  for (const NamedShape& shape : Shapes()) {
    for (const std::size_t n : kSizes) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " cases");
      std::vector<BINDataTuple> expected = CasesOf(shape, n);
      unsigned int distinct = 0;
      std::vector<BINDataTuple> got = Sorted<BINDataTuple>(expected, memory, distinct);
      std::vector<double> values;
      for (std::size_t i = 0; i < n; ++i) {
        ASSERT_LE(got[i - (i > 0)].value, got[i].value) << "tuple " << i;
        if (values.empty() || values.back() != got[i].value) values.push_back(got[i].value);
      }
      EXPECT_EQ(values.size(), distinct);
      OrderByAll(expected);
      OrderByAll(got);
      ExpectEqual(expected, got);
    }
  }
}

TEST_P(CaseSorting, UnsupervisedTuplesOfOneValueEndInTheOrderOfTheirWeights) {
  for (const NamedShape& shape : Shapes()) {
    for (const std::size_t n : kSizes) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " cases");
      std::vector<BINDataTuple> cases = CasesOf(shape, n);
      std::vector<EFBINDataTuple> expected;
      for (BINDataTuple& c : cases) {
        c.target = 0;
        expected.push_back({c.value, c.weight});
      }
      unsigned int distinct = 0;
      const std::vector<EFBINDataTuple> got = Sorted<EFBINDataTuple>(cases, memory, distinct);
      OrderByAll(expected);
      ExpectEqual(expected, got);
    }
  }
}

// Many cases are split into ranges of values: two and four of them.
TEST_P(CaseSorting, ManyCasesEndInTheSameOrder) {
  const NamedShape shapes[] = {
      {"distinct", [](Random& r, auto, auto) { return double(r.Next() >> 11); }},
      {"tied", [](Random& r, auto, auto) { return double(r.Below(5000)); }},
      {"one heavy value",
       [](Random& r, std::size_t i, auto) { return i % 3 == 0 ? double(r.Below(9999)) : 5e3; }}};
  for (const NamedShape& shape : shapes) {
    for (const std::size_t n : {33000u, 70000u}) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " cases");
      const std::vector<BINDataTuple> cases = CasesOf(shape, n);
      std::vector<EFBINDataTuple> expected;
      for (const BINDataTuple& c : cases) expected.push_back({c.value, c.weight});
      OrderByAll(expected);
      unsigned int distinct = 0;
      ExpectEqual(expected, Sorted<EFBINDataTuple>(cases, memory, distinct));
      unsigned int count = 1;
      for (std::size_t i = 1; i < n; ++i) count += expected[i - 1].value < expected[i].value;
      EXPECT_EQ(count, distinct);
    }
  }
}

// From few enough values to count to some more, with one kind and with so many that the
// counters would not fit.
TEST_P(CaseSorting, HoweverManyDistinctValuesThereAre) {
  for (const std::uint64_t distinct : {256u, 257u, 4095u, 4096u, 4097u}) {
    const NamedShape shape{"", [&](Random& r, std::size_t i, std::size_t) {
                             return i < distinct ? double(i) : double(r.Below(distinct));
                           }};
    std::vector<BINDataTuple> expected = CasesOf(shape, 10000);
    std::reverse(expected.begin(), expected.end());
    unsigned int counted = 0;
    std::vector<BINDataTuple> got = Sorted<BINDataTuple>(expected, memory, counted);
    EXPECT_EQ(distinct, counted);
    EXPECT_TRUE(std::is_sorted(got.begin(), got.end()));
    OrderByAll(expected);
    OrderByAll(got);
    ExpectEqual(expected, got);
  }
}

bool IsSuitable(const std::vector<BINDataTuple>& cases) {
  SortMemory memory;
  CaseSorter sorter(memory, cases.size());
  {
    CaseSorter::Intake intake(sorter);
    for (const BINDataTuple& c : cases) intake.Add(c.value, c.target, c.weight);
  }
  return sorter.IsSuitable();
}

// So many kinds and cases that only the number of parts limits that of ranges.
TEST(CaseSorter, SortsManyKindsOfManyCases) {
  constexpr std::size_t kCases = 270000;
  SortMemory memory;
  Random random(1);
  CaseSorter sorter(memory, kCases);
  std::vector<BINDataTuple> expected(kCases);
  {
    CaseSorter::Intake intake(sorter);
    for (BINDataTuple& c : expected) {
      c = {static_cast<double>(random.Below(1U << 30)),
           static_cast<unsigned char>(random.Below(16)), 1.0};
      intake.Add(c.value, c.target, c.weight);
    }
  }
  std::vector<BINDataTuple> got(kCases);
  sorter.Sort(std::span(got));
  ASSERT_TRUE(std::is_sorted(got.begin(), got.end()));
  OrderByAll(expected);
  OrderByAll(got);
  ExpectEqual(expected, got);
}

// ---- values without tuples ----

// Also with other cases taken in meanwhile, which leave the values alone.
void ExpectSortedValues(std::vector<double> values, SortMemory& memory) {
  CaseSorter sorter(memory, values.size());
  {
    CaseSorter::Intake intake(sorter);
    const std::size_t half = values.size() / 2;
    intake.AddAll(std::span<const double>(values).first(half));
    intake.AddAll(std::span<const double>(values).subspan(half));
  }
  ASSERT_TRUE(sorter.IsSuitable());
  unsigned int distinct = 0;
  const std::span<const double> sorted = sorter.SortValues(distinct);
  {
    CaseSorter other(memory, values.size());
    CaseSorter::Intake intake(other);
    intake.AddAll(values);
  }
  std::sort(values.begin(), values.end());
  ASSERT_TRUE(std::equal(values.begin(), values.end(), sorted.begin(), sorted.end()));
  EXPECT_EQ(std::unique(values.begin(), values.end()) - values.begin(), distinct);
}

void ExpectSortedShapes(SortMemory& memory) {
  for (const NamedShape& shape : Shapes()) {
    for (const std::size_t n : {0U, 1U, 2U, 3U, 100U, 4095U, 4096U, 20000U}) {
      SCOPED_TRACE(std::string(shape.name) + ", " + std::to_string(n) + " values");
      Random random(n + 1);
      std::vector<double> values(n);
      for (std::size_t i = 0; i < n; ++i) {
        const double value = shape.shape(random, i, n);
        values[i] = std::isnan(value) ? 7.5 : value;
      }
      ExpectSortedValues(values, memory);
    }
  }
}

TEST(CaseSorter, SortsValuesWithoutTuples) {
  SortMemory memory;
  ExpectSortedShapes(memory);
}

TEST(CaseSorter, SortsValuesOnAProcessorWithoutVectors) {
  SortMemory memory;
  memory.usesVectors = false;
  ExpectSortedShapes(memory);
}

TEST(CaseSorter, SortsMoreValuesThanTheCacheHasRoomFor) {
  SortMemory memory;
  Random random(1);
  std::vector<double> values(2100000);
  for (double& value : values) value = static_cast<double>(random.Below(10000000));
  ExpectSortedValues(values, memory);
}

TEST(CaseSorter, ANaNAmongValuesIsNotForIt) {
  SortMemory memory;
  for (const std::size_t place : {0U, 1U, 2U}) {
    std::vector<double> values{1.0, 2.0, 3.0};
    values[place] = std::numeric_limits<double>::quiet_NaN();
    CaseSorter sorter(memory, values.size());
    { CaseSorter::Intake(sorter).AddAll(values); }
    EXPECT_FALSE(sorter.IsSuitable()) << place;
  }
}

TEST(CaseSorter, ANaNIsNotForIt) {
  EXPECT_FALSE(IsSuitable({{1.0, 0, 1.0}, {std::nan(""), 0, 1.0}, {2.0, 0, 1.0}}));
}

TEST(CaseSorter, OnlySmallWholeWeightsAreForIt) {
  for (const double weight : {0.0, 1.0, 255.0})
    EXPECT_TRUE(IsSuitable({{1.0, 0, weight}})) << weight;
  for (const double weight : {-1.0, 0.5, 254.5, 256.0, 1e300, std::nan("")}) {
    EXPECT_FALSE(IsSuitable({{1.0, 0, weight}})) << weight;
  }
}

TEST(CaseSorter, AsManyKindsAsOneByteTells) {
  std::vector<BINDataTuple> cases;
  for (unsigned int i = 0; i < 255; ++i) cases.push_back({1.0, static_cast<unsigned char>(i), 1.0});
  EXPECT_TRUE(IsSuitable(cases));
  cases.push_back({1.0, 255, 1.0});
  EXPECT_FALSE(IsSuitable(cases));
}

// The memory goes from attribute to attribute; the kinds do not.
TEST(CaseSorter, NoKindIsLeftToTheNextAttribute) {
  SortMemory memory;
  for (unsigned char target = 0; target < 3; ++target) {
    CaseSorter sorter(memory, 2);
    {
      CaseSorter::Intake intake(sorter);
      intake.Add(2.0, target, 1.0);
      intake.Add(1.0, 9, 2.0);
    }
    std::vector<BINDataTuple> tuples(2);
    EXPECT_EQ(2U, sorter.Sort(std::span(tuples)));
    EXPECT_EQ(9, tuples[0].target);
    EXPECT_EQ(target, tuples[1].target);
    EXPECT_EQ(1.0, tuples[1].weight);
  }
}

}  // namespace
}  // namespace TQBinning
