#include "base/statuswords.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace TQTool {
namespace {

using TQBinning::TQStatus;

TEST(StatusWords, EveryCodeOfTheLibraryHasWords) {
  std::set<long> codes = {0, 1, 3};
  for (long code = 120002; code <= 120021; ++code) codes.insert(code);
  codes.erase(120007);  // not in use
  for (const long code : codes) {
    EXPECT_STRNE("unknown status", WordsOf(code).words) << code;
    for (const char* const text : {WordsOf(code).reason, WordsOf(code).remedy}) {
      EXPECT_STRNE("", text) << code;
    }
  }
}

TEST(StatusWords, UnknownCodesSaySo) {
  for (const long code : {-1L, 2L, 120007L, 120022L}) {
    EXPECT_STREQ("unknown status", WordsOf(code).words) << code;
  }
}

TEST(StatusWords, SeverityDoesNotDependOnTheCode) {
  EXPECT_STREQ("ok", SeverityOf(TQStatus()));
  EXPECT_STREQ("warning", SeverityOf(TQStatus(0, true)));
  EXPECT_STREQ("error", SeverityOf(TQStatus(0, false)));
}

TEST(StatusWords, DescriptionNamesTheCode) {
  EXPECT_EQ(
      "out of resources: memory could not be had; free memory, or bin fewer columns at a "
      "time (library code 3)",
      Describe(TQStatus(3, false)));
}

}  // namespace
}  // namespace TQTool
