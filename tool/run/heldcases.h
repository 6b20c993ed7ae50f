#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <tqcommon/tqcommon.h>

namespace TQTool {

// Cases in memory, column by column, so that several readers can each take some of the
// columns.  Readers may run beside each other, but not beside Add.
class HeldCases {
 public:
  // Room for `maxCases` cases of `recordSize` numbers; memory is taken as they come.
  HeldCases(int recordSize, std::size_t maxCases);

  // Only to be called while it is not full.
  void Add(const TQCommon::Record& record);

  bool IsFull() const { return fCount == fMaxCases; }
  std::size_t Count() const { return fCount; }
  double Get(std::size_t index, int variable) const {
    return fChunks[index / kChunkCases][PlaceOf(index, variable)];
  }

 private:
  static constexpr std::size_t kChunkCases = 4096;

  // In its chunk, where the cases of a column stand together.
  static std::size_t PlaceOf(std::size_t index, int variable) {
    return static_cast<std::size_t>(variable) * kChunkCases + index % kChunkCases;
  }

  int fRecordSize;
  std::size_t fMaxCases;
  std::size_t fCount = 0;
  std::vector<std::unique_ptr<double[]>> fChunks;
};

// Hands out held cases from the first on, each with the numbers of some variables only.
class HeldCasesReader : public TQCommon::RecordIterator {
 public:
  // `cases` are borrowed and complete.
  HeldCasesReader(const HeldCases& cases, std::vector<int> variables);

  bool HasMore() override { return fNext < fCases.Count(); }
  const TQCommon::Record* Next() override;

 private:
  const HeldCases& fCases;
  std::vector<int> fVariables;
  std::size_t fNext = 0;
  TQCommon::Record fRecord;
};

}  // namespace TQTool
