#include "base/plaintext.h"

#include <gtest/gtest.h>

namespace TQTool {
namespace {

TEST(Printable, EscapesControlCharactersOnly) {
  EXPECT_EQ("a\\nb\\r\\t\\x1b[31m\\x7f", Printable("a\nb\r\t\x1b[31m\x7f"));
  EXPECT_EQ("\xC3\xA4 ok", Printable("\xC3\xA4 ok"));
  EXPECT_EQ("", Printable(""));
}

TEST(Quoted, CutsAfterFortyCharacters) {
  EXPECT_EQ("''", Quoted(""));
  EXPECT_EQ("'" + std::string(40, 'x') + "'", Quoted(std::string(40, 'x')));
  EXPECT_EQ("'" + std::string(40, 'x') + "...'", Quoted(std::string(41, 'x')));
}

TEST(Quoted, NeverCutsACharacterInTwo) {
  std::string umlauts;
  for (int i = 0; i < 40; ++i) umlauts += "\xC3\xA4";
  EXPECT_EQ("'" + umlauts + "...'", Quoted(umlauts + "\xC3\xA4"));
}

TEST(CountCharacters, CountsCodePoints) {
  EXPECT_EQ(0U, CountCharacters(""));
  EXPECT_EQ(3U, CountCharacters("a\xC3\xA4\xE2\x82\xAC"));
}

TEST(TrimBlanks, DropsBlanksAndTabsAtBothEnds) {
  EXPECT_EQ("a b", TrimBlanks(" \ta b\t "));
  EXPECT_EQ("", TrimBlanks(" \t "));
  EXPECT_EQ("", TrimBlanks(""));
  EXPECT_EQ("\n", TrimBlanks("\n"));
}

TEST(IsUtf8, TakesEveryCharacterInItsShortestForm) {
  for (const char* const text :
       {"", "a", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEF\xBF\xBF",
        "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "a\xC3\xBCz"}) {
    EXPECT_TRUE(IsUtf8(text)) << text;
  }
}

TEST(IsUtf8, RefusesAllElse) {
  for (const char* const text :
       {"\x80", "a\xFC", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF0\x9F\x98"}) {
    EXPECT_FALSE(IsUtf8(text)) << text;
  }
}

}  // namespace
}  // namespace TQTool
