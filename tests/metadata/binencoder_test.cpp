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
using metadata::NotingNumericMissing;
using metadata::NotingStringMissing;
using metadata::NumericMissing;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using metadata::StringMissing;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kNoCode = -1.0;
constexpr auto kTruncate = IBINVariable::kTruncate;
constexpr auto kRoundToClosest = IBINVariable::kRoundToClosest;
const double kMissing = TQMV::gMissingValue;

BINCatNumEncoder Numbers(const std::vector<double>& values) { return BINCatNumEncoder(values); }
BINStringEncoder Strings(const std::vector<std::string>& values) {
  return BINStringEncoder(values);
}

// The category of every code, in the order of the codes.
std::vector<double> Categories(const BINCatNumEncoder& encoder) {
  std::vector<double> values;
  for (int c = 0; c < encoder.GetNumberOfCategories(); ++c) values.push_back(encoder.Decode(c));
  return values;
}
std::vector<std::string> Categories(const BINStringEncoder& encoder) {
  std::vector<std::string> values;
  for (int c = 0; c < encoder.GetNumberOfCategories(); ++c) values.push_back(encoder.Decode(c));
  return values;
}

std::vector<std::string> Labels(const IBINEncoder& encoder) { return *encoder.GetValueLabels(); }

// A numeric encoder in which every field has been used.
BINCatNumEncoder FullNumericEncoder() {
  BINCatNumEncoder encoder({3.5, 1.0, 2.0});
  encoder.SetValueLabels({"high", "low", "middle"});
  EXPECT_TRUE(Give(encoder, NumericMissing({9.0})));
  return encoder;
}

BINStringEncoder FullStringEncoder() {
  BINStringEncoder encoder(std::vector<std::string>{"b", "a"});
  encoder.SetValueLabels({"second", "first"});
  EXPECT_TRUE(Give(encoder, StringMissing({"N/A"})));
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
  for (const int code : {-1, 3, 4, std::numeric_limits<int>::min(),
                         std::numeric_limits<int>::max()}) {
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

TEST(BINCatNumEncoder, SetValueLabelsReplacesAllLabelsWhateverTheirNumber) {
  BINCatNumEncoder encoder = Numbers({1.0, 2.0});
  encoder.SetValueLabels({"a", "b", "c"});
  EXPECT_THAT(Labels(encoder), ElementsAre("a", "b", "c"));
  encoder.SetValueLabels({"x"});
  EXPECT_THAT(Labels(encoder), ElementsAre("x"));
  encoder.SetValueLabels({});
  EXPECT_THAT(Labels(encoder), IsEmpty());
}

TEST(BINCatNumEncoder, SetValueLabelPadsToTheNumberOfCategoriesAndSetsOne) {
  BINCatNumEncoder encoder = Numbers({1.0, 2.0, 3.0});
  encoder.SetValueLabel(1, "two");
  EXPECT_THAT(Labels(encoder), ElementsAre("", "two", ""));
  encoder.SetValueLabel(0, "one");
  encoder.SetValueLabel(2, "three");
  encoder.SetValueLabel(1, "zwei");
  EXPECT_THAT(Labels(encoder), ElementsAre("one", "zwei", "three"));
}

TEST(BINCatNumEncoder, SetValueLabelWithACodeOutsideTheThreeCategoriesOnlyPads) {
  for (const int code : {5, 3, -1, std::numeric_limits<int>::max()}) {
    BINCatNumEncoder encoder = Numbers({1.0, 2.0, 3.0});
    encoder.SetValueLabel(code, "ignored");
    EXPECT_THAT(Labels(encoder), ElementsAre("", "", "")) << code;
  }
}

TEST(BINCatNumEncoder, SetValueLabelNeverShortensTheLabels) {
  BINCatNumEncoder encoder = Numbers({1.0, 2.0});
  encoder.SetValueLabels({"a", "b", "c", "d"});
  encoder.SetValueLabel(0, "A");
  EXPECT_THAT(Labels(encoder), ElementsAre("A", "b", "c", "d"));
  encoder.SetValueLabel(2, "C");  // a label is there, but no such category
  EXPECT_THAT(Labels(encoder), ElementsAre("A", "b", "c", "d"));
}

TEST(BINCatNumEncoder, SetValueLabelOnAnEmptyEncoderDoesNothing) {
  BINCatNumEncoder encoder(3);
  encoder.SetValueLabel(0, "ignored");
  EXPECT_THAT(Labels(encoder), IsEmpty());
}

TEST(BINCatNumEncoder, LabelsArePaddedAgainAfterTheEncoderHasGrown) {
  BINCatNumEncoder encoder = Numbers({1.0});
  encoder.SetValueLabel(0, "one");
  encoder.Encode(2.0);
  EXPECT_THAT(Labels(encoder), ElementsAre("one"));
  encoder.SetValueLabel(1, "two");
  EXPECT_THAT(Labels(encoder), ElementsAre("one", "two"));
}

TEST(BINCatNumEncoder, ANewDefinitionDeletesTheOldOne) {
  int deletions = 0;
  BINCatNumEncoder encoder(0);
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingNumericMissing>(deletions)));
  EXPECT_EQ(0, deletions);
  ASSERT_TRUE(Give(encoder, NumericMissing({9.0})));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(kNoCode, encoder.Encode(9.0));
}

