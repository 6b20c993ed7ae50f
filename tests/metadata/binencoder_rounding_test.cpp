#include "tqbinning/binencoder.h"

#include <limits>
#include <memory>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqcommon/missingvalue.h"

namespace {

using metadata::CopiesOf;
using metadata::NotingNumericMissing;
using metadata::NumericMissing;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using metadata::StringMissing;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr auto kTruncate = IBINVariable::kTruncate;
constexpr auto kRoundToClosest = IBINVariable::kRoundToClosest;
const double kMissing = TQMV::gMissingValue;

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
    for (const double weight :
         {0.0, -0.0, -0.5, -1.0, -kInfinity, std::numeric_limits<double>::denorm_min()}) {
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

}  // namespace
