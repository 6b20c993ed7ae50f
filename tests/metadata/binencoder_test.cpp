#include "tqbinning/binencoder.h"

#include <cmath>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqcommon/missingvalue.h"

namespace {

using metadata::CopiesOf;
using metadata::Give;
using metadata::Labels;
using metadata::NumericMissing;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kNoCode = -1.0;
const double kMissing = TQMV::gMissingValue;

BINCatNumEncoder Numbers(const std::vector<double>& values) { return BINCatNumEncoder(values); }

// The category of every code, in the order of the codes.
std::vector<double> Categories(const BINCatNumEncoder& encoder) {
  std::vector<double> values;
  for (int c = 0; c < encoder.GetNumberOfCategories(); ++c) values.push_back(encoder.Decode(c));
  return values;
}

// A numeric encoder in which every field has been used.
BINCatNumEncoder FullNumericEncoder() {
  BINCatNumEncoder encoder({3.5, 1.0, 2.0});
  encoder.SetValueLabels({"high", "low", "middle"});
  EXPECT_TRUE(Give(encoder, NumericMissing({9.0})));
  return encoder;
}

TEST(BINCatNumEncoder, ANewEncoderIsEmpty) {
  const BINCatNumEncoder encoder(5);
  EXPECT_EQ(2, encoder.GetEncoderType());
  EXPECT_EQ(0, encoder.GetNumberOfCategories());
  EXPECT_THAT(Labels(encoder), IsEmpty());
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
  EXPECT_EQ(kMissing, encoder.Decode(0));
}

TEST(BINCatNumEncoder, TheCapacityHintLimitsNothing) {
  for (const int hint : {0, 1, -1, std::numeric_limits<int>::min()}) {
    BINCatNumEncoder encoder(hint);
    EXPECT_EQ(0.0, encoder.Encode(7.0));
    EXPECT_EQ(1.0, encoder.Encode(8.0));
    EXPECT_EQ(2, encoder.GetNumberOfCategories());
  }
}

TEST(BINCatNumEncoder, CodesFollowTheOrderOfFirstAppearance) {
  BINCatNumEncoder encoder(0);
  EXPECT_EQ(0.0, encoder.Encode(3.5));
  EXPECT_EQ(1.0, encoder.Encode(1.0));
  EXPECT_EQ(0.0, encoder.Encode(3.5));
  EXPECT_EQ(2.0, encoder.Encode(2.0));
  EXPECT_EQ(3, encoder.GetNumberOfCategories());
  EXPECT_EQ(1.0, encoder.Decode(1));
  EXPECT_THAT(Categories(encoder), ElementsAre(3.5, 1.0, 2.0));
}

TEST(BINCatNumEncoder, AnEncoderBuiltFromValuesHasEncodedThemInOrder) {
  const BINCatNumEncoder encoder = Numbers({3.5, 1.0, 3.5, 2.0});
  EXPECT_THAT(Categories(encoder), ElementsAre(3.5, 1.0, 2.0));
  EXPECT_EQ(2.0, encoder.EncodeConst(2.0));
}

TEST(BINCatNumEncoder, AnEncoderBuiltFromNoValuesIsEmpty) {
  EXPECT_EQ(0, Numbers({}).GetNumberOfCategories());
}

TEST(BINCatNumEncoder, EncodeConstOfAnUnseenValueDoesNotAddItAndEncodeDoes) {
  BINCatNumEncoder encoder = Numbers({1.0});
  EXPECT_EQ(kNoCode, encoder.EncodeConst(4.0));
  EXPECT_EQ(kNoCode, encoder.EncodeConst(4.0));
  EXPECT_EQ(1, encoder.GetNumberOfCategories());
  EXPECT_EQ(1.0, encoder.Encode(4.0));
  EXPECT_EQ(1.0, encoder.EncodeConst(4.0));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
}

TEST(BINCatNumEncoder, TheSystemMissingValueHasNoCodeAndIsNeverAdded) {
  BINCatNumEncoder encoder = Numbers({kMissing, 1.0, kMissing});
  EXPECT_EQ(kNoCode, encoder.Encode(kMissing));
  EXPECT_EQ(kNoCode, encoder.EncodeConst(kMissing));
  EXPECT_THAT(Categories(encoder), ElementsAre(1.0));
}

TEST(BINCatNumEncoder, DecodeOutsideTheCodesIsTheSystemMissingValue) {
  const BINCatNumEncoder encoder = Numbers({3.5, 1.0, 2.0});
  for (const int code :
       {-1, 3, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(kMissing, encoder.Decode(code)) << code;
  }
  EXPECT_EQ(3.5, encoder.Decode(0));
  EXPECT_EQ(2.0, encoder.Decode(2));
}

TEST(BINCatNumEncoder, AUserMissingValueHasNoCode) {
  BINCatNumEncoder encoder = Numbers({1.0});
  ASSERT_TRUE(Give(encoder, NumericMissing({9.0})));
  EXPECT_EQ(kNoCode, encoder.Encode(9.0));
  EXPECT_EQ(kNoCode, encoder.EncodeConst(9.0));
  EXPECT_EQ(1, encoder.GetNumberOfCategories());
}

TEST(BINCatNumEncoder, AValueEncodedBeforeItBecameUserMissingHasNoCodeAnyMore) {
  BINCatNumEncoder encoder = Numbers({1.0, 9.0, 2.0});
  ASSERT_TRUE(Give(encoder, NumericMissing({9.0})));
  EXPECT_EQ(kNoCode, encoder.Encode(9.0));
  EXPECT_EQ(kNoCode, encoder.EncodeConst(9.0));
  EXPECT_EQ(2.0, encoder.Encode(2.0));
  // No category is forgotten, though.
  EXPECT_THAT(Categories(encoder), ElementsAre(1.0, 9.0, 2.0));
}

TEST(BINCatNumEncoder, ValuesOfTheUserMissingRangeHaveNoCode) {
  BINCatNumEncoder encoder(0);
  std::unique_ptr<BINNumericUserMissing> range = NumericMissing({});
  range->SetInterval(BINNumericInterval(1.0, 3.0));
  ASSERT_TRUE(Give(encoder, std::move(range)));
  EXPECT_EQ(kNoCode, encoder.Encode(1.0));
  EXPECT_EQ(kNoCode, encoder.Encode(3.0));
  EXPECT_EQ(0.0, encoder.Encode(3.5));
}

TEST(BINCatNumEncoder, AClearedDefinitionGivesTheValueItsCodeBack) {
  BINCatNumEncoder encoder = Numbers({1.0, 9.0});
  ASSERT_TRUE(Give(encoder, NumericMissing({9.0})));
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1.0, encoder.EncodeConst(9.0));
}

// A NaN is unordered; as a key it must neither hide nor be hidden by numbers.
TEST(BINCatNumEncoder, NaNIsOneCategoryOfItsOwn) {
  BINCatNumEncoder encoder = Numbers({5.0, kNaN, 1.0, kInfinity, -kInfinity});
  EXPECT_EQ(1.0, encoder.Encode(kNaN));
  EXPECT_EQ(1.0, encoder.EncodeConst(-kNaN));
  EXPECT_EQ(0.0, encoder.Encode(5.0));
  EXPECT_EQ(2.0, encoder.Encode(1.0));
  EXPECT_EQ(3.0, encoder.EncodeConst(kInfinity));
  EXPECT_EQ(4.0, encoder.EncodeConst(-kInfinity));
  EXPECT_EQ(5, encoder.GetNumberOfCategories());
  EXPECT_THAT(encoder.Decode(1), testing::NanSensitiveDoubleEq(kNaN));
}

TEST(BINCatNumEncoder, NaNAsTheFirstCategoryLeavesRoomForOthers) {
  BINCatNumEncoder encoder(0);
  EXPECT_EQ(0.0, encoder.Encode(kNaN));
  EXPECT_EQ(kNoCode, encoder.EncodeConst(1.0));
  EXPECT_EQ(1.0, encoder.Encode(1.0));
  EXPECT_EQ(0.0, encoder.Encode(kNaN));
  EXPECT_EQ(2.0, encoder.Encode(-1.0));
}

TEST(BINCatNumEncoder, ZerosOfBothSignsAreOneCategory) {
  BINCatNumEncoder encoder = Numbers({0.0, 1.0});
  EXPECT_EQ(0.0, encoder.Encode(-0.0));
  EXPECT_EQ(0.0, encoder.EncodeConst(-0.0));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
}

TEST(BINCatNumEncoder, NeighbouringDoublesAreDifferentCategories) {
  const double next = std::nextafter(1.0, 2.0);
  EXPECT_EQ(2, Numbers({1.0, next}).GetNumberOfCategories());
  EXPECT_EQ(1.0, Numbers({1.0, next}).EncodeConst(next));
}

TEST(BINCatNumEncoder, ManyValuesKeepTheirCodes) {
  BINCatNumEncoder encoder(2);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(i, encoder.Encode(1000.0 - i));
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(1000.0 - i, encoder.Decode(i));
  EXPECT_EQ(1000, encoder.GetNumberOfCategories());
}

TEST(BINCatNumEncoder, EveryCopyHasCategoriesLabelsAndDefinition) {
  const BINCatNumEncoder source = FullNumericEncoder();
  for (const auto& copy : CopiesOf(source, Numbers({7.0, 8.0}))) {
    EXPECT_THAT(Categories(*copy), ElementsAre(3.5, 1.0, 2.0));
    EXPECT_EQ(1.0, copy->EncodeConst(1.0));
    EXPECT_EQ(kNoCode, copy->EncodeConst(7.0));
    EXPECT_THAT(Labels(*copy), ElementsAre("high", "low", "middle"));
    EXPECT_EQ(kNoCode, copy->Encode(9.0));
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    EXPECT_TRUE(source.GetUserMissingInfo()->IsEqualTo(copy->GetUserMissingInfo()));
    EXPECT_EQ(3.0, copy->Encode(4.0));  // the next code follows on
  }
}

TEST(BINCatNumEncoder, NoCopyReachesItsSource) {
  const BINCatNumEncoder source = FullNumericEncoder();
  for (const auto& copy : CopiesOf(source, Numbers({}))) {
    copy->Encode(4.0);
    copy->SetValueLabel(0, "changed");
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_THAT(Categories(source), ElementsAre(3.5, 1.0, 2.0));
  EXPECT_THAT(Labels(source), ElementsAre("high", "low", "middle"));
  EXPECT_EQ(1, source.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINCatNumEncoder, SelfAssignmentKeepsEverything) {
  BINCatNumEncoder encoder = FullNumericEncoder();
  const BINCatNumEncoder& itself = encoder;
  encoder = itself;
  EXPECT_THAT(Categories(encoder), ElementsAre(3.5, 1.0, 2.0));
  EXPECT_THAT(Labels(encoder), ElementsAre("high", "low", "middle"));
  EXPECT_EQ(kNoCode, encoder.Encode(9.0));
}

TEST(BINCatNumEncoder, ACloneIsDeletedThroughTheInterface) {
  const BINCatNumEncoder source = FullNumericEncoder();
  const IBINEncoder& encoder = source;
  const std::unique_ptr<IBINEncoder> clone(encoder.Clone());
  EXPECT_EQ(2, clone->GetEncoderType());
  EXPECT_EQ(3, clone->GetNumberOfCategories());
}

TEST(BINCatNumEncoder, AnEmptyEncoderShowsItsLastCodeOnly) {
  EXPECT_EQ("\tBINCatNumEncoder: Last code = -1\n", Shown(BINCatNumEncoder(4)));
}

TEST(BINCatNumEncoder, ValuesAreShownInTheOrderOfTheirCodes) {
  EXPECT_EQ(
      "\tBINCatNumEncoder: Last code = 2\n"
      "\t\tNumeric values of categories: 3.5 1 2 \n",
      Shown(Numbers({3.5, 1.0, 2.0})));
}

TEST(BINCatNumEncoder, DefinitionAndLabelsAreShownAfterTheValues) {
  const BINCatNumEncoder encoder = FullNumericEncoder();
  EXPECT_EQ(
      "\tBINCatNumEncoder: Last code = 2\n"
      "\t\tNumeric values of categories: 3.5 1 2 \n"
      "\t\tUser-missing values for this encoder:\n\t\t" +
          Shown(*encoder.GetUserMissingInfo()) +
          "\t\tValue Labels:\n"
          "high low middle \n",
      Shown(encoder));
}

TEST(BINCatNumEncoder, ValuesAndLabelsAreShownEightToALine) {
  BINCatNumEncoder encoder = Numbers({0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0});
  encoder.SetValueLabels({"a", "b", "c", "d", "e", "f", "g", "h", "i"});
  const std::string shown = Shown(encoder);
  EXPECT_THAT(shown, testing::HasSubstr("Numeric values of categories: 0 1 2 3 4 5 6 7 \n8 \n"));
  EXPECT_THAT(shown, testing::HasSubstr("\t\tValue Labels:\na b c d e f g h \ni \n"));
}

TEST(BINCatNumEncoder, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINCatNumEncoder encoder = FullNumericEncoder();
  EXPECT_EQ(Shown(encoder), ShownWhenFlushedLast(encoder));
  std::ostringstream os;
  EXPECT_EQ(&os, &encoder.Display(os));
}

TEST(BINCatNumEncoder, EightValuesAndLabelsFillALineAndBeginNoOther) {
  BINCatNumEncoder encoder = Numbers({0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0});
  encoder.SetValueLabels({"a", "b", "c", "d", "e", "f", "g", "h"});
  const std::string shown = Shown(encoder);
  EXPECT_THAT(shown, testing::HasSubstr("of categories: 0 1 2 3 4 5 6 7 \n\t\tValue Labels:\n"));
  EXPECT_THAT(shown, testing::EndsWith("a b c d e f g h \n"));
}

}  // namespace
