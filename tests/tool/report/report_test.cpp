#include "report/report.h"

#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Report, RowsOfATwoCategoryTargetHoldTheMeasures) {
  const std::string page = WriteReport(SmallModel());
  EXPECT_THAT(page, HasSubstr("<tr><th scope=\"row\"><bdi>(-inf, 2.5]</bdi></th><td>7</td>"
                              "<td>58.3%</td><td>6</td><td>1</td><td>14.3%</td>"
                              "<td>\u22121.386</td><td>1.0397</td></tr>"));
  EXPECT_THAT(page, HasSubstr("<tr><th scope=\"row\">Total</th><td>10</td><td>83.3%</td>"
                              "<td>6</td><td>4</td><td>40.0%</td><td></td><td>2.9012</td></tr>"));
  EXPECT_THAT(page, HasSubstr("<tr><th scope=\"row\">Missing</th><td>2</td><td>16.7%</td>"
                              "<td></td><td></td><td></td><td></td><td></td></tr>"));
}

TEST(Report, MoreCategoriesHaveSharesButNoEvents) {
  Model model = SmallModel();
  model.targets[0].categories = {"no", "late", "yes"};
  for (Bin& bin : model.attributes[0].bins) bin.categories.push_back({0.0, 0.0});
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("<td>7</td><td>58.3%</td>"
                              "<td>6 <span class=\"soft\">85.7%</span></td>"
                              "<td>1 <span class=\"soft\">14.3%</span></td>"
                              "<td>0 <span class=\"soft\">0.0%</span></td></tr>"));
  EXPECT_THAT(page, Not(HasSubstr("<th scope=\"col\">Event rate")));
}

TEST(Report, WeightsStandBesideTheRows) {
  Model model = SmallModel();
  model.settings.weight = "n";
  model.attributes[0].bins[0].count = {1234.5, 7.0};
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("<th scope=\"col\">Weight</th><th scope=\"col\">Rows</th>"));
  EXPECT_THAT(page, HasSubstr("<td>1,234.500</td><td>7</td>"));
}

TEST(Report, StatusComesWithReasonAndRemedyAndWithoutAChart) {
  Model model = SmallModel();
  BinnedAttribute& income = model.attributes[0];
  income.status = TQBinning::TQStatus(TQBinning::kNoCutAccepted, true);
  income.cuts.clear();
  income.bins = EmptyBins({});
  income.bins[0].categories.resize(2);
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("<strong class=\"state warning\">warning</strong> not cut: no cut "
                              "separates the target&#39;s categories well enough. What to do: "));
  EXPECT_THAT(page, Not(HasSubstr("class=\"chart")));
  EXPECT_THAT(page, HasSubstr("<table class=\"bins\">"));
}

TEST(Report, AttributeWithoutCasesHasItsStatusOnly) {
  Model model = SmallModel();
  BinnedAttribute& income = model.attributes[0];
  income.status = TQBinning::TQStatus(TQBinning::kNoValidCase, true);
  income.cuts.clear();
  income.bins.clear();
  income.numDistinct = 0;
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("every value is missing"));
  EXPECT_THAT(page, Not(HasSubstr("<table class=\"bins\">")));
}

TEST(Report, UnknownCountsOfEditedBinsAreQuestionMarks) {
  Model model = SmallModel();
  BinnedAttribute& income = model.attributes[0];
  income.isEdited = true;
  income.bins[1].count = {};
  income.bins[1].categories = {{}, {}};
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("(2.5, inf)</bdi></th><td>?</td><td>?</td><td>?</td><td>?</td>"
                              "<td>?</td><td>?</td><td>?</td></tr>"));
  EXPECT_THAT(page, HasSubstr("The fullest bin of those counted is (-inf, 2.5]"));
}

TEST(Report, EveryTargetHasAnOverviewOfItsOwn) {
  Model model = SmallModel();
  model.targets.push_back({"late", {"no", "yes"}, 3, {}});
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].target = 1;
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("their bins tell about <bdi>paid</bdi></caption>"));
  EXPECT_THAT(page, HasSubstr("their bins tell about <bdi>late</bdi></caption>"));
  EXPECT_THAT(page, HasSubstr("<h3 id=\"a2h\"><bdi>income by late</bdi></h3>"));
  EXPECT_THAT(page, HasSubstr("<dt>Not counted</dt><dd>3 without target late</dd>"));
}

TEST(Report, WhatIsJoinedOrSummedUpIsSaid) {
  Model model = SmallModel();
  BinnedAttribute& income = model.attributes[0];
  income.cuts.clear();
  for (int c = 1; c < 30; ++c) income.cuts.push_back(c);
  income.bins = EmptyBins(income.cuts);
  model.targets[0].categories.assign(10, "c");
  for (Bin& bin : income.bins) bin.categories.assign(10, {1.0, 1.0});
  model.attributes.resize(1000, income);  // so many that each may have 20 rows only
  EXPECT_THAT(WriteReport(model),
              HasSubstr("<p class=\"note\">The 30 bins are shown as 15 groups of up to 2 "
                        "neighbours. The 7 most frequent categories are shown, the 3 others "
                        "summed up. The model file has each of them.</p>"));
}

TEST(Report, ModelWithoutAttributesIsAPageStill) {
  Model model = SmallModel();
  model.attributes.clear();
  const std::string page = WriteReport(model);
  EXPECT_THAT(page, HasSubstr("</html>"));
  EXPECT_THAT(page, Not(HasSubstr("#overview")));
}

// Whatever a file, a column, a target, a category or a label is called, the page has the
// tags that it has for a harmless name.
TEST(Report, NamesFromDataAddNoTag) {
  Model harmless = SmallModel();
  harmless.settings.weight = "n";
  harmless.created = "now";
  harmless.attributes[0].labels = {"a", "b"};
  Model model = harmless;
  const std::string evil = "'\"><script>alert(1)</script><img src=//x onerror=a>&lt;";
  model.input.names = {evil};
  model.settings.weight = evil;
  model.created = model.toolVersion = evil;
  model.targets[0].name = evil;
  model.targets[0].categories = {evil, evil + "2"};
  model.attributes[0].name = evil;
  model.attributes[0].labels = {evil, evil};
  const auto tagsOf = [](const std::string& page) {
    const std::regex quoted("\"[^\"]*\"");
    std::string tags;
    const std::regex tag("<[^>]*>");
    for (std::sregex_iterator i(page.begin(), page.end(), tag), end; i != end; ++i) {
      tags += std::regex_replace(i->str(), quoted, "");
    }
    return tags;
  };
  EXPECT_EQ(tagsOf(WriteReport(harmless)), tagsOf(WriteReport(model)));
}

}  // namespace
}  // namespace TQTool
