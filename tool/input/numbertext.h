#pragma once

#include <string_view>

namespace TQTool {

// What a text turned out to be.
enum class NumberText {
  kNumber,     // a finite number
  kNotNumber,  // anything else
  kInfinite    // infinity, or a number beyond the range of finite doubles
};

// Reads a whole text (without blanks around it) as a decimal number, rounded
// correctly and whatever the locale; a leading plus sign is fine, hexadecimal is
// not.  `*number` is set for kNumber only, and never to negative zero.  The two
// largest finite doubles, plus and minus, count as infinite: the library uses
// them for bins without an end and for missing values.  `decimalPoint` stands
// before the decimals.
NumberText ReadNumber(std::string_view text, double* number, char decimalPoint = '.');

}  // namespace TQTool
