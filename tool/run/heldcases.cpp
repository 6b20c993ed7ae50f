#include "run/heldcases.h"

#include <utility>

namespace TQTool {

HeldCases::HeldCases(int recordSize, std::size_t maxCases)
    : fRecordSize(recordSize), fMaxCases(maxCases) {}

void HeldCases::Add(const TQCommon::Record& record) {
  if (fCount == fChunks.size() * kChunkCases) {
    fChunks.push_back(std::make_unique_for_overwrite<double[]>(
        static_cast<std::size_t>(fRecordSize) * kChunkCases));
  }
  double* const chunk = fChunks.back().get();
  for (int variable = 0; variable < fRecordSize; ++variable) {
    chunk[PlaceOf(fCount, variable)] = record[variable];
  }
  ++fCount;
}

HeldCasesReader::HeldCasesReader(const HeldCases& cases, std::vector<int> variables)
    : fCases(cases),
      fVariables(std::move(variables)),
      fRecord(static_cast<int>(fVariables.size())) {}

const TQCommon::Record* HeldCasesReader::Next() {
  int field = 0;
  for (const int variable : fVariables) fRecord[field++] = fCases.Get(fNext, variable);
  ++fNext;
  return &fRecord;
}

}  // namespace TQTool
