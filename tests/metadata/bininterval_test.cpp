#include "tqbinning/bininterval.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "metadata/vocabulary.h"

namespace {

using metadata::Shown;
using metadata::ShownWhenFlushedLast;

constexpr double kLargest = 1.7976931348623157e308;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const BINNumericInterval kUpToTen(10, true);
const BINNumericInterval kFromTenOn(10, false);

static_assert(!std::is_polymorphic_v<BINNumericInterval>);
static_assert(!std::is_polymorphic_v<BINStringInterval>);

// An interval that is closed at both ends.
BINStringInterval Closed(const std::string& left, const std::string& right) {
  return BINStringInterval(left, true, right, true);
}

TEST(BINNumericInterval, ADefaultIntervalIsZeroToZero) {
  const BINNumericInterval interval;
  EXPECT_EQ(0.0, interval.GetLeftEnd());
  EXPECT_EQ(0.0, interval.GetRightEnd());
  EXPECT_FALSE(interval.IsEmpty());
  EXPECT_TRUE(interval.Contains(0.0));
  EXPECT_TRUE(interval.Contains(-0.0));
  EXPECT_FALSE(interval.Contains(std::numeric_limits<double>::denorm_min()));
}

TEST(BINNumericInterval, BothEndsAreIncluded) {
  const BINNumericInterval interval(-5.0, -1.0);
  EXPECT_TRUE(interval.Contains(-5.0));
  EXPECT_TRUE(interval.Contains(-3.0));
  EXPECT_TRUE(interval.Contains(-1.0));
  EXPECT_FALSE(interval.Contains(std::nextafter(-5.0, -6.0)));
  EXPECT_FALSE(interval.Contains(std::nextafter(-1.0, 0.0)));
}

TEST(BINNumericInterval, ANaNIsNeverContained) {
  EXPECT_FALSE(BINNumericInterval(-5.0, 5.0).Contains(kNaN));
  EXPECT_FALSE(BINNumericInterval(-kInfinity, kInfinity).Contains(kNaN));
  EXPECT_FALSE(BINNumericInterval(kNaN, kNaN).Contains(kNaN));
}

TEST(BINNumericInterval, EndsAreStoredWithoutATest) {
  const BINNumericInterval interval(3.0, 1.0);
  EXPECT_EQ(3.0, interval.GetLeftEnd());
  EXPECT_EQ(1.0, interval.GetRightEnd());
  EXPECT_TRUE(interval.IsEmpty());
  EXPECT_FALSE(interval.Contains(2.0));
}

TEST(BINNumericInterval, AnIntervalUpToTenContainsWhatIsNotAbove) {
  EXPECT_TRUE(kUpToTen.Contains(-1e300));
  EXPECT_TRUE(kUpToTen.Contains(10.0));
  EXPECT_TRUE(kUpToTen.Contains(-kLargest));
  EXPECT_FALSE(kUpToTen.Contains(10.5));
  EXPECT_EQ(-kLargest, kUpToTen.GetLeftEnd());
  EXPECT_EQ(10.0, kUpToTen.GetRightEnd());
}

TEST(BINNumericInterval, AnIntervalFromTenOnContainsWhatIsNotBelow) {
  EXPECT_TRUE(kFromTenOn.Contains(10.0));
  EXPECT_TRUE(kFromTenOn.Contains(1e300));
  EXPECT_TRUE(kFromTenOn.Contains(kLargest));
  EXPECT_FALSE(kFromTenOn.Contains(9.5));
  EXPECT_EQ(10.0, kFromTenOn.GetLeftEnd());
  EXPECT_EQ(kLargest, kFromTenOn.GetRightEnd());
}

TEST(BINNumericInterval, OnlyTheUnboundedEndIsInfinite) {
  EXPECT_TRUE(kUpToTen.IsLeftEndInfinite());
  EXPECT_FALSE(kUpToTen.IsRightEndInfinite());
  EXPECT_FALSE(kFromTenOn.IsLeftEndInfinite());
  EXPECT_TRUE(kFromTenOn.IsRightEndInfinite());
  EXPECT_FALSE(BINNumericInterval().IsLeftEndInfinite());
  EXPECT_FALSE(BINNumericInterval().IsRightEndInfinite());
}

TEST(BINNumericInterval, AnEndIsInfiniteForTheLargestDoubleOfItsSignExactly) {
  const BINNumericInterval whole(-kLargest, kLargest);
  EXPECT_TRUE(whole.IsLeftEndInfinite());
  EXPECT_TRUE(whole.IsRightEndInfinite());
  const BINNumericInterval almost(std::nextafter(-kLargest, 0.0), std::nextafter(kLargest, 0.0));
  EXPECT_FALSE(almost.IsLeftEndInfinite());
  EXPECT_FALSE(almost.IsRightEndInfinite());
  const BINNumericInterval beyond(-kInfinity, kInfinity);
  EXPECT_FALSE(beyond.IsLeftEndInfinite());
  EXPECT_FALSE(beyond.IsRightEndInfinite());
  const BINNumericInterval swapped(kLargest, -kLargest);
  EXPECT_FALSE(swapped.IsLeftEndInfinite());
  EXPECT_FALSE(swapped.IsRightEndInfinite());
}

// The bound of an unbounded end is a finite double, so infinities lie outside.
TEST(BINNumericInterval, AnUnboundedEndDoesNotReachInfinityItself) {
  EXPECT_FALSE(kUpToTen.Contains(-kInfinity));
  EXPECT_FALSE(kFromTenOn.Contains(kInfinity));
  EXPECT_TRUE(BINNumericInterval(-kInfinity, 10.0).Contains(-kInfinity));
}

TEST(BINNumericInterval, SetLeftEndBeyondTheRightEndStoresItAndReturnsFalse) {
  BINNumericInterval interval(0.0, 3.0);
  EXPECT_FALSE(interval.SetLeftEnd(5.0));
  EXPECT_EQ(5.0, interval.GetLeftEnd());
  EXPECT_EQ(3.0, interval.GetRightEnd());
  EXPECT_TRUE(interval.IsEmpty());
}

TEST(BINNumericInterval, SetRightEndBelowTheLeftEndStoresItAndReturnsFalse) {
  BINNumericInterval interval(0.0, 3.0);
  EXPECT_FALSE(interval.SetRightEnd(-1.0));
  EXPECT_EQ(0.0, interval.GetLeftEnd());
  EXPECT_EQ(-1.0, interval.GetRightEnd());
  EXPECT_TRUE(interval.IsEmpty());
}

TEST(BINNumericInterval, SettingAnEndThatKeepsTheOrderReturnsTrue) {
  BINNumericInterval interval(0.0, 3.0);
  EXPECT_TRUE(interval.SetLeftEnd(-2.0));
  EXPECT_TRUE(interval.SetRightEnd(7.0));
  EXPECT_TRUE(interval == BINNumericInterval(-2.0, 7.0));
}

TEST(BINNumericInterval, EqualEndsAreWellFormed) {
  BINNumericInterval interval(0.0, 3.0);
  EXPECT_TRUE(interval.SetLeftEnd(3.0));
  EXPECT_FALSE(interval.IsEmpty());
  EXPECT_TRUE(interval.SetRightEnd(3.0));
  EXPECT_TRUE(interval.Contains(3.0));
}

TEST(BINNumericInterval, AnEmptyIntervalIsMendedByItsOtherEnd) {
  BINNumericInterval interval(5.0, 3.0);
  EXPECT_TRUE(interval.SetRightEnd(6.0));
  EXPECT_FALSE(interval.IsEmpty());
}

TEST(BINNumericInterval, ANaNEndIsNotWellFormedAndNotEmptyEither) {
  BINNumericInterval interval(0.0, 3.0);
  EXPECT_FALSE(interval.SetLeftEnd(kNaN));
  EXPECT_TRUE(std::isnan(interval.GetLeftEnd()));
  EXPECT_FALSE(interval.IsEmpty());  // NaN > 3 does not hold
  EXPECT_FALSE(interval.Contains(1.0));
}

TEST(BINNumericInterval, IntervalsAreEqualWhenBothEndsAre) {
  EXPECT_TRUE(BINNumericInterval(1.0, 2.0) == BINNumericInterval(1.0, 2.0));
  EXPECT_TRUE(BINNumericInterval(-0.0, 0.0) == BINNumericInterval());
  EXPECT_FALSE(BINNumericInterval(1.0, 2.0) == BINNumericInterval(1.5, 2.0));
  EXPECT_FALSE(BINNumericInterval(1.0, 2.0) == BINNumericInterval(1.0, 2.5));
  EXPECT_FALSE(BINNumericInterval(kNaN, 2.0) == BINNumericInterval(kNaN, 2.0));
}

TEST(BINNumericInterval, EmptyIntervalsAreEqualOnlyWithEqualEnds) {
  EXPECT_TRUE(BINNumericInterval(3.0, 1.0) == BINNumericInterval(3.0, 1.0));
  EXPECT_FALSE(BINNumericInterval(3.0, 1.0) == BINNumericInterval(4.0, 1.0));
}

TEST(BINNumericInterval, ACopyIsIndependent) {
  BINNumericInterval interval(1.0, 2.0);
  const BINNumericInterval copy(interval);
  BINNumericInterval assigned;
  assigned = interval;
  EXPECT_TRUE(interval.SetLeftEnd(0.0));
  EXPECT_TRUE(copy == BINNumericInterval(1.0, 2.0));
  EXPECT_TRUE(assigned == BINNumericInterval(1.0, 2.0));
}

TEST(BINNumericInterval, ABoundedIntervalIsShownInBrackets) {
  EXPECT_EQ("BINNumericInterval: [ -5, -1.5 ]\n", Shown(BINNumericInterval(-5.0, -1.5)));
}

TEST(BINNumericInterval, AnUnboundedEndIsShownAsInfinity) {
  EXPECT_EQ("BINNumericInterval: ( -infinity, 10 ]\n", Shown(kUpToTen));
  EXPECT_EQ("BINNumericInterval: [ 10, infinity )\n", Shown(kFromTenOn));
  EXPECT_EQ("BINNumericInterval: ( -infinity, infinity )\n",
            Shown(BINNumericInterval(-kLargest, kLargest)));
}

TEST(BINNumericInterval, TheDumpEndsInAFlushAndReturnsItsStream) {
  EXPECT_EQ(Shown(kUpToTen), ShownWhenFlushedLast(kUpToTen));
  std::ostringstream os;
  EXPECT_EQ(&os, &kUpToTen.Display(os));
}

TEST(BINStringInterval, ADefaultIntervalIsTheSingleDot) {
  const BINStringInterval interval;
  EXPECT_EQ(".", interval.GetLeftEnd());
  EXPECT_EQ(".", interval.GetRightEnd());
  EXPECT_TRUE(interval.IsLeftEndIncluded());
  EXPECT_TRUE(interval.IsRightEndIncluded());
  EXPECT_FALSE(interval.IsEmpty());
  EXPECT_TRUE(interval.Contains("."));
  EXPECT_FALSE(interval.Contains(""));
  EXPECT_FALSE(interval.Contains(".."));
}

TEST(BINStringInterval, TheConstructorStoresEndsAndFlags) {
  const BINStringInterval interval("a", false, "b", true);
  EXPECT_EQ("a", interval.GetLeftEnd());
  EXPECT_FALSE(interval.IsLeftEndIncluded());
  EXPECT_EQ("b", interval.GetRightEnd());
  EXPECT_TRUE(interval.IsRightEndIncluded());
  const BINStringInterval other("a", true, "b", false);
  EXPECT_TRUE(other.IsLeftEndIncluded());
  EXPECT_FALSE(other.IsRightEndIncluded());
}

TEST(BINStringInterval, FromBExcludedToDIncludedContainsWhatLiesBetweenAndD) {
  const BINStringInterval interval("b", false, "d", true);
  EXPECT_TRUE(interval.Contains("ba"));
  EXPECT_TRUE(interval.Contains("d"));
  EXPECT_FALSE(interval.Contains("b"));
  EXPECT_FALSE(interval.Contains("e"));
  EXPECT_FALSE(interval.Contains("da"));
  EXPECT_FALSE(interval.Contains("a"));
}

TEST(BINStringInterval, FromBIncludedToDExcludedContainsBAndNotD) {
  const BINStringInterval interval("b", true, "d", false);
  EXPECT_TRUE(interval.Contains("b"));
  EXPECT_TRUE(interval.Contains("czzz"));
  EXPECT_FALSE(interval.Contains("d"));
}

TEST(BINStringInterval, FromBIncludedToBExcludedIsEmpty) {
  EXPECT_TRUE(BINStringInterval("b", true, "b", false).IsEmpty());
  EXPECT_FALSE(BINStringInterval("b", true, "b", false).Contains("b"));
  EXPECT_TRUE(BINStringInterval("b", false, "b", true).IsEmpty());
  EXPECT_FALSE(BINStringInterval("b", false, "b", true).Contains("b"));
  EXPECT_TRUE(BINStringInterval("b", false, "b", false).IsEmpty());
  EXPECT_FALSE(BINStringInterval("b", false, "b", false).Contains("b"));
}

TEST(BINStringInterval, EqualIncludedEndsHoldOneString) {
  EXPECT_FALSE(Closed("b", "b").IsEmpty());
  EXPECT_TRUE(Closed("b", "b").Contains("b"));
  EXPECT_FALSE(Closed("b", "b").Contains("ba"));
}

TEST(BINStringInterval, EndsInTheWrongOrderAreEmpty) {
  EXPECT_TRUE(Closed("z", "a").IsEmpty());
  EXPECT_FALSE(Closed("z", "a").Contains("z"));
  EXPECT_FALSE(Closed("z", "a").Contains("a"));
  EXPECT_FALSE(Closed("z", "a").Contains("m"));
}

// Two different strings need not have a third one between them.
TEST(BINStringInterval, EndsInOrderAreNotEmptyEvenWhenBothAreExcluded) {
  EXPECT_FALSE(BINStringInterval("a", false, "b", false).IsEmpty());
}

TEST(BINStringInterval, StringsAreComparedByteByByte) {
  EXPECT_FALSE(Closed("a", "z").Contains("B"));  // capitals come before small letters
  EXPECT_TRUE(Closed("A", "a").Contains("Z"));
  EXPECT_TRUE(Closed("10", "9").Contains("5"));
  EXPECT_TRUE(Closed("", "a").Contains(""));
  EXPECT_TRUE(Closed("a", "b").Contains(std::string("a\0b", 3)));
  EXPECT_TRUE(Closed("z", "\xff").Contains("\xc3\xa9"));  // bytes above 127 come last
}

TEST(BINStringInterval, SettingAnEndStoresItWithItsFlag) {
  BINStringInterval interval = Closed("b", "d");
  EXPECT_TRUE(interval.SetLeftEnd("a", false));
  EXPECT_EQ("a", interval.GetLeftEnd());
  EXPECT_FALSE(interval.IsLeftEndIncluded());
  EXPECT_TRUE(interval.SetRightEnd("e", false));
  EXPECT_EQ("e", interval.GetRightEnd());
  EXPECT_FALSE(interval.IsRightEndIncluded());
}

TEST(BINStringInterval, SettingAnEndBeyondTheOtherStoresItAndReturnsFalse) {
  BINStringInterval interval = Closed("b", "d");
  EXPECT_FALSE(interval.SetLeftEnd("e", true));
  EXPECT_EQ("e", interval.GetLeftEnd());
  EXPECT_TRUE(interval.IsEmpty());
  BINStringInterval other = Closed("b", "d");
  EXPECT_FALSE(other.SetRightEnd("a", true));
  EXPECT_EQ("a", other.GetRightEnd());
  EXPECT_TRUE(other.IsEmpty());
}

TEST(BINStringInterval, SettingEqualEndsIsTrueOnlyWhenBothAreIncluded) {
  BINStringInterval interval = Closed("b", "d");
  EXPECT_TRUE(interval.SetLeftEnd("d", true));
  EXPECT_FALSE(interval.SetLeftEnd("d", false));
  EXPECT_FALSE(interval.IsLeftEndIncluded());
  BINStringInterval other = Closed("b", "d");
  EXPECT_TRUE(other.SetRightEnd("b", true));
  EXPECT_FALSE(other.SetRightEnd("b", false));
  EXPECT_FALSE(other.IsRightEndIncluded());
}

TEST(BINStringInterval, IntervalsAreEqualWhenEndsAndFlagsAre) {
  EXPECT_TRUE(Closed("a", "b") == Closed("a", "b"));
  EXPECT_FALSE(Closed("a", "b") == Closed("A", "b"));
  EXPECT_FALSE(Closed("a", "b") == Closed("a", "c"));
  EXPECT_FALSE(Closed("a", "b") == BINStringInterval("a", false, "b", true));
  EXPECT_FALSE(Closed("a", "b") == BINStringInterval("a", true, "b", false));
}

TEST(BINStringInterval, ACopyIsIndependent) {
  BINStringInterval interval = Closed("a", "b");
  const BINStringInterval copy(interval);
  BINStringInterval assigned;
  assigned = interval;
  EXPECT_TRUE(interval.SetRightEnd("c", false));
  EXPECT_TRUE(copy == Closed("a", "b"));
  EXPECT_TRUE(assigned == Closed("a", "b"));
}

TEST(BINStringInterval, TheBracketsTellWhichEndsAreIncluded) {
  EXPECT_EQ("BINStringInterval: [ b, d ]\n", Shown(Closed("b", "d")));
  EXPECT_EQ("BINStringInterval: ( b, d ]\n", Shown(BINStringInterval("b", false, "d", true)));
  EXPECT_EQ("BINStringInterval: [ b, d )\n", Shown(BINStringInterval("b", true, "d", false)));
  EXPECT_EQ("BINStringInterval: ( b, d )\n", Shown(BINStringInterval("b", false, "d", false)));
}

TEST(BINStringInterval, TheDumpEndsInAFlushAndReturnsItsStream) {
  const BINStringInterval interval;
  EXPECT_EQ(Shown(interval), ShownWhenFlushedLast(interval));
  std::ostringstream os;
  EXPECT_EQ(&os, &interval.Display(os));
}

}  // namespace
