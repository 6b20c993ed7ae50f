#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "data/variables.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/bincancelinfo.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binusermissing.h"
#include "tqbinning/binvarlist.h"

// What the tests of the preparator share.
namespace metadata {

using support::Error;
using support::kInfinity;
using support::kMissing;
using support::kNaN;
using support::Rows;
using support::Variables;
using support::Warning;
using TQBinning::TQStatus;
using Doubles = std::vector<double>;
using Ints = std::vector<int>;
using Names = std::vector<std::string>;

class Preparator : public BINDataPreparator {
 public:
  using BINDataPreparator::BINDataPreparator;
  using BINDataPreparator::fCache;
  using BINDataPreparator::fCacheCapacity;
  using BINDataPreparator::fDropCase;
  using BINDataPreparator::fFileNames;
  using BINDataPreparator::fHasTarget;
  using BINDataPreparator::fHasWeight;
  using BINDataPreparator::fInputIndices;
  using BINDataPreparator::fInputRecSize;
  using BINDataPreparator::fMeasureLevels;
  using BINDataPreparator::fOrigRecSize;
  using BINDataPreparator::fPossibleInputs;
  using BINDataPreparator::fProcRecSize;
  using BINDataPreparator::fRoles;
  using BINDataPreparator::fTargetIndex;
  using BINDataPreparator::fTwoToThe64;
  using BINDataPreparator::fUserMissing;
  using BINDataPreparator::fWeightEncoder;
  using BINDataPreparator::fWeightNewIndex;
  using BINDataPreparator::fWeightOriginalIndex;
};

// What a pass may be given besides its variables.
struct Options {
  TQQueryCancel* query = nullptr;
  ProgressListener* listener = nullptr;
  int interval = 0;
  std::string suffix = "";  // what follows the scratch directory's path
};

// A preparator with all that it borrows, in a directory of its own.
struct Pass {
  explicit Pass(const BINVarList& variables, const Options& options = {})
      : list(variables),
        cancelInfo(options.query),
        preparator(list, cancelInfo, scratch.Path() + options.suffix, options.listener,
                   options.interval) {}

  TQStatus Run(const Rows& rows) {
    support::MemoryRecords records(rows);
    return preparator.ProcessSource(records);
  }
  Doubles Column(std::size_t column) const {
    return support::ReadColumn(preparator.GetFileNames()[column]);
  }
  bool IsValid(int column) {
    bool isValid = false;
    EXPECT_EQ(TQStatus(), preparator.IsValidTarget(column, isValid));
    return isValid;
  }
  Names Files(const Names& names) const {
    Names files;
    for (const std::string& name : names) files.push_back(scratch.File(name));
    return files;
  }

  support::ScratchDirectory scratch;
  BINVarList list;
  BINCancelInfo cancelInfo;
  Preparator preparator;
};

// Rows with something that happens whenever the next one is asked for.
class EventfulRecords : public support::MemoryRecords {
 public:
  EventfulRecords(const Rows& rows, std::function<void()> event)
      : MemoryRecords(rows), fEvent(std::move(event)) {}
  const TQCommon::Record* Next() override {
    fEvent();
    return MemoryRecords::Next();
  }

 private:
  std::function<void()> fEvent;
};

inline Rows OneFieldEach(const Doubles& values) {
  Rows rows;
  for (const double value : values) rows.push_back({value});
  return rows;
}

}  // namespace metadata
