#include "tqcommon/recorditerator.h"

#include <memory>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/memoryrecords.h"

namespace {

using support::MemoryRecords;
using TQCommon::Record;
using TQCommon::RecordIterator;

static_assert(std::is_abstract_v<RecordIterator>);
static_assert(std::has_virtual_destructor_v<RecordIterator>);

// Reads to the end as a consumer must: null is skipped, only HasMore ends.
std::vector<double> FirstFields(RecordIterator& records) {
  std::vector<double> fields;
  while (records.HasMore()) {
    if (const Record* record = records.Next()) fields.push_back((*record)[0]);
  }
  return fields;
}

TEST(RecordIterator, AHostsRecordsAreReadThroughTheInterface) {
  MemoryRecords records({{1.0}, {2.0}, {3.0}});
  EXPECT_THAT(FirstFields(records), testing::ElementsAre(1.0, 2.0, 3.0));
}

TEST(RecordIterator, ANullRecordIsNoEndOfData) {
  MemoryRecords records({{1.0}, {2.0}});
  records.YieldNullAt(1);
  EXPECT_THAT(FirstFields(records), testing::ElementsAre(1.0, 2.0));
}

class DeletionNoting : public RecordIterator {
 public:
  explicit DeletionNoting(bool& deleted) : fDeleted(deleted) {}
  ~DeletionNoting() override { fDeleted = true; }
  bool HasMore() override { return false; }
  const Record* Next() override { return nullptr; }

 private:
  bool& fDeleted;
};

TEST(RecordIterator, AHostsIteratorIsDeletedThroughTheInterface) {
  bool deleted = false;
  std::unique_ptr<RecordIterator> records = std::make_unique<DeletionNoting>(deleted);
  records.reset();
  EXPECT_TRUE(deleted);
}

}  // namespace
