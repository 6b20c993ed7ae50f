#include "tqbinning/efbinoutput.h"

#include <gtest/gtest.h>

#include "output/vocabulary.h"

// What only the output of attributes does: it stores cuts and counts as they are; for the
// rest see outputs_test.cpp.
namespace {

using namespace outputs;

// What the output holds of these cuts and counts.
BINAttributeResults Stored(const Numbers& cuts, const Numbers& counts) {
  EFBINOutput output;
  EXPECT_EQ(OK(), output.SetAttributeResults(OK(), cuts, counts, 0, 0, 0.0, 0.0, 0.0, 0.0));
  return AllOf(output).at(0);
}

TEST(EFBINOutput, CutPointsAreNotSorted) {
  EXPECT_EQ((Numbers{5.0, 3.0, 3.0, 1.0}), Stored({5.0, 3.0, 3.0, 1.0}, {}).GetCutPoints());
}

TEST(EFBINOutput, CountsNeedNotMatchTheCuts) {
  EXPECT_EQ((Numbers{7.0, 8.0, 9.0, 10.0}), Stored({1.0}, {7.0, 8.0, 9.0, 10.0}).GetCellCounts());
}

TEST(BINAttributeResults, DisplayOfAnOKAttributeWithoutCutsHasNeitherStatusNorCutPointLabel) {
  EXPECT_EQ(
      "\n"
      "Start of BINAttributeResults display\n"
      "BINDataTuple   attribute = -1\n"
      "Number of distinct values = 0\n"
      "Total weight = 0\n"
      "Total weight with missing = 0\n"
      "Minimum = 0\n"
      "Maximum = 0\n"
      "Number of cutpoints = 0\n"
      "The CellCounts are\n"
      "\n"
      "End of BINAttributeResults display\n",
      TextOf(BINAttributeResults()));
}

}  // namespace