TEST(BINCatNumEncoder, NullDeletesTheDefinition) {
  int deletions = 0;
  BINCatNumEncoder encoder(0);
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingNumericMissing>(deletions)));
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
}

TEST(BINCatNumEncoder, AStringDefinitionIsRefusedAndNothingChanges) {
  int deletions = 0;
  int refusedDeletions = 0;
  BINCatNumEncoder encoder(0);
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingNumericMissing>(deletions)));
  const IBINUserMissing* const kept = encoder.GetUserMissingInfo();
  NotingStringMissing refused(refusedDeletions);
  EXPECT_FALSE(encoder.SetUserMissingInfo(&refused));
  EXPECT_EQ(kept, encoder.GetUserMissingInfo());
  EXPECT_EQ(0, deletions);
  EXPECT_EQ(0, refusedDeletions);
}

TEST(BINCatNumEncoder, TheDestructorDeletesTheDefinition) {
  int deletions = 0;
  {
    BINCatNumEncoder encoder(0);
    ASSERT_TRUE(Give(encoder, std::make_unique<NotingNumericMissing>(deletions)));
  }
  EXPECT_EQ(1, deletions);
}

TEST(BINCatNumEncoder, AssignmentDeletesTheOldDefinition) {
  int deletions = 0;
  BINCatNumEncoder encoder(0);
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingNumericMissing>(deletions)));
  encoder = BINCatNumEncoder(0);
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
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

TEST(BINStringEncoder, ANewEncoderIsEmpty) {
  const BINStringEncoder encoder(5);
  EXPECT_EQ(3, encoder.GetEncoderType());
  EXPECT_EQ(0, encoder.GetNumberOfCategories());
  EXPECT_THAT(Labels(encoder), IsEmpty());
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
  EXPECT_EQ("", encoder.Decode(0));
}

TEST(BINStringEncoder, TheCapacityHintLimitsNothing) {
  for (const int hint : {0, 1, -1, std::numeric_limits<int>::min()}) {
    BINStringEncoder encoder(hint);
    EXPECT_EQ(0.0, encoder.Encode("x"));
    EXPECT_EQ(1.0, encoder.Encode("y"));
    EXPECT_EQ(2, encoder.GetNumberOfCategories());
  }
}

TEST(BINStringEncoder, CodesFollowTheOrderOfFirstAppearance) {
  BINStringEncoder encoder(0);
  EXPECT_EQ(0.0, encoder.Encode("b"));
  EXPECT_EQ(1.0, encoder.Encode("a"));
  EXPECT_EQ(0.0, encoder.Encode("b"));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
  EXPECT_EQ("b", encoder.Decode(0));
  EXPECT_EQ("a", encoder.Decode(1));
  EXPECT_EQ("", encoder.Decode(2));
}

TEST(BINStringEncoder, AnEncoderBuiltFromStringsHasEncodedThemInOrder) {
  EXPECT_THAT(Categories(Strings({"b", "a", "b", "c"})), ElementsAre("b", "a", "c"));
  EXPECT_EQ(0, Strings({}).GetNumberOfCategories());
}

