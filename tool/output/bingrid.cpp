#include "output/bingrid.h"

#include <optional>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "model/measures.h"
#include "model/recount.h"
#include "output/modelwords.h"

namespace TQTool {
namespace {

// The counts of a row of the table: of the bin, its share, of its categories.  Where there
// are weights, the rows stand beside them.
void AppendCounts(const Count& count, const std::vector<Count>& categories, double whole,
                  bool isWeighted, std::vector<std::string>& cells) {
  cells.push_back(WeightText(count.weight));
  if (isWeighted) cells.push_back(WeightText(count.rows));
  cells.push_back(ShareText(count.weight, whole));
  for (const Count& category : categories) cells.push_back(WeightText(category.weight));
}

// The event rate and the weight of evidence of a bin.
void AppendEvents(const Measures::OfBin& bin, std::vector<std::string>& cells) {
  cells.push_back(ShareText(bin.eventRate, 1.0));
  cells.push_back(fmt::format("{:.3f}", bin.weightOfEvidence));
}

std::vector<std::string> HeadingOf(const Target* target, bool isWeighted, bool hasEvents) {
  std::vector<std::string> heading = {"bin"};
  if (isWeighted) heading.push_back("weight");
  heading.insert(heading.end(), {"rows", "share"});
  if (target != nullptr) {
    for (const std::string& category : target->categories) heading.push_back(Printable(category));
  }
  if (hasEvents) heading.insert(heading.end(), {"rate", "WoE"});
  return heading;
}

}  // namespace

std::vector<std::vector<std::string>> BinGrid(const BinnedAttribute& attribute,
                                              const Model& model) {
  std::vector<std::vector<std::string>> grid;
  const bool isWeighted = !model.settings.weight.empty();
  const std::optional<Measures> measures = MeasuresOf(attribute);
  const bool hasEvents = measures.has_value() && !measures->bins.empty();
  grid.push_back(HeadingOf(model.TargetOf(attribute), isWeighted, hasEvents));

  const double whole = attribute.total.weight;
  Bin totals;
  for (std::size_t b = 0; b < attribute.bins.size(); ++b) {
    const Bin& bin = attribute.bins[b];
    std::vector<std::string> cells = {Printable(LabelOf(attribute, b))};
    AppendCounts(bin.count, bin.categories, whole, isWeighted, cells);
    if (hasEvents) AppendEvents(measures->bins[b], cells);
    grid.push_back(cells);
    totals = b == 0 ? bin : Sum(totals, bin);
  }
  std::vector<std::string> total = {"total"};
  AppendCounts(attribute.valid, totals.categories, whole, isWeighted, total);
  grid.push_back(total);
  const Count missing = MissingOf(attribute);
  if (missing.weight > 0.0) {
    std::vector<std::string> cells = {"missing"};
    AppendCounts(missing, {}, whole, isWeighted, cells);
    grid.push_back(cells);
  }
  return grid;
}

std::string GainOf(const BinnedAttribute& attribute) {
  const std::optional<Measures> measures = MeasuresOf(attribute);
  if (!measures.has_value() || attribute.cuts.empty()) return "";
  std::string text = fmt::format("information gain {:.4f} bits", measures->informationGain);
  if (!measures->bins.empty()) {
    text += fmt::format("; information value {:.4f}", measures->informationValue);
  }
  return text;
}

}  // namespace TQTool
