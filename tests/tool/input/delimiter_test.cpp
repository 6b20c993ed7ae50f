#include "input/delimiter.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

char Found(const std::string& text, bool isWhole = true) {
  return FindDelimiter(text, isWhole, false);
}

TEST(FindDelimiter, TakesWhatCutsAllRowsEvenly) {
  EXPECT_EQ(',', Found("a,b\n1,2\n"));
  EXPECT_EQ(';', Found("a;b\n1;2\n"));
  EXPECT_EQ('\t', Found("a\tb\n1\t2\n"));
  EXPECT_EQ('|', Found("a|b\n1|2\n"));
  EXPECT_EQ(';', Found("a;b\n1,5;2\n1;2,5\n\n"));
  EXPECT_EQ('\t', Found("name, first\tb,c,d\n1\t2\n"));
}

TEST(FindDelimiter, OfSeveralItTakesWhatCutsMore) {
  EXPECT_EQ(';', Found("a,b;c;d\n1,2;3;4\n"));
  EXPECT_EQ(',', Found("a,b;c\n1,2;3\n"));
}

TEST(FindDelimiter, QuotedDelimitersDoNotCount) {
  EXPECT_EQ(';', Found("a;b\n\"1,2,3\";2\n"));
  EXPECT_EQ(',', Found("\"a;b\",c\n\"x;y\",2\n"));
}

TEST(FindDelimiter, OfUnevenRowsTheHeaderDecides) {
  EXPECT_EQ(',', Found("a,b\n1,2,3\n"));
  EXPECT_EQ(';', Found("a;b;c\n1;2\n"));
  EXPECT_EQ(';', Found("a;b\n1;\"2\n"));
}

TEST(FindDelimiter, OneColumnIsReadWithCommas) {
  EXPECT_EQ(',', Found("a\n1\n2\n"));
  EXPECT_EQ(',', Found(""));
}

TEST(FindDelimiter, ARowThatTheSampleCutsOffDoesNotCount) {
  EXPECT_EQ(',', Found("a;b,c,d\n1;2,3,4\n5;6,7", false));
  EXPECT_EQ(';', Found("a;b,c,d\n1;2,3,4\n5;6,7", true));
}

TEST(FindDelimiter, DecimalCommasAreNoDelimiters) {
  EXPECT_EQ(';', FindDelimiter("a,b\n1,2\n", true, true));
  EXPECT_EQ('\t', FindDelimiter("a,b\tc\n1,2\t3\n", true, true));
}

TEST(DescribeDelimiter, ShowsWhatCannotBeSeen) {
  EXPECT_EQ("tab", DescribeDelimiter('\t'));
  EXPECT_EQ("';'", DescribeDelimiter(';'));
}

}  // namespace
}  // namespace TQTool