TEST(BINStringEncoder, TheEmptyStringIsACategoryOfItsOwn) {
  BINStringEncoder encoder = Strings({"a"});
  EXPECT_EQ(kNoCode, encoder.EncodeConst(""));
  EXPECT_EQ(1.0, encoder.Encode(""));
  EXPECT_EQ(1.0, encoder.EncodeConst(""));
  EXPECT_EQ(2, encoder.GetNumberOfCategories());
}

TEST(BINStringEncoder, StringsAreComparedByteByByteWithoutTrimming) {
  const BINStringEncoder encoder =
      Strings({"a", "A", "a ", " a", "ab", std::string("a\0", 2), "\xc3\xa4"});
  EXPECT_EQ(7, encoder.GetNumberOfCategories());
  EXPECT_EQ(5.0, encoder.EncodeConst(std::string("a\0", 2)));
  EXPECT_EQ(std::string("a\0", 2), encoder.Decode(5));
  EXPECT_EQ(6.0, encoder.EncodeConst("\xc3\xa4"));
}

TEST(BINStringEncoder, EncodeConstOfAnUnseenStringDoesNotAddItAndEncodeDoes) {
  BINStringEncoder encoder = Strings({"a"});
  EXPECT_EQ(kNoCode, encoder.EncodeConst("z"));
  EXPECT_EQ(1, encoder.GetNumberOfCategories());
  EXPECT_EQ(1.0, encoder.Encode("z"));
  EXPECT_EQ(1.0, encoder.EncodeConst("z"));
}

TEST(BINStringEncoder, DecodeOutsideTheCodesIsTheEmptyString) {
  const BINStringEncoder encoder = Strings({"a", "b"});
  for (const int code : {-1, 2, 3, std::numeric_limits<int>::min(),
                         std::numeric_limits<int>::max()}) {
    EXPECT_EQ("", encoder.Decode(code)) << code;
  }
}

TEST(BINStringEncoder, AUserMissingStringHasNoCodeEvenWhenItWasEncodedBefore) {
  BINStringEncoder encoder = Strings({"a", "N/A", "b"});
  ASSERT_TRUE(Give(encoder, StringMissing({"N/A", "?"})));
  for (const char* value : {"N/A", "?"}) {
    EXPECT_EQ(kNoCode, encoder.Encode(value));
    EXPECT_EQ(kNoCode, encoder.EncodeConst(value));
  }
  EXPECT_EQ(2.0, encoder.Encode("b"));
  EXPECT_THAT(Categories(encoder), ElementsAre("a", "N/A", "b"));
}

TEST(BINStringEncoder, AClearedDefinitionGivesTheStringItsCodeBack) {
  BINStringEncoder encoder = Strings({"a", "N/A"});
  ASSERT_TRUE(Give(encoder, StringMissing({"N/A"})));
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1.0, encoder.EncodeConst("N/A"));
}

TEST(BINStringEncoder, ManyStringsKeepTheirCodes) {
  BINStringEncoder encoder(2);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(i, encoder.Encode("s" + std::to_string(1000 - i)));
  for (int i = 0; i < 1000; ++i) EXPECT_EQ("s" + std::to_string(1000 - i), encoder.Decode(i));
}

TEST(BINStringEncoder, CreateLinksMayBeCalledAtAnyTime) {
  BINStringEncoder encoder = Strings({"b", "a", "c"});
  encoder.CreateLinks();
  encoder.CreateLinks();
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a", "c"));
  encoder.Encode("d");
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a", "c", "d"));
  BINStringEncoder empty(0);
  empty.CreateLinks();
  EXPECT_EQ("", empty.Decode(0));
}

TEST(BINStringEncoder, SetValueLabelsReplacesAllLabelsWhateverTheirNumber) {
  BINStringEncoder encoder = Strings({"a", "b"});
  encoder.SetValueLabels({"1", "2", "3"});
  EXPECT_THAT(Labels(encoder), ElementsAre("1", "2", "3"));
  encoder.SetValueLabels({"x"});
  EXPECT_THAT(Labels(encoder), ElementsAre("x"));
}

