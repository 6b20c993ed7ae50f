#include "run/columns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tqcommon/tqcommon.h>

#include "input/csvsource.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// What ChooseColumns makes of a text, and what it says on standard error.
struct Choice {
  Columns columns;
  std::string notes;
  std::string error = "none";
  std::string firstField;  // of the next row afterwards
};

Choice ChooseIn(const std::string& text, const BinningOptions& options) {
  Choice choice;
  CsvSource table(ReaderOf(text));
  const MissingTokens missing(MissingTokens::Default());
  testing::internal::CaptureStderr();
  choice.error = ErrorOf([&] { choice.columns = ChooseColumns(table, options, missing); });
  choice.notes = testing::internal::GetCapturedStderr();
  if (table.NextRow()) choice.firstField = table.GetField(0);
  return choice;
}

BinningOptions WithTarget(const std::string& target) {
  BinningOptions options;
  options.targets = {target};
  return options;
}

TEST(ChooseColumns, TakesNumericColumnsButTargetAndWeight) {
  BinningOptions options = WithTarget("t");
  options.settings.weight = "w";
  const Choice choice = ChooseIn("a,t,b,w,c\n1,2,x,4,NA\n,2,y,4,-5e3\n", options);
  EXPECT_EQ("none", choice.error);
  EXPECT_THAT(choice.columns.targets, ElementsAre(1));
  EXPECT_EQ(3U, choice.columns.weight);
  EXPECT_THAT(choice.columns.attributes, ElementsAre(0, 4));
  EXPECT_EQ("tqbin: note: skipped 1 column because of text: b ('x' in line 2)\n", choice.notes);
  EXPECT_EQ("1", choice.firstField);
}

TEST(ChooseColumns, SaysWhatItSkipsAndWhy) {
  const Choice choice = ChooseIn("a,,b,c,d,e,f,g,h\n1,2,,p,q,r,s,t,u\n", BinningOptions());
  EXPECT_THAT(choice.columns.attributes, ElementsAre(0));
  EXPECT_EQ(
      "tqbin: note: skipped 1 column without a name in the header: column 2\n"
      "tqbin: note: skipped 6 columns because of text: c ('p' in line 2), d ('q' in line 2), "
      "e ('r' in line 2), f ('s' in line 2), g ('t' in line 2) and 1 more\n"
      "tqbin: note: skipped 1 column with nothing but missing values in the first rows: b\n",
      choice.notes);
}

TEST(ChooseColumns, LooksAtTheFirstThousandRowsOnly) {
  std::string text = "a,b\n";
  for (int i = 0; i < 999; ++i) text += "1,2\n";
  EXPECT_THAT(ChooseIn(text + "1,x\n", BinningOptions()).columns.attributes, ElementsAre(0));
  EXPECT_THAT(ChooseIn(text + "1,2\n1,x\n", BinningOptions()).columns.attributes,
              ElementsAre(0, 1));
}

TEST(ChooseColumns, TakesInfinityForANumberSoThatItIsReportedAsAnError) {
  EXPECT_THAT(ChooseIn("a\ninf\n", BinningOptions()).columns.attributes, ElementsAre(0));
}

TEST(ChooseColumns, TakesNamedColumnsInTheOrderGivenAndOnce) {
  BinningOptions options;
  options.attributes = {"c, a", "b", "a"};
  const Choice choice = ChooseIn("a,b,c\nx,y,z\n", options);
  EXPECT_THAT(choice.columns.attributes, ElementsAre(2, 0, 1));
  EXPECT_EQ("", choice.notes);
}

TEST(ChooseColumns, NameWithCommasIsANameFirst) {
  BinningOptions options;
  options.attributes = {"a,b"};
  EXPECT_THAT(ChooseIn("a,b,\"a,b\"\n1,2,3\n", options).columns.attributes, ElementsAre(2));
}

