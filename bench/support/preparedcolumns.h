#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "bench/support/binningrun.h"
#include "bench/support/columns.h"
#include "support/scratchdirectory.h"
#include "tqbinning/tqbinning.h"

namespace bench {

// A data set whose data pass is done: a data set object over spooled column files,
// ready to hand out attributes.  Throws std::runtime_error when the pass fails.
class PreparedColumns {
 public:
  PreparedColumns(const Columns& columns, bool withTarget)
      : fList(MakeVarList(columns, withTarget)),
        fCancelInfo(nullptr),
        fRecords(columns, withTarget),
        fPreparator(fList, fCancelInfo, fDirectory.Path(), nullptr, 0),
        fDataSet(fRecords, fPreparator),
        fTarget(fList.GetTargetIndex()) {
    if (fDataSet.HandleDataFile().IsError()) throw std::runtime_error("the data pass failed");
  }

  BINDataSet& DataSet() { return fDataSet; }

  // The column file of attribute i.
  unsigned int ColumnOf(int i) const {
    return static_cast<unsigned int>(fPreparator.GetVariableIndex()[static_cast<std::size_t>(i)]);
  }
  const std::string& FileOf(int i) const { return fPreparator.GetFileNames()[ColumnOf(i)]; }

  // The sorted tuples of attribute i; the list must have, or lack, a target.
  std::vector<BINDataTuple>& SupervisedTuples(int i) {
    std::vector<BINDataTuple>* tuples = nullptr;
    const auto target = static_cast<unsigned int>(fTarget);
    Check(fDataSet.GetAttribute(static_cast<unsigned int>(i), target, tuples));
    return *tuples;
  }
  std::vector<EFBINDataTuple>& Tuples(int i) {
    std::vector<EFBINDataTuple>* tuples = nullptr;
    Check(fDataSet.GetAttribute(static_cast<unsigned int>(i), tuples));
    return *tuples;
  }

 private:
  static void Check(const TQBinning::TQStatus& status) {
    if (status.IsError()) throw std::runtime_error("an attribute cannot be had");
  }

  support::ScratchDirectory fDirectory;
  BINVarList fList;
  BINCancelInfo fCancelInfo;
  ColumnRecords fRecords;
  BINDataPreparator fPreparator;
  BINDataSet fDataSet;
  int fTarget;
};

}  // namespace bench
