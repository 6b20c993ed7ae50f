#include "tqbinning/binusermissing.h"

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "metadata/datatype.h"
#include "metadata/vocabulary.h"
#include "tqcommon/missingvalue.h"

namespace {

using metadata::CopiesOf;
using metadata::NumericMissing;
using metadata::OccurInOrder;
using metadata::Shown;
using metadata::ShownWhenFlushedLast;
using metadata::StringMissing;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// 9 and 99, and everything from -5 to -1.
BINNumericUserMissing NinesAndNegatives() {
  BINNumericUserMissing missing;
  missing.AddValue(9.0, "nine");
  missing.AddValue(99.0, "ninety-nine");
  missing.SetInterval(BINNumericInterval(-5.0, -1.0));
  return missing;
}

BINNumericUserMissing WithInterval(double left, double right) {
  BINNumericUserMissing missing;
  missing.SetInterval(BINNumericInterval(left, right));
  return missing;
}

BINStringUserMissing NotAvailable() {
  BINStringUserMissing missing;
  missing.AddValue("N/A", "not available");
  missing.AddValue("", "left empty");
  return missing;
}

TEST(BINNumericUserMissing, ANewDefinitionIsNumericAndHoldsNothing) {
  const BINNumericUserMissing missing;
  EXPECT_EQ(0, missing.GetDataType());
  EXPECT_EQ(0, missing.GetNDiscreteValues());
  EXPECT_THAT(missing.GetDiscreteValues(), IsEmpty());
  EXPECT_THAT(missing.GetValueLabels(), IsEmpty());
  EXPECT_FALSE(missing.HasInterval());
  EXPECT_EQ(nullptr, missing.GetInterval());
}

// The unused interval is [0, 0], yet it must not count.
TEST(BINNumericUserMissing, ANewDefinitionContainsNothingNotEvenZero) {
  const BINNumericUserMissing missing;
  EXPECT_FALSE(missing.Contains(0.0));
  EXPECT_FALSE(missing.Contains(kNaN));
  EXPECT_FALSE(missing.Contains(TQMV::gMissingValue));
}

TEST(BINNumericUserMissing, ValuesAndLabelsKeepTheOrderInWhichTheyWereAdded) {
  BINNumericUserMissing missing;
  missing.AddValue(99.0, "b");
  missing.AddValue(9.0, "a");
  EXPECT_THAT(missing.GetDiscreteValues(), ElementsAre(99.0, 9.0));
  EXPECT_THAT(missing.GetValueLabels(), ElementsAre("b", "a"));
  EXPECT_EQ(2, missing.GetNDiscreteValues());
}

TEST(BINNumericUserMissing, NeitherNumberNorRepetitionOfValuesIsLimited) {
  BINNumericUserMissing missing;
  for (int i = 0; i < 1000; ++i) missing.AddValue(i / 2, "half");
  EXPECT_EQ(1000, missing.GetNDiscreteValues());
  EXPECT_EQ(1000U, missing.GetValueLabels().size());
  EXPECT_TRUE(missing.Contains(499.0));
}

TEST(BINNumericUserMissing, ListedValuesAndTheClosedRangeAreContained) {
  const BINNumericUserMissing missing = NinesAndNegatives();
  for (const double value : {9.0, 99.0, -5.0, -3.0, -1.0}) {
    EXPECT_TRUE(missing.Contains(value)) << value;
  }
  for (const double value : {0.0, 8.999, -5.001, -0.999, kNaN, kInfinity, -kInfinity}) {
    EXPECT_FALSE(missing.Contains(value)) << value;
  }
}

TEST(BINNumericUserMissing, AListedNaNMatchesNothing) {
  EXPECT_FALSE(NumericMissing({kNaN})->Contains(kNaN));
  EXPECT_FALSE(NumericMissing({kNaN})->Contains(0.0));
  EXPECT_TRUE(NumericMissing({kNaN, 4.0})->Contains(4.0));
}

TEST(BINNumericUserMissing, ZerosOfBothSignsAreTheSame) {
  EXPECT_TRUE(NumericMissing({0.0})->Contains(-0.0));
  EXPECT_TRUE(NumericMissing({-0.0})->Contains(0.0));
}

TEST(BINNumericUserMissing, InfinitiesCanBeListed) {
  EXPECT_TRUE(NumericMissing({kInfinity})->Contains(kInfinity));
  EXPECT_FALSE(NumericMissing({kInfinity})->Contains(-kInfinity));
}

// Callers look for it themselves; here it is a number like any other.
TEST(BINNumericUserMissing, TheSystemMissingValueIsNotTreatedSpecially) {
  EXPECT_FALSE(NinesAndNegatives().Contains(TQMV::gMissingValue));
  EXPECT_TRUE(NumericMissing({TQMV::gMissingValue})->Contains(TQMV::gMissingValue));
  BINNumericUserMissing downToTheLowest;
  downToTheLowest.SetInterval(BINNumericInterval(10, true));
  EXPECT_TRUE(downToTheLowest.Contains(TQMV::gMissingValue));
}

TEST(BINNumericUserMissing, SetIntervalCopiesTheInterval) {
  BINNumericInterval interval(1.0, 2.0);
  BINNumericUserMissing missing;
  missing.SetInterval(interval);
  EXPECT_TRUE(interval.SetRightEnd(50.0));
  EXPECT_TRUE(missing.HasInterval());
  ASSERT_NE(nullptr, missing.GetInterval());
  EXPECT_TRUE(*missing.GetInterval() == BINNumericInterval(1.0, 2.0));
}

TEST(BINNumericUserMissing, ASecondIntervalReplacesTheFirst) {
  BINNumericUserMissing missing = WithInterval(1.0, 2.0);
  missing.SetInterval(BINNumericInterval(7.0, 8.0));
  EXPECT_FALSE(missing.Contains(1.5));
  EXPECT_TRUE(missing.Contains(7.5));
}

TEST(BINNumericUserMissing, AnEmptyIntervalIsAnIntervalThatContainsNothing) {
  const BINNumericUserMissing missing = WithInterval(2.0, 1.0);
  EXPECT_TRUE(missing.HasInterval());
  EXPECT_NE(nullptr, missing.GetInterval());
  EXPECT_FALSE(missing.Contains(1.5));
}

TEST(BINNumericUserMissing, EqualDefinitionsNeedTheSameValuesInTheSameOrder) {
  EXPECT_TRUE(NumericMissing({9.0, 99.0})->IsEqualTo(NumericMissing({9.0, 99.0}).get()));
  EXPECT_FALSE(NumericMissing({9.0, 99.0})->IsEqualTo(NumericMissing({9.0, 98.0}).get()));
  EXPECT_TRUE(NumericMissing({})->IsEqualTo(NumericMissing({}).get()));
}

TEST(BINNumericUserMissing, TheSameValuesInAnotherOrderAreNotEqual) {
  EXPECT_FALSE(NumericMissing({9.0, 99.0})->IsEqualTo(NumericMissing({99.0, 9.0}).get()));
}

TEST(BINNumericUserMissing, DefinitionsWithDifferentNumbersOfValuesAreNotEqual) {
  EXPECT_FALSE(NumericMissing({9.0})->IsEqualTo(NumericMissing({9.0, 99.0}).get()));
  EXPECT_FALSE(NumericMissing({9.0, 99.0})->IsEqualTo(NumericMissing({9.0}).get()));
  EXPECT_FALSE(NumericMissing({9.0, 9.0})->IsEqualTo(NumericMissing({9.0}).get()));
}

TEST(BINNumericUserMissing, LabelsAreNotCompared) {
  BINNumericUserMissing one;
  BINNumericUserMissing other;
  one.AddValue(9.0, "refused");
  other.AddValue(9.0, "unknown");
  EXPECT_TRUE(one.IsEqualTo(&other));
}

TEST(BINNumericUserMissing, ADefinitionWithAnIntervalIsNotEqualToOneWithout) {
  const BINNumericUserMissing with = WithInterval(0.0, 0.0);
  const BINNumericUserMissing without;
  EXPECT_FALSE(with.IsEqualTo(&without));
  EXPECT_FALSE(without.IsEqualTo(&with));
}

TEST(BINNumericUserMissing, IntervalsAreCompared) {
  const BINNumericUserMissing missing = WithInterval(1.0, 2.0);
  const BINNumericUserMissing same = WithInterval(1.0, 2.0);
  const BINNumericUserMissing another = WithInterval(1.0, 3.0);
  EXPECT_TRUE(missing.IsEqualTo(&same));
  EXPECT_FALSE(missing.IsEqualTo(&another));
}

TEST(BINNumericUserMissing, EqualIntervalsDoNotMakeUpForDifferentValues) {
  BINNumericUserMissing one = WithInterval(1.0, 2.0);
  BINNumericUserMissing other = WithInterval(1.0, 2.0);
  one.AddValue(9.0, "");
  other.AddValue(8.0, "");
  EXPECT_FALSE(one.IsEqualTo(&other));
}

TEST(BINNumericUserMissing, AListedNaNMakesADefinitionUnequalEvenToItself) {
  const std::unique_ptr<BINNumericUserMissing> missing = NumericMissing({kNaN});
  EXPECT_FALSE(missing->IsEqualTo(missing.get()));
  EXPECT_FALSE(missing->IsEqualTo(NumericMissing({kNaN}).get()));
}

TEST(BINNumericUserMissing, NullAndStringDefinitionsAreNotEqual) {
  EXPECT_FALSE(NumericMissing({})->IsEqualTo(nullptr));
  EXPECT_FALSE(NumericMissing({})->IsEqualTo(StringMissing({}).get()));
}

TEST(BINNumericUserMissing, EveryCopyHasValuesLabelsAndInterval) {
  const BINNumericUserMissing source = NinesAndNegatives();
  for (const auto& copy : CopiesOf(source, *NumericMissing({1.0, 2.0, 3.0}))) {
    EXPECT_THAT(copy->GetDiscreteValues(), ElementsAre(9.0, 99.0));
    EXPECT_THAT(copy->GetValueLabels(), ElementsAre("nine", "ninety-nine"));
    ASSERT_TRUE(copy->HasInterval());
    EXPECT_TRUE(*copy->GetInterval() == BINNumericInterval(-5.0, -1.0));
    EXPECT_TRUE(copy->IsEqualTo(&source));
  }
}

TEST(BINNumericUserMissing, EveryCopyIsIndependentOfItsSource) {
  const BINNumericUserMissing source = NinesAndNegatives();
  for (const auto& copy : CopiesOf(source, BINNumericUserMissing())) {
    copy->AddValue(7.0, "seven");
    copy->SetInterval(BINNumericInterval(100.0, 200.0));
  }
  EXPECT_THAT(source.GetDiscreteValues(), ElementsAre(9.0, 99.0));
  EXPECT_THAT(source.GetValueLabels(), ElementsAre("nine", "ninety-nine"));
  EXPECT_TRUE(*source.GetInterval() == BINNumericInterval(-5.0, -1.0));
}

TEST(BINNumericUserMissing, AssignmentTakesAnIntervalAwayToo) {
  BINNumericUserMissing missing = NinesAndNegatives();
  missing = BINNumericUserMissing();
  EXPECT_EQ(0, missing.GetNDiscreteValues());
  EXPECT_FALSE(missing.HasInterval());
  EXPECT_EQ(nullptr, missing.GetInterval());
}

TEST(BINNumericUserMissing, ACloneIsDeletedThroughTheInterface) {
  const BINNumericUserMissing source = NinesAndNegatives();
  const IBINUserMissing& definition = source;
  const std::unique_ptr<IBINUserMissing> clone(definition.Clone());
  EXPECT_EQ(0, clone->GetDataType());
  EXPECT_EQ(2, clone->GetNDiscreteValues());
  EXPECT_TRUE(clone->HasInterval());
  EXPECT_TRUE(clone->IsEqualTo(&source));
}

TEST(BINNumericUserMissing, AnEmptyDefinitionIsShownAsItsFrame) {
  EXPECT_EQ("Start of BINNumericUserMissing display\nEnd of BINNumericUserMissing display\n",
            Shown(BINNumericUserMissing()));
}

TEST(BINNumericUserMissing, ValuesWithLabelsAndTheIntervalAreShownInTheFrame) {
  EXPECT_TRUE(OccurInOrder(
      Shown(NinesAndNegatives()),
      {"Start of BINNumericUserMissing display\n", "Discrete missing values:", "9, label = nine",
       "99, label = ninety-nine", "Missing interval:", "BINNumericInterval: [ -5, -1 ]\n",
       "End of BINNumericUserMissing display\n"}))
      << Shown(NinesAndNegatives());
}

TEST(BINNumericUserMissing, WhatADefinitionLacksIsNotShown) {
  EXPECT_THAT(Shown(*NumericMissing({9.0})), testing::Not(testing::HasSubstr("interval")));
  EXPECT_THAT(Shown(WithInterval(1.0, 2.0)), testing::Not(testing::HasSubstr("Discrete")));
  EXPECT_THAT(Shown(WithInterval(1.0, 2.0)), testing::HasSubstr("Missing interval:"));
}

TEST(BINNumericUserMissing, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINNumericUserMissing missing = NinesAndNegatives();
  EXPECT_EQ(Shown(missing), ShownWhenFlushedLast(missing));
  std::ostringstream os;
  EXPECT_EQ(&os, &missing.Display(os));
}

TEST(BINStringUserMissing, ANewDefinitionIsOfStringsAndHoldsNothing) {
  const BINStringUserMissing missing;
  EXPECT_EQ(1, missing.GetDataType());
  EXPECT_EQ(0, missing.GetNDiscreteValues());
  EXPECT_THAT(missing.GetDiscreteValues(), IsEmpty());
  EXPECT_THAT(missing.GetValueLabels(), IsEmpty());
  EXPECT_FALSE(missing.HasInterval());
  EXPECT_FALSE(missing.Contains(""));
}

TEST(BINStringUserMissing, ValuesAndLabelsKeepTheOrderInWhichTheyWereAdded) {
  const BINStringUserMissing missing = NotAvailable();
  EXPECT_THAT(missing.GetDiscreteValues(), ElementsAre("N/A", ""));
  EXPECT_THAT(missing.GetValueLabels(), ElementsAre("not available", "left empty"));
  EXPECT_EQ(2, missing.GetNDiscreteValues());
}

TEST(BINStringUserMissing, NeitherNumberNorRepetitionOfValuesIsLimited) {
  BINStringUserMissing missing;
  for (int i = 0; i < 1000; ++i) missing.AddValue(std::to_string(i / 2), "half");
  EXPECT_EQ(1000, missing.GetNDiscreteValues());
  EXPECT_TRUE(missing.Contains("499"));
}

TEST(BINStringUserMissing, OnlyTheExactStringIsContained) {
  const std::unique_ptr<BINStringUserMissing> missing = StringMissing({"N/A"});
  EXPECT_TRUE(missing->Contains("N/A"));
  for (const char* value : {"n/a", "N/A ", " N/A", "N/", "N", ""}) {
    EXPECT_FALSE(missing->Contains(value)) << '"' << value << '"';
  }
  EXPECT_FALSE(missing->Contains(std::string("N/A\0", 4)));
}

TEST(BINStringUserMissing, TheEmptyStringCanBeListed) {
  EXPECT_TRUE(NotAvailable().Contains(""));
  EXPECT_FALSE(NotAvailable().Contains(" "));
}

TEST(BINStringUserMissing, StringsWithZeroBytesAreComparedWhole) {
  const std::unique_ptr<BINStringUserMissing> missing = StringMissing({std::string("a\0b", 3)});
  EXPECT_TRUE(missing->Contains(std::string("a\0b", 3)));
  EXPECT_FALSE(missing->Contains("a"));
  EXPECT_FALSE(missing->Contains(std::string("a\0c", 3)));
}

TEST(BINStringUserMissing, EqualDefinitionsNeedTheSameValuesInTheSameOrder) {
  EXPECT_TRUE(StringMissing({"a", "b"})->IsEqualTo(StringMissing({"a", "b"}).get()));
  EXPECT_FALSE(StringMissing({"a", "b"})->IsEqualTo(StringMissing({"b", "a"}).get()));
  EXPECT_FALSE(StringMissing({"a", "b"})->IsEqualTo(StringMissing({"a", "B"}).get()));
  EXPECT_FALSE(StringMissing({"a"})->IsEqualTo(StringMissing({"a", "b"}).get()));
  EXPECT_FALSE(StringMissing({"a", "b"})->IsEqualTo(StringMissing({"a"}).get()));
  EXPECT_TRUE(StringMissing({})->IsEqualTo(StringMissing({}).get()));
}

TEST(BINStringUserMissing, LabelsAreNotCompared) {
  BINStringUserMissing one;
  BINStringUserMissing other;
  one.AddValue("N/A", "refused");
  other.AddValue("N/A", "unknown");
  EXPECT_TRUE(one.IsEqualTo(&other));
}

TEST(BINStringUserMissing, NullAndNumericDefinitionsAreNotEqual) {
  EXPECT_FALSE(StringMissing({})->IsEqualTo(nullptr));
  EXPECT_FALSE(StringMissing({})->IsEqualTo(NumericMissing({}).get()));
}

TEST(BINStringUserMissing, EveryCopyIsEqualAndIndependent) {
  const BINStringUserMissing source = NotAvailable();
  for (const auto& copy : CopiesOf(source, *StringMissing({"x", "y", "z"}))) {
    EXPECT_THAT(copy->GetDiscreteValues(), ElementsAre("N/A", ""));
    EXPECT_THAT(copy->GetValueLabels(), ElementsAre("not available", "left empty"));
    EXPECT_TRUE(copy->IsEqualTo(&source));
    copy->AddValue("more", "label");
  }
  EXPECT_THAT(source.GetDiscreteValues(), ElementsAre("N/A", ""));
  EXPECT_THAT(source.GetValueLabels(), ElementsAre("not available", "left empty"));
}

TEST(BINStringUserMissing, ACloneIsDeletedThroughTheInterface) {
  const BINStringUserMissing source = NotAvailable();
  const IBINUserMissing& definition = source;
  const std::unique_ptr<IBINUserMissing> clone(definition.Clone());
  EXPECT_EQ(1, clone->GetDataType());
  EXPECT_TRUE(clone->IsEqualTo(&source));
}

TEST(BINStringUserMissing, AnEmptyDefinitionIsShownAsItsFrame) {
  EXPECT_EQ("Start of BINStringUserMissing display\nEnd of BINStringUserMissing display\n",
            Shown(BINStringUserMissing()));
}

TEST(BINStringUserMissing, ValuesWithLabelsAreShownInTheFrame) {
  BINStringUserMissing missing;
  missing.AddValue("N/A", "not available");
  missing.AddValue("?", "unclear");
  EXPECT_TRUE(
      OccurInOrder(Shown(missing), {"Start of BINStringUserMissing display\n",
                                    "Discrete missing values:", "N/A, label = not available",
                                    "?, label = unclear", "End of BINStringUserMissing display\n"}))
      << Shown(missing);
}

TEST(BINStringUserMissing, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINStringUserMissing missing = NotAvailable();
  EXPECT_EQ(Shown(missing), ShownWhenFlushedLast(missing));
  std::ostringstream os;
  EXPECT_EQ(&os, &missing.Display(os));
}

// ---- a definition as what its data type says it is ----

TEST(DataType, ADefinitionOfTheOtherTypeIsNone) {
  const std::unique_ptr<BINNumericUserMissing> numeric = NumericMissing({9.0});
  const std::unique_ptr<BINStringUserMissing> string = StringMissing({"x"});
  EXPECT_EQ(numeric.get(), TQBinning::AsNumeric(numeric.get()));
  EXPECT_EQ(string.get(), TQBinning::AsString(string.get()));
  EXPECT_EQ(nullptr, TQBinning::AsNumeric(string.get()));
  EXPECT_EQ(nullptr, TQBinning::AsString(numeric.get()));
  EXPECT_EQ(nullptr, TQBinning::AsNumeric(nullptr));
  EXPECT_EQ(nullptr, TQBinning::AsString(nullptr));
}

}  // namespace
