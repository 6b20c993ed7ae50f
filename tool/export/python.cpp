#include <fmt/format.h>

#include "export/binlist.h"
#include "export/formats.h"
#include "model/jsontext.h"

namespace TQTool {
namespace {

constexpr const char* kHeading = R"("""The bins of numeric columns; needs nothing but Python 3.

Each function takes a number, or a text that holds one, and gives its bin; None is the bin
of None, of missing-value texts and numbers, and of what is not finite.  COLUMNS tells
which function makes which column of bins from which column; bins_of does it for a row.
"""

from bisect import bisect_left, bisect_right

)";

constexpr const char* kNumber = R"(

def _number(value):
    """The value as a number; None for a missing one."""
    if isinstance(value, str):
        value = value.strip(" \t")
        if value in _MISSING_TEXTS:
            return None
    if value is None:
        return None
    number = float(value)
    return number if -_LIMIT < number < _LIMIT else None
)";

constexpr const char* kBinsOf = R"(

def bins_of(row):
    """The bins of a row, which maps names of columns to values."""
    return {bins: function(row[name]) for bins, (name, function) in COLUMNS.items()}
)";

// JSON's texts are Python's as well, where characters beyond ASCII stand for themselves.
std::string Literal(const std::string& text) { return Json(text).dump(); }

// "(a, b,)": the comma behind makes a tuple of a single one, too.
std::string Tuple(const std::string& items) {
  return items.empty() ? "()" : fmt::format("({},)", items);
}

std::string Function(const ExportColumn& column, const std::string& name, bool areIndexes) {
  std::string text = fmt::format("\n\ndef {}(value):\n    number = _number(value)\n", name);
  std::string condition = "number is None";
  const MissingRule& rule = column.missing;
  if (!rule.numbers.empty()) {
    condition += fmt::format(" or number in {}", Tuple(JoinNumbers(rule.numbers)));
  }
  if (rule.range.has_value()) {
    condition += fmt::format(" or {} <= number <= {}", rule.range->lower, rule.range->upper);
  }
  text += fmt::format("    if {}:\n        return None\n", condition);
  const std::string place =
      fmt::format("{}({}, number)", column.isRightClosed ? "bisect_left" : "bisect_right",
                  Tuple(JoinNumbers(CutsOf(column))));
  if (areIndexes) return text + fmt::format("    return {}\n", place);
  std::string bins;
  for (const ExportBin& bin : column.bins) bins += (bins.empty() ? "" : ", ") + Literal(bin.text);
  return text + fmt::format("    return {}[{}]\n", Tuple(bins), place);
}

}  // namespace

std::string WritePython(const BinList& list) {
  std::string missing;
  for (const std::string& token : list.missingTexts) {
    missing += (missing.empty() ? "" : ", ") + Literal(token);
  }
  std::string text = fmt::format("{}_LIMIT = {}\n_MISSING_TEXTS = {}\n{}", kHeading, kNumberLimit,
                                 Tuple(missing), kNumber);
  std::string table;
  const std::vector<std::string> names = FunctionNames(list);
  for (std::size_t i = 0; i < list.columns.size(); ++i) {
    const ExportColumn& column = list.columns[i];
    text += Function(column, names[i], list.areIndexes);
    table += fmt::format("    {}: ({}, {}),\n", Literal(column.binsName), Literal(column.name),
                         names[i]);
  }
  return text + fmt::format("\n\nCOLUMNS = {{\n{}}}\n", table) + kBinsOf;
}

}  // namespace TQTool
