#include "property/libraryrun.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include "support/memoryrecords.h"
#include "tqbinning/tqbinning.h"

namespace property {
namespace {

using reference::Outcome;
using reference::PairResult;
using reference::Problem;
using reference::Variable;
using TQBinning::TQStatus;

// Sends the standard output to nowhere for as long as it lives.
class QuietStandardOutput {
 public:
  QuietStandardOutput() : fSaved(dup(STDOUT_FILENO)) {
    Flush();
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  QuietStandardOutput(const QuietStandardOutput&) = delete;
  QuietStandardOutput& operator=(const QuietStandardOutput&) = delete;
  ~QuietStandardOutput() {
    Flush();
    if (fSaved < 0) return;
    dup2(fSaved, STDOUT_FILENO);
    close(fSaved);
  }

 private:
  static void Flush() {
    std::cout.flush();
    std::fflush(stdout);
  }

  int fSaved;
};

reference::Status Convert(const TQStatus& status) {
  reference::Status converted;
  converted.code = status.GetErrorCode();
  converted.severity = status.IsOK() ? 0 : status.IsWarning() ? 1 : -1;
  for (unsigned int i = 0; i < 3; ++i) {
    converted.discrete[i] = status.GetDiscreteDatum(i);
    converted.scale[i] = status.GetScaleDatum(i);
  }
  return converted;
}

// The fields that both families' results have.
template <typename Result>
PairResult ConvertCommon(const Result& result) {
  PairResult converted;
  converted.status = Convert(result.GetStatus());
  converted.attribute = result.GetAttributeIndex();
  converted.cuts = result.GetCutPoints();
  converted.nDistinct = result.GetNDistinctValues();
  converted.totalWeight = result.GetTotalWeight();
  converted.totalWeightWithMissing = result.GetTotalWeightWithMissing();
  converted.minimum = result.GetMinimum();
  converted.maximum = result.GetMaximum();
  return converted;
}

PairResult Convert(const BINAttributeTargetResults& result, std::string& complaint) {
  PairResult converted = ConvertCommon(result);
  converted.target = result.GetTargetIndex();
  converted.modelEntropy = result.GetModelEntropy();
  const std::vector<std::vector<double>>& rows = result.GetCellCounts();
  if (rows.size() != converted.cuts.size() + 1) complaint += "rows and cuts do not match\n";
  for (const std::vector<double>& row : rows) {
    if (row.size() != rows.front().size()) complaint += "rows of unequal length\n";
    converted.cellCounts.insert(converted.cellCounts.end(), row.begin(), row.end());
  }
  return converted;
}

PairResult Convert(const BINAttributeResults& result, std::string& /*complaint*/) {
  PairResult converted = ConvertCommon(result);
  converted.cellCounts = result.GetCellCounts();
  return converted;
}

template <typename Result, typename Output>
void ConvertAll(const Output& output, LibraryOutcome& run) {
  std::vector<Result> results;
  const TQStatus status = output.GetAllCutPoints(results);
  if (status.IsOK() == results.empty()) run.complaint += "GetAllCutPoints: status and values\n";
  for (const Result& result : results) {
    run.outcome.results.push_back(Convert(result, run.complaint));
  }
}

const std::vector<int>* PointerTo(const std::optional<std::vector<int>>& list) {
  return list ? &*list : nullptr;
}

// What the settings of both families have in common.
template <typename Settings>
void Set(const Problem& problem, const std::string& directory, Settings& settings,
         std::string& complaint) {
  settings.SetTempDirName(directory);
  settings.SetRightBorderClosed(problem.rightClosed);
  if (problem.numberOfBins != -1 && !settings.SetNumberOfBins(problem.numberOfBins)) {
    complaint += "number of bins refused\n";
  }
}

// The records, and once a null, which is no end of data and must change nothing.
support::MemoryRecords MakeRecords(const Problem& problem) {
  support::MemoryRecords records(problem.records);
  records.YieldNullAt(problem.records.size() / 2);
  return records;
}

void RunSupervised(const Problem& problem, const std::string& directory, BINVarList& list,
                   LibraryOutcome& run) {
  BINSettings settings;
  Set(problem, directory, settings, run.complaint);
  if (problem.distinctThreshold != -1 &&
      !settings.SetNumDistinctValueThreshold(problem.distinctThreshold)) {
    run.complaint += "distinct-value threshold refused\n";
  }
  if (!settings.SetSmallBinDetectionThreshold(problem.smallBinThreshold)) {
    run.complaint += "small-bin threshold refused\n";
  }
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  if (algorithm == nullptr) {
    run.outcome.finalStatus = Convert(factory.GetStatus());
    return;
  }
  support::MemoryRecords records = MakeRecords(problem);
  for (const reference::Call& call : problem.calls) {
    run.outcome.callStatuses.push_back(Convert(
        algorithm->CreateBins(records, PointerTo(call.attributes), PointerTo(call.targets))));
  }
  run.outcome.finalStatus = Convert(algorithm->GetStatus());
  ConvertAll<BINAttributeTargetResults>(algorithm->GetBinningResults(), run);
}

void RunEqualFrequency(const Problem& problem, const std::string& directory, BINVarList& list,
                       LibraryOutcome& run) {
  EFBINSettings settings;
  Set(problem, directory, settings, run.complaint);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
  if (algorithm == nullptr) {
    run.outcome.finalStatus = Convert(factory.GetStatus());
    return;
  }
  support::MemoryRecords records = MakeRecords(problem);
  for (const reference::Call& call : problem.calls) {
    run.outcome.callStatuses.push_back(
        Convert(algorithm->CreateBins(records, PointerTo(call.attributes))));
  }
  run.outcome.finalStatus = Convert(algorithm->GetStatus());
  ConvertAll<BINAttributeResults>(algorithm->GetBinningResults(), run);
}

int AddVariable(const Variable& variable, const std::string& name, BINVarList& list) {
  switch (variable.kind) {
    case Variable::Kind::kContinuous:
      return list.AddContVar(name, "", static_cast<IBINVariable::VariableRole>(variable.role));
    case Variable::Kind::kCategorical:
      return list.AddCatVar(name, "", variable.categories,
                            static_cast<IBINVariable::MeasureLevel>(variable.level),
                            static_cast<IBINVariable::VariableRole>(variable.role));
    case Variable::Kind::kWeight:
      return list.AddWeightVar(name, "",
                               static_cast<IBINVariable::BINWRoundingOption>(variable.rounding));
  }
  return -1;
}

}  // namespace

BINVarList MakeVarList(const Problem& problem, std::string& complaint) {
  BINVarList list;
  for (std::size_t k = 0; k < problem.variables.size(); ++k) {
    const Variable& variable = problem.variables[k];
    const int index = AddVariable(variable, "v" + std::to_string(k), list);
    if (index != static_cast<int>(k)) complaint += "variable refused\n";
    // Only a numeric encoder takes numbers that are declared missing.
    if (variable.kind == Variable::Kind::kCategorical &&
        variable.level != reference::kLevelNumericCategorical) {
      continue;
    }
    for (const double value : variable.missingValues) {
      if (!list.AddDiscreteUserMissing(index, value, "")) complaint += "value refused\n";
    }
    if (variable.missingInterval && !list.SetMissingInterval(index, variable.missingInterval->first,
                                                             variable.missingInterval->second)) {
      complaint += "interval refused\n";
    }
  }
  return list;
}

LibraryOutcome RunLibrary(const Problem& problem, const std::string& directory) {
  const QuietStandardOutput quiet;
  LibraryOutcome run;
  BINVarList list = MakeVarList(problem, run.complaint);
  if (problem.supervised) {
    RunSupervised(problem, directory, list, run);
  } else {
    RunEqualFrequency(problem, directory, list, run);
  }
  return run;
}

}  // namespace property