TEST(BINStringEncoder, SetValueLabelPadsToTheNumberOfCategoriesAndSetsOne) {
  BINStringEncoder encoder = Strings({"a", "b", "c"});
  encoder.SetValueLabel(1, "two");
  EXPECT_THAT(Labels(encoder), ElementsAre("", "two", ""));
}

TEST(BINStringEncoder, SetValueLabelWithACodeOutsideTheThreeCategoriesOnlyPads) {
  for (const int code : {5, 3, -1}) {
    BINStringEncoder encoder = Strings({"a", "b", "c"});
    encoder.SetValueLabel(code, "ignored");
    EXPECT_THAT(Labels(encoder), ElementsAre("", "", "")) << code;
  }
}

TEST(BINStringEncoder, SetValueLabelNeverShortensTheLabels) {
  BINStringEncoder encoder = Strings({"a"});
  encoder.SetValueLabels({"1", "2", "3"});
  encoder.SetValueLabel(0, "one");
  encoder.SetValueLabel(1, "ignored");
  EXPECT_THAT(Labels(encoder), ElementsAre("one", "2", "3"));
}

TEST(BINStringEncoder, ANewDefinitionDeletesTheOldOne) {
  int deletions = 0;
  BINStringEncoder encoder(0);
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingStringMissing>(deletions)));
  ASSERT_TRUE(Give(encoder, StringMissing({"N/A"})));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(kNoCode, encoder.Encode("N/A"));
}

TEST(BINStringEncoder, NullDeletesTheDefinition) {
  int deletions = 0;
  BINStringEncoder encoder(0);
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingStringMissing>(deletions)));
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, deletions);
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
}

TEST(BINStringEncoder, ANumericDefinitionIsRefusedAndNothingChanges) {
  int deletions = 0;
  int refusedDeletions = 0;
  BINStringEncoder encoder(0);
  ASSERT_TRUE(Give(encoder, std::make_unique<NotingStringMissing>(deletions)));
  const IBINUserMissing* const kept = encoder.GetUserMissingInfo();
  NotingNumericMissing refused(refusedDeletions);
  EXPECT_FALSE(encoder.SetUserMissingInfo(&refused));
  EXPECT_EQ(kept, encoder.GetUserMissingInfo());
  EXPECT_EQ(0, deletions);
  EXPECT_EQ(0, refusedDeletions);
}

TEST(BINStringEncoder, TheDestructorAndAssignmentDeleteTheDefinition) {
  int deletions = 0;
  {
    BINStringEncoder encoder(0);
    ASSERT_TRUE(Give(encoder, std::make_unique<NotingStringMissing>(deletions)));
    encoder = BINStringEncoder(0);
    EXPECT_EQ(1, deletions);
    EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
    ASSERT_TRUE(Give(encoder, std::make_unique<NotingStringMissing>(deletions)));
  }
  EXPECT_EQ(2, deletions);
}

TEST(BINStringEncoder, EveryCopyHasCategoriesLabelsAndDefinition) {
  const BINStringEncoder source = FullStringEncoder();
  for (const auto& copy : CopiesOf(source, Strings({"x", "y", "z"}))) {
    EXPECT_THAT(Categories(*copy), ElementsAre("b", "a"));
    EXPECT_EQ(1.0, copy->EncodeConst("a"));
    EXPECT_EQ(kNoCode, copy->EncodeConst("x"));
    EXPECT_THAT(Labels(*copy), ElementsAre("second", "first"));
    EXPECT_EQ(kNoCode, copy->Encode("N/A"));
    EXPECT_NE(source.GetUserMissingInfo(), copy->GetUserMissingInfo());
    EXPECT_TRUE(source.GetUserMissingInfo()->IsEqualTo(copy->GetUserMissingInfo()));
    EXPECT_EQ(2.0, copy->Encode("c"));
  }
}

// Its codes must point at keys of its own: those of the source are gone here.
TEST(BINStringEncoder, EveryCopyDecodesAfterItsSourceIsGone) {
  std::vector<std::unique_ptr<BINStringEncoder>> copies;
  {
    const BINStringEncoder source =
        Strings({"a string too long to be stored inside its object", "a"});
    copies = CopiesOf(source, Strings({"x"}));
  }
  for (const auto& copy : copies) {
    EXPECT_THAT(Categories(*copy),
                ElementsAre("a string too long to be stored inside its object", "a"));
  }
}

