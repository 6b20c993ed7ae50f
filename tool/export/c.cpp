#include <algorithm>

#include <fmt/format.h>

#include "export/binlist.h"
#include "export/formats.h"

namespace TQTool {
namespace {

constexpr const char* kHeading = R"(/* The bins of numeric columns, in C99.

   Each function takes a number and gives its bin, {1} for a missing one: a number that
   the column takes for missing, NaN (give it for what is no number) and the infinities.
   tqbin_columns tells which function makes which column of bins from which column. */

#include <stddef.h>

struct tqbin_column {{
  const char *name;      /* of the numbers; null behind the last column */
  const char *bins_name; /* of the bins */
  {0}(*bin)(double number);
}};
)";

constexpr const char* kPlace = R"(
/* How many of the ascending cut points lie below a number, or at it for bins that are
   closed on the left. */
static size_t place(double number, const double *cuts, size_t size, int is_right_closed) {
  size_t low = 0;
  while (low < size) {
    const size_t middle = low + (size - low) / 2;
    if (is_right_closed ? cuts[middle] < number : cuts[middle] <= number) {
      low = middle + 1;
    } else {
      size = middle;
    }
  }
  return low;
}
)";

// Bytes that are not plain ASCII become octal escapes, which end after three digits; a
// question mark is escaped for fear of trigraphs.
std::string Literal(const std::string& text) {
  std::string result = "\"";
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    if (byte == '"' || byte == '\\' || byte == '?') {
      result += '\\';
      result += byte;
    } else if (code < 0x20 || code >= 0x7F) {
      result += fmt::format("\\{:03o}", code);
    } else {
      result += byte;
    }
  }
  return result + "\"";
}

// When a number has no bin.
std::string MissingCondition(const MissingRule& rule) {
  std::string text = fmt::format("!(number > {} && number < {})", -kNumberLimit, kNumberLimit);
  for (const double number : rule.numbers) text += fmt::format(" || number == {}", number);
  if (rule.range.has_value()) {
    text += fmt::format(" || (number >= {} && number <= {})", rule.range->lower, rule.range->upper);
  }
  return text;
}

std::string Function(const ExportColumn& column, const std::string& name, bool areIndexes) {
  const std::vector<double> cuts = CutsOf(column);
  std::string text =
      fmt::format("\n{}{}(double number) {{\n", areIndexes ? "int " : "const char *", name);
  std::string place = "0";
  if (!cuts.empty()) {
    text += fmt::format("  static const double cuts[] = {{{}}};\n", JoinNumbers(cuts));
    place = fmt::format("place(number, cuts, {}, {})", cuts.size(), column.isRightClosed ? 1 : 0);
  }
  if (!areIndexes) {
    std::string bins;
    for (const ExportBin& bin : column.bins) {
      bins += (bins.empty() ? "" : ", ") + Literal(bin.text);
    }
    text += fmt::format("  static const char *const bins[] = {{{}}};\n", bins);
  }
  text += fmt::format("  if ({}) return {};\n", MissingCondition(column.missing),
                      areIndexes ? "-1" : "NULL");
  return text + (areIndexes ? fmt::format("  return (int){};\n}}\n", place)
                            : fmt::format("  return bins[{}];\n}}\n", place));
}

}  // namespace

std::string WriteC(const BinList& list) {
  std::string text = fmt::format(kHeading, list.areIndexes ? "int " : "const char *",
                                 list.areIndexes ? "-1" : "NULL");
  const bool hasCuts = std::any_of(list.columns.begin(), list.columns.end(),
                                   [](const ExportColumn& one) { return one.bins.size() > 1; });
  if (hasCuts) text += kPlace;
  std::string table;
  const std::vector<std::string> names = FunctionNames(list);
  for (std::size_t i = 0; i < list.columns.size(); ++i) {
    const ExportColumn& column = list.columns[i];
    text += Function(column, names[i], list.areIndexes);
    table += fmt::format("  {{{}, {}, {}}},\n", Literal(column.name), Literal(column.binsName),
                         names[i]);
  }
  return text + fmt::format(
                    "\nconst struct tqbin_column tqbin_columns[] = {{\n{}  {{NULL, NULL, "
                    "NULL}}\n}};\n",
                    table);
}

}  // namespace TQTool
