#pragma once

#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/hostfakes.h"
#include "support/memoryrecords.h"
#include "support/scratchdirectory.h"
#include "tqbinning/binalgorithm.h"
#include "tqbinning/bindatapreparator.h"
#include "tqbinning/bindataset.h"
#include "tqbinning/binefpreprocess.h"
#include "tqbinning/efbinalgorithm.h"

// The vocabulary of the algorithms' tests: short notations for statuses, variable
// lists and whole runs.

namespace TQBinning {

// How a failed comparison shows a status.
inline void PrintTo(const TQStatus& status, std::ostream* os) {
  *os << (status.IsOK()      ? "OK "
          : status.IsError() ? "error "
                             : "warning ")
      << status.GetErrorCode() << " {";
  for (unsigned int i = 0; i < 3; ++i) {
    *os << ' ' << status.GetDiscreteDatum(i) << '/' << status.GetScaleDatum(i);
  }
  *os << " }";
}

}  // namespace TQBinning

namespace support {

using Indices = std::vector<int>;
using Numbers = std::vector<double>;
using Table = std::vector<std::vector<double>>;
using TQBinning::TQStatus;

inline TQStatus OK() { return TQStatus(); }
inline TQStatus Error(long code) { return TQStatus(code, false); }
inline TQStatus Warning(long code) { return TQStatus(code, true); }
inline TQStatus Warning(long code, long datum0) {
  TQStatus status(code, true);
  status.SetDiscreteDatum(0, datum0);
  return status;
}

// A list with one variable per letter, named v0, v1, ...: x a continuous attribute,
// y a target of `categories` categories, c an attribute of that many, w a weight
// that is rounded, f one that is used as it is.
inline BINVarList VarList(const std::string& letters, int categories = 2) {
  BINVarList list;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    std::string name = "v";
    name += std::to_string(i);
    switch (letters[i]) {
      case 'x': list.AddContVar(name, "", IBINVariable::kAttribute); break;
      case 'y':
        list.AddCatVar(name, "", categories, IBINVariable::kNumericCategorical,
                       IBINVariable::kTarget);
        break;
      case 'c':
        list.AddCatVar(name, "", categories, IBINVariable::kNumericCategorical,
                       IBINVariable::kAttribute);
        break;
      case 'w': list.AddWeightVar(name, "", IBINVariable::kRoundToClosest); break;
      case 'f':
        list.AddWeightVar(name, "", static_cast<IBINVariable::BINWRoundingOption>(2));
        break;
      default: ADD_FAILURE() << "no variable is written " << letters[i];
    }
  }
  return list;
}

// One list per argument, so that columns can be written as they are thought of.
inline Rows Columns(const std::vector<Numbers>& columns) {
  Rows rows(columns.at(0).size());
  for (const Numbers& column : columns) {
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].push_back(column.at(i));
  }
  return rows;
}

// The algorithms with their insides out.
class OpenAlgorithm : public BINAlgorithm {
 public:
  using BINAlgorithm::BINAlgorithm;
  using BINAlgorithm::CheckVariableIndices;
  using BINAlgorithm::DoCancel;
  using BINAlgorithm::fDataSet;
  using BINAlgorithm::fNumCategories;
  using BINAlgorithm::fOutput;
  using BINAlgorithm::fPreparator;
  using BINAlgorithm::fPreProcess;
  using BINAlgorithm::fRecordCount;
  using BINAlgorithm::fRightBorderClosed;
  using BINAlgorithm::fSettings;
  using BINAlgorithm::fStatus;
  using BINAlgorithm::fTuples;
  using BINAlgorithm::RunAlgorithm;
};

class OpenEFAlgorithm : public EFBINAlgorithm {
 public:
  using EFBINAlgorithm::CheckVariableIndices;
  using EFBINAlgorithm::DoCancel;
  using EFBINAlgorithm::EFBINAlgorithm;
  using EFBINAlgorithm::fIndexStatuses;
  using EFBINAlgorithm::fOutput;
  using EFBINAlgorithm::fPreparator;
  using EFBINAlgorithm::fPreProcess;
  using EFBINAlgorithm::fRecordCount;
  using EFBINAlgorithm::fSettings;
  using EFBINAlgorithm::fStatus;
  using EFBINAlgorithm::RunAlgorithm;
};

