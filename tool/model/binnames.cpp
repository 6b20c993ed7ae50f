#include "model/binnames.h"

#include <algorithm>

namespace TQTool {
namespace {

// Whether the model bins a column against more than one target.
bool HasSeveralTargets(const Model& model, const BinnedAttribute& attribute) {
  return std::count_if(model.attributes.begin(), model.attributes.end(),
                       [&](const BinnedAttribute& one) { return one.name == attribute.name; }) > 1;
}

}  // namespace

std::string BinTextOf(const BinnedAttribute& attribute, std::size_t bin, BinText kind) {
  if (kind == BinText::kIndex) return std::to_string(bin);
  return kind == BinText::kLabel ? LabelOf(attribute, bin) : IntervalText(attribute, bin);
}

std::string BinColumnName(const Model& model, const BinnedAttribute& attribute,
                          const std::string& suffix) {
  if (!HasSeveralTargets(model, attribute)) return attribute.name + suffix;
  return attribute.name + "_by_" + model.TargetOf(attribute)->name + suffix;
}

}  // namespace TQTool
