#include "input/csvreader.h"

#include <random>

#include <gtest/gtest.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

Rows RowsOf(CsvReader& reader) {
  Rows rows;
  while (reader.Next()) {
    std::vector<std::string>& row = rows.emplace_back();
    for (const std::string_view field : reader.GetFields()) row.emplace_back(field);
  }
  return rows;
}

// The rows of a text, which must not depend on how it comes in blocks.
Rows RowsOf(const std::string& text, char delimiter = ',') {
  CsvReader whole = ReaderOf(text, 1000000, delimiter);
  const Rows rows = RowsOf(whole);
  for (const std::size_t blockSize : {1U, 2U, 3U, 7U}) {
    CsvReader reader = ReaderOf(text, blockSize, delimiter);
    EXPECT_EQ(rows, RowsOf(reader)) << "in blocks of " << blockSize;
  }
  return rows;
}

// What reading a text to its end throws, whatever the blocks.
std::string ErrorIn(const std::string& text) {
  const auto readIn = [&text](std::size_t blockSize) {
    return ErrorOf([&] {
      CsvReader reader = ReaderOf(text, blockSize);
      RowsOf(reader);
    });
  };
  EXPECT_EQ(readIn(1), readIn(1000000));
  return readIn(1000000);
}

TEST(CsvReader, EmptyInputHasNoRow) {
  EXPECT_EQ(Rows{}, RowsOf(""));
  EXPECT_EQ(Rows{}, RowsOf("\xEF\xBB\xBF"));
}

TEST(CsvReader, CutsRowsAndFields) {
  EXPECT_EQ((Rows{{"a", "b"}, {"1", "2"}}), RowsOf("a,b\n1,2\n"));
}

TEST(CsvReader, LastRowNeedsNoLineEnd) {
  EXPECT_EQ((Rows{{"a"}, {"1"}}), RowsOf("a\n1"));
  EXPECT_EQ((Rows{{"a", ""}}), RowsOf("a,"));
  EXPECT_EQ((Rows{{"a"}}), RowsOf("\"a\""));
}

TEST(CsvReader, EmptyFieldsAndLinesAreFields) {
  EXPECT_EQ((Rows{{"", "", ""}, {""}, {"x", ""}}), RowsOf(",,\n\nx,\n"));
}

TEST(CsvReader, BlankLineIsOneUnquotedEmptyField) {
  CsvReader reader = ReaderOf("\n\"\"\n,\n");
  ASSERT_TRUE(reader.Next());
  EXPECT_TRUE(reader.IsBlankLine());
  ASSERT_TRUE(reader.Next());
  EXPECT_FALSE(reader.IsBlankLine());
  ASSERT_TRUE(reader.Next());
  EXPECT_FALSE(reader.IsBlankLine());
}

TEST(CsvReader, LineEndsMayBeCrLf) {
  EXPECT_EQ((Rows{{"a", "b"}, {"1", "2"}, {"", ""}}), RowsOf("a,b\r\n1,\"2\"\r\n,\r\n"));
  EXPECT_EQ((Rows{{"a"}, {"1"}}), RowsOf("a\r\n1\r"));
  EXPECT_EQ((Rows{{"a"}, {"1"}}), RowsOf("a\r\n\"1\"\r"));
}

TEST(CsvReader, CarriageReturnWithinALineIsText) {
  EXPECT_EQ((Rows{{"a\rb", "c"}}), RowsOf("a\rb,c\n"));
}

TEST(CsvReader, QuotedFieldsHoldDelimitersLineEndsAndQuotes) {
  EXPECT_EQ((Rows{{"a,b", "c\nd", "e\r\nf", "\"g\"", "", "\""}}),
            RowsOf("\"a,b\",\"c\nd\",\"e\r\nf\",\"\"\"g\"\"\",\"\",\"\"\"\"\n"));
}

TEST(CsvReader, QuoteInsideAPlainFieldIsText) {
  EXPECT_EQ((Rows{{"5\" pipe", " \"x\""}}), RowsOf("5\" pipe, \"x\"\n"));
}

TEST(CsvReader, TakesOtherDelimiters) {
  EXPECT_EQ((Rows{{"a,b", "c"}}), RowsOf("a,b;c\n", ';'));
  EXPECT_EQ((Rows{{"a", "b"}}), RowsOf("a\tb\n", '\t'));
}

