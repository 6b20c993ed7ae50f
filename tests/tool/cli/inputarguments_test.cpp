#include "cli/inputarguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

InputOptions Parse(std::vector<std::string> arguments) {
  CLI::App app;
  InputOptions options;
  AddInputArguments(app, options);
  std::reverse(arguments.begin(), arguments.end());  // as the parser wants them
  app.parse(arguments);
  CheckInputArguments(options);
  return options;
}

std::string ErrorIn(const std::vector<std::string>& arguments) {
  return ErrorOf([&] { Parse(arguments); });
}

TEST(InputArguments, EverythingArrives) {
  const InputOptions options =
      Parse({"a", "--delimiter", ";", "--decimal-comma", "b", "--query", "q", "--verbose",
             "--max-record", "2K", "--max-columns", "7", "--max-decompressed=3G"});
  EXPECT_THAT(options.inputs, ElementsAre("a", "b"));
  EXPECT_EQ(';', options.delimiter);
  EXPECT_TRUE(options.hasDecimalComma);
  EXPECT_EQ("q", options.query);
  EXPECT_TRUE(options.isVerbose);
  EXPECT_EQ(2048U, options.maxRecordBytes);
  EXPECT_EQ(7U, options.maxColumns);
  EXPECT_EQ(3U << 30, options.maxDecompressedBytes);
}

TEST(InputArguments, SizesAreBytesUnlessAUnitIsNamed) {
  EXPECT_EQ(100U, Parse({"f", "--max-record", "100"}).maxRecordBytes);
  EXPECT_EQ(1536U, Parse({"f", "--max-record", "1.5K"}).maxRecordBytes);
  EXPECT_EQ(std::uint64_t{1} << 40, Parse({"f", "--max-decompressed", "1T"}).maxDecompressedBytes);
  for (const char* const size : {"K", "0", "-1", "many", "1X", "1KK", "9999T"}) {
    EXPECT_THAT(ErrorIn({"f", std::string("--max-record=") + size}),
                StartsWith("2: --max-record: "))
        << size;
  }
}

TEST(InputArguments, WhatCannotBeMeantIsRefused) {
  EXPECT_THAT(ErrorIn({"a", ""}), StartsWith("2: FILE is empty;"));
  EXPECT_THAT(ErrorIn({"-", "a", "-"}), StartsWith("2: standard input is named twice;"));
  EXPECT_THAT(ErrorIn({"a", "--decimal-comma", "--delimiter", ","}),
              StartsWith("2: --decimal-comma: "));
}

}  // namespace
}  // namespace TQTool