TEST(BINStringEncoder, NoCopyReachesItsSource) {
  const BINStringEncoder source = FullStringEncoder();
  for (const auto& copy : CopiesOf(source, Strings({}))) {
    copy->Encode("c");
    copy->SetValueLabel(0, "changed");
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
  }
  EXPECT_THAT(Categories(source), ElementsAre("b", "a"));
  EXPECT_THAT(Labels(source), ElementsAre("second", "first"));
  EXPECT_EQ(1, source.GetUserMissingInfo()->GetNDiscreteValues());
}

TEST(BINStringEncoder, SelfAssignmentKeepsEverything) {
  BINStringEncoder encoder = FullStringEncoder();
  const BINStringEncoder& itself = encoder;
  encoder = itself;
  EXPECT_THAT(Categories(encoder), ElementsAre("b", "a"));
  EXPECT_THAT(Labels(encoder), ElementsAre("second", "first"));
  EXPECT_EQ(kNoCode, encoder.Encode("N/A"));
}

TEST(BINStringEncoder, AnEmptyEncoderShowsItsLastCodeOnly) {
  EXPECT_EQ("\tBINStringEncoder object:  Last code = -1\n", Shown(BINStringEncoder(4)));
}

TEST(BINStringEncoder, EveryStringIsShownOnALineWithItsCode) {
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 1\n"
      "\t\t0\t\tb\n"
      "\t\t1\t\ta\n",
      Shown(Strings({"b", "a"})));
}

TEST(BINStringEncoder, TheDefinitionIsShownLastAndLabelsAreNot) {
  const BINStringEncoder encoder = FullStringEncoder();
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 1\n"
      "\t\t0\t\tb\n"
      "\t\t1\t\ta\n"
      "\t\tUser-missing values for this encoder:\n\t\t" +
          Shown(*encoder.GetUserMissingInfo()),
      Shown(encoder));
}

TEST(BINStringEncoder, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINStringEncoder encoder = Strings({"b", "a"});
  EXPECT_EQ(Shown(encoder), ShownWhenFlushedLast(encoder));
  std::ostringstream os;
  EXPECT_EQ(&os, &encoder.Display(os));
}

TEST(BINRoundEncoder, ItHasNeitherCategoriesNorLabels) {
  BINRoundEncoder encoder;
  encoder.SetValueLabels({"a", "b"});
  encoder.SetValueLabel(0, "c");
  EXPECT_EQ(4, encoder.GetEncoderType());
  EXPECT_EQ(0, encoder.GetNumberOfCategories());
  EXPECT_EQ(nullptr, encoder.GetValueLabels());
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
}

TEST(BINRoundEncoder, RoundingToTheClosest) {
  const BINRoundEncoder encoder(kRoundToClosest);
  EXPECT_EQ(3.0, encoder.Encode(2.5));
  EXPECT_EQ(2.0, encoder.Encode(2.4999999));
  EXPECT_EQ(1.0, encoder.Encode(0.5));
  EXPECT_EQ(7.0, encoder.Encode(7.0));
  EXPECT_EQ(kMissing, encoder.Encode(0.4));
  EXPECT_EQ(kMissing, encoder.Encode(-3.0));
}

TEST(BINRoundEncoder, Truncating) {
  const BINRoundEncoder encoder(kTruncate);
  EXPECT_EQ(2.0, encoder.Encode(2.9));
  EXPECT_EQ(1.0, encoder.Encode(1.0));
  EXPECT_EQ(kMissing, encoder.Encode(0.9));
  EXPECT_EQ(kMissing, encoder.Encode(-0.1));
}

TEST(BINRoundEncoder, ByDefaultItRoundsToTheClosest) {
  EXPECT_EQ(3.0, BINRoundEncoder().Encode(2.5));
  EXPECT_EQ(1.0, BINRoundEncoder().Encode(0.9));
}

