#include "output/textgrid.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(TextGrid, LinesColumnsUp) {
  TextGrid grid;
  grid.AddRow({"bin", "n", "share"});
  grid.AddRow({"(2, 3]", "100", "1%"});
  EXPECT_EQ(
      "  bin       n  share\n"
      "  (2, 3]  100     1%\n",
      grid.Print());
}

TEST(TextGrid, ShortRowsEndEarlyWithoutBlanks) {
  TextGrid grid;
  grid.AddRow({"a", "b", "c"});
  grid.AddRow({"long"});
  grid.AddRow({"x", ""});
  EXPECT_EQ(
      "  a     b  c\n"
      "  long\n"
      "  x\n",
      grid.Print());
}

TEST(TextGrid, CountsCharactersNotBytes) {
  TextGrid grid;
  grid.AddRow({"\xC3\xA4", "\xE2\x82\xAC"});
  grid.AddRow({"ab", "12"});
  EXPECT_EQ(
      "  \xC3\xA4    \xE2\x82\xAC\n"
      "  ab  12\n",
      grid.Print());
}

TEST(TextGrid, EmptyGridIsEmpty) { EXPECT_EQ("", TextGrid().Print()); }

}  // namespace
}  // namespace TQTool
