#include "export/binlist.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxNameLength = 40;  // compilers may look at the first 63 characters only

// The bins between an attribute's cut points.
std::vector<ExportBin> BinsOf(const BinnedAttribute& attribute, BinText kind) {
  std::vector<ExportBin> bins;
  for (std::size_t b = 0; b <= attribute.cuts.size(); ++b) {
    const bool isFirst = b == 0;
    const bool isLast = b == attribute.cuts.size();
    bins.push_back({b, BinTextOf(attribute, b, kind),
                    isFirst ? -kNumberLimit : attribute.cuts[b - 1],
                    isLast ? kNumberLimit : attribute.cuts[b], !isFirst && !attribute.isRightClosed,
                    !isLast && attribute.isRightClosed});
  }
  return bins;
}

// The rule with a range that has two ends.
MissingRule Bounded(MissingRule rule) {
  if (!rule.range.has_value()) return rule;
  rule.range->lower = std::max(rule.range->lower, -kNumberLimit);
  rule.range->upper = std::min(rule.range->upper, kNumberLimit);
  return rule;
}

bool IsWordCharacter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9');
}

// The letters and digits of a name; any other character becomes an underscore.
std::string WordOf(const std::string& name) {
  std::string word;
  for (const char byte : name.substr(0, kMaxNameLength)) {
    word += IsWordCharacter(byte) ? byte : '_';
  }
  return word;
}

}  // namespace

BinList ListBins(const Model& model, const ExportOptions& options) {
  BinList list;
  list.areIndexes = options.binText == BinText::kIndex;
  list.table = options.table;
  for (const std::string& token : model.settings.missingTokens) {
    list.missingTexts.emplace_back(TrimBlanks(token));
  }
  std::unordered_set<std::string> names;
  for (const BinnedAttribute& attribute : model.attributes) names.insert(attribute.name);
  for (const BinnedAttribute& attribute : model.attributes) {
    std::string binsName = BinColumnName(model, attribute, options.suffix);
    if (!names.insert(binsName).second) {
      throw ToolError(kInput, fmt::format("there is a column {} already, as the bins of {} "
                                          "would be called; name another ending with --suffix",
                                          Quoted(binsName), Quoted(attribute.name)));
    }
    list.columns.push_back({attribute.name, std::move(binsName), attribute.isRightClosed,
                            Bounded(attribute.missing), BinsOf(attribute, options.binText)});
  }
  return list;
}

std::vector<double> CutsOf(const ExportColumn& column) {
  std::vector<double> cuts;
  for (std::size_t b = 1; b < column.bins.size(); ++b) cuts.push_back(column.bins[b].lower);
  return cuts;
}

std::vector<std::string> FunctionNames(const BinList& list) {
  std::vector<std::string> names;
  std::unordered_set<std::string> taken;
  for (const ExportColumn& column : list.columns) {
    const std::string plain = "bin_of_" + WordOf(column.name);
    std::string name = plain;
    for (int i = 2; !taken.insert(name).second; ++i) name = fmt::format("{}_{}", plain, i);
    names.push_back(name);
  }
  return names;
}

std::string JoinNumbers(const std::vector<double>& numbers) {
  return fmt::format("{}", fmt::join(numbers, ", "));
}

}  // namespace TQTool
