#pragma once

#include <memory>
#include <vector>

#include "common/raise.h"
#include "tqbinning/binvarlist.h"

namespace TQBinning {

// OK for a list that can be binned, else 120003 with an offending variable's index
// (or -1) in discrete datum 1; a variable without any category comes first.
inline TQStatus CheckVariableList(const BINVarList& varList) {
  std::vector<int> oneCategoryVars;
  std::vector<int> emptyVars;
  if (varList.IsValidList(oneCategoryVars, emptyVars)) return TQStatus();
  TQStatus status = Error(kInvalidVariableList);
  status.SetDiscreteDatum(1, !emptyVars.empty()         ? emptyVars.front()
                             : !oneCategoryVars.empty() ? oneCategoryVars.front()
                                                        : -1);
  return status;
}

// What the factories of both families do: a new algorithm, or null with an error in
// `status`.
template <typename Algorithm, typename Settings>
std::unique_ptr<Algorithm> CreateAlgorithm(Settings& settings, BINVarList& varList,
                                           TQStatus& status) {
  try {
    status = CheckVariableList(varList);
    if (status.IsError()) return nullptr;
    auto algorithm = std::make_unique<Algorithm>(settings, varList);
    status = algorithm->GetStatus();
    return status.IsError() ? nullptr : std::move(algorithm);
  } catch (...) {
    status = Error(kResourceFailure);
    return nullptr;
  }
}

}  // namespace TQBinning
