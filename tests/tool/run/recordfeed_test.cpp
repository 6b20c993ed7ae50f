#include "run/recordfeed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "input/csvsource.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

constexpr const char* kHeader = "t,w,a,b\n";

// What the library is fed from a text with the columns t, w, a and b.
struct Feed {
  std::vector<std::vector<double>> records;
  FedData fed;
  std::string error;
};

Feed FeedOf(const std::string& rows, bool withTarget = true, bool withWeight = true,
            const UserMissing& userMissing = {}) {
  CsvSource table(ReaderOf(kHeader + rows, 5));
  Columns columns;
  if (withTarget) columns.targets = {0};
  if (withWeight) columns.weight = 1;
  columns.attributes = {2, 3};
  const auto target = withTarget ? std::optional<std::size_t>(0) : std::nullopt;
  columns.pairs = {{0, target}, {1, target}};
  BinningOptions options;
  if (withTarget) options.targets = {"t"};
  options.userMissing = userMissing;
  BINVarList list = MakeVarList(table, columns, options);
  const MissingTokens missing(MissingTokens::Default());
  RecordFeed records(table, columns, missing, list);

  Feed feed;
  while (records.HasMore()) {
    const TQCommon::Record* const record = records.Next();
    if (record == nullptr) continue;
    std::vector<double>& values = feed.records.emplace_back();
    for (int i = 0; i < record->GetNumberOfFields(); ++i) values.push_back((*record)[i]);
  }
  EXPECT_EQ(nullptr, records.Next()) << "after the end";
  feed.fed = records.GetFedData();
  feed.error = ErrorOf([&records] { records.RethrowError(); });
  return feed;
}

TEST(RecordFeed, HandsOutTargetWeightAndAttributes) {
  const Feed feed = FeedOf("x,2,3.5,4\ny,1,5,6\nx,1,7,8\n");
  EXPECT_EQ("none", feed.error);
  EXPECT_THAT(feed.records, ElementsAre(ElementsAre(0, 2, 3.5, 4), ElementsAre(1, 1, 5, 6),
                                        ElementsAre(0, 1, 7, 8)));
}

TEST(RecordFeed, WorksWithoutTargetAndWeight) {
  EXPECT_THAT(FeedOf("x,?,3,4\n", false, false).records, ElementsAre(ElementsAre(3, 4)));
  EXPECT_THAT(FeedOf("x,7,3,4\n", false, true).records, ElementsAre(ElementsAre(7, 3, 4)));
  EXPECT_THAT(FeedOf("x,?,3,4\n", true, false).records, ElementsAre(ElementsAre(0, 3, 4)));
}

TEST(RecordFeed, MissingTextsBecomeTheLibrarysMissingValues) {
  const double missing = TQMV::gMissingValue;
  EXPECT_THAT(FeedOf("NA,,?,.\n").records, ElementsAre(ElementsAre(-1, missing, missing, missing)));
}

TEST(RecordFeed, AddsUpWhatCounts) {
  const Feed feed = FeedOf(
      "x,2,3,\n"      // counts, b missing
      "y,2.4,-1,9\n"  // weight 2
      "NA,5,100,100\n"
      "x,0.2,50,50\n"  // left out
      "x,,60,60\n");   // left out
  EXPECT_EQ(5U, feed.fed.rows);
  EXPECT_EQ(3U, feed.fed.cases);
  EXPECT_THAT(feed.fed.withoutTarget, ElementsAre(1));
  EXPECT_EQ(9.0, feed.fed.weight);
  EXPECT_EQ(4.0, feed.fed.pairs[0].validWeight);
  EXPECT_EQ(-1.0, feed.fed.pairs[0].minimum);
  EXPECT_EQ(3.0, feed.fed.pairs[0].maximum);
  EXPECT_EQ(2.0, feed.fed.pairs[1].validWeight);
  EXPECT_EQ(9.0, feed.fed.pairs[1].minimum);
}

TEST(RecordFeed, UserMissingValuesDoNotCount) {
  const Feed feed = FeedOf("x,1,9,1\nx,1,5,1\nx,1,2,1\n", true, true,
                           {{"a", {{9.0}, ClosedRange{4.0, 6.0}, {}}}});
  EXPECT_EQ(1.0, feed.fed.pairs[0].validWeight);
  EXPECT_EQ(2.0, feed.fed.pairs[0].maximum);
  EXPECT_EQ(3.0, feed.fed.pairs[1].validWeight);
}

