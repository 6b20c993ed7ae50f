#include "tqbinning/tqstatus.h"

#include <limits>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace TQBinning {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TQStatus WithDiscreteDatum(unsigned int i, long value) {
  TQStatus status(kNoCutPoint, true);
  status.SetDiscreteDatum(i, value);
  return status;
}

TQStatus WithScaleDatum(unsigned int i, double value) {
  TQStatus status(kNoCutPoint, true);
  status.SetScaleDatum(i, value);
  return status;
}

void ExpectAllSlotsZero(const TQStatus& status) {
  for (unsigned int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(0, status.GetDiscreteDatum(i));
    EXPECT_EQ(0.0, status.GetScaleDatum(i));
  }
}

// A plain value: a code, a severity and six slots, padded to eight words.
static_assert(!std::is_polymorphic_v<TQStatus>);
static_assert(std::is_standard_layout_v<TQStatus>);
static_assert(std::is_trivially_copyable_v<TQStatus>);
static_assert(sizeof(TQStatus) == 64);

TEST(TQStatus, ADefaultStatusIsOKNeitherErrorNorWarning) {
  const TQStatus status;
  EXPECT_TRUE(status.IsOK());
  EXPECT_FALSE(status.IsError());
  EXPECT_FALSE(status.IsWarning());
  EXPECT_EQ(0, status.GetErrorCode());
}

TEST(TQStatus, TwoDefaultStatusesAreEqual) { EXPECT_TRUE(TQStatus() == TQStatus()); }

TEST(TQStatus, ADefaultStatusHasZeroSlots) { ExpectAllSlotsZero(TQStatus()); }

TEST(TQStatus, AStatusBuiltWithTheFlagSetIsAWarning) {
  const TQStatus status(120014, true);
  EXPECT_TRUE(status.IsWarning());
  EXPECT_FALSE(status.IsOK());
  EXPECT_FALSE(status.IsError());
  EXPECT_EQ(120014, status.GetErrorCode());
}

TEST(TQStatus, AStatusBuiltWithTheFlagClearIsAnError) {
  const TQStatus status(120004, false);
  EXPECT_TRUE(status.IsError());
  EXPECT_FALSE(status.IsOK());
  EXPECT_FALSE(status.IsWarning());
  EXPECT_EQ(120004, status.GetErrorCode());
}

TEST(TQStatus, ABuiltStatusHasZeroSlots) {
  ExpectAllSlotsZero(TQStatus(kNoCases, false));
  ExpectAllSlotsZero(TQStatus(kOneDistinctValue, true));
}

TEST(TQStatus, AnErrorWithCodeZeroIsAnError) {
  const TQStatus status(0, false);
  EXPECT_TRUE(status.IsError());
  EXPECT_FALSE(status.IsOK());
  EXPECT_EQ(0, status.GetErrorCode());
}

TEST(TQStatus, AWarningWithCodeZeroIsAWarning) {
  const TQStatus status(0, true);
  EXPECT_TRUE(status.IsWarning());
  EXPECT_FALSE(status.IsOK());
}

TEST(TQStatus, TheCodeHasSixtyFourBits) {
  EXPECT_EQ(std::numeric_limits<long>::max(),
            TQStatus(std::numeric_limits<long>::max(), false).GetErrorCode());
  EXPECT_EQ(std::numeric_limits<long>::min(),
            TQStatus(std::numeric_limits<long>::min(), true).GetErrorCode());
}

TEST(TQStatus, ANegativeCodeDoesNotDecideTheSeverity) {
  EXPECT_TRUE(TQStatus(-5, true).IsWarning());
  EXPECT_FALSE(TQStatus(-5, true).IsError());
}

TEST(TQStatus, EverySlotIsStoredApart) {
  TQStatus status;
  for (unsigned int i = 0; i < 3; ++i) {
    status.SetDiscreteDatum(i, 10 + static_cast<long>(i));
    status.SetScaleDatum(i, 0.5 + i);
  }
  for (unsigned int i = 0; i < 3; ++i) {
    EXPECT_EQ(10 + static_cast<long>(i), status.GetDiscreteDatum(i));
    EXPECT_EQ(0.5 + i, status.GetScaleDatum(i));
  }
  EXPECT_EQ(0, status.GetErrorCode());
  EXPECT_TRUE(status.IsOK());
}

TEST(TQStatus, SlotsHoldTheExtremesOfTheirTypes) {
  TQStatus status;
  status.SetDiscreteDatum(0, std::numeric_limits<long>::min());
  status.SetDiscreteDatum(2, std::numeric_limits<long>::max());
  status.SetScaleDatum(1, -std::numeric_limits<double>::infinity());
  EXPECT_EQ(std::numeric_limits<long>::min(), status.GetDiscreteDatum(0));
  EXPECT_EQ(std::numeric_limits<long>::max(), status.GetDiscreteDatum(2));
  EXPECT_EQ(-std::numeric_limits<double>::infinity(), status.GetScaleDatum(1));
}