TEST(BINRoundEncoder, AnyOtherOptionLeavesTheWeightAsItIs) {
  for (const int option : {2, -1}) {
    const BINRoundEncoder encoder(static_cast<IBINVariable::BINWRoundingOption>(option));
    EXPECT_EQ(2.5, encoder.Encode(2.5));
    EXPECT_EQ(0.4, encoder.Encode(0.4));
    EXPECT_EQ(kMissing, encoder.Encode(0.0));
    EXPECT_EQ(kMissing, encoder.Encode(-2.5));
  }
}

TEST(BINRoundEncoder, AWeightThatIsNotAboveZeroAfterwardsIsMissing) {
  for (const auto option : {kTruncate, kRoundToClosest}) {
    const BINRoundEncoder encoder(option);
    for (const double weight : {0.0, -0.0, -0.5, -1.0, -kInfinity,
                                std::numeric_limits<double>::denorm_min()}) {
      EXPECT_EQ(kMissing, encoder.Encode(weight)) << weight;
    }
  }
}

// 0.49999999999999994 + 0.5 is 1 in doubles: the sum is rounded before floor sees it.
TEST(BINRoundEncoder, TheHalfIsAddedInDoubles) {
  EXPECT_EQ(1.0, BINRoundEncoder(kRoundToClosest).Encode(0.49999999999999994));
}

TEST(BINRoundEncoder, WeightsBeyondWholeNumbersPass) {
  for (const auto option : {kTruncate, kRoundToClosest}) {
    const BINRoundEncoder encoder(option);
    EXPECT_EQ(1e300, encoder.Encode(1e300));
    EXPECT_EQ(kInfinity, encoder.Encode(kInfinity));
  }
}

TEST(BINRoundEncoder, ANaNIsHandedBack) {
  for (const int option : {0, 1, 2}) {
    const BINRoundEncoder encoder(static_cast<IBINVariable::BINWRoundingOption>(option));
    EXPECT_THAT(encoder.Encode(kNaN), testing::NanSensitiveDoubleEq(kNaN)) << option;
  }
}

TEST(BINRoundEncoder, AMissingWeightStaysMissing) {
  for (const int option : {0, 1, 2}) {
    const BINRoundEncoder encoder(static_cast<IBINVariable::BINWRoundingOption>(option));
    EXPECT_EQ(kMissing, encoder.Encode(kMissing)) << option;
  }
}

// The weight as it stands is looked up, not the rounded one.
TEST(BINRoundEncoder, AUserMissingWeightIsMissing) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({9.0, 2.6});
  missing->SetInterval(BINNumericInterval(100.0, 200.0));
  BINRoundEncoder encoder(kRoundToClosest);
  ASSERT_TRUE(encoder.SetUserMissingInfo(missing.get()));
  EXPECT_EQ(kMissing, encoder.Encode(9.0));
  EXPECT_EQ(kMissing, encoder.Encode(2.6));
  EXPECT_EQ(kMissing, encoder.Encode(150.0));
  EXPECT_EQ(9.0, encoder.Encode(8.9));
  EXPECT_EQ(3.0, encoder.Encode(3.0));
  EXPECT_EQ(100.0, encoder.Encode(99.9));
}

TEST(BINRoundEncoder, TheDefinitionIsBorrowedAndNeverDeleted) {
  int deletions = 0;
  NotingNumericMissing first(deletions);
  NotingNumericMissing second(deletions);
  {
    BINRoundEncoder encoder;
    EXPECT_TRUE(encoder.SetUserMissingInfo(&first));
    EXPECT_EQ(&first, encoder.GetUserMissingInfo());
    EXPECT_TRUE(encoder.SetUserMissingInfo(&second));
    EXPECT_EQ(&second, encoder.GetUserMissingInfo());
    EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
    EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
    EXPECT_TRUE(encoder.SetUserMissingInfo(&first));
  }
  EXPECT_EQ(0, deletions);
}

TEST(BINRoundEncoder, AValueAddedToTheBorrowedDefinitionCountsAtOnce) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({});
  BINRoundEncoder encoder;
  ASSERT_TRUE(encoder.SetUserMissingInfo(missing.get()));
  EXPECT_EQ(9.0, encoder.Encode(9.0));
  missing->AddValue(9.0, "");
  EXPECT_EQ(kMissing, encoder.Encode(9.0));
}

