#include "output/outputguard.h"

#include <cstdio>
#include <iostream>

#include <gtest/gtest.h>
#include <unistd.h>

namespace TQTool {
namespace {

TEST(OutputGuard, CatchesWhatIsPrintedMeanwhile) {
  testing::internal::CaptureStdout();
  std::printf("before ");
  {
    OutputGuard guard;
    std::printf("by printf, ");
    std::cout << "by cout, " << std::flush;
    EXPECT_EQ(9, write(STDOUT_FILENO, "by write ", 9));
    const std::string printed = guard.Finish();
    EXPECT_NE(std::string::npos, printed.find("by printf, "));
    EXPECT_NE(std::string::npos, printed.find("by cout, "));
    EXPECT_NE(std::string::npos, printed.find("by write "));
  }
  std::printf("after");
  std::fflush(stdout);
  EXPECT_EQ("before after", testing::internal::GetCapturedStdout());
}

TEST(OutputGuard, RestoresStandardOutputWhenItIsNotFinished) {
  testing::internal::CaptureStdout();
  {
    OutputGuard guard;
    std::printf("lost");
  }
  std::printf("kept");
  std::fflush(stdout);
  EXPECT_EQ("kept", testing::internal::GetCapturedStdout());
}

TEST(OutputGuard, SilenceIsEmpty) {
  OutputGuard guard;
  EXPECT_EQ("", guard.Finish());
  EXPECT_EQ("", guard.Finish());
}

}  // namespace
}  // namespace TQTool
