#include "input/csvsource.h"

#include <gtest/gtest.h>

#include "tooltesting.h"

namespace TQTool {
namespace {

std::string ErrorIn(const std::string& text) {
  return ErrorOf([&text] {
    CsvSource table(ReaderOf(text));
    while (table.NextRow()) {
    }
  });
}

int CountRows(const std::string& text) {
  CsvSource table(ReaderOf(text));
  int rows = 0;
  while (table.NextRow()) ++rows;
  return rows;
}

TEST(CsvSource, TakesNamesFromTheHeaderWithoutBlanks) {
  const CsvSource table(ReaderOf("\n a ,\"b c\",\n1,2,3\n"));
  EXPECT_EQ((std::vector<std::string>{"a", "b c", ""}), table.GetNames());
  EXPECT_EQ(1U, table.GetColumn("b c"));
  EXPECT_EQ(std::nullopt, table.FindColumn("b"));
  EXPECT_EQ(std::nullopt, table.FindColumn(""));
}

TEST(CsvSource, FieldsLoseTheBlanksAroundThem) {
  CsvSource table(ReaderOf("a,b\n \t1 , \n"));
  ASSERT_TRUE(table.NextRow());
  EXPECT_EQ("1", table.GetField(0));
  EXPECT_EQ("", table.GetField(1));
}

TEST(CsvSource, EmptyLinesArePassedOverUnlessThereIsOneColumn) {
  EXPECT_EQ(2, CountRows("a,b\n\n1,2\n\n\n3,4\n\n"));
  EXPECT_EQ(3, CountRows("a\n1\n\n3\n"));
}

TEST(CsvSource, EmptyInputIsAnError) {
  EXPECT_TRUE(ErrorIn("").starts_with("3: f.csv:1: the input is empty;")) << ErrorIn("");
  EXPECT_TRUE(ErrorIn("\n\n").starts_with("3: f.csv:1: the input is empty;"));
}

TEST(CsvSource, RepeatedNameIsAnErrorButRepeatedNamelessnessIsNot) {
  const std::string error = ErrorIn("a,b,a\n");
  EXPECT_TRUE(error.starts_with("3: f.csv:1:5: a second column is named 'a';")) << error;
  EXPECT_EQ("none", ErrorIn(",a,\n1,2,3\n"));
}

TEST(CsvSource, LoneCarriageReturnsInTheHeaderAreAnError) {
  const std::string error = ErrorIn("a,b\r1,2\r");
  EXPECT_TRUE(error.starts_with("3: f.csv:1:3: a carriage return without a line feed")) << error;
}

TEST(CsvSource, RowsOfAnotherLengthAreAnError) {
  const std::string tooShort = ErrorIn("a,b,c\n1,2,3\n4,5\n");
  EXPECT_TRUE(tooShort.starts_with("3: f.csv:3:4: a row of 2 fields; expected 3,")) << tooShort;
  const std::string tooLong = ErrorIn("a\n4,5\n");
  EXPECT_TRUE(tooLong.starts_with("3: f.csv:2:3: a row of 2 fields; expected 1,")) << tooLong;
  EXPECT_TRUE(ErrorIn("a,b\n7\n").starts_with("3: f.csv:2:2: a row of 1 field; expected 2,"));
}

TEST(CsvSource, UnknownColumnComesWithTheNearestName) {
  const CsvSource table(ReaderOf("\nheight,weight\n1,2\n"));
  EXPECT_EQ("3: f.csv:2: no column is named 'hight'; did you mean 'height'?",
            ErrorOf([&] { table.GetColumn("hight"); }));
  EXPECT_EQ("3: f.csv:2: no column is named 'x'; there are 2 columns; look at the header line",
            ErrorOf([&] { table.GetColumn("x"); }));
}

TEST(CsvSource, SingleColumnMakesTheDelimiterSuspect) {
  const CsvSource table(ReaderOf("a;b\n1;2\n"));
  EXPECT_EQ(
      "3: f.csv:1: no column is named 'a'; there is only 'a;b'; is another --delimiter "
      "needed?",
      ErrorOf([&] { table.GetColumn("a"); }));
}

TEST(CsvSource, EstimatesTheRowsFromTheLengthOfThoseLookedAt) {
  CsvSource table(ReaderOf("a,b\n1,2\n3,4\n5,6789\n"), '.', 4000);
  EXPECT_EQ(std::nullopt, table.EstimateRows());
  table.Mark();
  table.NextRow();
  table.NextRow();
  table.Rewind();
  EXPECT_EQ(1000.0, table.EstimateRows());
}

TEST(CsvSource, EstimatesNothingWhenTheSizeIsNotKnownOrNoRowIsThere) {
  CsvSource ofUnknownSize(ReaderOf("a,b\n1,2\n"));
  CsvSource empty(ReaderOf("a,b\n"), '.', 4000);
  for (CsvSource* const table : {&ofUnknownSize, &empty}) {
    table->Mark();
    table->NextRow();
    table->Rewind();
    EXPECT_EQ(std::nullopt, table->EstimateRows());
  }
}

}  // namespace
}  // namespace TQTool
