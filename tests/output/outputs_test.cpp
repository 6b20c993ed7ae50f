#include <bit>
#include <cstdint>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "output/vocabulary.h"

// What the outputs of both families and the values in them have in common: storing by
// attribute, reading, copies and the frame of a display.
namespace {

using namespace outputs;

const char kFullPairText[] =
    "\n"
    "Start of BINAttributeTargetResults display\n"
    "BINDataTuple   attribute = 3\n"
    "target = 5\n"
    "Number of distinct values = 7\n"
    "Total weight = 12\n"
    "Total weight with missing = 16.5\n"
    "Minimum = -1.25\n"
    "Maximum = 8.75\n"
    "Model Entropy = 0.875\n"
    "Status has error code 120014\n"
    "Number of cutpoints = 2, the cutpoints:\n"
    "1.5\n"
    "2.5\n"
    "The CellCounts are\n"
    "6  4  2  \n"
    "4  1  3  \n"
    "2  1  1  \n"
    "End of BINAttributeTargetResults display\n";

const char kFullAttributeText[] =
    "\n"
    "Start of BINAttributeResults display\n"
    "BINDataTuple   attribute = 3\n"
    "Number of distinct values = 7\n"
    "Total weight = 12\n"
    "Total weight with missing = 16.5\n"
    "Minimum = -1.25\n"
    "Maximum = 8.75\n"
    "Status has error code 120014\n"
    "Number of cutpoints = 2, the cutpoints:\n"
    "1.5\n"
    "2.5\n"
    "The CellCounts are\n"
    "6  4  2  \n"
    "End of BINAttributeResults display\n";

// An output of pairs, all with the same target and the same entropy, so that it stores and
// reads by attribute as the other one does.
class SupervisedExample : public BINOutput {
 public:
  using Value = BINAttributeTargetResults;
  using Cuts = std::set<double>;
  static constexpr const char* kName = "BINOutput";
  static constexpr const char* kFullText = kFullPairText;
  static constexpr long kNegativeIndex = 120013;

  TQStatus SetAttributeResults(TQStatus status, const Cuts& cuts, const Numbers& counts,
                               int attribute, unsigned int distinct, double weight,
                               double withMissing, double minimum, double maximum) {
    return SetAttributeTargetResults(status, cuts, counts, attribute, 5, distinct, weight,
                                     withMissing, minimum, maximum, 0.875);
  }
  TQStatus Read(int attribute, Value& value) const {
    return GetAttributeTargetCutPoints(attribute, 5, value);
  }

  static Numbers FullCounts() { return {6, 4, 2, 4, 1, 3, 2, 1, 1}; }
  // The rows one after the other.
  static Numbers CountsOf(const Value& value) {
    Numbers counts;
    for (const Numbers& row : value.GetCellCounts()) {
      counts.insert(counts.end(), row.begin(), row.end());
    }
    return counts;
  }
  static void ExpectTargetAndEntropy(const Value& value) {
    EXPECT_EQ(5, value.GetTargetIndex());
    EXPECT_EQ(0.875, value.GetModelEntropy());
  }
  static void ExpectNeitherTargetNorEntropy(const Value& value) {
    EXPECT_EQ(-1, value.GetTargetIndex());
    EXPECT_EQ(0.0, value.GetModelEntropy());
  }
};

class EqualFrequencyExample : public EFBINOutput {
 public:
  using Value = BINAttributeResults;
  using Cuts = Numbers;
  static constexpr const char* kName = "EFBINOutput";
  static constexpr const char* kFullText = kFullAttributeText;
  static constexpr long kNegativeIndex = 120011;

  TQStatus Read(int attribute, Value& value) const {
    return GetAttributeCutPoints(attribute, value);
  }

  static Numbers FullCounts() { return {6, 4, 2}; }
  static Numbers CountsOf(const Value& value) { return value.GetCellCounts(); }
  static void ExpectTargetAndEntropy(const Value&) {}  // there is neither
  static void ExpectNeitherTargetNorEntropy(const Value&) {}
};

template <typename Example>
class Output : public testing::Test {
 protected:
  using Value = typename Example::Value;
  using Cuts = typename Example::Cuts;

  // Stores cuts and counts, with numbers that are of no interest.
  static TQStatus Store(Example& output, int attribute, const Cuts& cuts, const Numbers& counts,
                        TQStatus status = OK()) {
    return output.SetAttributeResults(status, cuts, counts, attribute, 0, 0.0, 0.0, 0.0, 0.0);
  }
  static void MustStore(Example& output, int attribute, const Cuts& cuts, const Numbers& counts,
                        TQStatus status = OK()) {
    ASSERT_EQ(OK(), Store(output, attribute, cuts, counts, status));
  }

