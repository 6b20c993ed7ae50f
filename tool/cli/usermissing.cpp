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

BINNumericInterval ParseRange(std::string_view option, std::string_view left,
                              std::string_view right) {
  if (TrimBlanks(left).empty() && TrimBlanks(right).empty()) {
    RefuseUserMissing(option, "a range without ends");
  }
  if (TrimBlanks(left).empty()) return BINNumericInterval(ParseNumber(option, right), true);
  if (TrimBlanks(right).empty()) return BINNumericInterval(ParseNumber(option, left), false);
  const BINNumericInterval range(ParseNumber(option, left), ParseNumber(option, right));
  if (range.IsEmpty()) RefuseUserMissing(option, "the range ends before it begins");
  return range;
}

// What has been said about a column so far; a new entry for a new column.
UserMissing& EntryOf(std::string_view column, std::vector<UserMissing>& all) {
  const auto same = std::find_if(all.begin(), all.end(), [column](const UserMissing& entry) {
    return entry.column == column;
  });
  if (same != all.end()) return *same;
  all.emplace_back().column = column;
  return all.back();
}

void AddMissingValue(std::string_view option, std::string_view value, UserMissing& entry) {
  const std::size_t dots = value.find("..");
  if (dots == std::string_view::npos) {
    entry.numbers.push_back(ParseNumber(option, value));
  } else if (entry.range.has_value()) {
    RefuseUserMissing(option, "more than one range for a column");
  } else {
    entry.range = ParseRange(option, value.substr(0, dots), value.substr(dots + 2));
  }
}

}  // namespace

void AddUserMissing(std::string_view option, const std::string& target,
                    std::vector<UserMissing>& all) {
  // A column's name may hold "=", so the last one counts.
  const std::size_t equals = option.rfind('=');
  if (equals == std::string_view::npos) {
    RefuseUserMissing(option, "no = between column and values");
  }
  const std::string_view column = TrimBlanks(option.substr(0, equals));
  if (column.empty()) RefuseUserMissing(option, "no column before the =");
  UserMissing& entry = EntryOf(column, all);
  for (std::string_view rest = option.substr(equals + 1);;) {
    const std::size_t comma = rest.find(',');
    const std::string_view value = TrimBlanks(rest.substr(0, comma));
    if (column == target) {
      entry.texts.emplace_back(value);
    } else {
      AddMissingValue(option, value, entry);
    }
    if (comma == std::string_view::npos) return;
    rest.remove_prefix(comma + 1);
  }
}

}  // namespace TQTool
