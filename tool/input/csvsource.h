#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "input/csvreader.h"
#include "input/source.h"

namespace TQTool {

// CSV with a header line: column names, then rows of as many fields.  An empty
// line is passed over, but in a table of one column it is an empty field.
// Throws ToolError (kInput) for an empty input, a name that occurs twice and a
// row with another number of fields.
class CsvSource : public Source {
 public:
  // Reads the header.  `reader` is not yet used; `size` is that of its whole text in
  // bytes, 0 when it is not known.
  explicit CsvSource(CsvReader reader, char decimalPoint = '.', std::uint64_t size = 0);

  bool NextRow() override;
  std::string DescribeRow() const override;
  std::string LocateField(std::size_t column) const override { return fReader.LocateField(column); }
  std::string LocateHeader() const override { return fReader.LocateLine(fHeaderLine); }
  std::string HintForOnlyColumn() const override { return "is another --delimiter needed?"; }
  std::optional<double> EstimateRows() const override;
  void Mark() override;
  void Rewind() override;

 private:
  [[noreturn]] void FailAtRowOfAnotherLength() const;

  CsvReader fReader;
  std::uint64_t fHeaderLine;
  std::uint64_t fSize;  // 0 when not known
  std::uint64_t fRows;  // read since the mark
  double fBytesPerRow;  // of the rows between mark and rewind; 0 when not known
};

}  // namespace TQTool
