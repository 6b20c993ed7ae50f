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

void CheckColumn(const AttributeResult& result, const FedData& fed,
                 const FedAttribute& fedAttribute) {
  if (result.status.IsError()) return;
  if (result.weightWithMissing != fed.weight || result.weight != fedAttribute.validWeight ||
      result.minimum != fedAttribute.minimum || result.maximum != fedAttribute.maximum) {
    ThrowLost(fmt::format("column {} lost cases on the way: {} of weight {} arrived",
                          Quoted(result.name), result.weightWithMissing, fed.weight));
  }
}

// Tells the user when the bins do not add up.  It happens to equal-frequency bins of
// a column with missing values, when its last cut point equals a value that another
// column, or nothing, left at the end of the library's buffer.
void NoteIncompleteBins(const AttributeResult& result) {
  double sum = 0.0;
  for (const Bin& bin : result.bins) {
    if (bin.weight != TQMV::gMissingValue) sum += bin.weight;
  }
  if (result.bins.empty() || std::abs(sum - result.weight) <= 1e-9 * result.weight) return;
  PrintNote(
      fmt::format("the bins of column {} hold weight {} of {}: the library can lose the "
                  "last cut point of a column with missing values; to be sure, leave out "
                  "the rows without a value",
                  Quoted(result.name), sum, result.weight));
}

}  // namespace

void CheckFileSizes(const std::vector<std::uintmax_t>& sizes, std::uint64_t cases,
                    int numVariables) {
  const auto whole = std::count(sizes.begin(), sizes.end(), cases * sizeof(double));
  if (whole != numVariables) {
    ThrowLost(fmt::format("only {} of {} temporary files are whole", whole, numVariables));
  }
}

void CheckArrival(const RunResult& result) {
  for (std::size_t i = 0; i < result.attributes.size(); ++i) {
    CheckColumn(result.attributes[i], result.fed, result.fed.attributes.at(i));
    NoteIncompleteBins(result.attributes[i]);
  }
}

}  // namespace TQTool
