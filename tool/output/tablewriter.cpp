#include "output/tablewriter.h"

#include <cmath>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/statuswords.h"
#include "output/textgrid.h"

namespace TQTool {
namespace {

// A weight, or a number of rows: whole numbers whole, others to three digits.
std::string WeightText(double weight) {
  if (weight == TQMV::gMissingValue) return "?";
  if (std::floor(weight) == weight && std::abs(weight) < 1e15) return fmt::format("{:.0f}", weight);
  return std::abs(weight) < 0.01 ? fmt::format("{:.3g}", weight) : fmt::format("{:.3f}", weight);
}

std::string ShareText(double part, double whole) {
  if (part == TQMV::gMissingValue || !(whole > 0.0)) return "?";
  return fmt::format("{:.1f}%", 100.0 * part / whole);
}

// "(2, 5]" or "[2, 5)"; an end without bound is always open.
std::string IntervalText(const Bin& bin, bool isRightClosed) {
  const bool isFirst = std::isinf(bin.lower);
  const bool isLast = std::isinf(bin.upper);
  return fmt::format("{}{}, {}{}", isRightClosed || isFirst ? '(' : '[', bin.lower, bin.upper,
                     isRightClosed && !isLast ? ']' : ')');
}

// The weights of a row of the table: of the bin, its share, of its categories.
void AppendWeights(double weight, const std::vector<double>& classWeights, double whole,
                   std::vector<std::string>& cells) {
  cells.push_back(WeightText(weight));
  cells.push_back(ShareText(weight, whole));
  for (const double classWeight : classWeights) cells.push_back(WeightText(classWeight));
}

std::string BinTable(const AttributeResult& attribute, const RunResult& result) {
  TextGrid grid;
  std::vector<std::string> heading = {"bin", result.options.weight.empty() ? "rows" : "weight",
                                      "share"};
  for (const std::string& category : result.categories) heading.push_back(Printable(category));
  grid.AddRow(heading);

  std::vector<double> totals(result.categories.size(), 0.0);
  for (const Bin& bin : attribute.bins) {
    std::vector<std::string> cells = {IntervalText(bin, result.options.isRightClosed)};
    AppendWeights(bin.weight, bin.classWeights, attribute.weightWithMissing, cells);
    grid.AddRow(cells);
    for (std::size_t c = 0; c < totals.size(); ++c) totals[c] += bin.classWeights[c];
  }
  std::vector<std::string> total = {"total"};
  AppendWeights(attribute.weight, totals, attribute.weightWithMissing, total);
  grid.AddRow(total);
  const double missing = attribute.weightWithMissing - attribute.weight;
  if (missing > 0.0) {
    std::vector<std::string> cells = {"missing"};
    AppendWeights(missing, {}, attribute.weightWithMissing, cells);
    grid.AddRow(cells);
  }
  return grid.Print();
}

// What was found in a column before it was cut.
std::string Summary(const AttributeResult& attribute) {
  if (attribute.numDistinct == 0) return "no value that counts";
  std::string text =
      fmt::format("{} distinct value{} from {} to {}", attribute.numDistinct,
                  attribute.numDistinct == 1 ? "" : "s", attribute.minimum, attribute.maximum);
  if (attribute.entropy != TQMV::gMissingValue) {
    text += fmt::format("; entropy within the bins {:.4f} bits", attribute.entropy);
  }
  return text;
}

std::string Count(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string Section(const AttributeResult& attribute, const RunResult& result) {
  const Options& options = result.options;
  std::string text = fmt::format("\n{}: ", Printable(attribute.name));
  if (attribute.status.IsOK()) {
    text += Count(attribute.bins.size(), "bin");
    if (options.method == Method::kEqualFrequency &&
        attribute.bins.size() != static_cast<std::size_t>(options.bins)) {
      text += fmt::format(" instead of {}, because equal values stay together", options.bins);
    }
    if (attribute.isPreBinned) {
      text += fmt::format(", cut between {} equal-frequency pre-bins", options.prebinBins);
    }
  } else {
    const StatusWords& words = WordsOf(attribute.status.GetErrorCode());
    text += fmt::format("{}: {}\n  what to do: {} (library code {})", words.words, words.reason,
                        words.remedy, attribute.status.GetErrorCode());
  }
  text += fmt::format("\n  {}\n", Summary(attribute));
  return attribute.bins.empty() ? text : text + BinTable(attribute, result);
}

std::string Title(const RunResult& result) {
  const Options& options = result.options;
  const std::string columns = Count(result.attributes.size(), "column");
  if (options.method == Method::kSupervised) {
    return fmt::format("{}: {} binned by {}\n", result.inputName, columns,
                       Printable(options.target));
  }
  return fmt::format("{}: {} cut into {} bins of equal frequency\n", result.inputName, columns,
                     options.bins);
}

std::string RowsLine(const RunResult& result) {
  const FedData& fed = result.fed;
  std::string text = Count(fed.rows, "row");
  if (!result.options.weight.empty()) {
    text += fmt::format(" of total weight {} by {}", WeightText(fed.weight),
                        Printable(result.options.weight));
  }
  if (fed.cases != fed.rows) {
    text += fmt::format("; {} left out, weight missing or not above zero", fed.rows - fed.cases);
  }
  if (fed.withoutTarget != 0) text += fmt::format("; {} without target", fed.withoutTarget);
  return text + "\n";
}

}  // namespace

std::string WriteTable(const RunResult& result) {
  std::string text = Title(result) + RowsLine(result);
  for (const AttributeResult& attribute : result.attributes) text += Section(attribute, result);
  return text;
}

}  // namespace TQTool
