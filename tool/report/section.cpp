#include "report/section.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "base/statuswords.h"
#include "model/recount.h"
#include "output/modelwords.h"
#include "report/bintable.h"
#include "report/chart.h"
#include "report/html.h"
#include "report/shownbins.h"

namespace TQTool {
namespace {

// What became of the attribute, and for what reason.
std::string WriteStatus(const BinnedAttribute& attribute, const Model& model) {
  std::string text = Escaped(OutcomeOf(attribute, model));
  if (!attribute.status.IsOK()) text += ". What to do: " + Escaped(RemedyOf(attribute));
  return fmt::format("<p class=\"status\"><strong class=\"state {0}\">{0}</strong> {1}</p>\n",
                     SeverityOf(attribute.status), text);
}

// The attribute's numbers, those first that people act on.
std::string WriteFacts(const ReportEntry& entry) {
  const BinnedAttribute& attribute = *entry.attribute;
  std::string facts;
  if (entry.measures.has_value() && !attribute.cuts.empty()) {
    facts += Fact("Information gain", Fixed(entry.measures->informationGain, 4) + " bits");
    if (!entry.measures->bins.empty()) {
      facts += Fact("Information value", Fixed(entry.measures->informationValue, 4));
    }
  }
  if (attribute.entropy != TQMV::gMissingValue) {
    facts += Fact("Entropy within bins", Fixed(attribute.entropy, 4) + " bits");
  }
  if (attribute.numDistinct > 0) {
    facts += Fact("Distinct values", Grouped(std::to_string(attribute.numDistinct)));
    facts += Fact("Range", fmt::format("{} to {}", attribute.minimum, attribute.maximum));
  }
  const double missing = MissingOf(attribute).weight;
  facts += Fact("Missing", ShareText(missing, attribute.total.weight));
  return "<dl class=\"facts\">" + facts + "</dl>\n";
}

// What was joined or summed up to fit the page; "" when nothing was.
std::string WriteNote(const BinnedAttribute& attribute, const ShownBins& shown) {
  std::string text;
  if (shown.joined > 1) {
    text += fmt::format("The {} bins are shown as {} groups of up to {} neighbours. ",
                        Grouped(std::to_string(attribute.bins.size())),
                        Grouped(std::to_string(shown.attribute.bins.size())), shown.joined);
  }
  if (shown.summedUp > 0) {
    text += fmt::format("The {} most frequent categories are shown, the {} others summed up. ",
                        shown.categories.size() - 1, shown.summedUp);
  }
  if (text.empty()) return "";
  return "<p class=\"note\">" + text + "The model file has each of them.</p>\n";
}

// Where a category's share is greatest: "yes in (2, 5] (98.0%)"; "" when it is nowhere.
std::string PeakOf(const ShownBins& shown, std::size_t category) {
  std::size_t peak = 0;
  double highest = 0.0;
  for (std::size_t b = 0; b < shown.attribute.bins.size(); ++b) {
    const Bin& bin = shown.attribute.bins[b];
    if (!(bin.count.weight > 0.0)) continue;
    const double share = bin.categories.at(category).weight / bin.count.weight;
    if (share <= highest) continue;
    highest = share;
    peak = b;
  }
  if (!(highest > 0.0)) return "";
  return fmt::format("{} in {} ({})", shown.categories[category], LabelOf(shown.attribute, peak),
                     ShareText(highest, 1.0));
}

std::string DescribeFullest(const ShownBins& shown, const std::string& unit) {
  const std::vector<Bin>& bins = shown.attribute.bins;
  const auto [least, most] = std::minmax_element(
      bins.begin(), bins.end(),
      [](const Bin& a, const Bin& b) { return a.count.weight < b.count.weight; });
  // What is not known is less than any count.
  if (most->count.weight == TQMV::gMissingValue) return "No bin is counted.";
  const bool areAllKnown = least->count.weight != TQMV::gMissingValue;
  const std::string count = Grouped(WeightText(most->count.weight));
  return fmt::format("The fullest bin {}is {} with {} ({}).",
                     areAllKnown ? "" : "of those counted ",
                     LabelOf(shown.attribute, static_cast<std::size_t>(most - bins.begin())),
                     unit == "rows" ? count + " rows" : "weight " + count,
                     ShareText(most->count.weight, shown.attribute.total.weight));
}

// What the chart shows, in a sentence or two.
std::string DescribeChart(const ShownBins& shown, const std::string& unit) {
  std::string text = DescribeFullest(shown, unit);
  std::vector<std::string> peaks;
  for (std::size_t c = 0; c < shown.categories.size(); ++c) {
    const std::string peak = PeakOf(shown, c);
    if (!peak.empty()) peaks.push_back(peak);
  }
  if (!peaks.empty()) text += fmt::format(" Greatest shares: {}.", fmt::join(peaks, ", "));
  return text;
}

std::string WriteFigure(const ReportEntry& entry, const ShownBins& shown, const Model& model) {
  const std::string unit = model.settings.weight.empty() ? "rows" : "weight";
  const std::string description = DescribeChart(shown, unit);
  const ChartWords words = {entry.id, "Bins of " + NameOf(*entry.attribute, model), description,
                            unit, entry.target == nullptr ? "" : entry.target->name};
  return "<figure>\n" + DrawChart(shown, words) + DrawLegend(shown) + "<figcaption>" +
         Escaped(description) + "</figcaption>\n</figure>\n";
}

}  // namespace

std::string WriteSection(const ReportEntry& entry, const Model& model, std::size_t maxBins) {
  const BinnedAttribute& attribute = *entry.attribute;
  std::string text = fmt::format(
      "<section class=\"attribute\" id=\"{0}\" aria-labelledby=\"{0}h\">\n"
      "<h3 id=\"{0}h\">{1}</h3>\n",
      entry.id, Isolated(NameOf(attribute, model)));
  text += WriteStatus(attribute, model) + WriteFacts(entry);
  if (!attribute.bins.empty()) {
    const ShownBins shown = Condense(attribute, entry.target, maxBins);
    text += WriteNote(attribute, shown);
    if (!attribute.cuts.empty()) text += WriteFigure(entry, shown, model);
    text += WriteBinTable(entry, shown, model);
  }
  return text + "</section>\n";
}

}  // namespace TQTool
