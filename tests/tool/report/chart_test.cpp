#include "report/chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::Not;

const ChartWords kWords = {"a1", "Bins of income", "Two bins.", "rows", "paid"};

ShownBins SmallBins() {
  const Model model = SmallModel();
  return Condense(model.attributes[0], &model.targets[0], 10);
}

TEST(Chart, IsAPictureWithTitleAndDescription) {
  const std::string svg = DrawChart(SmallBins(), kWords);
  EXPECT_THAT(svg, HasSubstr(" role=\"img\" aria-labelledby=\"a1t a1d\""));
  EXPECT_THAT(svg, HasSubstr("<title id=\"a1t\">Bins of income</title>"));
  EXPECT_THAT(svg, HasSubstr("<desc id=\"a1d\">Two bins.</desc>"));
}

// Of 10 cases 7 are in the first bin and 3 in the second; the axis goes to 8.
TEST(Chart, BarsAreDrawnToScale) {
  EXPECT_THAT(DrawChart(SmallBins(), kWords),
              HasSubstr("<path class=\"bar\" d=\"M4 1000h92V125h-92zM104 1000h92V625h-92z\"/>"));
}

// 1 of 7 and 3 of 3 are events; no other is left in the second bin.
TEST(Chart, EventsStandBelowTheOthers) {
  const std::string svg = DrawChart(SmallBins(), kWords);
  EXPECT_THAT(svg, HasSubstr("<path class=\"event\" d=\"M4 1000h92V857h-92zM104 1000h92V0h-92z\"/>"
                             "<path class=\"noevent\" d=\"M4 857h92V0h-92z\"/>"));
}

// 4 of 10: 60 % of the panel's 150 pixels below its top at 182.
TEST(Chart, LineIsTheRateOfAllBins) {
  EXPECT_THAT(DrawChart(SmallBins(), kWords),
              HasSubstr("<line class=\"overall\" x2=\"100%\" y1=\"272\" y2=\"272\"/>"));
}

TEST(Chart, WithoutTargetThereAreBarsOnly) {
  const Model model = SmallEqualFrequencyModel();
  const ShownBins shown = Condense(model.attributes[0], nullptr, 10);
  const std::string svg = DrawChart(shown, {"a1", "t", "d", "weight", ""});
  EXPECT_THAT(svg, HasSubstr(">Weight per bin<"));
  EXPECT_THAT(svg, Not(HasSubstr("Share")));
  EXPECT_EQ("", DrawLegend(shown));
}

TEST(Chart, NamesCannotBecomeTags) {
  ShownBins shown = SmallBins();
  shown.attribute.labels = {"<b>", "\"'&"};
  shown.categories = {"<i>", "</svg>"};
  ChartWords words = kWords;
  words.target = words.title = words.description = "<script>";
  const std::string svg = DrawChart(shown, words) + DrawLegend(shown);
  for (const char* const tag : {"<b>", "<i>", "<script>"}) EXPECT_THAT(svg, Not(HasSubstr(tag)));
  EXPECT_EQ(svg.rfind("</svg> <bdi>&lt;i&gt;"), svg.rfind("</svg> <bdi>"));
}

TEST(Chart, LegendFollowsTheOrderFromBelow) {
  const std::string legend = DrawLegend(SmallBins());
  EXPECT_THAT(legend, HasSubstr("class=\"event\"/></svg> <bdi>yes</bdi> "
                                "<span class=\"soft\">40.0%</span></li><li>"));
  EXPECT_THAT(legend, HasSubstr("class=\"noevent\"/></svg> <bdi>no</bdi> "
                                "<span class=\"soft\">60.0%</span>"));
}

TEST(Chart, UnknownCountIsDescribedAsUnknown) {
  ShownBins shown = SmallBins();
  EXPECT_EQ("(2.5, inf): 3 rows, 25.0%; no 0.0%, yes 100.0%", DescribeBin(shown, 1, "rows"));
  shown.attribute.bins[1].count = {};
  shown.attribute.bins[1].categories = {{}, {}};
  EXPECT_EQ("(2.5, inf): ? rows, ?; no ?, yes ?", DescribeBin(shown, 1, "rows"));
  EXPECT_THAT(DrawLegend(shown), HasSubstr(">?<"));
}

}  // namespace
}  // namespace TQTool
