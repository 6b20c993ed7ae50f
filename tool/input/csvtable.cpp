#include "input/csvtable.h"

#include <algorithm>
#include <unordered_set>

#include <fmt/format.h>

#include "base/nearestname.h"
#include "base/plaintext.h"
#include "input/numbertext.h"

namespace TQTool {
namespace {

// As in a file whose lines end with CR alone: all of it would be the header.
bool HasLoneCarriageReturn(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && !text.substr(i + 1).starts_with('\n')) return true;
  }
  return false;
}

// "1 field", "2 fields".
std::string CountOf(std::size_t count) {
  return fmt::format("{} field{}", count, count == 1 ? "" : "s");
}

}  // namespace

CsvTable::CsvTable(CsvReader& reader) : fReader(reader), fHeaderLine(1) {
  do {
    if (!fReader.Next()) {
      FailAtHeader(
          "the input is empty; expected a header line with the names of the columns, "
          "then rows; check the file, or the command that feeds standard input");
    }
  } while (fReader.IsBlankLine());
  fHeaderLine = fReader.GetLine();

  std::unordered_set<std::string_view> seen;
  fNames.reserve(fReader.GetNumFields());  // `seen` points into it
  for (std::size_t i = 0; i < fReader.GetNumFields(); ++i) {
    const std::string& name = fNames.emplace_back(TrimBlanks(fReader.GetField(i)));
    if (HasLoneCarriageReturn(name)) {
      fReader.FailAtField(i,
                          "a carriage return without a line feed in the header; expected "
                          "lines that end with LF or CRLF; convert the file's line ends");
    }
    if (!name.empty() && !seen.insert(name).second) {
      fReader.FailAtField(i, fmt::format("a second column is named {}; expected names that "
                                         "differ; rename one of the two",
                                         Quoted(name)));
    }
  }
}

std::optional<std::size_t> CsvTable::FindColumn(std::string_view name) const {
  const auto found = std::find(fNames.begin(), fNames.end(), name);
  if (name.empty() || found == fNames.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fNames.begin());
}

std::size_t CsvTable::GetColumn(std::string_view name) const {
  if (const std::optional<std::size_t> column = FindColumn(name)) return *column;
  std::string remedy = fmt::format("there are {} columns; look at the header line", fNames.size());
  if (fNames.size() == 1) {
    remedy = fmt::format("there is only {}; is another --delimiter needed?", Quoted(fNames[0]));
  } else if (const std::string* const nearest = NearestName(name, fNames)) {
    remedy = fmt::format("did you mean {}?", Quoted(*nearest));
  }
  FailAtHeader(fmt::format("no column is named {}; {}", Quoted(name), remedy));
}

bool CsvTable::NextRow() {
  do {
    if (!fReader.Next()) return false;
  } while (fNames.size() > 1 && fReader.IsBlankLine());
  const std::size_t count = fReader.GetNumFields();
  if (count != fNames.size()) {
    fReader.FailAtField(std::min(count, fNames.size()),
                        fmt::format("a row of {}; expected {}, as in the header; look for a "
                                    "missing or an unquoted delimiter",
                                    CountOf(count), fNames.size()));
  }
  return true;
}

std::string_view CsvTable::GetField(std::size_t column) const {
  return TrimBlanks(fReader.GetField(column));
}

void CsvTable::FailAtHeader(const std::string& message) const {
  fReader.FailAtLine(fHeaderLine, message);
}

}  // namespace TQTool
