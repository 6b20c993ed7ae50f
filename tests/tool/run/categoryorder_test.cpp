#include "run/categoryorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQTool {
namespace {

using testing::ElementsAre;

TEST(CategoryOrder, SortsNumbersByValue) {
  EXPECT_THAT(CategoryOrder({"10", "9", "-1", "2.5"}), ElementsAre(2, 3, 1, 0));
}

TEST(CategoryOrder, SortsByBytesAsSoonAsOneIsText) {
  EXPECT_THAT(CategoryOrder({"10", "9", "b", "a"}), ElementsAre(0, 1, 3, 2));
}

TEST(CategoryOrder, EqualNumbersAreSortedByBytes) {
  EXPECT_THAT(CategoryOrder({"1.0", "1", "0"}), ElementsAre(2, 1, 0));
}

TEST(CategoryOrder, CopesWithFewCategories) {
  EXPECT_THAT(CategoryOrder({}), ElementsAre());
  EXPECT_THAT(CategoryOrder({"x"}), ElementsAre(0));
}

}  // namespace
}  // namespace TQTool
