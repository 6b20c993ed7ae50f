#include "cli/usermissing.h"

#include <algorithm>
#include <cstddef>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/numbertext.h"

namespace TQTool {
namespace {

[[noreturn]] void RefuseUserMissing(std::string_view text, const std::string& reason) {
  throw ToolError(kUsage, fmt::format("--user-missing: {}: {}; expected COL=9,99 or COL=90..99, "
                                      "COL=..0, COL=90..",
                                      Quoted(text), reason));
}

double ParseNumber(std::string_view option, std::string_view text) {
  double number = 0.0;
  if (ReadNumber(TrimBlanks(text), &number) != NumberText::kNumber) {
    RefuseUserMissing(option, fmt::format("{} is not a number", Quoted(text)));
  }
  return number;
}

ClosedRange ParseRange(std::string_view option, std::string_view left, std::string_view right) {
  if (TrimBlanks(left).empty() && TrimBlanks(right).empty()) {
    RefuseUserMissing(option, "a range without ends");
  }
  ClosedRange range;
  if (!TrimBlanks(left).empty()) range.lower = ParseNumber(option, left);
  if (!TrimBlanks(right).empty()) range.upper = ParseNumber(option, right);
  if (range.lower > range.upper) RefuseUserMissing(option, "the range ends before it begins");
  return range;
}

void AddMissingValue(std::string_view option, std::string_view value, MissingRule& rule) {
  const std::size_t dots = value.find("..");
  if (dots == std::string_view::npos) {
    rule.numbers.push_back(ParseNumber(option, value));
  } else if (rule.range.has_value()) {
    RefuseUserMissing(option, "more than one range for a column");
  } else {
    rule.range = ParseRange(option, value.substr(0, dots), value.substr(dots + 2));
  }
}

}  // namespace

void AddUserMissing(std::string_view option, const std::vector<std::string>& targets,
                    UserMissing& userMissing) {
  // A column's name may hold "=", so the last one counts.
  const std::size_t equals = option.rfind('=');
  if (equals == std::string_view::npos) {
    RefuseUserMissing(option, "no = between column and values");
  }
  const std::string_view column = TrimBlanks(option.substr(0, equals));
  if (column.empty()) RefuseUserMissing(option, "no column before the =");
  const bool isTarget = std::find(targets.begin(), targets.end(), column) != targets.end();
  MissingRule& rule = userMissing[std::string(column)];
  for (std::string_view rest = option.substr(equals + 1);;) {
    const std::size_t comma = rest.find(',');
    const std::string_view value = TrimBlanks(rest.substr(0, comma));
    if (isTarget) {
      rule.texts.emplace_back(value);
    } else {
      AddMissingValue(option, value, rule);
    }
    if (comma == std::string_view::npos) return;
    rest.remove_prefix(comma + 1);
  }
}

}  // namespace TQTool
