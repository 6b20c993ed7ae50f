#include "input/delimiter.h"

#include <algorithm>
#include <tuple>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/csvreader.h"

namespace TQTool {
namespace {

constexpr std::string_view kCandidates = ",;\t|";

// How well a delimiter cuts the rows; the larger the better.
struct Fit {
  bool isEven = false;  // every row has as many fields as the first
  std::size_t headerFields = 1;
  auto Rank() const { return std::tuple(isEven, headerFields); }
};

Fit FitOf(std::string_view text, char delimiter) {
  Fit fit;
  CsvReader reader(
      [&text](char* buffer, std::size_t size) {
        const std::size_t count = text.copy(buffer, size);
        text.remove_prefix(count);
        return count;
      },
      "", delimiter);
  try {
    bool isFirst = true;
    while (reader.Next()) {
      if (reader.IsBlankLine()) continue;
      const std::size_t fields = reader.GetFields().size();
      if (isFirst) fit = {fields > 1, fields};
      isFirst = false;
      if (fields != fit.headerFields) fit.isEven = false;
    }
  } catch (const ToolError&) {
    fit.isEven = false;  // not the way in which this text is written
  }
  return fit;
}

}  // namespace

char FindDelimiter(std::string_view sample, bool isWhole, bool hasDecimalComma) {
  // A row that is cut off would look short.
  if (!isWhole) sample = sample.substr(0, sample.rfind('\n') + 1);
  const std::string_view candidates = kCandidates.substr(hasDecimalComma ? 1 : 0);
  char best = candidates.front();
  Fit bestFit;
  for (const char candidate : candidates) {
    const Fit fit = FitOf(sample, candidate);
    if (fit.Rank() > bestFit.Rank()) {
      best = candidate;
      bestFit = fit;
    }
  }
  return best;
}

std::string DescribeDelimiter(char delimiter) {
  return delimiter == '\t' ? "tab" : Quoted({&delimiter, 1});
}

}  // namespace TQTool