TEST(CsvReader, SkipsAByteOrderMarkAtTheFrontOnly) {
  EXPECT_EQ((Rows{{"a"}, {"\xEF\xBB\xBF"}}), RowsOf("\xEF\xBB\xBF"
                                                    "a\n\xEF\xBB\xBF\n"));
  EXPECT_EQ((Rows{{"a"}}), RowsOf("\xEF\xBB\xBF\"a\"\n"));
}

TEST(CsvReader, FieldsLongerThanABlockArriveWhole) {
  const std::string plain(700000, 'x');
  const std::string quoted = std::string(300000, 'y') + "\n" + std::string(300000, '"');
  const std::string text =
      plain + ",\"" + std::string(300000, 'y') + "\n" + std::string(600000, '"') + "\"\nz,\n";
  CsvReader reader = ReaderOf(text, 100000);
  EXPECT_EQ((Rows{{plain, quoted}, {"z", ""}}), RowsOf(reader));
}

TEST(CsvReader, CountsLinesAcrossQuotedLineEnds) {
  CsvReader reader = ReaderOf("a\n\"1\n\n2\"\nb\n");
  for (const std::uint64_t line : {1U, 2U, 5U}) {
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(line, reader.GetLine());
  }
}

TEST(CsvReader, LocatesFieldsByLineAndCharacter) {
  CsvReader reader = ReaderOf("a\n\"x\ny\",\xC3\xA4\xC3\xB6,\"q\",z\n");
  ASSERT_TRUE(reader.Next());
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ("f.csv:2:1", reader.LocateField(0));
  EXPECT_EQ("f.csv:3:4", reader.LocateField(1));
  EXPECT_EQ("f.csv:3:7", reader.LocateField(2));  // at its quote
  EXPECT_EQ("f.csv:3:11", reader.LocateField(3));
  EXPECT_EQ("f.csv:3:12", reader.LocateField(4));  // behind the last field
  EXPECT_EQ("f.csv:7", reader.LocateLine(7));
}

TEST(CsvReader, ColumnsAreCountedBehindAByteOrderMark) {
  CsvReader reader = ReaderOf(
      "\xEF\xBB\xBF"
      "a,b\n");
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ("f.csv:1:3", reader.LocateField(1));
}

TEST(CsvReader, AByteOrderMarkDoesNotCountAgainstTheLimitOfARow) {
  for (const std::size_t blockSize : {1U, 2U, 100U}) {
    CsvReader reader(InBlocks("\xEF\xBB\xBF\n", blockSize), "f.csv", ',', {1, 10});
    EXPECT_TRUE(reader.Next());
    EXPECT_FALSE(reader.Next());
  }
}

TEST(CsvReader, FieldsWithDoubledQuotesAreLocatedAtTheirQuote) {
  CsvReader reader = ReaderOf("a,\"b\"\"\",\"\"\"c\",\"d\"\r\n");
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ("f.csv:1:3", reader.LocateField(1));
  EXPECT_EQ("f.csv:1:9", reader.LocateField(2));
  EXPECT_EQ("f.csv:1:15", reader.LocateField(3));
  EXPECT_EQ("f.csv:1:18", reader.LocateField(4));
}

TEST(CsvReader, UnterminatedQuoteIsAnErrorWhereItOpens) {
  const std::string error = ErrorIn("a,b\n1,\"2\n3,4\n");
  EXPECT_TRUE(error.starts_with("3: f.csv:2:3: a quote is opened and never closed;")) << error;
  EXPECT_TRUE(ErrorIn("\"").starts_with("3: f.csv:1:1: "));
  EXPECT_TRUE(ErrorIn("\"a\"\"").starts_with("3: f.csv:1:1: "));
}

TEST(CsvReader, TextBehindAClosingQuoteIsAnError) {
  const std::string error = ErrorIn("a\n\"b\" c\n");
  EXPECT_TRUE(error.starts_with("3: f.csv:2:4: text follows a closing quote;")) << error;
  EXPECT_TRUE(ErrorIn("\"b\"\rx\n").starts_with("3: f.csv:1:4: "));
}

TEST(CsvReader, NulByteIsAnError) {
  const std::string error = ErrorIn(std::string("a,b\n1,\0\n", 8));
  EXPECT_TRUE(error.starts_with("3: f.csv:2:3: a NUL byte;")) << error;
}

