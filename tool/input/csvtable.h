#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/csvreader.h"

namespace TQTool {

// CSV with a header line: column names, then rows of as many fields.  An empty
// line is passed over, but in a table of one column it is an empty field.
// Throws ToolError (kInput) for an empty input, a name that occurs twice and a
// row with another number of fields.
class CsvTable {
 public:
  // Reads the header.  `reader` is borrowed and not yet used.
  explicit CsvTable(CsvReader& reader);

  // One name per column, without the blanks around it; may be empty.
  const std::vector<std::string>& GetNames() const { return fNames; }
  std::optional<std::size_t> FindColumn(std::string_view name) const;

  // The column of this name.  Throws ToolError (kInput), with the nearest name,
  // when there is none.
  std::size_t GetColumn(std::string_view name) const;

  // Goes on to the next row; false when there is none.
  bool NextRow();

  // The text of a field of the row, without the blanks around it.  Valid until
  // the next call of GetField or NextRow.
  std::string_view GetField(std::size_t column) const;

  // Throws ToolError (kInput) about a field of this row.
  [[noreturn]] void FailAtField(std::size_t column, const std::string& message) const {
    fReader.FailAtField(column, message);
  }
  // Throws ToolError (kInput) about the header line.
  [[noreturn]] void FailAtHeader(const std::string& message) const;

  std::uint64_t GetLine() const { return fReader.GetLine(); }

  // See CsvReader.
  void Mark() { fReader.Mark(); }
  void Rewind() { fReader.Rewind(); }
  std::size_t GetMarkedSize() const { return fReader.GetMarkedSize(); }

 private:
  CsvReader& fReader;
  std::vector<std::string> fNames;
  std::uint64_t fHeaderLine;
};

}  // namespace TQTool