TEST(ChooseColumns, UnknownNamesAreErrors) {
  BinningOptions options = WithTarget("tt");
  EXPECT_EQ("3: f.csv:1: no column is named 'tt'; did you mean 't'?",
            ChooseIn("a,t\n1,2\n", options).error);
  options = WithTarget("t");
  options.attributes = {"a,"};
  EXPECT_THAT(ChooseIn("a,t\n1,2\n", options).error, StartsWith("3: f.csv:1: no column is "));
}

TEST(ChooseColumns, ColumnInTwoRolesIsAnError) {
  BinningOptions options = WithTarget("t");
  options.settings.weight = "t";
  EXPECT_EQ("2: --weight: 't' is a target already; expected another column",
            ChooseIn("a,t\n1,2\n", options).error);
  options.settings.weight = "a";
  options.attributes = {"a"};
  EXPECT_EQ("2: --attribute: 'a' is the weight already; expected another column",
            ChooseIn("a,t\n1,2\n", options).error);
}

TEST(ChooseColumns, EveryAttributeGoesAgainstEveryTarget) {
  BinningOptions options;
  options.targets = {"t", "u", "t"};
  const Columns columns = ChooseIn("a,t,b,u\n1,2,3,4\n", options).columns;
  EXPECT_THAT(columns.targets, ElementsAre(1, 3));
  EXPECT_THAT(columns.attributes, ElementsAre(0, 2));
  EXPECT_THAT(columns.pairs,
              ElementsAre(ColumnPair{0, 0}, ColumnPair{0, 1}, ColumnPair{1, 0}, ColumnPair{1, 1}));
}

TEST(ChooseColumns, WithoutTargetAttributesStandAlone) {
  const Columns columns = ChooseIn("a,b\n1,2\n", BinningOptions()).columns;
  EXPECT_THAT(columns.pairs, ElementsAre(ColumnPair{0, std::nullopt}, ColumnPair{1, std::nullopt}));
}

TEST(ChooseColumns, NamedPairsAreSortedByAttributeAndTakenOnce) {
  BinningOptions options;
  options.pairs = {{"b", "u"}, {"a", "t"}, {"b", "t"}, {"b", "u"}};
  const Choice choice = ChooseIn("a,t,b,u,c\n1,2,3,4,5\n", options);
  EXPECT_EQ("none", choice.error);
  EXPECT_THAT(choice.columns.attributes, ElementsAre(2, 0));
  EXPECT_THAT(choice.columns.targets, ElementsAre(3, 1));
  EXPECT_THAT(choice.columns.pairs,
              ElementsAre(ColumnPair{0, 0}, ColumnPair{0, 1}, ColumnPair{1, 1}));
}

TEST(ChooseColumns, PairThatBinsATargetIsAnError) {
  BinningOptions options;
  options.pairs = {{"a", "t"}, {"t", "u"}};
  EXPECT_EQ("2: --pair: 't' is a target already; expected another column",
            ChooseIn("a,t,u\n1,2,3\n", options).error);
}

TEST(ChooseColumns, TableWithoutRowsOrNumbersIsAnError) {
  EXPECT_THAT(ChooseIn("a,b\n", BinningOptions()).error, StartsWith("3: f.csv:1: no row follows"));
  BinningOptions named;
  named.attributes = {"a"};
  EXPECT_THAT(ChooseIn("a,b\n", named).error, StartsWith("3: f.csv:1: no row follows"));
  EXPECT_THAT(ChooseIn("a,b\nx,y\n", BinningOptions()).error,
              StartsWith("3: f.csv:1: no column can be binned"));
}

// The list that MakeVarList makes for a table of columns t, w, a and b.
BINVarList ListFor(const BinningOptions& options) {
  const CsvSource table(ReaderOf("a,b,t,w\n1,2,x,3\n"));
  return MakeVarList(table, {{2}, 3, {1, 0}, {}}, options);
}

