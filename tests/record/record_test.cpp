#include "tqcommon/record.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/memoryrecords.h"

namespace {

using support::MakeRecord;
using testing::ElementsAre;
using testing::IsEmpty;
using TQCommon::Record;

std::vector<double> Fields(const Record& record) {
  std::vector<double> fields;
  for (int i = 0; i < record.GetNumberOfFields(); ++i) fields.push_back(record[i]);
  return fields;
}

TEST(Record, ANewRecordHoldsZeros) {
  const Record record(3);
  EXPECT_EQ(3, record.GetNumberOfFields());
  EXPECT_THAT(Fields(record), ElementsAre(0.0, 0.0, 0.0));
}

TEST(Record, ARecordMayHaveNoFields) {
  EXPECT_EQ(0, Record(0).GetNumberOfFields());
  EXPECT_THAT(Fields(Record(0)), IsEmpty());
}

TEST(Record, ANegativeNumberOfFieldsCountsAsZero) {
  EXPECT_EQ(0, Record(-1).GetNumberOfFields());
  EXPECT_EQ(0, Record(std::numeric_limits<int>::min()).GetNumberOfFields());
}

TEST(Record, EveryFieldIsStoredApart) {
  Record record(3);
  record[0] = 1.5;
  record[2] = -2.5;
  EXPECT_THAT(Fields(record), ElementsAre(1.5, 0.0, -2.5));
  record[0] = 4.0;
  EXPECT_THAT(Fields(record), ElementsAre(4.0, 0.0, -2.5));
}

TEST(Record, AnyDoubleCanBeStored) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Record record = MakeRecord(
      {TQMV::gMissingValue, infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), -0.0});
  EXPECT_EQ(TQMV::gMissingValue, record[0]);
  EXPECT_EQ(infinity, record[1]);
  EXPECT_EQ(-infinity, record[2]);
  EXPECT_TRUE(std::isnan(record[3]));
  EXPECT_TRUE(std::signbit(record[4]));
}

TEST(Record, ACopyIsDeep) {
  Record record = MakeRecord({1.0, 2.0});
  Record copy(record);
  record[0] = 9.0;
  copy[1] = 8.0;
  EXPECT_THAT(Fields(record), ElementsAre(9.0, 2.0));
  EXPECT_THAT(Fields(copy), ElementsAre(1.0, 8.0));
}

TEST(Record, AssignmentReplacesTheFieldsAndTheirNumber) {
  Record longer = MakeRecord({1.0, 2.0, 3.0});
  Record shorter = MakeRecord({7.0});
  longer = shorter;
  shorter[0] = 9.0;
  EXPECT_THAT(Fields(longer), ElementsAre(7.0));

  shorter = MakeRecord({4.0, 5.0});
  EXPECT_EQ(2, shorter.GetNumberOfFields());
  EXPECT_THAT(Fields(shorter), ElementsAre(4.0, 5.0));
}

TEST(Record, SelfAssignmentKeepsTheFields) {
  Record record = MakeRecord({1.0, 2.0});
  const Record& itself = record;
  record = itself;
  EXPECT_THAT(Fields(record), ElementsAre(1.0, 2.0));
}

}  // namespace
