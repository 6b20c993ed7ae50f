#include "run/arrivalcheck.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <fmt/format.h>

#include "base/notes.h"
#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

[[noreturn]] void ThrowLost(const std::string& what) {
  throw ToolError(kFileSystem,
                  fmt::format("{}, so the results would be wrong; is the disk of the temporary "
                              "directory full? free space, or name another with --temp-dir",
                              what));
}

void CheckColumn(const BinnedAttribute& result, const FedData& fed, const FedPair& fedPair) {
  if (result.status.GetErrorCode() == TQBinning::kResourceFailure) {
    ThrowLost(fmt::format("column {} could not be read back", Quoted(result.name)));
  }
  if (result.status.IsError()) return;
  if (result.total.weight != fed.weight || result.valid.weight != fedPair.validWeight ||
      result.minimum != fedPair.minimum || result.maximum != fedPair.maximum) {
    ThrowLost(fmt::format("column {} lost cases on the way: {} of weight {} arrived",
                          Quoted(result.name), result.total.weight, fed.weight));
  }
}

// Tells the user when the bins do not add up.  It happens to equal-frequency bins of
// a column with missing values, when its last cut point equals a value that another
// column, or nothing, left at the end of the library's buffer.
void NoteIncompleteBins(const BinnedAttribute& result) {
  double sum = 0.0;
  for (const Bin& bin : result.bins) {
    if (bin.count.weight != TQMV::gMissingValue) sum += bin.count.weight;
  }
  if (result.bins.empty() || std::abs(sum - result.valid.weight) <= 1e-9 * result.valid.weight)
    return;
  PrintNote(
      fmt::format("the bins of column {} hold weight {} of {}: the library can lose the "
                  "last cut point of a column with missing values; to be sure, leave out "
                  "the rows without a value",
                  Quoted(result.name), sum, result.valid.weight));
}

}  // namespace

void CheckFileSizes(const std::vector<std::uintmax_t>& sizes, std::uint64_t cases,
                    int numVariables) {
  const auto whole = std::count(sizes.begin(), sizes.end(), cases * sizeof(double));
  if (whole != numVariables) {
    ThrowLost(fmt::format("only {} of {} temporary files are whole", whole, numVariables));
  }
}

void CheckArrival(const std::vector<BinnedAttribute>& attributes, const FedData& fed) {
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    CheckColumn(attributes[i], fed, fed.pairs.at(i));
    NoteIncompleteBins(attributes[i]);
  }
}

}  // namespace TQTool
