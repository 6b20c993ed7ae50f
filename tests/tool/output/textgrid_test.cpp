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

TEST(TextGrid, WhatDoesNotFitFollowsBelowBesideTheFirstColumn) {
  TextGrid grid;
  grid.AddRow({"bin", "one", "two", "three"});
  grid.AddRow({"a", "1", "2", "3"});
  EXPECT_EQ(
      "  bin  one  two\n"
      "  a      1    2\n"
      "  bin  three\n"
      "  a        3\n",
      grid.Print(15));
  EXPECT_EQ(grid.Print(), grid.Print(22));
}

TEST(TextGrid, AColumnWiderThanTheLinesStandsAlone) {
  TextGrid grid;
  grid.AddRow({"bin", "one", "two"});
  EXPECT_EQ("  bin  one\n  bin  two\n", grid.Print(4));
}

}  // namespace
}  // namespace TQTool
