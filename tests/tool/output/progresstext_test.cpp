#include "output/progresstext.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(ProgressText, ReadingTellsItsRate) {
  EXPECT_EQ("50000 rows read, 25000 rows per second", ReadingText(50000, 2.0));
  EXPECT_EQ("50000 rows read", ReadingText(50000, 0.0));
}

TEST(ProgressText, BinningTellsItsRateAndTheTimeLeft) {
  EXPECT_EQ("[##########..........] 5 of 10 columns binned, 0.5 per second, 10 s left",
            BinningText(5, 10, 10.0));
  EXPECT_EQ("[#...................] 1 of 11 columns binned, 0.1 per second, 1:40 min left",
            BinningText(1, 11, 10.0));
  EXPECT_EQ("[####################] 10 of 10 columns binned, 1.0 per second, 0 s left",
            BinningText(10, 10, 10.0));
  EXPECT_EQ("[....................] 0 of 10 columns binned", BinningText(0, 10, 3.0));
}

TEST(ProgressText, JsonIsOneLine) {
  EXPECT_EQ("{\"stage\":\"reading\",\"rows\":50000,\"seconds\":1.500}\n", ReadingJson(50000, 1.5));
  EXPECT_EQ("{\"stage\":\"binning\",\"columns\":2,\"of\":7,\"seconds\":0.250}\n",
            BinningJson(2, 7, 0.25));
}

}  // namespace
}  // namespace TQTool
