#include "output/tablewriter.h"

#include <optional>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "model/measures.h"
#include "model/recount.h"
#include "output/modelwords.h"
#include "output/textgrid.h"

namespace TQTool {
namespace {

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
  const double missing = MissingOf(attribute).weight;
  if (missing > 0.0) {
    std::vector<std::string> cells = {"missing"};
    AppendWeights(missing, {}, whole, cells);
    grid.AddRow(cells);
  }
  return grid.Print();
}

// What the bins tell about the target; nothing without cuts or target.
std::string GainLine(const BinnedAttribute& attribute) {
  const std::optional<Measures> measures = MeasuresOf(attribute);
  if (!measures.has_value() || attribute.cuts.empty()) return "";
  std::string text = fmt::format("  information gain {:.4f} bits", measures->informationGain);
  if (!measures->bins.empty()) {
    text += fmt::format("; information value {:.4f}", measures->informationValue);
  }
  return text + "\n";
}

std::string Section(const BinnedAttribute& attribute, const Model& model) {
  std::string text =
      fmt::format("\n{}: {}\n", NameOf(attribute, model), OutcomeOf(attribute, model));
  if (!attribute.status.IsOK()) text += fmt::format("  what to do: {}\n", RemedyOf(attribute));
  text += fmt::format("  {}\n", FindingsOf(attribute)) + GainLine(attribute);
  return attribute.bins.empty() ? text : text + BinTable(attribute, model);
}

}  // namespace

std::string WriteTable(const Model& model) {
  std::string text = TitleOf(model) + "\n" + RowsOf(model) + "\n";
  for (const BinnedAttribute& attribute : model.attributes) text += Section(attribute, model);
  return text;
}

}  // namespace TQTool
