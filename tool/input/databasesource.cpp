#include "input/databasesource.h"

#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {

std::string DatabaseSource::DescribeRow() const { return fmt::format("row {}", fRow); }

std::string DatabaseSource::LocateField(std::size_t column) const {
  return fmt::format("{}: row {}, column {}", fName, fRow, column + 1);
}

void DatabaseSource::SetNames(std::vector<std::string> names) {
  std::unordered_set<std::string_view> seen;
  for (const std::string& name : names) {
    if (!name.empty() && !seen.insert(name).second) {
      Fail(
          fmt::format("two columns are named {}; expected names that differ; name one of them "
                      "anew with AS",
                      Quoted(name)));
    }
  }
  fNames = std::move(names);
}

void DatabaseSource::SetRow(const std::vector<std::string_view>& texts) {
  fFields = texts;
  ++fRow;
}

void DatabaseSource::Fail(const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}: {}", fName, message));
}

std::string FirstLineOf(std::string_view message) {
  return Printable(TrimBlanks(message.substr(0, message.find('\n'))));
}

}  // namespace TQTool
