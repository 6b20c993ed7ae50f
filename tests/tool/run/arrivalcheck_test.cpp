#include "run/arrivalcheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// What came of a run, and what was fed for it.
struct Arrived {
  std::vector<BinnedAttribute> attributes;
  FedData fed;
};

// The small model's attribute, with the numbers that were fed for it.
Arrived ArrivedResult() {
  Arrived result = {SmallModel().attributes, {}};
  result.fed.weight = 12.0;
  result.fed.pairs = {{10.0, -0.1, 1e6}};
  return result;
}

std::string ErrorIn(const Arrived& result) {
  return ErrorOf([&result] { CheckArrival(result.attributes, result.fed); });
}

TEST(CheckArrival, AcceptsWhatWasFed) { EXPECT_EQ("none", ErrorIn(ArrivedResult())); }

TEST(CheckArrival, EveryNumberCounts) {
  const auto expectLost = [](const auto& change) {
    Arrived result = ArrivedResult();
    change(result);
    EXPECT_THAT(ErrorIn(result), StartsWith("4: column 'income' lost cases on the way:"));
  };
  expectLost([](Arrived& result) { result.fed.weight = 13.0; });
  expectLost([](Arrived& result) { result.fed.pairs[0].validWeight = 11.0; });
  expectLost([](Arrived& result) { result.fed.pairs[0].minimum = 0.0; });
  expectLost([](Arrived& result) { result.fed.pairs[0].maximum = 0.0; });
}

TEST(CheckArrival, ColumnThatEndedInAnErrorHasNoNumbers) {
  Arrived result = ArrivedResult();
  result.attributes[0].status = TQBinning::TQStatus(TQBinning::kTargetNotUsable, false);
  result.attributes[0].bins.clear();
  result.attributes[0].valid.weight = 0.0;
  EXPECT_EQ("none", ErrorIn(result));
}

TEST(CheckArrival, ColumnThatCouldNotBeReadBackIsLost) {
  Arrived result = ArrivedResult();
  result.attributes[0].status = TQBinning::TQStatus(TQBinning::kResourceFailure, false);
  EXPECT_THAT(ErrorIn(result), StartsWith("4: column 'income' could not be read back, "));
}

TEST(CheckArrival, BinsThatDoNotAddUpAreNoted) {
  Arrived result = ArrivedResult();
  result.attributes[0].bins.pop_back();
  testing::internal::CaptureStderr();
  EXPECT_EQ("none", ErrorIn(result));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              HasSubstr("the bins of column 'income' hold weight 7 of 10:"));
}

TEST(CheckFileSizes, EveryVariableNeedsAWholeFile) {
  EXPECT_EQ("none", ErrorOf([] { CheckFileSizes({24, 24}, 3, 2); }));
  EXPECT_EQ("none", ErrorOf([] { CheckFileSizes({24, 7, 24}, 3, 2); }));
  for (const std::vector<std::uintmax_t>& sizes :
       {std::vector<std::uintmax_t>{24}, {24, 16}, {24, 32}, {}}) {
    EXPECT_THAT(ErrorOf([&sizes] { CheckFileSizes(sizes, 3, 2); }), StartsWith("4: only "));
  }
}

}  // namespace
}  // namespace TQTool
