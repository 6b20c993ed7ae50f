#include "output/textgrid.h"

#include <algorithm>
#include <cstddef>

#include "base/plaintext.h"

namespace TQTool {
namespace {

constexpr std::size_t kGap = 2;  // blanks before every column

void AppendCell(const std::string& cell, std::size_t width, bool isFlushLeft, std::string& line) {
  const std::string padding(width - CountCharacters(cell), ' ');
  line.append(kGap, ' ');
  line += isFlushLeft ? cell + padding : padding + cell;
}

// The column behind the last one that fits beside the first column, from `begin` on; at
// least one.
std::size_t EndOfBlock(const std::vector<std::size_t>& widths, std::size_t begin,
                       std::size_t maxWidth) {
  if (maxWidth == 0) return widths.size();
  std::size_t width = kGap + widths[0];
  std::size_t end = begin;
  while (end < widths.size() && (end == begin || width + kGap + widths[end] <= maxWidth)) {
    width += kGap + widths[end];
    ++end;
  }
  return end;
}

}  // namespace

std::vector<std::size_t> TextGrid::ColumnWidths() const {
  std::vector<std::size_t> widths;
  for (const std::vector<std::string>& row : fRows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], CountCharacters(row[i]));
    }
  }
  return widths;
}

std::string TextGrid::Print(std::size_t maxWidth) const {
  const std::vector<std::size_t> widths = ColumnWidths();
  std::string text;
  std::size_t begin = 1;
  do {
    const std::size_t end = widths.empty() ? 0 : EndOfBlock(widths, begin, maxWidth);
    for (const std::vector<std::string>& row : fRows) {
      std::string line;
      AppendCell(row[0], widths[0], true, line);
      for (std::size_t i = begin; i < std::min(end, row.size()); ++i) {
        AppendCell(row[i], widths[i], false, line);
      }
      line.erase(line.find_last_not_of(' ') + 1);
      text += line + "\n";
    }
    begin = end;
  } while (begin < widths.size());
  return text;
}

}  // namespace TQTool
