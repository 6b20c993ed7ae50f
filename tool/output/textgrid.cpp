#include "output/textgrid.h"

#include <algorithm>
#include <cstddef>

#include "base/plaintext.h"

namespace TQTool {

std::string TextGrid::Print() const {
  std::vector<std::size_t> widths;
  for (const std::vector<std::string>& row : fRows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], CountCharacters(row[i]));
    }
  }
  std::string text;
  for (const std::vector<std::string>& row : fRows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - CountCharacters(row[i]), ' ');
      line += "  ";
      line += i == 0 ? row[i] + padding : padding + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace TQTool