  // Stores attribute 3 with a different number in every field.
  static void StoreFull(Example& output) {
    ASSERT_EQ(OK(), output.SetAttributeResults(Warning(120014), {1.5, 2.5}, Example::FullCounts(),
                                               3, 7, 12.0, 16.5, -1.25, 8.75));
  }
  static Value Full() {
    Example output;
    StoreFull(output);
    return AllOf(output).at(0);
  }
  static void ExpectFull(const Value& value) {
    EXPECT_EQ(Warning(120014), value.GetStatus());
    EXPECT_EQ(3, value.GetAttributeIndex());
    EXPECT_EQ((Numbers{1.5, 2.5}), value.GetCutPoints());
    EXPECT_EQ(Example::FullCounts(), Example::CountsOf(value));
    EXPECT_EQ(7U, value.GetNDistinctValues());
    EXPECT_EQ(12.0, value.GetTotalWeight());
    EXPECT_EQ(16.5, value.GetTotalWeightWithMissing());
    EXPECT_EQ(-1.25, value.GetMinimum());
    EXPECT_EQ(8.75, value.GetMaximum());
    Example::ExpectTargetAndEntropy(value);
  }
  static void ExpectEmpty(const Value& value) {
    EXPECT_EQ(OK(), value.GetStatus());
    EXPECT_EQ(-1, value.GetAttributeIndex());
    EXPECT_TRUE(value.GetCutPoints().empty());
    EXPECT_TRUE(value.GetCellCounts().empty());
    EXPECT_EQ(0U, value.GetNDistinctValues());
    EXPECT_EQ(0.0, value.GetTotalWeight());
    EXPECT_EQ(0.0, value.GetTotalWeightWithMissing());
    EXPECT_EQ(0.0, value.GetMinimum());
    EXPECT_EQ(0.0, value.GetMaximum());
    Example::ExpectNeitherTargetNorEntropy(value);
  }
};

using Examples = testing::Types<SupervisedExample, EqualFrequencyExample>;
TYPED_TEST_SUITE(Output, Examples);

// ------------------------------------------------------------- the value class

template <typename Example>
class OutputValue : public Output<Example> {};
TYPED_TEST_SUITE(OutputValue, Examples);

TYPED_TEST(OutputValue, ANewOneIsOKWithoutBinsAndWithIndicesMinusOne) {
  this->ExpectEmpty(typename TypeParam::Value());
}

TYPED_TEST(OutputValue, ACopyHoldsEveryFieldAndSharesNoStorage) {
  const auto source = this->Full();
  const auto copy(source);
  this->ExpectFull(copy);
  this->ExpectFull(source);
  EXPECT_NE(source.GetCutPoints().data(), copy.GetCutPoints().data());
  EXPECT_NE(source.GetCellCounts().data(), copy.GetCellCounts().data());
}

TYPED_TEST(OutputValue, AssignmentReplacesEveryField) {
  const auto source = this->Full();
  typename TypeParam::Value target;
  target = source;
  this->ExpectFull(target);
  target = typename TypeParam::Value();
  this->ExpectEmpty(target);
  this->ExpectFull(source);
}

TYPED_TEST(OutputValue, AssignmentToItselfChangesNothing) {
  auto value = this->Full();
  const auto& alias = value;
  value = alias;
  this->ExpectFull(value);
}

TYPED_TEST(OutputValue, DisplayWritesEveryFieldInOrder) {
  EXPECT_EQ(TypeParam::kFullText, TextOf(this->Full()));
}

TYPED_TEST(OutputValue, DisplayUsesTheStreamsFormattingAndReturnsTheStream) {
  std::ostringstream os;
  os.precision(2);
  os << std::fixed;
  const auto value = this->Full();
  EXPECT_EQ(&os, &value.Display(os));
  EXPECT_NE(std::string::npos, os.str().find("Total weight = 12.00\n"));
  EXPECT_NE(std::string::npos, os.str().find("\n1.50\n2.50\n"));
  EXPECT_NE(std::string::npos, os.str().find("\n6.00  4.00  2.00  \n"));
}

// ---------------------------------------------------------------------- storing

TYPED_TEST(Output, StoringANegativeAttributeFailsAndStoresNothing) {
  TypeParam output;
  EXPECT_EQ(Error(TypeParam::kNegativeIndex), this->Store(output, -1, {1.0}, {2.0, 2.0}));
  EXPECT_EQ(Error(TypeParam::kNegativeIndex), this->Store(output, -2, {}, {}));
  std::vector<typename TypeParam::Value> all;
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
}

TYPED_TEST(Output, AFailedStoreKeepsWhatIsThere) {
  TypeParam output;
  this->StoreFull(output);
  EXPECT_EQ(Error(TypeParam::kNegativeIndex), this->Store(output, -2, {}, {}));
  ASSERT_EQ(1U, AllOf(output).size());
  this->ExpectFull(AllOf(output)[0]);
}

TYPED_TEST(Output, AttributeZeroCanBeStored) {
  TypeParam output;
  EXPECT_EQ(OK(), this->Store(output, 0, {}, {}));
  EXPECT_EQ(0, AllOf(output).at(0).GetAttributeIndex());
}

TYPED_TEST(Output, StoringReturnsOKAndKeepsTheGivenStatusInTheValue) {
  TypeParam output;
  EXPECT_EQ(OK(), this->Store(output, 3, {}, {}, Error(120010)));
  EXPECT_EQ(Error(120010), AllOf(output).at(0).GetStatus());
}

TYPED_TEST(Output, AStoredStatusKeepsItsDataSlots) {
  TQStatus status(120014, true);
  status.SetDiscreteDatum(0, 9);
  status.SetDiscreteDatum(2, 4);
  status.SetScaleDatum(2, 0.5);
  TypeParam output;
  this->MustStore(output, 0, {}, {}, status);
  EXPECT_EQ(status, AllOf(output).at(0).GetStatus());
}

// Tells what a comparison of numbers does not: zeros of either sign, and NaN from NaN.
std::uint64_t BitsOf(double number) { return std::bit_cast<std::uint64_t>(number); }

TYPED_TEST(Output, NumbersAreStoredAsTheyAre) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  for (const double number : {kInfinity, -kInfinity, -0.0, kNaN}) {
    TypeParam output;
    ASSERT_EQ(OK(), output.SetAttributeResults(OK(), {number}, {number, number}, 0, 4294967295U,
                                               number, number, number, number));
    const auto value = AllOf(output).at(0);
    EXPECT_EQ(4294967295U, value.GetNDistinctValues());
    EXPECT_EQ(BitsOf(number), BitsOf(value.GetTotalWeight()));
    EXPECT_EQ(BitsOf(number), BitsOf(value.GetTotalWeightWithMissing()));
    EXPECT_EQ(BitsOf(number), BitsOf(value.GetMinimum()));
    EXPECT_EQ(BitsOf(number), BitsOf(value.GetMaximum()));
    EXPECT_EQ(BitsOf(number), BitsOf(value.GetCutPoints().at(0)));
    EXPECT_EQ(BitsOf(number), BitsOf(TypeParam::CountsOf(value).at(0)));
    EXPECT_EQ(BitsOf(number), BitsOf(TypeParam::CountsOf(value).at(1)));
  }
}

