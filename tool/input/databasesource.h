#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "input/source.h"

namespace TQTool {

// What the rows of data bases have in common: they are numbered, and their columns
// are known by name.
class DatabaseSource : public Source {
 public:
  std::string DescribeRow() const override;
  std::string LocateField(std::size_t column) const override;
  std::string LocateHeader() const override { return fName; }

 protected:
  // `name` is how messages call the source.
  explicit DatabaseSource(std::string name) : fRow(0) { fName = std::move(name); }

  // Throws ToolError (kInput) for a name that occurs twice.
  void SetNames(std::vector<std::string> names);
  // Takes over the texts of the next row; they are borrowed.
  void SetRow(const std::vector<std::string_view>& texts);
  void SetRowNumber(std::uint64_t row) { fRow = row; }
  std::uint64_t GetRowNumber() const { return fRow; }

  // Throws ToolError (kInput) about the source as a whole.
  [[noreturn]] void Fail(const std::string& message) const;

 private:
  std::uint64_t fRow;  // from 1; 0 before the first one
};

// The first line of what a data base has to say, made safe to show.
std::string FirstLineOf(std::string_view message);

}  // namespace TQTool
