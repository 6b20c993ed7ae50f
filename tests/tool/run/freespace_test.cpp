#include "run/freespace.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// How many values would fill the test's file system.
double ValuesThatFit() {
  struct statvfs status = {};
  EXPECT_EQ(0, statvfs(testing::TempDir().c_str(), &status));
  return static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize) / 8;
}

std::string ErrorFor(std::optional<double> rows, std::size_t columns) {
  return ErrorOf([&] { CheckFreeSpace(testing::TempDir(), rows, columns); });
}

TEST(FreeSpace, FewRowsFit) { EXPECT_EQ("none", ErrorFor(10.0, 3)); }

TEST(FreeSpace, AnUnknownNumberOfRowsIsTried) { EXPECT_EQ("none", ErrorFor(std::nullopt, 3)); }

TEST(FreeSpace, MoreThanTwiceOfWhatFitsIsRefused) {
  EXPECT_THAT(ErrorFor(1.0 * ValuesThatFit(), 3),
              AllOf(StartsWith("4: "), HasSubstr(" MB are free, but "), HasSubstr("--temp-dir")));
}

TEST(FreeSpace, ALittleMoreThanWhatFitsIsTriedForRowsAreAnEstimate) {
  EXPECT_EQ("none", ErrorFor(0.5 * ValuesThatFit(), 3));
}

TEST(FreeSpace, ADirectoryThatCannotBeAskedIsTried) {
  EXPECT_EQ("none", ErrorOf([] { CheckFreeSpace("/no/such/place", 1e300, 3); }));
}

}  // namespace
}  // namespace TQTool
