#include "input/sourceseries.h"

#include <map>

#include <gtest/gtest.h>

#include "input/csvsource.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

// Sources f0, f1, ... of these texts.
SourceSeries SeriesOf(const std::vector<std::string>& texts) {
  std::vector<std::string> inputs;
  std::map<std::string, std::string> files;
  for (const std::string& text : texts) {
    inputs.push_back("f" + std::to_string(inputs.size()));
    files[inputs.back()] = text;
  }
  return {inputs, [files](const std::string& input) {
            CsvReader reader(InBlocks(files.at(input), 5), input, ',');
            return std::make_unique<CsvSource>(std::move(reader));
          }};
}

std::string RowsOf(Source& source) {
  std::string rows;
  while (source.NextRow()) rows += std::string(source.GetField(0)) + " ";
  return rows;
}

TEST(SourceSeries, RowsFollowOneAnother) {
  SourceSeries series = SeriesOf({"a,b\n1,2\n3,4\n", "a,b\n", "a,b\n5,6\n"});
  EXPECT_EQ((std::vector<std::string>{"a", "b"}), series.GetNames());
  EXPECT_EQ("f0 and 2 more", series.GetName());
  EXPECT_EQ("1 3 5 ", RowsOf(series));
  EXPECT_EQ((std::vector<std::string>{"f0", "f1", "f2"}), series.GetInputNames());
  EXPECT_FALSE(series.NextRow());
}

TEST(SourceSeries, RewindsAcrossSources) {
  for (int rows = 0; rows <= 5; ++rows) {
    SourceSeries again = SeriesOf({"a,b\n1,2\n3,4\n", "a,b\n5,6\n", "a,b\n7,8\n"});
    again.Mark();
    for (int i = 0; i < rows; ++i) again.NextRow();
    again.Rewind();
    EXPECT_EQ("1 3 5 7 ", RowsOf(again)) << rows;
  }
}

TEST(SourceSeries, SaysInWhichSourceARowIs) {
  SourceSeries series = SeriesOf({"a,b\n1,2\n", "a,b\n\n5,6\n"});
  ASSERT_TRUE(series.NextRow());
  EXPECT_EQ("line 2 of f0", series.DescribeRow());
  ASSERT_TRUE(series.NextRow());
  EXPECT_EQ("line 3 of f1", series.DescribeRow());
  EXPECT_EQ("3: f1:3:3: m", ErrorOf([&] { series.FailAtField(1, "m"); }));
  EXPECT_EQ("3: f0:1: m", ErrorOf([&] { series.FailAtHeader("m"); }));
}

TEST(SourceSeries, OtherNamesAreAnError) {
  const auto errorIn = [](const std::string& header) {
    return ErrorOf([&] {
      SourceSeries series = SeriesOf({"a,b\n1,2\n", header + "\n1,2\n"});
      RowsOf(series);
    });
  };
  EXPECT_EQ("none", errorIn("a, b"));
  EXPECT_EQ(0U, errorIn("b,a").find("3: f1:1: column 1 is named 'b'; expected 'a', as in f0;"));
  EXPECT_EQ(0U, errorIn("a,c").find("3: f1:1: column 2 is named 'c'; expected 'b', as in f0;"));
  EXPECT_EQ(0U, errorIn("a").find("3: f1:1: 1 column; expected 2, as in f0;"));
  EXPECT_EQ(0U, errorIn("a,b,c").find("3: f1:1: 3 columns; expected 2, as in f0;"));
}

}  // namespace
}  // namespace TQTool