TEST(TQStatus, SlotsCanBeSetOnAnErrorWithoutChangingItsSeverity) {
  TQStatus status(kInvalidVariableList, false);
  status.SetDiscreteDatum(1, -1);
  EXPECT_EQ(-1, status.GetDiscreteDatum(1));
  EXPECT_TRUE(status.IsError());
  EXPECT_EQ(kInvalidVariableList, status.GetErrorCode());
}

TEST(TQStatus, StatusesOfDifferentCodeAreUnequal) {
  EXPECT_FALSE(TQStatus(120014, true) == TQStatus(120015, true));
}

TEST(TQStatus, StatusesOfDifferentSeverityAreUnequal) {
  EXPECT_FALSE(TQStatus(120002, true) == TQStatus(120002, false));
  EXPECT_FALSE(TQStatus() == TQStatus(0, true));
  EXPECT_FALSE(TQStatus() == TQStatus(0, false));
}

TEST(TQStatus, StatusesThatDifferInAnyDiscreteDatumAreUnequal) {
  for (unsigned int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_FALSE(WithDiscreteDatum(i, 7) == TQStatus(kNoCutPoint, true));
    EXPECT_TRUE(WithDiscreteDatum(i, 7) == WithDiscreteDatum(i, 7));
  }
  EXPECT_FALSE(WithDiscreteDatum(0, 7) == WithDiscreteDatum(1, 7));
}

TEST(TQStatus, StatusesThatDifferInAnyScaleDatumAreUnequal) {
  for (unsigned int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_FALSE(WithScaleDatum(i, 0.25) == TQStatus(kNoCutPoint, true));
    EXPECT_TRUE(WithScaleDatum(i, 0.25) == WithScaleDatum(i, 0.25));
  }
  EXPECT_FALSE(WithScaleDatum(0, 0.25) == WithScaleDatum(1, 0.25));
}

TEST(TQStatus, StatusesThatDifferOnlyInScaleDatumTwoAreUnequal) {
  EXPECT_FALSE(WithScaleDatum(2, 1.0) == WithScaleDatum(2, 2.0));
}

TEST(TQStatus, StatusesWithANaNScaleDatumAreUnequal) {
  for (unsigned int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_FALSE(WithScaleDatum(i, kNaN) == WithScaleDatum(i, kNaN));
  }
  const TQStatus status = WithScaleDatum(0, kNaN);
  const TQStatus& itself = status;
  EXPECT_FALSE(status == itself);
}

// The slots compare as doubles, not as bits.
TEST(TQStatus, StatusesThatDifferInTheSignOfAZeroAreEqual) {
  EXPECT_TRUE(WithScaleDatum(1, 0.0) == WithScaleDatum(1, -0.0));
}

TEST(TQStatus, ACopyHasEveryFieldAndIsIndependent) {
  TQStatus status(kCodeOutOfRange, true);
  for (unsigned int i = 0; i < 3; ++i) {
    status.SetDiscreteDatum(i, 3 + static_cast<long>(i));
    status.SetScaleDatum(i, 1.5 + i);
  }
  const TQStatus copy(status);
  TQStatus assigned;
  assigned = status;
  EXPECT_TRUE(copy == status);
  EXPECT_TRUE(assigned == status);

  status.SetDiscreteDatum(1, 99);
  EXPECT_EQ(4, copy.GetDiscreteDatum(1));
  EXPECT_EQ(4, assigned.GetDiscreteDatum(1));
}

TEST(TQStatus, AVectorOfStatusesIsSizedWithOKs) {
  const std::vector<TQStatus> statuses(3);
  for (const TQStatus& status : statuses) EXPECT_TRUE(status == TQStatus());
}

// Hosts map these numbers to words; they must never move.
TEST(TQStatus, TheCodesHaveTheirDocumentedNumbers) {
  EXPECT_EQ(0, kOK);
  EXPECT_EQ(1, kCancelled);
  EXPECT_EQ(3, kResourceFailure);
  EXPECT_EQ(120002, kInvalidTable);
  EXPECT_EQ(120003, kInvalidVariableList);
  EXPECT_EQ(120004, kNoCases);
  EXPECT_EQ(120005, kRoleConflict);
  EXPECT_EQ(120006, kTargetNotCategorical);
  EXPECT_EQ(120008, kNoValidPair);
  EXPECT_EQ(120009, kInvalidNumberOfBins);
  EXPECT_EQ(120010, kTargetNotUsable);
  EXPECT_EQ(120011, kInvalidAttributeIndex);
  EXPECT_EQ(120012, kCodeOutOfRange);
  EXPECT_EQ(120013, kInvalidIndex);
  EXPECT_EQ(120014, kOneDistinctValue);
  EXPECT_EQ(120015, kNoValidCase);
  EXPECT_EQ(120016, kOneTargetClass);
  EXPECT_EQ(120017, kNoCutAccepted);
  EXPECT_EQ(120018, kSomeNotOK);
  EXPECT_EQ(120019, kNoCutPoint);
  EXPECT_EQ(120020, kNoResults);
  EXPECT_EQ(120021, kCannotAppend);
}

}  // namespace
}  // namespace TQBinning