TEST(BINRoundEncoder, AStringDefinitionIsRefusedAndNothingChanges) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({9.0});
  const std::unique_ptr<BINStringUserMissing> refused = StringMissing({"9"});
  BINRoundEncoder encoder;
  ASSERT_TRUE(encoder.SetUserMissingInfo(missing.get()));
  EXPECT_FALSE(encoder.SetUserMissingInfo(refused.get()));
  EXPECT_EQ(missing.get(), encoder.GetUserMissingInfo());
  EXPECT_EQ(1, refused->GetNDiscreteValues());
}

TEST(BINRoundEncoder, EveryCopyHasTheOptionAndBorrowsTheSameDefinition) {
  int deletions = 0;
  NotingNumericMissing missing(deletions);
  missing.AddValue(9.0, "");
  {
    BINRoundEncoder source(kTruncate);
    ASSERT_TRUE(source.SetUserMissingInfo(&missing));
    for (const auto& copy : CopiesOf(source, BINRoundEncoder(kRoundToClosest))) {
      EXPECT_EQ(&missing, copy->GetUserMissingInfo());
      EXPECT_EQ(kMissing, copy->Encode(9.0));
      EXPECT_EQ(2.0, copy->Encode(2.9));
    }
  }
  EXPECT_EQ(0, deletions);
}

TEST(BINRoundEncoder, ACopyMayBorrowAnotherDefinitionThanItsSource) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({9.0});
  BINRoundEncoder source;
  ASSERT_TRUE(source.SetUserMissingInfo(missing.get()));
  for (const auto& copy : CopiesOf(source, BINRoundEncoder())) {
    EXPECT_TRUE(copy->SetUserMissingInfo(nullptr));
    EXPECT_EQ(9.0, copy->Encode(9.0));
  }
  EXPECT_EQ(missing.get(), source.GetUserMissingInfo());
}

TEST(BINRoundEncoder, TheOptionIsShownInWords) {
  EXPECT_THAT(Shown(BINRoundEncoder(kTruncate)),
              testing::StartsWith("\tBINRoundEncoder: option = Truncate to smaller int\n"));
  EXPECT_THAT(Shown(BINRoundEncoder()),
              testing::StartsWith("\tBINRoundEncoder: option = Round to closest int\n"));
  EXPECT_THAT(Shown(BINRoundEncoder(static_cast<IBINVariable::BINWRoundingOption>(7))),
              testing::StartsWith("\tBINRoundEncoder: option = \n"));
}

TEST(BINRoundEncoder, TheBorrowedDefinitionIsShown) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({9.0});
  BINRoundEncoder encoder(kTruncate);
  ASSERT_TRUE(encoder.SetUserMissingInfo(missing.get()));
  EXPECT_EQ(
      "\tBINRoundEncoder: option = Truncate to smaller int\n"
      "\t\tUser-missing values for this encoder:\n\t\t" +
          Shown(*missing),
      Shown(encoder));
}

TEST(BINRoundEncoder, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINRoundEncoder encoder;
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

// The links are private, and no way of filling an encoder leaves one out; an explicit
// instantiation may name a private member.
template <auto Links>
struct LinksOf {
  friend std::vector<const std::string*>& LinksIn(BINStringEncoder& encoder) {
    return encoder.*Links;
  }
};
template struct LinksOf<&BINStringEncoder::fLinks>;
std::vector<const std::string*>& LinksIn(BINStringEncoder& encoder);

TEST(BINStringEncoder, ACodeWithoutALinkIsShownAsAnError) {
  BINStringEncoder encoder(std::vector<std::string>{"a", "b", "c"});
  LinksIn(encoder)[1] = nullptr;
  EXPECT_EQ(
      "\tBINStringEncoder object:  Last code = 2\n"
      "\t\t0\t\ta\n"
      "\t\t1\t\tERROR\n"
      "\t\t2\t\tc\n",
      metadata::Shown(encoder));
  encoder.CreateLinks();
  EXPECT_EQ("b", encoder.Decode(1));
}