TEST(MakeVarList, ListsTargetWeightAndAttributes) {
  const BINVarList list = ListFor(WithTarget("t"));
  ASSERT_EQ(4, list.Size());
  EXPECT_EQ(0, list.GetTargetIndex());
  EXPECT_EQ(1, list.GetWeightIndex());
  EXPECT_EQ("b", list.GetVarAt(2)->GetVariableName());
  EXPECT_EQ("a", list.GetVarAt(3)->GetVariableName());
  EXPECT_EQ(256, list.GetNTargetCats());
  EXPECT_EQ(IBINVariable::kStringCategorical, list.GetVarAt(0)->GetMeasureLevel());
}

TEST(MakeVarList, ListsTheFirstTargetAsTargetAndTheOthersBehindIt) {
  const CsvSource table(ReaderOf("a,b,t,w\n1,2,x,3\n"));
  const Columns columns = {{2, 0}, 3, {1}, {}};
  const BINVarList list = MakeVarList(table, columns, BinningOptions());
  ASSERT_EQ(4, list.Size());
  EXPECT_EQ(0, list.GetTargetIndex());
  EXPECT_EQ("a", list.GetVarAt(TargetVariable(1))->GetVariableName());
  EXPECT_EQ(IBINVariable::kStringCategorical, list.GetVarAt(1)->GetMeasureLevel());
  EXPECT_EQ(WeightVariable(columns), list.GetWeightIndex());
  EXPECT_EQ("b", list.GetVarAt(AttributeVariable(columns, 0))->GetVariableName());
}

TEST(MakeVarList, RoundsWeightsAsAsked) {
  const auto rounded = [](const std::string& rule) {
    BinningOptions options = WithTarget("t");
    options.settings.weightRounding = rule;
    const BINVarList list = ListFor(options);
    return dynamic_cast<const BINRoundEncoder*>(list.GetEncoderAt(1))->Encode(2.75);
  };
  EXPECT_EQ(3.0, rounded("closest"));
  EXPECT_EQ(2.0, rounded("down"));
  EXPECT_EQ(2.75, rounded("none"));
}

TEST(MakeVarList, HandsUserMissingValuesOn) {
  BinningOptions options = WithTarget("t");
  options.userMissing = {{"a", {{9.0}, ClosedRange{5.0, 6.0}, {}}},
                         {"t", {{}, std::nullopt, {"x"}}},
                         {"w", {{1.0}, std::nullopt, {}}}};
  BINVarList list = ListFor(options);
  const auto* const missing =
      dynamic_cast<const BINNumericUserMissing*>(list.GetVarAt(3)->GetUserMissingInfo());
  ASSERT_NE(nullptr, missing);
  EXPECT_TRUE(missing->Contains(9.0));
  EXPECT_TRUE(missing->Contains(5.5));
  EXPECT_FALSE(missing->Contains(8.0));
  EXPECT_EQ(nullptr, list.GetVarAt(2)->GetUserMissingInfo());
  EXPECT_EQ(-1.0, dynamic_cast<BINStringEncoder*>(list.GetEncoderAt(0))->Encode("x"));
  EXPECT_EQ(1.0, dynamic_cast<BINRoundEncoder*>(list.GetEncoderAt(1))->Encode(1.0))
      << "the feed finds missing weights";
}

TEST(MakeVarList, UserMissingValuesOfAColumnThatTakesNoPartAreAnError) {
  const CsvSource table(ReaderOf("a,b\n1,2\n"));
  BinningOptions options;
  options.userMissing = {{"b", {{9.0}, std::nullopt, {}}}};
  EXPECT_THAT(ErrorOf([&] {
                MakeVarList(table, {{}, std::nullopt, {0}, {}}, options);
              }),
              HasSubstr("--user-missing names 'b', which takes no part;"));
  options.userMissing = {{"c", {}}};
  EXPECT_THAT(ErrorOf([&] {
                MakeVarList(table, {{}, std::nullopt, {0}, {}}, options);
              }),
              StartsWith("3: f.csv:1: no column is named 'c'"));
}

}  // namespace
}  // namespace TQTool
