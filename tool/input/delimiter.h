#pragma once

#include <string>
#include <string_view>

namespace TQTool {

// How much of an input is looked at.
constexpr std::size_t kDelimiterSample = std::size_t{1} << 16;

// The character between the fields of text that begins with `sample`: of comma,
// semicolon, tab and bar the one that cuts the rows, header included, into equally
// many fields, two at least; of several the one that cuts more, then the one named
// first.  When none does, the one that cuts the header into most fields; the comma
// when all leave it whole.  With decimal commas the comma is no candidate, and the
// semicolon comes first.  `isWhole` tells that no text follows the sample.
char FindDelimiter(std::string_view sample, bool isWhole, bool hasDecimalComma);

// How messages and options call a delimiter: "';'", "tab".
std::string DescribeDelimiter(char delimiter);

}  // namespace TQTool
