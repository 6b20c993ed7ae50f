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

}  // namespace
}  // namespace TQTool
