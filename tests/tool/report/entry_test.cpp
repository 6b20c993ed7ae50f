#include "report/entry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;

// The small model's column under another name, with so many of its 4 events in the
// second bin; the more, the more its bins tell.
BinnedAttribute Column(const std::string& name, double events) {
  BinnedAttribute attribute = SmallModel().attributes[0];
  attribute.name = name;
  attribute.bins[0].categories[1].weight = 4.0 - events;
  attribute.bins[1].categories[1].weight = events;
  return attribute;
}

std::vector<std::string> NamesOf(const std::vector<ReportEntry>& entries) {
  std::vector<std::string> names;
  for (const ReportEntry& entry : entries) names.push_back(entry.attribute->name);
  return names;
}

TEST(RankedEntries, GreatestInformationGainComesFirst) {
  Model model = SmallModel();
  model.attributes = {Column("low", 2.0), Column("high", 4.0), Column("middle", 3.0)};
  const std::vector<ReportEntry> entries = RankedEntries(model);
  EXPECT_THAT(NamesOf(entries), ElementsAre("high", "middle", "low"));
  EXPECT_EQ("a2", entries[0].id);
  EXPECT_EQ(&model.targets[0], entries[0].target);
}

TEST(RankedEntries, WhatWasNotCutOrIsUnknownComesLastInItsOrder) {
  Model model = SmallModel();
  BinnedAttribute uncut = Column("uncut", 4.0);
  uncut.cuts.clear();
  BinnedAttribute unknown = Column("unknown", 4.0);
  unknown.bins[0].categories[0] = {};
  model.attributes = {uncut, unknown, Column("low", 2.0)};
  EXPECT_THAT(NamesOf(RankedEntries(model)), ElementsAre("low", "uncut", "unknown"));
}

TEST(RankedEntries, TargetsStayApart) {
  Model model = SmallModel();
  model.targets.push_back({"late", {"no", "yes"}, 0, {}});
  model.attributes = {Column("a", 2.0), Column("b", 4.0), Column("c", 3.0)};
  model.attributes[1].target = 1;
  EXPECT_THAT(NamesOf(RankedEntries(model)), ElementsAre("c", "a", "b"));
}

TEST(RankedEntries, WithoutTargetTheLeastEvenComesFirst) {
  Model model = SmallEqualFrequencyModel();
  model.attributes.push_back(model.attributes[0]);
  model.attributes[1].name = "uneven";
  model.attributes[1].bins[0].count.weight = 9.0;
  model.attributes[1].bins[1].count.weight = 1.0;
  EXPECT_THAT(NamesOf(RankedEntries(model)), ElementsAre("uneven", "income"));
  EXPECT_EQ(0.9, FullestShareOf(model.attributes[1]));
}

TEST(FullestShareOf, IsUnknownWithoutCases) {
  EXPECT_EQ(TQMV::gMissingValue, FullestShareOf(BinnedAttribute()));
}

}  // namespace
}  // namespace TQTool
