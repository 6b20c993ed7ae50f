#include "input/encoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::StartsWith;

// The text in UTF-8, read and handed out in blocks of these sizes.
std::string Utf8Of(const std::string& encoding, const std::string& encoded,
                   std::size_t blockIn = 100000, std::size_t blockOut = 100000) {
  const ReadBlock read =
      ConvertToUtf8(encoding, std::make_shared<ByteStream>(InBlocks(encoded, blockIn)), "f.csv");
  std::string text;
  std::string block(blockOut, ' ');
  while (const std::size_t count = read(block.data(), block.size())) text += block.substr(0, count);
  return text;
}

TEST(IsEncoding, KnowsNamesAndNothingThatLosesCharacters) {
  for (const char* const name : {"latin1", "ISO-8859-15", "windows-1252", "UTF-16", "utf-8"}) {
    EXPECT_TRUE(IsEncoding(name)) << name;
  }
  for (const char* const name : {"", "latin", "latin1//IGNORE", "ASCII//TRANSLIT"}) {
    EXPECT_FALSE(IsEncoding(name)) << name;
  }
}

TEST(ConvertToUtf8, CharactersBecomeTheirUtf8) {
  EXPECT_EQ("gr\xC3\xBC\xC3\x9F", Utf8Of("latin1", "gr\xFC\xDF"));
  EXPECT_EQ("\xE2\x82\xAC", Utf8Of("windows-1252", "\x80"));
  EXPECT_EQ("a\xC3\xBC", Utf8Of("UTF-16", std::string("\xFF\xFE"
                                                      "a\0\xFC\0",
                                                      6)));
  EXPECT_EQ("", Utf8Of("latin1", ""));
}

TEST(ConvertToUtf8, BlocksMayPartCharacters) {
  std::string encoded;
  std::string plain;
  for (int i = 0; i < 20000; ++i) {
    encoded += std::string("\x3D\xD8\x00\xDE", 4);  // one character, two UTF-16 units
    plain += "\xF0\x9F\x98\x80";
  }
  for (const std::size_t blockIn : {3U, 65535U, 1000000U}) {
    EXPECT_TRUE(plain == Utf8Of("UTF-16LE", encoded, blockIn)) << blockIn;
  }
  EXPECT_TRUE(plain == Utf8Of("UTF-16LE", encoded, 1000, 1));
}

TEST(ConvertToUtf8, CharacterThatWaitsForTheNextIsNotLostAtTheEnd) {
  EXPECT_EQ("a", Utf8Of("windows-1258", "a"));  // where an accent might follow
}

TEST(ConvertToUtf8, BytesThatAreNoTextAreCounted) {
  EXPECT_THAT(ErrorOf([] { Utf8Of("UTF-8", "gr\xC3\xBC\xFF"); }),
              StartsWith("3: f.csv: byte 5 begins no character of the encoding 'UTF-8'"));
  EXPECT_THAT(ErrorOf([] { Utf8Of("UTF-8", std::string(70000, 'x') + "\xFF", 999); }),
              StartsWith("3: f.csv: byte 70001 begins no character"));
  EXPECT_THAT(ErrorOf([] { Utf8Of("UTF-8", "abc\xC3"); }), StartsWith("3: f.csv: byte 4 begins"));
}

}  // namespace
}  // namespace TQTool
