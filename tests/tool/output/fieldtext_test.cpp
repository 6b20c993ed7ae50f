#include "output/fieldtext.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

std::string Field(std::string_view text, bool isSpreadsheetSafe = false, char delimiter = ',') {
  std::string row;
  AppendField(text, delimiter, isSpreadsheetSafe, row);
  return row;
}

std::string JsonOf(std::string_view text) {
  std::string row;
  AppendJsonString(text, row);
  return row;
}

TEST(AppendField, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ("", Field(""));
  EXPECT_EQ("a b", Field("a b"));
  EXPECT_EQ("\"a,b\"", Field("a,b"));
  EXPECT_EQ("a,b", Field("a,b", false, '\t'));
  EXPECT_EQ("\"a\"\"b\"", Field("a\"b"));
  EXPECT_EQ("\"a\nb\"", Field("a\nb"));
  EXPECT_EQ("\" a\"", Field(" a"));
}

TEST(AppendField, FormulasAreDefusedOnlyOnRequest) {
  EXPECT_EQ("=1+1", Field("=1+1"));
  EXPECT_EQ("\"'=1+1\"", Field("=1+1", true));
  EXPECT_EQ("\"'@SUM(A1)\"", Field("@SUM(A1)", true));
  EXPECT_EQ("\"'+a\"", Field("+a", true));
  EXPECT_EQ("-5.5", Field("-5.5", true));
}

TEST(AppendJsonString, EscapesAndRepairs) {
  EXPECT_EQ("\"plain\"", JsonOf("plain"));
  EXPECT_EQ("\"a\\\"\\\\\\n\"", JsonOf("a\"\\\n"));
  EXPECT_EQ("\"gr\xC3\xBC\xC3\x9F\"", JsonOf("gr\xC3\xBC\xC3\x9F"));
  EXPECT_EQ("\"\xEF\xBF\xBD\"", JsonOf("\xFF"));
}

TEST(AppendNumber, IsShortest) {
  std::string row;
  AppendNumber(0.1, row);
  EXPECT_EQ("0.1", row);
}

}  // namespace
}  // namespace TQTool
