#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "common/runmemory.h"
#include "data/sortedvalues.h"
#include "data/sortmemory.h"
#include "data/variables.h"
#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/binaryrecorditerator.h"
#include "tqbinning/bincancelinfo.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/bindataset.h"
#include "tqbinning/binvarlist.h"

// What the tests of the data set share.
namespace data {

using support::Error;
using support::kMissing;
using support::kNaN;
using support::Rows;
using support::Variables;
using support::Warning;
using TQBinning::BinaryRecordIterator;
using TQBinning::SortedValues;
using TQBinning::TQStatus;
using Doubles = std::vector<double>;

class DataSet : public BINDataSet {
 public:
  using BINDataSet::BINDataSet;
  using BINDataSet::fFileNames;
  using BINDataSet::fNumberOfCases;
  using BINDataSet::fSupervisedTuples;
  using BINDataSet::fTargetColumn;
  using BINDataSet::fTargetReader;
  using BINDataSet::fUnsupervisedTuples;
  using BINDataSet::fWeightColumn;
  using BINDataSet::fWeightReader;
  using BINDataSet::GetSorted;
};

class Preparator : public BINDataPreparator {
 public:
  using BINDataPreparator::BINDataPreparator;
  using BINDataPreparator::fKeptCases;
};

// Rows, their variables and a data set over them, in a directory of its own.
struct Data {
  Data(const BINVarList& variables, const Rows& rows, TQQueryCancel* query = nullptr)
      : list(variables),
        cancelInfo(query),
        records(rows),
        preparator(list, cancelInfo, scratch.Path(), nullptr, 0),
        set(records, preparator) {}

  support::ScratchDirectory scratch;
  BINVarList list;
  BINCancelInfo cancelInfo;
  support::MemoryRecords records;
  Preparator preparator;
  DataSet set;
};

// The same with the data pass behind it.  Kinds as in Variables.
struct PreparedData : Data {
  PreparedData(const std::string& kinds, const Rows& rows, int categories = 256)
      : Data(Variables(kinds, categories), rows) {
    EXPECT_EQ(TQStatus(), set.HandleDataFile());
  }

  std::vector<BINDataTuple>* Supervised(unsigned int attribute, unsigned int target) {
    std::vector<BINDataTuple>* tuples = nullptr;
    EXPECT_EQ(TQStatus(), set.GetAttribute(attribute, target, tuples));
    return tuples;
  }
  std::vector<EFBINDataTuple>* Unsupervised(unsigned int attribute) {
    std::vector<EFBINDataTuple>* tuples = nullptr;
    EXPECT_EQ(TQStatus(), set.GetAttribute(attribute, tuples));
    return tuples;
  }
  std::string File(std::size_t column) const { return preparator.GetFileNames()[column]; }
};

using Case = std::tuple<double, int, double>;  // value, target, weight

inline std::vector<Case> CasesOf(const std::vector<BINDataTuple>& tuples, std::size_t count) {
  std::vector<Case> cases;
  for (std::size_t i = 0; i < count; ++i) {
    cases.emplace_back(tuples[i].value, tuples[i].target, tuples[i].weight);
  }
  return cases;
}

using WeightedValue = std::pair<double, double>;

inline std::vector<WeightedValue> CasesOf(const std::vector<EFBINDataTuple>& tuples,
                                          std::size_t count) {
  std::vector<WeightedValue> cases;
  for (std::size_t i = 0; i < count; ++i) cases.emplace_back(tuples[i].value, tuples[i].weight);
  return cases;
}

inline Rows OneFieldEach(const Doubles& values) {
  Rows rows;
  for (const double value : values) rows.push_back({value});
  return rows;
}

// A directory opens like a file, and every read of it fails.
inline void BreakTheDiskUnder(const std::string& file) {
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
}

}  // namespace data
