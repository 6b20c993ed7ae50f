#include "tqbinning/binprogressreporter.h"

#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/hostfakes.h"

namespace {

static_assert(std::is_abstract_v<ProgressReport>);
static_assert(std::is_base_of_v<ProgressReport, BINProgressReporter>);

BINProgressReporter ReporterOf(unsigned int index, double elapsedSeconds) {
  BINProgressReporter reporter;
  reporter.SetValues(index, elapsedSeconds);
  return reporter;
}

TEST(BINProgressReporter, ANewReporterHasIndexZeroAndAMissingTime) {
  BINProgressReporter reporter;
  EXPECT_EQ(0, reporter.DiscreteMeasure("IndexVar"));
  EXPECT_EQ(TQMV::gMissingValue, reporter.ScaleMeasure("elapsedTime"));
}

TEST(BINProgressReporter, SetValuesStoresBoth) {
  BINProgressReporter reporter = ReporterOf(7, 1.25);
  EXPECT_EQ(7, reporter.DiscreteMeasure("IndexVar"));
  EXPECT_EQ(1.25, reporter.ScaleMeasure("elapsedTime"));
}

TEST(BINProgressReporter, EachSetValuesOverwritesTheLast) {
  BINProgressReporter reporter = ReporterOf(7, 1.25);
  reporter.SetValues(3, TQMV::gMissingValue);
  EXPECT_EQ(3, reporter.DiscreteMeasure("IndexVar"));
  EXPECT_EQ(TQMV::gMissingValue, reporter.ScaleMeasure("elapsedTime"));
}

TEST(BINProgressReporter, TheNameOfTheOtherKindOfMeasureIsUnknown) {
  BINProgressReporter reporter = ReporterOf(7, 1.25);
  EXPECT_EQ(-1, reporter.DiscreteMeasure("elapsedTime"));
  EXPECT_EQ(TQMV::gMissingValue, reporter.ScaleMeasure("IndexVar"));
}

TEST(BINProgressReporter, NamesAreCaseSensitive) {
  BINProgressReporter reporter = ReporterOf(7, 1.25);
  for (const char* name : {"indexvar", "INDEXVAR", "indexVar"}) {
    EXPECT_EQ(-1, reporter.DiscreteMeasure(name)) << name;
  }
  for (const char* name : {"ElapsedTime", "elapsedtime", "ELAPSEDTIME"}) {
    EXPECT_EQ(TQMV::gMissingValue, reporter.ScaleMeasure(name)) << name;
  }
}

TEST(BINProgressReporter, NamesMustMatchWhole) {
  BINProgressReporter reporter = ReporterOf(7, 1.25);
  for (const char* name : {"", "IndexVa", "IndexVar ", " IndexVar"}) {
    EXPECT_EQ(-1, reporter.DiscreteMeasure(name)) << name;
  }
  EXPECT_EQ(-1, reporter.DiscreteMeasure(std::string("IndexVar\0", 9)));
  for (const char* name : {"", "elapsedTim", "elapsedTime ", " elapsedTime"}) {
    EXPECT_EQ(TQMV::gMissingValue, reporter.ScaleMeasure(name)) << name;
  }
}

// An index is unsigned inside and handed out with the same 32 bits.
TEST(BINProgressReporter, AnIndexAboveTheSignedRangeKeepsItsBits) {
  EXPECT_EQ(3000000000U,
            static_cast<unsigned int>(ReporterOf(3000000000U, 0.0).DiscreteMeasure("IndexVar")));
  EXPECT_EQ(std::numeric_limits<int>::max(),
            ReporterOf(2147483647U, 0.0).DiscreteMeasure("IndexVar"));
}

TEST(BINProgressReporter, AListenerReadsTheMeasuresThroughTheBaseClass) {
  support::RecordingListener listener;
  BINProgressReporter reporter = ReporterOf(2, 0.5);
  listener.Report(&reporter);
  reporter.SetValues(4, 0.75);
  listener.Report(&reporter);
  EXPECT_THAT(listener.Reports(), testing::ElementsAre(std::pair<int, double>(2, 0.5),
                                                       std::pair<int, double>(4, 0.75)));
}

TEST(BINProgressReporter, ACopyIsIndependent) {
  BINProgressReporter reporter = ReporterOf(2, 0.5);
  BINProgressReporter copy(reporter);
  BINProgressReporter assigned;
  assigned = reporter;
  reporter.SetValues(9, 9.0);
  EXPECT_EQ(2, copy.DiscreteMeasure("IndexVar"));
  EXPECT_EQ(0.5, copy.ScaleMeasure("elapsedTime"));
  EXPECT_EQ(2, assigned.DiscreteMeasure("IndexVar"));
  EXPECT_EQ(0.5, assigned.ScaleMeasure("elapsedTime"));
}

TEST(BINProgressReporter, AReporterIsDeletedThroughItsBaseClass) {
  std::unique_ptr<ProgressReport> report = std::make_unique<BINProgressReporter>();
  EXPECT_EQ(0, report->DiscreteMeasure("IndexVar"));
  report.reset();
  EXPECT_EQ(nullptr, report);
}

}  // namespace
