#include "cli/manualpage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQTool {
namespace {

using testing::HasSubstr;

TEST(ManualPage, AnOptionStandsWithItsNamesItsValueAndItsExplanation) {
  CommandTable table;
  table.tool.options = {{{"-o", "--out"}, "FILE", {}, "where to"}};
  EXPECT_THAT(ManualPage(table),
              HasSubstr(".TP\n\\fB\\-o\\fP, \\fB\\-\\-out\\fP \\fIFILE\\fP\nwhere to\n"));
}

TEST(ManualPage, TextCannotBecomeARequestOrAnEscape) {
  CommandTable table;
  table.tool.options = {{{"--x"}, "", {}, ".so it's \\fB"}};
  EXPECT_THAT(ManualPage(table), HasSubstr("\n\\&.so it\\(aqs \\efB\n"));
}

}  // namespace
}  // namespace TQTool