TYPED_TEST(Output, StoredValuesDoNotFollowTheCallersContainers) {
  TypeParam output;
  typename TypeParam::Cuts cuts{1.0};
  Numbers counts{3, 1, 2, 4, 2, 2};
  this->MustStore(output, 0, cuts, counts);
  cuts = {99.0};
  counts[0] = 99.0;
  EXPECT_EQ((Numbers{1.0}), AllOf(output).at(0).GetCutPoints());
  EXPECT_EQ((Numbers{3, 1, 2, 4, 2, 2}), TypeParam::CountsOf(AllOf(output).at(0)));
}

// --------------------------------------------------------------------- reading

TYPED_TEST(Output, AValueIsReturnedWithItsWarningAndEveryField) {
  TypeParam output;
  this->MustStore(output, 1, {9.0}, {});
  this->StoreFull(output);
  typename TypeParam::Value value;
  EXPECT_EQ(Warning(120014), output.Read(3, value));
  this->ExpectFull(value);
}

TYPED_TEST(Output, AStoredErrorIsReturnedTogetherWithTheValue) {
  TypeParam output;
  this->MustStore(output, 4, {2.0}, {1, 1, 2, 2}, Error(120010));
  typename TypeParam::Value value;
  EXPECT_EQ(Error(120010), output.Read(4, value));
  EXPECT_EQ(Error(120010), value.GetStatus());
  EXPECT_EQ((Numbers{2.0}), value.GetCutPoints());
  EXPECT_EQ((Numbers{1, 1, 2, 2}), TypeParam::CountsOf(value));
}

TYPED_TEST(Output, ReadingReplacesWhatTheArgumentHeld) {
  TypeParam output;
  this->MustStore(output, 0, {}, {});
  auto value = this->Full();
  EXPECT_EQ(OK(), output.Read(0, value));
  EXPECT_EQ(0, value.GetAttributeIndex());
  EXPECT_EQ(OK(), value.GetStatus());
  EXPECT_TRUE(value.GetCutPoints().empty());
  EXPECT_TRUE(TypeParam::CountsOf(value).empty());
  EXPECT_EQ(0U, value.GetNDistinctValues());
}

