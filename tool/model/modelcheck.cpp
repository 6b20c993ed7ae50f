#include "model/modelcheck.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "base/plaintext.h"

namespace TQTool {
namespace {

// How many bins have counts that are not known.
std::ptrdiff_t CountUnknown(const BinnedAttribute& attribute) {
  return std::count_if(attribute.bins.begin(), attribute.bins.end(),
                       [](const Bin& bin) { return bin.count.weight == TQMV::gMissingValue; });
}

void DoubtCuts(const BinnedAttribute& attribute, const std::string& name,
               std::vector<std::string>& doubts) {
  if (attribute.minimum == TQMV::gMissingValue) return;
  for (const double cut : attribute.cuts) {
    const bool hasBoth = attribute.isRightClosed
                             ? attribute.minimum <= cut && cut < attribute.maximum
                             : attribute.minimum < cut && cut <= attribute.maximum;
    if (hasBoth) continue;
    doubts.push_back(
        fmt::format("{}: the cut point {} parts nothing, for the values went from {} "
                    "to {}; move or remove it unless new data go further",
                    name, cut, attribute.minimum, attribute.maximum));
  }
}

void DoubtLabels(const BinnedAttribute& attribute, const std::string& name,
                 std::vector<std::string>& doubts) {
  std::set<std::string> seen;
  for (const std::string& label : attribute.labels) {
    if (seen.insert(label).second) continue;
    doubts.push_back(
        fmt::format("{}: two bins are labelled {}, so that they cannot be told apart "
                    "when the model is applied",
                    name, Quoted(label)));
  }
}

}  // namespace

std::vector<std::string> FindDoubts(const Model& model) {
  std::vector<std::string> doubts;
  for (const BinnedAttribute& attribute : model.attributes) {
    std::string name = Quoted(attribute.name);
    if (model.targets.size() > 1) name += " by " + Quoted(model.TargetOf(attribute)->name);
    if (attribute.isEdited) {
      doubts.push_back(
          fmt::format("{}: the bins were edited after they had been counted; the "
                      "counts of {} of {} bins are not known",
                      name, CountUnknown(attribute), attribute.bins.size()));
    }
    DoubtCuts(attribute, name, doubts);
    DoubtLabels(attribute, name, doubts);
  }
  return doubts;
}

}  // namespace TQTool
