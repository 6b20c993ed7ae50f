#include "input/numbertext.h"

#include <cmath>
#include <limits>
#include <system_error>

#include <fast_float/fast_float.h>

namespace TQTool {

NumberText ReadNumber(std::string_view text, double* number, char decimalPoint) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  if (text.empty()) return NumberText::kNotNumber;
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const fast_float::parse_options format(fast_float::chars_format::general, decimalPoint);
  const fast_float::from_chars_result read =
      fast_float::from_chars_advanced(text.data(), end, value, format);
  const bool isRead = read.ec == std::errc() || read.ec == std::errc::result_out_of_range;
  if (!isRead || read.ptr != end || std::isnan(value)) return NumberText::kNotNumber;
  if (std::abs(value) >= std::numeric_limits<double>::max()) return NumberText::kInfinite;
  *number = value + 0.0;  // turns -0.0 into 0.0 and nothing else
  return NumberText::kNumber;
}

}  // namespace TQTool