TYPED_TEST(Output, WhatIsStoredTwiceIsKeptTwiceAndFoundByItsFirstValue) {
  TypeParam output;
  this->MustStore(output, 4, {1.0}, {}, Warning(120019));
  this->MustStore(output, 4, {2.0}, {}, Error(120010));
  ASSERT_EQ(2U, AllOf(output).size());
  EXPECT_EQ((Numbers{1.0}), AllOf(output)[0].GetCutPoints());
  EXPECT_EQ((Numbers{2.0}), AllOf(output)[1].GetCutPoints());
  typename TypeParam::Value value;
  EXPECT_EQ(Warning(120019), output.Read(4, value));
  EXPECT_EQ((Numbers{1.0}), value.GetCutPoints());
}

TYPED_TEST(Output, WhatIsStoredAfterADoubleOneIsStillFound) {
  TypeParam output;
  this->MustStore(output, 1, {1.0}, {});
  this->MustStore(output, 1, {2.0}, {});
  this->MustStore(output, 3, {3.0}, {});
  typename TypeParam::Value value;
  EXPECT_EQ(OK(), output.Read(3, value));
  EXPECT_EQ((Numbers{3.0}), value.GetCutPoints());
}

TYPED_TEST(Output, AnAttributeWithoutValueIsRefusedAndLeavesTheArgument) {
  TypeParam output;
  auto value = this->Full();
  EXPECT_EQ(Error(120013), output.Read(3, value));  // nothing stored
  this->MustStore(output, 4, {}, {});
  EXPECT_EQ(Error(120013), output.Read(3, value));
  EXPECT_EQ(Error(120013), output.Read(-1, value));
  this->ExpectFull(value);
}

TYPED_TEST(Output, ReadingAllReplacesTheArgumentInStorageOrder) {
  TypeParam output;
  this->MustStore(output, 8, {1.0}, {}, Error(120010));
  this->MustStore(output, 2, {2.0}, {});
  std::vector<typename TypeParam::Value> all(5, this->Full());
  EXPECT_EQ(OK(), output.GetAllCutPoints(all));
  ASSERT_EQ(2U, all.size());
  EXPECT_EQ(8, all[0].GetAttributeIndex());
  EXPECT_EQ(Error(120010), all[0].GetStatus());
  EXPECT_EQ(2, all[1].GetAttributeIndex());
}

TYPED_TEST(Output, ReadingAllOfNothingFailsAndLeavesTheArgument) {
  const TypeParam output;
  std::vector<typename TypeParam::Value> all{this->Full()};
  EXPECT_EQ(Error(120020), output.GetAllCutPoints(all));
  ASSERT_EQ(1U, all.size());
  this->ExpectFull(all[0]);
}

// ------------------------------------------------------------- copies and display

TYPED_TEST(Output, ACopyIsIndependentOfItsSource) {
  TypeParam source;
  this->StoreFull(source);
  TypeParam copy(source);
  this->MustStore(copy, 0, {}, {});
  EXPECT_EQ(1U, AllOf(source).size());
  ASSERT_EQ(2U, AllOf(copy).size());
  this->ExpectFull(AllOf(copy)[0]);
  typename TypeParam::Value value;
  EXPECT_EQ(Warning(120014), copy.Read(3, value));
  EXPECT_EQ(Error(120013), source.Read(0, value));
}

TYPED_TEST(Output, AssignmentReplacesWhatIsStoredAndFound) {
  TypeParam source;
  this->StoreFull(source);
  TypeParam target;
  this->MustStore(target, 0, {}, {});
  target = source;
  ASSERT_EQ(1U, AllOf(target).size());
  this->ExpectFull(AllOf(target)[0]);
  this->ExpectFull(AllOf(source)[0]);
  typename TypeParam::Value value;
  EXPECT_EQ(Error(120013), target.Read(0, value));
  EXPECT_EQ(Warning(120014), target.Read(3, value));
  this->ExpectFull(value);
}

TYPED_TEST(Output, DisplayFramesTheValues) {
  const std::string name = TypeParam::kName;
  TypeParam output;
  this->StoreFull(output);
  this->StoreFull(output);
  EXPECT_EQ("\nStart of " + name + " display\ncut point :" + TypeParam::kFullText +
                TypeParam::kFullText + "\nEnd of " + name + " display\n",
            TextOf(output));
}

TYPED_TEST(Output, DisplayOfAnEmptyOneIsTheFrameAlone) {
  const std::string name = TypeParam::kName;
  EXPECT_EQ("\nStart of " + name + " display\ncut point :\nEnd of " + name + " display\n",
            TextOf(TypeParam()));
}

TYPED_TEST(Output, DisplayReturnsTheStream) {
  std::ostringstream os;
  EXPECT_EQ(&os, &TypeParam().Display(os));
}

}  // namespace
