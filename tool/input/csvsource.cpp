#include "input/csvsource.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"

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

CsvSource::CsvSource(CsvReader reader, char decimalPoint, std::uint64_t size)
    : fReader(std::move(reader)), fHeaderLine(1), fSize(size), fRows(0), fBytesPerRow(0.0) {
  fName = fReader.GetName();
  fDecimalPoint = decimalPoint;
  do {
    if (!fReader.Next()) {
      FailAtHeader(
          "the input is empty; expected a header line with the names of the columns, "
          "then rows; check the file, or the command that feeds standard input");
    }
  } while (fReader.IsBlankLine());
  fHeaderLine = fReader.GetLine();

  std::unordered_set<std::string_view> seen;
  const std::span<const std::string_view> fields = fReader.GetFields();
  fNames.reserve(fields.size());  // `seen` points into it
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string& name = fNames.emplace_back(TrimBlanks(fields[i]));
    if (HasLoneCarriageReturn(name)) {
      FailAtField(i,
                  "a carriage return without a line feed in the header; expected "
                  "lines that end with LF or CRLF; convert the file's line ends");
    }
    CheckUtf8(i, name);
    if (!name.empty() && !seen.insert(name).second) {
      FailAtField(i, fmt::format("a second column is named {}; expected names that "
                                 "differ; rename one of the two",
                                 Quoted(name)));
    }
  }
}

bool CsvSource::NextRow() {
  do {
    if (!fReader.Next()) return false;
  } while (fNames.size() > 1 && fReader.IsBlankLine());
  fFields = fReader.GetFields();
  if (fFields.size() != fNames.size()) FailAtRowOfAnotherLength();
  ++fRows;
  return true;
}

std::optional<double> CsvSource::EstimateRows() const {
  if (fSize == 0 || fBytesPerRow == 0.0) return std::nullopt;
  return static_cast<double>(fSize) / fBytesPerRow;
}

void CsvSource::Mark() {
  fReader.Mark();
  fRows = 0;
}

void CsvSource::Rewind() {
  if (fRows > 0) {
    fBytesPerRow = static_cast<double>(fReader.GetBytesSinceMark()) / static_cast<double>(fRows);
  }
  fReader.Rewind();
}

std::string CsvSource::DescribeRow() const { return fmt::format("line {}", fReader.GetLine()); }

void CsvSource::FailAtRowOfAnotherLength() const {
  FailAtField(std::min(fFields.size(), fNames.size()),
              fmt::format("a row of {}; expected {}, as in the header; look for a "
                          "missing or an unquoted delimiter",
                          CountOf(fFields.size()), fNames.size()));
}

}  // namespace TQTool
