#include "run/columns.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "base/notes.h"
#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/numbertext.h"

namespace TQTool {
namespace {

// How much is looked at to find the numeric columns.
constexpr std::size_t kSampleRows = 1000;
constexpr std::size_t kSampleBytes = std::size_t{1} << 20;

constexpr std::size_t kMaxNamesInNote = 5;

// What the first rows say about one column.
struct Evidence {
  bool hasNumber = false;
  std::string text;       // the first field that is no number
  std::string textPlace;  // where that is; empty when there is none
};

void Look(std::string_view field, const Source& table, const MissingTokens& missing,
          Evidence& evidence) {
  if (!evidence.textPlace.empty() || missing.Contains(field)) return;
  double number = 0.0;
  if (ReadNumber(field, &number, table.GetDecimalPoint()) != NumberText::kNotNumber) {
    evidence.hasNumber = true;
  } else {
    evidence.text = field;
    evidence.textPlace = table.DescribeRow();
  }
}

// Looks at the first `maxRows` rows and goes back to the first one.
std::vector<Evidence> LookAtFirstRows(Source& table, const MissingTokens& missing,
                                      std::size_t maxRows) {
  std::vector<Evidence> evidence(table.GetNames().size());
  table.Mark();
  std::size_t rows = 0;
  std::size_t bytes = 0;
  while (rows < maxRows && bytes < kSampleBytes && table.NextRow()) {
    for (std::size_t i = 0; i < evidence.size(); ++i) {
      const std::string_view field = table.GetField(i);
      Look(field, table, missing, evidence[i]);
      bytes += field.size();
    }
    ++rows;
  }
  table.Rewind();
  if (rows == 0) {
    table.FailAtHeader(
        "no row follows the header line; expected at least one; check the file, "
        "or the command that feeds standard input");
  }
  return evidence;
}

bool Contains(const std::vector<std::size_t>& columns, std::size_t column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}

// The position of a column among others, to which it is added when it is new.
std::size_t PlaceOf(std::size_t column, std::vector<std::size_t>& columns) {
  const auto place = std::find(columns.begin(), columns.end(), column) - columns.begin();
  if (place == std::ssize(columns)) columns.push_back(column);
  return static_cast<std::size_t>(place);
}

// Says which columns are left out for one reason.
void NoteSkipped(const std::vector<std::string>& columns, std::string_view reason) {
  if (columns.empty()) return;
  const std::size_t shown = std::min(columns.size(), kMaxNamesInNote);
  const auto end = columns.begin() + static_cast<std::ptrdiff_t>(shown);
  std::string list = fmt::format("{}", fmt::join(columns.begin(), end, ", "));
  if (shown < columns.size()) list += fmt::format(" and {} more", columns.size() - shown);
  PrintNote(fmt::format("skipped {} column{} {}: {}", columns.size(),
                        columns.size() == 1 ? "" : "s", reason, list));
}

std::vector<std::size_t> ChooseNumericColumns(const Source& table, const Columns& columns,
                                              const std::vector<Evidence>& evidence) {
  std::vector<std::size_t> chosen;
  std::vector<std::string> unnamed;
  std::vector<std::string> withText;
  std::vector<std::string> empty;
  for (std::size_t i = 0; i < evidence.size(); ++i) {
    const std::string& name = table.GetNames()[i];
    if (Contains(columns.targets, i) || i == columns.weight) continue;
    if (name.empty()) {
      unnamed.push_back(fmt::format("column {}", i + 1));
    } else if (!evidence[i].textPlace.empty()) {
      withText.push_back(fmt::format("{} ({} in {})", Printable(name), Quoted(evidence[i].text),
                                     evidence[i].textPlace));
    } else if (!evidence[i].hasNumber) {
      empty.push_back(Printable(name));
    } else {
      chosen.push_back(i);
    }
  }
  NoteSkipped(unnamed, "without a name in the header");
  NoteSkipped(withText, "because of text");
  NoteSkipped(empty, "with nothing but missing values in the first rows");
  if (chosen.empty()) {
    table.FailAtHeader(
        "no column can be binned; expected a column that holds numbers, besides "
        "target and weight; name one with --attribute, or another --delimiter or "
        "--missing-token, or take --decimal-comma where numbers are written as in 3,14");
  }
  return chosen;
}

[[noreturn]] void RefuseRole(std::string_view option, std::string_view name,
                             std::string_view role) {
  throw ToolError(kUsage, fmt::format("--{}: {} is {} already; expected another column", option,
                                      Quoted(name), role));
}

// The columns of --attribute.  An argument that is a column's whole name is that
// column, so that a name may hold commas; any other one is a comma list.
std::vector<std::size_t> FindAttributes(const Source& table, const BinningOptions& options) {
  std::vector<std::size_t> found;
  for (const std::string& argument : options.attributes) {
    if (const auto column = table.FindColumn(argument)) {
      PlaceOf(*column, found);
      continue;
    }
    for (std::string_view rest = argument;;) {
      const std::size_t comma = rest.find(',');
      PlaceOf(table.GetColumn(TrimBlanks(rest.substr(0, comma))), found);
      if (comma == std::string_view::npos) break;
      rest.remove_prefix(comma + 1);
    }
  }
  return found;
}

// The columns that the options name, and the pairs if they name these.
Columns FindNamedColumns(const Source& table, const BinningOptions& options) {
  Columns columns;
  for (const std::string& target : options.targets) {
    PlaceOf(table.GetColumn(target), columns.targets);
  }
  if (!options.settings.weight.empty()) columns.weight = table.GetColumn(options.settings.weight);
  columns.attributes = FindAttributes(table, options);
  for (const AttributeTarget& pair : options.pairs) {
    const ColumnPair found = {PlaceOf(table.GetColumn(pair.attribute), columns.attributes),
                              PlaceOf(table.GetColumn(pair.target), columns.targets)};
    const auto same = std::find(columns.pairs.begin(), columns.pairs.end(), found);
    if (same == columns.pairs.end()) columns.pairs.push_back(found);
  }
  // The targets of an attribute stand together, wherever they were named.
  std::stable_sort(
      columns.pairs.begin(), columns.pairs.end(),
      [](const ColumnPair& a, const ColumnPair& b) { return a.attribute < b.attribute; });
  return columns;
}

// Throws ToolError (kUsage) for a column in two roles.
void CheckRoles(const Source& table, const Columns& columns, std::string_view attributeOption) {
  if (columns.weight.has_value() && Contains(columns.targets, *columns.weight)) {
    RefuseRole("weight", table.GetNames()[*columns.weight], "a target");
  }
  for (const std::size_t attribute : columns.attributes) {
    const std::string& name = table.GetNames()[attribute];
    if (Contains(columns.targets, attribute)) RefuseRole(attributeOption, name, "a target");
    if (attribute == columns.weight) RefuseRole(attributeOption, name, "the weight");
  }
}

// Every attribute against every target, or against none when there is none.
std::vector<ColumnPair> AllPairs(const Columns& columns) {
  std::vector<ColumnPair> pairs;
  for (std::size_t a = 0; a < columns.attributes.size(); ++a) {
    if (columns.targets.empty()) pairs.push_back({a, std::nullopt});
    for (std::size_t t = 0; t < columns.targets.size(); ++t) pairs.push_back({a, t});
  }
  return pairs;
}

void AddUserMissing(const MissingRule& rule, int index, BINVarList& list) {
  constexpr double kLargest = std::numeric_limits<double>::max();  // the library's "no bound"
  for (const double number : rule.numbers) list.AddDiscreteUserMissing(index, number, "");
  for (const std::string& text : rule.texts) list.AddDiscreteUserMissing(index, text, "");
  if (rule.range.has_value()) {
    list.SetMissingInterval(index, std::max(rule.range->lower, -kLargest),
                            std::min(rule.range->upper, kLargest));
  }
}

IBINVariable::BINWRoundingOption RoundingOf(const BinningOptions& options) {
  if (options.settings.weightRounding == "down") return IBINVariable::kTruncate;
  if (options.settings.weightRounding == "closest") return IBINVariable::kRoundToClosest;
  return static_cast<IBINVariable::BINWRoundingOption>(2);  // leaves weights as they are
}

}  // namespace

Columns ChooseColumns(Source& table, const BinningOptions& options, const MissingTokens& missing) {
  Columns columns = FindNamedColumns(table, options);
  CheckRoles(table, columns, options.pairs.empty() ? "attribute" : "pair");
  const bool isChosen = !columns.attributes.empty();
  const std::vector<Evidence> evidence =
      LookAtFirstRows(table, missing, isChosen ? 1 : kSampleRows);
  if (!isChosen) columns.attributes = ChooseNumericColumns(table, columns, evidence);
  if (columns.pairs.empty()) columns.pairs = AllPairs(columns);
  return columns;
}

BINVarList MakeVarList(const Source& table, const Columns& columns, const BinningOptions& options) {
  BINVarList list;
  const std::vector<std::string>& names = table.GetNames();
  // A list has one target; the others are attributes that are named as targets later.
  IBINVariable::VariableRole role = IBINVariable::kTarget;
  for (const std::size_t target : columns.targets) {
    list.AddCatVar(names[target], "", kMaxTargetCategories, IBINVariable::kStringCategorical,
                   std::exchange(role, IBINVariable::kAttribute));
  }
  if (columns.weight.has_value()) {
    list.AddWeightVar(names[*columns.weight], "", RoundingOf(options));
  }
  for (const std::size_t attribute : columns.attributes) {
    list.AddContVar(names[attribute], "", IBINVariable::kAttribute);
  }
  for (const auto& [column, rule] : options.userMissing) {
    const int index = list.FindVariable(column);
    if (index < 0) {
      const std::string& name = names[table.GetColumn(column)];
      table.FailAtHeader(
          fmt::format("--user-missing names {}, which takes no part; expected the "
                      "target, the weight or a column to bin; add it with "
                      "--attribute",
                      Quoted(name)));
    }
    if (index != list.GetWeightIndex()) AddUserMissing(rule, index, list);
  }
  return list;
}

}  // namespace TQTool
