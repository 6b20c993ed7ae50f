#include "output/modelwords.h"

#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

TEST(ModelWords, FileNamesCannotSteerATerminal) {
  Model model = SmallModel();
  model.input.names = {"a\x1b[2J.csv", "b.csv"};
  EXPECT_EQ("a\\x1b[2J.csv, b.csv: 1 column binned by paid", TitleOf(model));
}

TEST(ModelWords, ColumnIsNamedWithItsTargetWhereThereAreSeveral) {
  Model model = SmallModel();
  EXPECT_EQ("income", NameOf(model.attributes[0], model));
  model.targets.push_back({"late", {"no", "yes"}, 0, {}});
  EXPECT_EQ("income by paid", NameOf(model.attributes[0], model));
}

TEST(ModelWords, StatusThatIsNotOKSaysWhyAndWhatToDo) {
  Model model = SmallModel();
  model.attributes[0].status = TQBinning::TQStatus(TQBinning::kOneDistinctValue, true);
  EXPECT_EQ("not cut: the column holds one distinct value only",
            OutcomeOf(model.attributes[0], model));
  EXPECT_EQ(0U, RemedyOf(model.attributes[0]).find("leave the column out (library code "));
}

TEST(ModelWords, UnknownNumbersAreQuestionMarks) {
  EXPECT_EQ("?", WeightText(TQMV::gMissingValue));
  EXPECT_EQ("?", ShareText(TQMV::gMissingValue, 10.0));
  EXPECT_EQ("?", ShareText(1.0, 0.0));
}

TEST(ModelWords, ColumnWithoutValuesSaysSo) {
  BinnedAttribute attribute;
  EXPECT_EQ("no value that counts", FindingsOf(attribute));
}

}  // namespace
}  // namespace TQTool
