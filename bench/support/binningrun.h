#pragma once

#include <string>
#include <vector>

#include "bench/support/columns.h"
#include "tqbinning/tqbinning.h"

// Whole runs of the library, as a host makes them: through its public interface,
// over columns in memory.
namespace bench {

enum class Task { kEqualFrequency, kSupervised };

struct RunSettings {
  Task task = Task::kSupervised;
  // Equal frequency: bins per attribute.  Supervised: attributes with more distinct
  // values than this are first cut into as many bins; 0 for none.
  int bins = 0;
};

// What became of one attribute.
struct AttributeOutcome {
  long code = 0;
  std::vector<double> cuts;
  std::vector<double> binWeights;
  std::vector<double> classWeights;  // of supervised binning: bin after bin
  unsigned int distinctValues = 0;
  double totalWeight = 0.0;
  double totalWeightWithMissing = 0.0;
  double minimum = 0.0;
  double maximum = 0.0;
  double modelEntropy = 0.0;  // of supervised binning

  bool operator==(const AttributeOutcome&) const = default;
};

// The attributes x0, x1, ..., then the target y when there is to be one, then the
// weight w when the columns have weights: the fields of ColumnRecords.
BINVarList MakeVarList(const Columns& columns, bool withTarget);

// What an algorithm has stored, in that order.
std::vector<AttributeOutcome> OutcomesOf(const BINOutput& output);
std::vector<AttributeOutcome> OutcomesOf(const EFBINOutput& output);

// Bins every attribute and removes all files again.  `directory` is the run's own.
// Throws std::runtime_error when the run itself ended in an error.
std::vector<AttributeOutcome> RunBinning(const Columns& columns, const RunSettings& settings,
                                         const std::string& directory);

// What is wrong with the outcomes, in words; empty when there is one for each
// attribute, with a status that its data explain, ascending cuts, the totals and
// extremes of its column, and in each bin and class the weight that counting gives.
// Weights are to be whole and bins closed on the right.
std::string ComplaintAbout(const std::vector<AttributeOutcome>& outcomes, const Columns& columns);

}  // namespace bench
