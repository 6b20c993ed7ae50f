#include "input/source.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/nearestname.h"
#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {

std::optional<std::size_t> Source::FindColumn(std::string_view name) const {
  const auto found = std::find(fNames.begin(), fNames.end(), name);
  if (name.empty() || found == fNames.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fNames.begin());
}

std::size_t Source::GetColumn(std::string_view name) const {
  if (const std::optional<std::size_t> column = FindColumn(name)) return *column;
  std::string remedy = fmt::format("there are {} columns; look at the header line", fNames.size());
  if (fNames.size() == 1) {
    remedy = fmt::format("there is only {}; {}", Quoted(fNames[0]), HintForOnlyColumn());
  } else if (const std::string* const nearest = NearestName(name, fNames)) {
    remedy = fmt::format("did you mean {}?", Quoted(*nearest));
  }
  FailAtHeader(fmt::format("no column is named {}; {}", Quoted(name), remedy));
}

void Source::FailAtField(std::size_t column, const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}: {}", LocateField(column), message));
}

void Source::CheckUtf8(std::size_t column, std::string_view text) const {
  if (IsUtf8(text)) return;
  FailAtField(column, fmt::format("{} is not UTF-8; expected text in that encoding; name the "
                                  "input's own, as in --encoding windows-1252",
                                  Quoted(text)));
}

void Source::FailAtHeader(const std::string& message) const {
  throw ToolError(kInput, fmt::format("{}: {}", LocateHeader(), message));
}

}  // namespace TQTool
