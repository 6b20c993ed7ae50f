#include "tqbinning/bindataset.h"

#include <vector>

#include <gtest/gtest.h>

#include "data/prepareddata.h"

namespace {

using namespace data;

// ---- targets ----

TEST(GetAttributeTarget, AnotherTargetSwitchesTheReaderAndTheSameOneKeepsAndRewindsIt) {
  PreparedData data("TCA", {{0.0, 2.0, 1.0}, {1.0, 0.0, 2.0}});
  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
  EXPECT_EQ(0, data.set.fTargetColumn);
  EXPECT_EQ(2, data.set.GetNumberOfClasses());

  EXPECT_EQ((std::vector<Case>{{1.0, 2, 1.0}, {2.0, 0, 1.0}}), CasesOf(*data.Supervised(2, 1), 2));
  EXPECT_EQ(1, data.set.fTargetColumn);
  EXPECT_EQ(3, data.set.GetNumberOfClasses());

  const BinaryRecordIterator* reader = data.set.fTargetReader.get();
  EXPECT_EQ((std::vector<Case>{{1.0, 2, 1.0}, {2.0, 0, 1.0}}), CasesOf(*data.Supervised(2, 1), 2));
  EXPECT_EQ(reader, data.set.fTargetReader.get());

  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
  EXPECT_EQ(0, data.set.fTargetColumn);
}

// The target variable's index differs from its column, 0.
TEST(GetAttributeTarget, IsGivenByItsIndexInTheList) {
  PreparedData data("AWT", {{5.0, 3.0, 1.0}, {4.0, 2.0, 0.0}});
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 2.0}, {5.0, 1, 3.0}}), CasesOf(*data.Supervised(0, 2), 2));
}

void ExpectTargetNotUsable(PreparedData& data, unsigned int attribute, unsigned int target) {
  std::vector<BINDataTuple> before;
  std::vector<BINDataTuple>* tuples = &before;
  EXPECT_EQ(Error(TQBinning::kTargetNotUsable), data.set.GetAttribute(attribute, target, tuples));
  EXPECT_EQ(nullptr, tuples);
}

TEST(GetAttributeTarget, WhoseCodesWereOutOfRangeIsNotUsable) {
  PreparedData data("TCA", {{300.0, 1.0, 1.0}, {0.0, 2.0, 2.0}});
  ExpectTargetNotUsable(data, 2, 0);
}

TEST(GetAttributeTarget, WithACodeBeyondItsDeclaredCategoriesIsNotUsable) {
  PreparedData data("TA", {{3.0, 1.0}, {0.0, 2.0}}, 3);
  ExpectTargetNotUsable(data, 1, 0);
}

TEST(GetAttributeTarget, OutsideTheListIsNotUsable) {
  PreparedData data("TA", {{0.0, 1.0}});
  ExpectTargetNotUsable(data, 1, 2);
  ExpectTargetNotUsable(data, 1, static_cast<unsigned int>(-1));
}

TEST(GetAttributeTarget, ThatIsNotUsableLeavesTheDataSetReadyForAnother) {
  PreparedData data("TCA", {{0.0, 300.0, 1.0}, {1.0, 0.0, 2.0}});
  ExpectTargetNotUsable(data, 2, 1);
  EXPECT_EQ((std::vector<Case>{{1.0, 0, 1.0}, {2.0, 1, 1.0}}), CasesOf(*data.Supervised(2, 0), 2));
}

// The categorical attribute, used as target, is in column 0, where a list with a
// target of its own would have opened a reader.
TEST(GetAttributeTarget, WorksInAListThatHasNoTargetOfItsOwn) {
  PreparedData data("CA", {{1.0, 5.0}, {0.0, 4.0}, {kMissing, 3.0}});
  const auto* tuples = data.Supervised(1, 0);
  ASSERT_NE(nullptr, tuples);
  EXPECT_EQ(3u, tuples->size());
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 1.0}, {5.0, 1, 1.0}}), CasesOf(*tuples, 2));
  EXPECT_EQ(3.0, data.set.GetWeightTotal());
  EXPECT_EQ(2, data.set.GetNumberOfClasses());
}

TEST(GetAttributeTarget, WorksInAWeightedListThatHasNoTargetOfItsOwn) {
  PreparedData data("AWC", {{5.0, 2.0, 1.0}, {4.0, 3.0, 0.0}});
  EXPECT_EQ((std::vector<Case>{{4.0, 0, 3.0}, {5.0, 1, 2.0}}), CasesOf(*data.Supervised(0, 2), 2));
  EXPECT_EQ(5.0, data.set.GetWeightTotal());
}

// ---- tuples without a target, of a list that has one ----

TEST(GetAttribute, WithoutATargetFromAListThatHasOneHandsOutNoTuples) {
  PreparedData data("TA", {{0.0, 1.0}, {kMissing, 2.0}, {1.0, kMissing}, {1.0, 5.0}});
  std::vector<EFBINDataTuple> before;
  std::vector<EFBINDataTuple>* tuples = &before;
  EXPECT_EQ(TQStatus(), data.set.GetAttribute(1, tuples));
  EXPECT_EQ(nullptr, tuples);
  EXPECT_EQ(0u, data.set.GetNumberOfDistinctValues());
  EXPECT_EQ(kMissing, data.set.GetMinimum());
  EXPECT_EQ(kMissing, data.set.GetMaximum());
  // Counted with the target's file all the same.
  EXPECT_EQ(2u, data.set.GetNumberOfValidTuples());
  EXPECT_EQ(4.0, data.set.GetWeightTotal());
  EXPECT_EQ(2.0, data.set.GetValidWeightTotal());
}

}  // namespace
