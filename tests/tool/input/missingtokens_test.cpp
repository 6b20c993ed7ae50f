#include "input/missingtokens.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(MissingTokens, TextWithoutDataIsMissingWhateverTheTokens) {
  EXPECT_TRUE(MissingTokens({"x"}).Contains(std::string_view()));
  EXPECT_FALSE(MissingTokens({"x"}).Contains(""));
}

TEST(MissingTokens, DefaultKnowsTheUsualMarks) {
  const MissingTokens tokens(MissingTokens::Default());
  for (const char* const text : {"", "NA", "N/A", "NaN", "nan", "NULL", "null", "?", "."}) {
    EXPECT_TRUE(tokens.Contains(text)) << text;
  }
  for (const char* const text : {"na", "NAN", "Null", "0", "-", "N", "??", "NAs", "none"}) {
    EXPECT_FALSE(tokens.Contains(text)) << text;
  }
}

TEST(MissingTokens, OwnTokensReplaceTheDefault) {
  const MissingTokens tokens({" -9 ", "missing"});
  EXPECT_TRUE(tokens.Contains("-9"));
  EXPECT_TRUE(tokens.Contains("missing"));
  EXPECT_FALSE(tokens.Contains(""));
  EXPECT_FALSE(tokens.Contains("-9.0"));
  EXPECT_TRUE(MissingTokens({""}).Contains(""));
}

}  // namespace
}  // namespace TQTool
