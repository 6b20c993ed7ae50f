#include "base/nearestname.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

std::string Nearest(std::string_view wanted, const std::vector<std::string>& names) {
  const std::string* const name = NearestName(wanted, names);
  return name == nullptr ? "none" : *name;
}

TEST(NearestName, FindsMistypedNames) {
  const std::vector<std::string> names = {"sepal_length", "petal_length", "species"};
  EXPECT_EQ("species", Nearest("specis", names));
  EXPECT_EQ("species", Nearest("SPECIES", names));
  EXPECT_EQ("petal_length", Nearest("petal_lenght", names));
  EXPECT_EQ("none", Nearest("income", names));
}

TEST(NearestName, FindsContinuations) {
  EXPECT_EQ("income-per-year", Nearest("income", {"age", "income-per-year"}));
  EXPECT_EQ("age", Nearest("Age", {"age-group", "age"}));
  EXPECT_EQ("none", Nearest("a", {"xyz", "alpha"}));
}

TEST(NearestName, TakesTheEarlierOfEquallyNearOnes) {
  EXPECT_EQ("cat", Nearest("caz", {"cat", "car"}));
}

TEST(NearestName, CopesWithEmptyAndVeryLongNames) {
  EXPECT_EQ("none", Nearest("abc", {}));
  EXPECT_EQ("none", Nearest("abc", {""}));
  EXPECT_EQ("none", Nearest("abc", {std::string(100000, 'x')}));
}

}  // namespace
}  // namespace TQTool
