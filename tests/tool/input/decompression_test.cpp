#include "input/decompression.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>
#include <zstd.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string Gzip(const std::string& plain) {
  z_stream stream = {};
  EXPECT_EQ(Z_OK, deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY));
  std::string packed(deflateBound(&stream, plain.size()), ' ');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(plain.data()));
  stream.avail_in = static_cast<uInt>(plain.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

std::string Zstd(const std::string& plain) {
  std::string packed(ZSTD_compressBound(plain.size()), ' ');
  packed.resize(ZSTD_compress(packed.data(), packed.size(), plain.data(), plain.size(), 3));
  return packed;
}

// Half of it random, so that it does not shrink to nothing.
std::string SomeText(std::size_t size) {
  std::mt19937 source(1);
  std::string text(size, 'x');
  for (std::size_t i = 0; i < size; i += 2) text[i] = static_cast<char>('a' + source() % 26);
  return text;
}

struct Plain {
  std::string text;
  std::string error;
};

Plain Unpack(const std::string& packed, std::size_t blockIn = 100000, std::size_t blockOut = 100000,
             std::uint64_t maxBytes = 1U << 30) {
  Plain plain;
  plain.error = ErrorOf([&] {
    auto bytes = std::make_shared<ByteStream>(InBlocks(packed, blockIn));
    const ReadBlock read =
        Decompress(FindDecompressor(bytes->Peek(kCompressionMark)), bytes, "f", maxBytes);
    std::string block(blockOut, ' ');
    while (const std::size_t count = read(block.data(), block.size())) {
      plain.text += block.substr(0, count);
    }
  });
  return plain;
}

class DecompressionTest : public testing::TestWithParam<std::string (*)(const std::string&)> {
 protected:
  static std::string Pack(const std::string& plain) { return GetParam()(plain); }
};
INSTANTIATE_TEST_SUITE_P(GzipAndZstd, DecompressionTest, testing::Values(&Gzip, &Zstd));

TEST_P(DecompressionTest, GivesThePlainTextBackWhateverTheBlocks) {
  for (const std::size_t size : {0U, 1U, 1000U, 300000U}) {
    const std::string text = SomeText(size);
    const std::string packed = Pack(text);
    EXPECT_EQ(text, Unpack(packed).text);
    EXPECT_EQ("none", Unpack(packed).error);
    if (size <= 1000) {
      EXPECT_EQ(text, Unpack(packed, 1, 1).text);
    }
    EXPECT_EQ(text, Unpack(packed, 7, 300).text);
  }
}

TEST_P(DecompressionTest, PartsInARowAreOneText) {
  EXPECT_EQ("abc", Unpack(Pack("a") + Pack("") + Pack("bc")).text);
  EXPECT_EQ("abc", Unpack(Pack("a") + Pack("bc"), 1, 1).text);
}

TEST_P(DecompressionTest, CutShortAnywhereIsAnError) {
  const std::string packed = Pack(SomeText(200));
  for (std::size_t size = kCompressionMark; size < packed.size(); ++size) {
    EXPECT_THAT(Unpack(packed.substr(0, size)).error, StartsWith("3: f: the ")) << size;
    EXPECT_THAT(Unpack(packed.substr(0, size)).error, HasSubstr("cut short")) << size;
  }
}

TEST_P(DecompressionTest, TooMuchTextIsAnError) {
  const std::string packed = Pack(SomeText(1000));
  EXPECT_EQ("none", Unpack(packed, 100, 100, 1000).error);
  EXPECT_THAT(Unpack(packed, 100, 100, 999).error, StartsWith("3: f: more than 999 bytes come"));
}

TEST_P(DecompressionTest, OtherBytesBehindTheEndAreAnError) {
  EXPECT_THAT(Unpack(Pack("text") + "more and more").error, StartsWith("3: f: damaged "));
}

TEST(Decompression, DamagedGzipIsAnError) {
  std::string packed = Gzip(SomeText(1000));
  packed[packed.size() - 6] ^= 1;  // in the check sum
  EXPECT_THAT(Unpack(packed).error, StartsWith("3: f: damaged gzip data (incorrect data check)"));
}

TEST(Decompression, OtherTextIsNotCompressed) {
  for (const char* const text : {"", "a,b\n", "\x1F", "\x28\xB5\x2F"}) {
    EXPECT_EQ(nullptr, FindDecompressor(text));
  }
}

}  // namespace
}  // namespace TQTool
