#include "output/tablewriter.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/statuswords.h"
#include "model/measures.h"
#include "model/recount.h"
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

// The weights of a row of the table: of the bin, its share, of its categories.
void AppendWeights(double weight, const std::vector<double>& classWeights, double whole,
                   std::vector<std::string>& cells) {
  cells.push_back(WeightText(weight));
  cells.push_back(ShareText(weight, whole));
  for (const double classWeight : classWeights) cells.push_back(WeightText(classWeight));
}

// The event rate and the weight of evidence of a bin.
void AppendEvents(const Measures::OfBin& bin, std::vector<std::string>& cells) {
  cells.push_back(ShareText(bin.eventRate, 1.0));
  cells.push_back(fmt::format("{:.3f}", bin.weightOfEvidence));
}

std::vector<double> WeightsOf(const std::vector<Count>& counts) {
  std::vector<double> weights;
  weights.reserve(counts.size());
  for (const Count& count : counts) weights.push_back(count.weight);
  return weights;
}

std::string BinTable(const BinnedAttribute& attribute, const Model& model) {
  TextGrid grid;
  std::vector<std::string> heading = {"bin", model.settings.weight.empty() ? "rows" : "weight",
                                      "share"};
  const Target* const target = model.TargetOf(attribute);
  if (target != nullptr) {
    for (const std::string& category : target->categories) heading.push_back(Printable(category));
  }
  const std::optional<Measures> measures = MeasuresOf(attribute);
  const bool hasEvents = measures.has_value() && !measures->bins.empty();
  if (hasEvents) heading.insert(heading.end(), {"rate", "WoE"});
  grid.AddRow(heading);

  const double whole = attribute.total.weight;
  Bin totals;
  for (std::size_t b = 0; b < attribute.bins.size(); ++b) {
    const Bin& bin = attribute.bins[b];
    std::vector<std::string> cells = {Printable(LabelOf(attribute, b))};
    AppendWeights(bin.count.weight, WeightsOf(bin.categories), whole, cells);
    if (hasEvents) AppendEvents(measures->bins[b], cells);
    grid.AddRow(cells);
    totals = b == 0 ? bin : Sum(totals, bin);
  }
  std::vector<std::string> total = {"total"};
  AppendWeights(attribute.valid.weight, WeightsOf(totals.categories), whole, total);
  grid.AddRow(total);
  const double missing = whole - attribute.valid.weight;
  if (missing > 0.0) {
    std::vector<std::string> cells = {"missing"};
    AppendWeights(missing, {}, whole, cells);
    grid.AddRow(cells);
  }
  return grid.Print();
}

// What was found in a column before it was cut.
std::string Summary(const BinnedAttribute& attribute) {
  if (attribute.numDistinct == 0) return "no value that counts";
  std::string text =
      fmt::format("{} distinct value{} from {} to {}", attribute.numDistinct,
                  attribute.numDistinct == 1 ? "" : "s", attribute.minimum, attribute.maximum);
  if (attribute.entropy != TQMV::gMissingValue) {
    text += fmt::format("; entropy within the bins {:.4f} bits", attribute.entropy);
  }
  const std::optional<Measures> measures = MeasuresOf(attribute);
  if (!measures.has_value() || attribute.cuts.empty()) return text;
  text += fmt::format("\n  information gain {:.4f} bits", measures->informationGain);
  if (!measures->bins.empty()) {
    text += fmt::format("; information value {:.4f}", measures->informationValue);
  }
  return text;
}

std::string CountText(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

// What became of a column, after its name.
std::string Heading(const BinnedAttribute& attribute, const Model& model) {
  if (!attribute.status.IsOK()) {
    const StatusWords& words = WordsOf(attribute.status.GetErrorCode());
    return fmt::format("{}: {}\n  what to do: {} (library code {})", words.words, words.reason,
                       words.remedy, attribute.status.GetErrorCode());
  }
  const Settings& settings = model.settings;
  std::string text = CountText(attribute.bins.size(), "bin");
  if (attribute.isEdited) return text + ", edited since they were counted; ? is not known";
  if (model.method == Method::kEqualFrequency &&
      attribute.bins.size() != static_cast<std::size_t>(settings.bins)) {
    text += fmt::format(" instead of {}, because equal values stay together", settings.bins);
  }
  if (attribute.isPreBinned) {
    text += fmt::format(", cut between {} equal-frequency pre-bins", settings.prebinBins);
  }
  return text;
}

std::string Section(const BinnedAttribute& attribute, const Model& model) {
  std::string name = Printable(attribute.name);
  if (model.targets.size() > 1) name += " by " + Printable(model.TargetOf(attribute)->name);
  const std::string text =
      fmt::format("\n{}: {}\n  {}\n", name, Heading(attribute, model), Summary(attribute));
  return attribute.bins.empty() ? text : text + BinTable(attribute, model);
}

std::string Title(const Model& model) {
  const std::string names = fmt::format("{}", fmt::join(model.input.names, ", "));
  const std::string columns = CountText(model.attributes.size(), "column");
  if (model.method == Method::kEqualFrequency) {
    return fmt::format("{}: {} cut into {} bins of equal frequency\n", names, columns,
                       model.settings.bins);
  }
  std::vector<std::string> targets;
  for (const Target& target : model.targets) targets.push_back(Printable(target.name));
  return fmt::format("{}: {} binned by {}\n", names, columns, fmt::join(targets, ", "));
}

// Why rows did not count; nothing when all did.
std::string DroppedText(const InputSummary& input) {
  const std::pair<std::uint64_t, const char*> reasons[] = {
      {input.droppedWeightMissing, "with a missing weight"},
      {input.droppedWeightNotPositive, "with a weight not above zero"},
      {input.droppedWeightRoundedAway, "with a weight that was rounded to zero"}};
  std::vector<std::string> texts;
  for (const auto& [count, reason] : reasons) {
    if (count != 0) texts.push_back(fmt::format("{} {}", count, reason));
  }
  if (texts.empty()) return "";
  return fmt::format("; left out: {}", fmt::join(texts, ", "));
}

std::string RowsLine(const Model& model) {
  const InputSummary& input = model.input;
  std::string text = CountText(input.rows, "row");
  if (!model.settings.weight.empty()) {
    text += fmt::format(" of total weight {} by {}", WeightText(input.weight),
                        Printable(model.settings.weight));
  }
  text += DroppedText(input);
  for (const Target& target : model.targets) {
    if (target.missingCases == 0) continue;
    const std::string which = model.targets.size() > 1 ? " " + Printable(target.name) : "";
    text += fmt::format("; {} without target{}", target.missingCases, which);
  }
  return text + "\n";
}

}  // namespace

std::string WriteTable(const Model& model) {
  std::string text = Title(model) + RowsLine(model);
  for (const BinnedAttribute& attribute : model.attributes) text += Section(attribute, model);
  return text;
}

}  // namespace TQTool
