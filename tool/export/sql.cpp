#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "export/binlist.h"
#include "export/formats.h"

namespace TQTool {
namespace {

constexpr const char* kHeading =
    R"(-- The bins of numeric columns, behind the columns of the table.  NULL is the bin of NULL,
-- of missing-value texts and numbers, and of what is not finite.
)";

// A text between quotes, which stand twice inside; a backslash means nothing to SQL.
std::string Enclosed(const std::string& text, char quote) {
  std::string result(1, quote);
  for (const char byte : text) {
    if (byte == '\0') {
      throw ToolError(kInput, fmt::format("{} cannot be written in SQL, which has no zero byte; "
                                          "rename it, or choose another --format",
                                          Quoted(text)));
    }
    if (byte == quote) result += quote;
    result += byte;
  }
  return result + quote;
}

std::string Identifier(const std::string& name) { return Enclosed(name, '"'); }
std::string Literal(const std::string& text) { return Enclosed(text, '\''); }

// A branch of a CASE expression.
std::string When(const std::string& condition, const std::string& result) {
  return fmt::format("    WHEN {} THEN {}\n", condition, result);
}

// The branches that give NULL.  Texts come first, as they need not be numbers.
std::string MissingBranches(const ExportColumn& column, const BinList& list,
                            const std::string& value, const std::string& number) {
  std::string text = When(value + " IS NULL", "NULL");
  std::string texts;
  for (const std::string& token : list.missingTexts) {
    texts += (texts.empty() ? "" : ", ") + Literal(token);
  }
  if (!texts.empty()) {
    // Unless it is told, TRIM takes no tab for a blank.
    text += When(fmt::format("TRIM(CAST({} AS TEXT), ' \t') IN ({})", value, texts), "NULL");
  }
  text += When(fmt::format("NOT ({0} > {1} AND {0} < {2})", number, -kNumberLimit, kNumberLimit),
               "NULL");
  const MissingRule& rule = column.missing;
  if (!rule.numbers.empty()) {
    text += When(fmt::format("{} IN ({})", number, JoinNumbers(rule.numbers)), "NULL");
  }
  if (rule.range.has_value()) {
    text += When(fmt::format("{} BETWEEN {} AND {}", number, rule.range->lower, rule.range->upper),
                 "NULL");
  }
  return text;
}

// One column of bins.  The table's name before the column's makes a column that is not
// there an error: SQLite would take the name alone for a text.
std::string CaseExpression(const ExportColumn& column, const BinList& list) {
  const std::string value = Identifier(list.table) + "." + Identifier(column.name);
  const std::string number = fmt::format("CAST({} AS DOUBLE PRECISION)", value);
  std::string text = "  CASE\n" + MissingBranches(column, list, value, number);
  for (const ExportBin& bin : column.bins) {
    const std::string name = list.areIndexes ? bin.text : Literal(bin.text);
    const bool isLast = bin.index + 1 == column.bins.size();
    text += isLast
                ? fmt::format("    ELSE {}\n", name)
                : When(fmt::format("{} {} {}", number, bin.isUpperClosed ? "<=" : "<", bin.upper),
                       name);
  }
  return text + "  END AS " + Identifier(column.binsName);
}

}  // namespace

std::string WriteSql(const BinList& list) {
  std::string text = fmt::format("{}SELECT\n  {}.*", kHeading, Identifier(list.table));
  for (const ExportColumn& column : list.columns) text += ",\n" + CaseExpression(column, list);
  return text + fmt::format("\nFROM {};\n", Identifier(list.table));
}

}  // namespace TQTool
