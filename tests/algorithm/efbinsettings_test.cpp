#include "tqbinning/efbinsettings.h"

#include <gtest/gtest.h>

#include "algorithm/binningrun.h"

// How these settings are displayed; for the rest see settings_test.cpp.
namespace {

using support::TextOf;

TEST(EFBINSettings, DisplayOfTheDefaults) {
  EXPECT_EQ(
      "\n"
      "Start of EFBINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 0\n"
      "Number of progress reports to skip when read data file = 100000\n"
      "1\n"
      "Number of bins for EF = -1\n"
      "End of EFBINSettings display\n",
      TextOf(EFBINSettings()));
}

TEST(EFBINSettings, DisplayOfChangedValues) {
  EFBINSettings settings;
  ASSERT_TRUE(settings.SetNSkippedAttReports(3));
  ASSERT_TRUE(settings.SetNSkippedCasesReports(4));
  settings.SetRightBorderClosed(false);
  ASSERT_TRUE(settings.SetNumberOfBins(6));
  settings.SetTempDirName("elsewhere");
  EXPECT_EQ(
      "\n"
      "Start of EFBINSettings display\n"
      "Number of progress reports to skip when create bins for attribute = 3\n"
      "Number of progress reports to skip when read data file = 4\n"
      "0\n"
      "Number of bins for EF = 6\n"
      "End of EFBINSettings display\n",
      TextOf(settings));
}

}  // namespace
