#include "input/bytestream.h"

#include <gtest/gtest.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

std::string RestOf(ByteStream& bytes, std::size_t blockSize) {
  std::string all;
  std::string block(blockSize, ' ');
  while (const std::size_t count = bytes.Read(block.data(), block.size())) {
    all += block.substr(0, count);
  }
  return all;
}

TEST(ByteStream, WhatWasLookedAtIsStillRead) {
  for (const std::size_t blockSize : {1U, 3U, 100U}) {
    ByteStream bytes(InBlocks("abcdefgh", blockSize));
    EXPECT_EQ("abc", bytes.Peek(3));
    EXPECT_EQ("abcde", bytes.Peek(5));
    EXPECT_EQ("ab", bytes.Peek(2));
    EXPECT_EQ("abcdefgh", RestOf(bytes, blockSize));
  }
}

TEST(ByteStream, LooksAheadInTheMiddle) {
  ByteStream bytes(InBlocks("abcdefgh", 100));
  std::string two(2, ' ');
  EXPECT_EQ("abc", bytes.Peek(3));
  ASSERT_EQ(2U, bytes.Read(two.data(), 2));
  EXPECT_EQ("ab", two);
  EXPECT_EQ("cdef", bytes.Peek(4));
  EXPECT_EQ("cdefgh", RestOf(bytes, 2));
}

TEST(ByteStream, LooksNoFurtherThanTheEnd) {
  ByteStream bytes(InBlocks("ab", 1));
  EXPECT_EQ("ab", bytes.Peek(3));
  EXPECT_EQ("ab", RestOf(bytes, 10));
  EXPECT_EQ("", bytes.Peek(1));
}

}  // namespace
}  // namespace TQTool
