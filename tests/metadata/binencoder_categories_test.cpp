#include <limits>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqbinning/binencoder.h"

// What the encoders of numbers and of strings have in common: labels, and a definition of
// their own.
namespace {

using namespace metadata;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kNoCode = -1.0;

struct OfNumbers {
  using Encoder = BINCatNumEncoder;
  using Definition = NotingNumericMissing;
  using RefusedDefinition = NotingStringMissing;
  static double Value(int i) { return i; }
  static auto MissingValue(int i) { return NumericMissing({Value(i)}); }
};

struct OfStrings {
  using Encoder = BINStringEncoder;
  using Definition = NotingStringMissing;
  using RefusedDefinition = NotingNumericMissing;
  static std::string Value(int i) { return std::to_string(i); }
  static auto MissingValue(int i) { return StringMissing({Value(i)}); }
};

template <typename Kind>
class CategoryEncoder : public testing::Test {
 protected:
  using Encoder = typename Kind::Encoder;

  // The values 0, 1, ... have been seen.
  static Encoder EncoderOf(int values) {
    Encoder encoder(0);
    for (int i = 0; i < values; ++i) encoder.Encode(Kind::Value(i));
    return encoder;
  }

  // Gives the encoder a definition whose deletions are counted.
  void GiveDefinition(Encoder& encoder) {
    EXPECT_TRUE(Give(encoder, std::make_unique<typename Kind::Definition>(deletions)));
  }

  int deletions = 0;
};

using Kinds = testing::Types<OfNumbers, OfStrings>;
TYPED_TEST_SUITE(CategoryEncoder, Kinds);

// ---------------------------------------------------------------------- labels

TYPED_TEST(CategoryEncoder, SetValueLabelsReplacesAllLabelsWhateverTheirNumber) {
  auto encoder = this->EncoderOf(2);
  encoder.SetValueLabels({"a", "b", "c"});
  EXPECT_THAT(Labels(encoder), ElementsAre("a", "b", "c"));
  encoder.SetValueLabels({"x"});
  EXPECT_THAT(Labels(encoder), ElementsAre("x"));
  encoder.SetValueLabels({});
  EXPECT_THAT(Labels(encoder), IsEmpty());
}

TYPED_TEST(CategoryEncoder, SetValueLabelPadsToTheNumberOfCategoriesAndSetsOne) {
  auto encoder = this->EncoderOf(3);
  encoder.SetValueLabel(1, "two");
  EXPECT_THAT(Labels(encoder), ElementsAre("", "two", ""));
  encoder.SetValueLabel(0, "one");
  encoder.SetValueLabel(2, "three");
  encoder.SetValueLabel(1, "zwei");
  EXPECT_THAT(Labels(encoder), ElementsAre("one", "zwei", "three"));
}

TYPED_TEST(CategoryEncoder, SetValueLabelWithACodeOutsideTheThreeCategoriesOnlyPads) {
  for (const int code : {5, 3, -1, std::numeric_limits<int>::max()}) {
    auto encoder = this->EncoderOf(3);
    encoder.SetValueLabel(code, "ignored");
    EXPECT_THAT(Labels(encoder), ElementsAre("", "", "")) << code;
  }
}

TYPED_TEST(CategoryEncoder, SetValueLabelNeverShortensTheLabels) {
  auto encoder = this->EncoderOf(2);
  encoder.SetValueLabels({"a", "b", "c", "d"});
  encoder.SetValueLabel(0, "A");
  EXPECT_THAT(Labels(encoder), ElementsAre("A", "b", "c", "d"));
  encoder.SetValueLabel(2, "C");  // a label is there, but no such category
  EXPECT_THAT(Labels(encoder), ElementsAre("A", "b", "c", "d"));
}

TYPED_TEST(CategoryEncoder, SetValueLabelOnAnEmptyEncoderDoesNothing) {
  auto encoder = this->EncoderOf(0);
  encoder.SetValueLabel(0, "ignored");
  EXPECT_THAT(Labels(encoder), IsEmpty());
}

TYPED_TEST(CategoryEncoder, LabelsArePaddedAgainAfterTheEncoderHasGrown) {
  auto encoder = this->EncoderOf(1);
  encoder.SetValueLabel(0, "one");
  encoder.Encode(TypeParam::Value(7));
  EXPECT_THAT(Labels(encoder), ElementsAre("one"));
  encoder.SetValueLabel(1, "two");
  EXPECT_THAT(Labels(encoder), ElementsAre("one", "two"));
}

// ---------------------------------------------------------------- the definition

TYPED_TEST(CategoryEncoder, ANewDefinitionDeletesTheOldOne) {
  auto encoder = this->EncoderOf(0);
  this->GiveDefinition(encoder);
  EXPECT_EQ(0, this->deletions);
  ASSERT_TRUE(Give(encoder, TypeParam::MissingValue(9)));
  EXPECT_EQ(1, this->deletions);
  EXPECT_EQ(kNoCode, encoder.Encode(TypeParam::Value(9)));
}

TYPED_TEST(CategoryEncoder, NullDeletesTheDefinition) {
  auto encoder = this->EncoderOf(0);
  this->GiveDefinition(encoder);
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));
  EXPECT_EQ(1, this->deletions);
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
  EXPECT_TRUE(encoder.SetUserMissingInfo(nullptr));  // nor is anything amiss without one
}

TYPED_TEST(CategoryEncoder, ADefinitionOfTheOtherKindIsRefusedAndNothingChanges) {
  int refusedDeletions = 0;
  auto encoder = this->EncoderOf(0);
  this->GiveDefinition(encoder);
  const IBINUserMissing* const kept = encoder.GetUserMissingInfo();
  typename TypeParam::RefusedDefinition refused(refusedDeletions);
  EXPECT_FALSE(encoder.SetUserMissingInfo(&refused));
  EXPECT_EQ(kept, encoder.GetUserMissingInfo());
  EXPECT_EQ(0, this->deletions);
  EXPECT_EQ(0, refusedDeletions);
}

TYPED_TEST(CategoryEncoder, TheDestructorDeletesTheDefinition) {
  {
    auto encoder = this->EncoderOf(0);
    this->GiveDefinition(encoder);
  }
  EXPECT_EQ(1, this->deletions);
}

TYPED_TEST(CategoryEncoder, AssignmentDeletesTheOldDefinition) {
  auto encoder = this->EncoderOf(0);
  this->GiveDefinition(encoder);
  encoder = this->EncoderOf(0);
  EXPECT_EQ(1, this->deletions);
  EXPECT_EQ(nullptr, encoder.GetUserMissingInfo());
}

}  // namespace
