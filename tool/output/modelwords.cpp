#include "output/modelwords.h"

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/statuswords.h"

namespace TQTool {
namespace {

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
  return fmt::format("left out: {}", fmt::join(texts, ", "));
}

// "a, b, c".
std::string PrintableList(std::vector<std::string> names) {
  for (std::string& name : names) name = Printable(name);
  return fmt::format("{}", fmt::join(names, ", "));
}

// How weights were scaled; nothing when they were not.
std::string ScaleText(const Settings& settings) {
  const std::string& scale = settings.weightScale;
  if (scale.empty()) return "";
  if (scale != kMeanScale) return fmt::format(" times {}", Printable(scale));
  if (settings.weightDivisor == TQMV::gMissingValue) return " divided by its mean";
  return fmt::format(" divided by its mean, {}", WeightText(settings.weightDivisor));
}

}  // namespace

std::string CountText(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string WeightText(double weight) {
  if (weight == TQMV::gMissingValue) return "?";
  if (std::floor(weight) == weight && std::abs(weight) < 1e15) return fmt::format("{:.0f}", weight);
  return std::abs(weight) < 0.01 ? fmt::format("{:.3g}", weight) : fmt::format("{:.3f}", weight);
}

std::string ShareText(double part, double whole) {
  if (part == TQMV::gMissingValue || !(whole > 0.0)) return "?";
  return fmt::format("{:.1f}%", 100.0 * part / whole);
}

std::string TitleOf(const Model& model) {
  const std::string names = PrintableList(model.input.names);
  const std::string columns = CountText(model.CountColumns(), "column");
  if (model.method == Method::kEqualFrequency) {
    return fmt::format("{}: {} cut into {} bins of equal frequency", names, columns,
                       model.settings.bins);
  }
  std::vector<std::string> targets;
  for (const Target& target : model.targets) targets.push_back(target.name);
  return fmt::format("{}: {} binned by {}", names, columns, PrintableList(targets));
}

std::string LeftOutOf(const Model& model) {
  std::vector<std::string> texts;
  const std::string dropped = DroppedText(model.input);
  if (!dropped.empty()) texts.push_back(dropped);
  for (const Target& target : model.targets) {
    if (target.missingCases == 0) continue;
    const std::string which = model.targets.size() > 1 ? " " + Printable(target.name) : "";
    texts.push_back(fmt::format("{} without target{}", target.missingCases, which));
  }
  return fmt::format("{}", fmt::join(texts, "; "));
}

std::string RowsOf(const Model& model) {
  std::string text = CountText(model.input.rows, "row");
  if (!model.settings.weight.empty()) {
    text += fmt::format(" of total weight {} by {}", WeightText(model.input.weight),
                        Printable(model.settings.weight));
    text += ScaleText(model.settings);
  }
  const std::string leftOut = LeftOutOf(model);
  return leftOut.empty() ? text : text + "; " + leftOut;
}

std::string NameOf(const BinnedAttribute& attribute, const Model& model) {
  std::string name = Printable(attribute.name);
  if (model.targets.size() < 2) return name;
  return name + " by " + Printable(model.TargetOf(attribute)->name);
}

std::string OutcomeOf(const BinnedAttribute& attribute, const Model& model) {
  if (!attribute.status.IsOK()) {
    const StatusWords& words = WordsOf(attribute.status.GetErrorCode());
    return fmt::format("{}: {}", words.words, words.reason);
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

std::string RemedyOf(const BinnedAttribute& attribute) {
  const long code = attribute.status.GetErrorCode();
  return fmt::format("{} (library code {})", WordsOf(code).remedy, code);
}

std::string FindingsOf(const BinnedAttribute& attribute) {
  if (attribute.numDistinct == 0) return "no value that counts";
  std::string text =
      fmt::format("{} distinct value{} from {} to {}", attribute.numDistinct,
                  attribute.numDistinct == 1 ? "" : "s", attribute.minimum, attribute.maximum);
  if (attribute.entropy != TQMV::gMissingValue) {
    text += fmt::format("; entropy within the bins {:.4f} bits", attribute.entropy);
  }
  return text;
}

}  // namespace TQTool
