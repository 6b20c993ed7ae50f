#include "report/html.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(Html, EveryCharacterWithAMeaningIsEscaped) {
  EXPECT_EQ("&lt;script&gt;alert(&quot;a&quot; &amp; &#39;b&#39;)&lt;/script&gt;",
            Escaped("<script>alert(\"a\" & 'b')</script>"));
}

TEST(Html, WhatIsEscapedAlreadyStaysReadable) { EXPECT_EQ("&amp;lt;", Escaped("&lt;")); }

TEST(Html, ControlCharactersAreShown) { EXPECT_EQ("a\\nb\\x1b\\x00", Escaped({"a\nb\x1b\0", 5})); }

TEST(Html, OtherLettersStay) { EXPECT_EQ("größe=5 €", Escaped("größe=5 €")); }

TEST(Html, NameCannotTurnTheDirectionOfWhatFollows) {
  EXPECT_EQ("<bdi>\u202Ea&lt;</bdi>", Isolated("\u202Ea<"));
}

TEST(Html, ThousandsAreGrouped) {
  EXPECT_EQ("0", Grouped("0"));
  EXPECT_EQ("999", Grouped("999"));
  EXPECT_EQ("1,000", Grouped("1000"));
  EXPECT_EQ("1,234,567.8901", Grouped("1234567.8901"));
  EXPECT_EQ("?", Grouped("?"));
}

TEST(Html, MinusIsTrue) {
  EXPECT_EQ("\u22121,000", Grouped("-1000"));
  EXPECT_EQ("\u22120.50", Fixed(-0.5, 2));
}

TEST(Html, ExponentIsNotGrouped) { EXPECT_EQ("1e+20", Grouped("1e+20")); }

TEST(Html, WhatRoundsToZeroHasNoSign) { EXPECT_EQ("0.00", Fixed(-0.001, 2)); }

}  // namespace
}  // namespace TQTool