TEST(CsvReader, Utf16IsAnErrorOfItsOwn) {
  const std::string little =
      ErrorIn(std::string("\xFF\xFE"
                          "a\0",
                          4));
  EXPECT_TRUE(little.starts_with("3: f.csv:1: text in UTF-16;")) << little;
  const std::string big = ErrorIn(std::string("\xFE\xFF\0a", 4));
  EXPECT_TRUE(big.starts_with("3: f.csv:1: text in UTF-16;")) << big;
}

TEST(CsvReader, RowBeyondTheLimitIsAnError) {
  const auto errorIn = [](const std::string& text, std::size_t maxBytes) {
    return ErrorOf([&] {
      CsvReader reader(InBlocks(text, 1000000), "f.csv", ',', {maxBytes, 10});
      RowsOf(reader);
    });
  };
  EXPECT_EQ("none", errorIn("a\n1,23\n", 5));  // the line end counts
  EXPECT_TRUE(errorIn("a\n1,23\n", 4).starts_with("3: f.csv:2: a row is longer than 4 bytes;"));
  const std::string error = errorIn("a\n\"" + std::string(4000000, 'x'), 1U << 20);
  EXPECT_TRUE(error.starts_with("3: f.csv:2: a row is longer than 1048576 bytes;")) << error;
}

TEST(CsvReader, FieldsBeyondTheLimitAreAnError) {
  const auto errorIn = [](const std::string& text, std::size_t maxColumns) {
    return ErrorOf([&] {
      CsvReader reader(InBlocks(text, 1000000), "f.csv", ',', {1000, maxColumns});
      RowsOf(reader);
    });
  };
  for (const std::size_t columns : {1U, 2U, 3U, 5U, 8U}) {
    const std::string full = std::string(columns - 1, ',') + "\n";
    EXPECT_EQ("none", errorIn("\n" + full, columns));
    const std::string error = errorIn("\n," + full, columns);
    EXPECT_TRUE(error.starts_with("3: f.csv:2: a row of more than " + std::to_string(columns)))
        << error;
  }
}

TEST(CsvReader, RewindsToTheMark) {
  for (const std::size_t blockSize : {1U, 5U, 1000U}) {
    CsvReader reader = ReaderOf("h\n1\n\"2\n2\"\n3\n4\n", blockSize);
    ASSERT_TRUE(reader.Next());
    reader.Mark();
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(reader.Next());
    reader.Rewind();
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(2U, reader.GetLine());
    EXPECT_EQ("1", reader.GetFields()[0]);
    EXPECT_EQ((Rows{{"2\n2"}, {"3"}, {"4"}}), RowsOf(reader));
    EXPECT_EQ(7U, reader.GetLine());
  }
}

TEST(CsvReader, RewindsFromTheEnd) {
  CsvReader reader = ReaderOf("h\n1\n");
  ASSERT_TRUE(reader.Next());
  reader.Mark();
  EXPECT_EQ((Rows{{"1"}}), RowsOf(reader));
  reader.Rewind();
  EXPECT_EQ((Rows{{"1"}}), RowsOf(reader));
  EXPECT_FALSE(reader.Next());
}

// Written by the simplest rule, every text comes back: each field quoted, or plain
// where it may be.
TEST(CsvReaderProperty, WhatIsWrittenIsRead) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 source(seed);
    const auto below = [&source](unsigned n) { return static_cast<unsigned>(source()) % n; };
    Rows rows(1 + below(6));
    std::string text;
    for (std::vector<std::string>& row : rows) {
      row.resize(1 + below(4));
      for (std::size_t i = 0; i < row.size(); ++i) {
        for (unsigned n = below(20); n > 0; --n) row[i] += "ab ,\"\n\r\xC3"[below(8)];
        std::string doubled;
        for (const char c : row[i]) doubled += c == '"' ? "\"\"" : std::string(1, c);
        const bool isPlain = row[i].find_first_of(",\"\n\r") == std::string::npos;
        text += isPlain && below(2) == 0 ? row[i] : "\"" + doubled + "\"";
        text += i + 1 < row.size() ? "," : below(2) == 0 ? "\n" : "\r\n";
      }
    }
    CsvReader reader = ReaderOf(text, 1 + below(30));
    ASSERT_EQ(rows, RowsOf(reader));
  }
}

}  // namespace
}  // namespace TQTool
