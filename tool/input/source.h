#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/plaintext.h"

namespace TQTool {

// Where rows come from: the names of columns, then rows of as many texts.  Every
// kind of input is one class behind this, in a file of its own.  Reading throws
// ToolError.  Not thread-safe: use a source from one thread at a time.
class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;

  // How messages call it.
  const std::string& GetName() const { return fName; }

  // The names of all inputs that its rows came from so far.
  virtual std::vector<std::string> GetInputNames() const { return {fName}; }

  // One name per column, without the blanks around it; may be empty.
  const std::vector<std::string>& GetNames() const { return fNames; }
  std::optional<std::size_t> FindColumn(std::string_view name) const;

  // The column of this name.  Throws ToolError (kInput), with the nearest name,
  // when there is none.
  std::size_t GetColumn(std::string_view name) const;

  // Goes on to the next row; false when there is none.
  virtual bool NextRow() = 0;

  // The text of a field of the row, without the blanks around it.  Without data
  // (null) where a data base holds NULL.  Valid until the next call of NextRow.
  std::string_view GetField(std::size_t column) const { return TrimBlanks(fFields[column]); }

  // The same of all fields, with their blanks.
  std::span<const std::string_view> GetFields() const { return fFields; }

  // What stands before the decimals of the source's numbers.
  char GetDecimalPoint() const { return fDecimalPoint; }

  // About how many rows there are in all, where that can be told before they are read:
  // when rows have been looked at between Mark and Rewind.
  virtual std::optional<double> EstimateRows() const { return std::nullopt; }

  // Where this row is, in words: "line 7".
  virtual std::string DescribeRow() const = 0;

  // Where a field of this row is, and where the names are, as messages begin:
  // "FILE:7:12", "FILE:1".
  virtual std::string LocateField(std::size_t column) const = 0;
  virtual std::string LocateHeader() const = 0;

  // What to do when a column is not found and there is only one.
  virtual std::string HintForOnlyColumn() const { return "name that one"; }

  // Throws ToolError (kInput) about a field of this row, saying where it is.
  [[noreturn]] void FailAtField(std::size_t column, const std::string& message) const;

  // Throws the same when a text, of a field of this row or of the names, is not UTF-8, so
  // that it could not be kept as it is.
  void CheckUtf8(std::size_t column, std::string_view text) const;

  // Throws ToolError (kInput) about the names of the columns.
  [[noreturn]] void FailAtHeader(const std::string& message) const;

  // Mark remembers the rows from the next one on (and so keeps them) and Rewind
  // goes back to them, once: the next row is then that one again.
  virtual void Mark() = 0;
  virtual void Rewind() = 0;

 protected:
  std::string fName;
  std::vector<std::string> fNames;
  std::span<const std::string_view> fFields;  // of the row, as many as names
  char fDecimalPoint = '.';
};

}  // namespace TQTool