// A supervised run over records in memory, with a temporary directory of its own
// and 2 bins.  Settings can be changed until the algorithm is first used.
class SupervisedRun {
 public:
  SupervisedRun(const std::string& letters, const Rows& rows, int categories = 2)
      : list(VarList(letters, categories)), records(rows) {
    settings.SetTempDirName(directory.Path());
    EXPECT_TRUE(settings.SetNumberOfBins(2));
  }

  OpenAlgorithm& Algorithm() {
    if (fAlgorithm == nullptr) fAlgorithm = std::make_unique<OpenAlgorithm>(settings, list);
    return *fAlgorithm;
  }
  void DeleteAlgorithm() { fAlgorithm.reset(); }

  TQStatus CreateBins() { return Algorithm().CreateBins(records, nullptr, nullptr); }
  TQStatus CreateBins(const Indices& attributes) {
    return Algorithm().CreateBins(records, &attributes, nullptr);
  }
  TQStatus CreateBins(const Indices& attributes, const Indices& targets) {
    return Algorithm().CreateBins(records, &attributes, &targets);
  }

  std::vector<BINAttributeTargetResults> Results() {
    std::vector<BINAttributeTargetResults> results;
    // No results (120020) is an empty list here.
    static_cast<void>(Algorithm().GetBinningResults().GetAllCutPoints(results));
    return results;
  }
  // The first result of the pair; the test fails without one.
  BINAttributeTargetResults Result(int attribute, int target) {
    BINAttributeTargetResults result;
    const TQStatus status =
        Algorithm().GetBinningResults().GetAttributeTargetCutPoints(attribute, target, result);
    EXPECT_EQ(attribute, result.GetAttributeIndex()) << "nothing is stored for the pair";
    EXPECT_EQ(status, result.GetStatus());
    return result;
  }
  Numbers Cuts(int attribute, int target) { return Result(attribute, target).GetCutPoints(); }
  Indices BinnedAttributes() {
    Indices attributes;
    for (const auto& result : Results()) attributes.push_back(result.GetAttributeIndex());
    return attributes;
  }

  ScratchDirectory directory;
  BINVarList list;
  BINSettings settings;
  MemoryRecords records;

 private:
  std::unique_ptr<OpenAlgorithm> fAlgorithm;
};

// The same for equal-frequency binning.
class EqualFrequencyRun {
 public:
  EqualFrequencyRun(const std::string& letters, const Rows& rows, int bins = 2)
      : list(VarList(letters)), records(rows) {
    settings.SetTempDirName(directory.Path());
    EXPECT_TRUE(settings.SetNumberOfBins(bins));
  }

  OpenEFAlgorithm& Algorithm() {
    if (fAlgorithm == nullptr) fAlgorithm = std::make_unique<OpenEFAlgorithm>(settings, list);
    return *fAlgorithm;
  }
  void DeleteAlgorithm() { fAlgorithm.reset(); }

  TQStatus CreateBins() { return Algorithm().CreateBins(records, nullptr); }
  TQStatus CreateBins(const Indices& attributes) {
    return Algorithm().CreateBins(records, &attributes);
  }

  std::vector<BINAttributeResults> Results() {
    std::vector<BINAttributeResults> results;
    // No results (120020) is an empty list here.
    static_cast<void>(Algorithm().GetBinningResults().GetAllCutPoints(results));
    return results;
  }
  // The first result of the attribute; the test fails without one.
  BINAttributeResults Result(int attribute) {
    BINAttributeResults result;
    const TQStatus status =
        Algorithm().GetBinningResults().GetAttributeCutPoints(attribute, result);
    EXPECT_EQ(attribute, result.GetAttributeIndex()) << "nothing is stored for the attribute";
    EXPECT_EQ(status, result.GetStatus());
    return result;
  }
  Numbers Cuts(int attribute) { return Result(attribute).GetCutPoints(); }
  Numbers Counts(int attribute) { return Result(attribute).GetCellCounts(); }
  Indices BinnedAttributes() {
    Indices attributes;
    for (const auto& result : Results()) attributes.push_back(result.GetAttributeIndex());
    return attributes;
  }

  ScratchDirectory directory;
  BINVarList list;
  EFBINSettings settings;
  MemoryRecords records;

 private:
  std::unique_ptr<OpenEFAlgorithm> fAlgorithm;
};

template <typename Shown>
std::string TextOf(const Shown& shown) {
  std::ostringstream os;
  shown.Display(os);
  return os.str();
}

}  // namespace support