TEST(RecordFeed, WeightsAreScaledAfterTheMissingOnesWereFound) {
  const auto weightsOf = [](const WeightRule& rule) {
    CsvSource table(ReaderOf("w,a\n8,1\n9,1\n4,1\n"));
    const Columns columns = {{}, 0, {1}, {{0, std::nullopt}}};
    BinningOptions options;
    options.settings.weightRounding = "none";
    BINVarList list = MakeVarList(table, columns, options);
    const MissingTokens missing(MissingTokens::Default());
    RecordFeed records(table, columns, missing, list, rule);
    std::vector<double> weights;
    while (records.HasMore()) {
      const TQCommon::Record* const record = records.Next();
      if (record != nullptr) weights.push_back((*record)[0]);
    }
    return weights;
  };
  const double missing = TQMV::gMissingValue;
  EXPECT_THAT(weightsOf({{{9.0}, std::nullopt, {}}, 0.5, 1.0}), ElementsAre(4, missing, 2));
  EXPECT_THAT(weightsOf({{{4.0}, std::nullopt, {}}, 0.5, 1.0}), ElementsAre(4, 4.5, missing));
  EXPECT_THAT(weightsOf({{}, 1.0, 4.0}), ElementsAre(2, 2.25, 1));
}

TEST(RecordFeed, EveryTargetHasCodesAndCountsOfItsOwn) {
  CsvSource table(ReaderOf("t,u,a\nx,p,1\ny,,2\nx,q,3\n"));
  const Columns columns = {{0, 1}, std::nullopt, {2}, {{0, 0}, {0, 1}}};
  BINVarList list = MakeVarList(table, columns, BinningOptions());
  const MissingTokens missing(MissingTokens::Default());
  RecordFeed records(table, columns, missing, list);
  std::vector<double> codes;
  while (records.HasMore()) {
    const TQCommon::Record* const record = records.Next();
    if (record != nullptr) codes.insert(codes.end(), {(*record)[0], (*record)[1], (*record)[2]});
  }
  EXPECT_THAT(codes, ElementsAre(0, 0, 1, 1, -1, 2, 0, 1, 3));
  EXPECT_THAT(records.GetFedData().withoutTarget, ElementsAre(0, 1));
  EXPECT_EQ(3.0, records.GetFedData().pairs[0].validWeight);
  EXPECT_EQ(2.0, records.GetFedData().pairs[1].validWeight);
}

TEST(RecordFeed, NothingValidLeavesTheExtremesUnknown) {
  const Feed feed = FeedOf("x,1,NA,1\n");
  EXPECT_EQ(0.0, feed.fed.pairs[0].validWeight);
  EXPECT_EQ(TQMV::gMissingValue, feed.fed.pairs[0].minimum);
  EXPECT_EQ(TQMV::gMissingValue, feed.fed.pairs[0].maximum);
}

TEST(RecordFeed, TextInANumericColumnEndsTheCasesAndIsKept) {
  const Feed feed = FeedOf("x,1,2,3\nx,1,2,three\nx,1,2,3\n");
  EXPECT_EQ(1U, feed.records.size());
  EXPECT_THAT(feed.error, StartsWith("3: f.csv:3:7: 'three' in column 'b' is not a number;"));
}

TEST(RecordFeed, InfinityIsAnErrorOfItsOwn) {
  EXPECT_THAT(FeedOf("x,1,-inf,3\n").error,
              StartsWith("3: f.csv:2:5: '-inf' in column 'a' is not finite;"));
  EXPECT_THAT(FeedOf("x,1e999,2,3\n").error,
              StartsWith("3: f.csv:2:3: '1e999' in column 'w' is not finite;"));
}

TEST(RecordFeed, NumbersWithCommasNameTheirOption) {
  EXPECT_TRUE(FeedOf("x,1,2,3\nx,1,\"2,5\",3\n").error.ends_with(", or say --decimal-comma"));
  EXPECT_FALSE(FeedOf("x,1,2.5x,3\n").error.ends_with("--decimal-comma"));
}

TEST(RecordFeed, BrokenCsvEndsTheCasesAndIsKept) {
  EXPECT_THAT(FeedOf("x,1,2,3\nx,1,2\n").error, StartsWith("3: f.csv:3:6: a row of 3 fields;"));
}

TEST(RecordFeed, TakesUpTo256Categories) {
  std::string rows;
  for (int i = 0; i < 256; ++i) rows += "c" + std::to_string(i) + ",1,2,3\n";
  EXPECT_EQ("none", FeedOf(rows).error);
  EXPECT_THAT(FeedOf(rows + "one more,1,2,3\n").error,
              StartsWith("3: f.csv:258:1: 'one more' is category number 257 of the target;"));
}

TEST(RecordFeed, CategoriesAreComparedExactly) {
  const Feed feed = FeedOf("x,1,2,3\nX,1,2,3\n x ,1,2,3\n1,1,2,3\n1.0,1,2,3\n");
  std::vector<double> codes;
  for (const std::vector<double>& record : feed.records) codes.push_back(record[0]);
  EXPECT_THAT(codes, ElementsAre(0, 1, 0, 2, 3));
}

}  // namespace
}  // namespace TQTool
