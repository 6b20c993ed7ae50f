#include "output/markdownwriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;

TEST(MarkdownWriter, WritesATablePerColumn) {
  EXPECT_EQ(
      "# loans.csv: 1 column binned by paid\n"
      "\n"
      "12 rows\n"
      "\n"
      "## income\n"
      "\n"
      "2 bins\n"
      "\n"
      "5 distinct values from -0.1 to 1000000; entropy within the bins 0.4140 bits\n"
      "\n"
      "information gain 0.5568 bits; information value 2.9012\n"
      "\n"
      "| bin | rows | share | no | yes | rate | WoE |\n"
      "| :--- | ---: | ---: | ---: | ---: | ---: | ---: |\n"
      "| (-inf, 2.5] | 7 | 58.3% | 6 | 1 | 14.3% | -1.386 |\n"
      "| (2.5, inf) | 3 | 25.0% | 0 | 3 | 100.0% | 2.351 |\n"
      "| total | 10 | 83.3% | 6 | 4 |  |  |\n"
      "| missing | 2 | 16.7% |  |  |  |  |\n",
      WriteMarkdown(SmallModel()));
}

TEST(MarkdownWriter, ANameCannotBecomeMarkup) {
  Model model = SmallModel();
  model.attributes[0].name = "a|b <i>[x](y) *z*\n# h";
  model.targets[0].categories[0] = "n|o";
  const std::string text = WriteMarkdown(model);
  EXPECT_THAT(text, HasSubstr("## a\\|b \\<i\\>\\[x](y) \\*z\\*\\\\n\\# h\n"));
  EXPECT_THAT(text, HasSubstr("| n\\|o |"));
}

}  // namespace
}  // namespace TQTool
