#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace TQTool {

// Rows of cells, to be printed in columns that line up.  Rows may be of different
// lengths.  Widths are counted in characters.
class TextGrid {
 public:
  void AddRow(std::vector<std::string> cells) { fRows.push_back(std::move(cells)); }

  // One line per row, indented by two blanks: the first column flush left, the
  // others flush right, two blanks between them.  What does not fit into lines of
  // `maxWidth` characters (0: no limit) follows below, again beside the first column.
  std::string Print(std::size_t maxWidth = 0) const;

 private:
  std::vector<std::size_t> ColumnWidths() const;

  std::vector<std::vector<std::string>> fRows;
};

}  // namespace TQTool
