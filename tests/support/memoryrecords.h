#pragma once

#include <cstddef>
#include <limits>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tqcommon/tqcommon.h"

// Records kept in memory, that can also misbehave on demand.
namespace support {

using Rows = std::vector<std::vector<double>>;

inline const double kMissing = TQMV::gMissingValue;
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

inline TQCommon::Record MakeRecord(const std::vector<double>& fields) {
  TQCommon::Record record(static_cast<int>(fields.size()));
  for (std::size_t i = 0; i < fields.size(); ++i) record[static_cast<int>(i)] = fields[i];
  return record;
}

// Yields the given rows in order.  Counts the calls it gets; a call of Next whose
// number (from 0) was given to YieldNullAt yields null instead of the next row, and
// one given to ThrowAt throws std::runtime_error.
class MemoryRecords : public TQCommon::RecordIterator {
 public:
  explicit MemoryRecords(const Rows& rows) {
    for (const std::vector<double>& row : rows) fRecords.push_back(MakeRecord(row));
  }

  void YieldNullAt(std::size_t call) { fNullCalls.insert(call); }
  void ThrowAt(std::size_t call) { fThrowingCalls.insert(call); }

  bool HasMore() override {
    ++fHasMoreCalls;
    return fPosition < fRecords.size();
  }

  const TQCommon::Record* Next() override {
    const std::size_t call = fNextCalls++;
    if (fThrowingCalls.count(call) != 0) throw std::runtime_error("the host's iterator failed");
    if (fNullCalls.count(call) != 0 || fPosition >= fRecords.size()) return nullptr;
    return &fRecords[fPosition++];
  }

  std::size_t HasMoreCalls() const { return fHasMoreCalls; }
  std::size_t NextCalls() const { return fNextCalls; }

 private:
  std::vector<TQCommon::Record> fRecords;
  std::set<std::size_t> fNullCalls;
  std::set<std::size_t> fThrowingCalls;
  std::size_t fPosition = 0;
  std::size_t fHasMoreCalls = 0;
  std::size_t fNextCalls = 0;
};

// Claims to have more for ever and yields nothing.
class EndlessNulls : public TQCommon::RecordIterator {
 public:
  bool HasMore() override { return true; }
  const TQCommon::Record* Next() override { return nullptr; }
};

}  // namespace support
