#include "base/nearestname.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace TQTool {
namespace {

constexpr std::size_t kMaxCompared = 200;  // longer names are compared by their beginning

std::string LowerCase(std::string_view text) {
  std::string result(text.substr(0, kMaxCompared));
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

// The number of insertions, deletions and replacements that turn a into b.
std::size_t EditDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);  // distances of a's prefix to b's prefixes
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

const std::string* NearestName(std::string_view wanted, const std::vector<std::string>& names) {
  const std::string text = LowerCase(wanted);
  const std::string* nearest = nullptr;
  std::size_t least = std::max<std::size_t>(1, text.size() / 3) + 1;  // must be beaten
  for (const std::string& name : names) {
    const std::string candidate = LowerCase(name);
    // What is continued counts as one letter off, so that a closer match still wins.
    const bool continued = text.size() >= 2 && candidate.starts_with(text) && candidate != text;
    const std::size_t distance = continued ? 1 : EditDistance(text, candidate);
    if (distance < least) {
      least = distance;
      nearest = &name;
    }
  }
  return nearest;
}

}  // namespace TQTool
