// Number texts: what is a number, and which one, compared with a grammar read letter by
// letter and the C library's conversion.

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include <strings.h>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "input/numbertext.h"

namespace {

using TQTool::NumberText;

std::size_t SkipDigits(std::string_view text, std::size_t position) {
  while (position < text.size() && text[position] >= '0' && text[position] <= '9') ++position;
  return position;
}

std::size_t SkipSign(std::string_view text, std::size_t position) {
  const bool isSign = position < text.size() && (text[position] == '-' || text[position] == '+');
  return position + (isSign ? 1 : 0);
}

// [+-] digits [. digits] [e [+-] digits], with a digit at least before the exponent.
bool IsDecimal(std::string_view text, char decimalPoint) {
  const std::size_t begin = SkipSign(text, 0);
  std::size_t end = SkipDigits(text, begin);
  std::size_t digits = end - begin;
  if (end < text.size() && text[end] == decimalPoint) {
    const std::size_t decimals = end + 1;
    end = SkipDigits(text, decimals);
    digits += end - decimals;
  }
  if (digits == 0) return false;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t exponent = SkipSign(text, end + 1);
    end = SkipDigits(text, exponent);
    if (end == exponent) return false;
  }
  return end == text.size();
}

bool IsInfinityInWords(const std::string& text) {
  const char* const word = text.c_str() + SkipSign(text, 0);
  return std::string_view(text).find('\0') == std::string_view::npos &&
         (strcasecmp(word, "inf") == 0 || strcasecmp(word, "infinity") == 0);
}

// The plain reading of a text; `*number` is set for a number.
NumberText ReadPlainly(std::string text, char decimalPoint, double* number) {
  if (IsInfinityInWords(text)) return NumberText::kInfinite;
  if (!IsDecimal(text, decimalPoint)) return NumberText::kNotNumber;
  if (const std::size_t point = text.find(decimalPoint); point != text.npos) text[point] = '.';
  const double value = std::strtod(text.c_str(), nullptr);  // in the C locale
  if (std::abs(value) >= std::numeric_limits<double>::max()) return NumberText::kInfinite;
  *number = value == 0.0 ? 0.0 : value;
  return NumberText::kNumber;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes(data, size);
  const char decimalPoint = bytes.Flag() ? ',' : '.';
  const std::string text = bytes.Rest();
  constexpr double kUntouched = 42.5;
  double expected = kUntouched;
  double number = kUntouched;
  const NumberText wanted = ReadPlainly(text, decimalPoint, &expected);
  const NumberText found = TQTool::ReadNumber(text, &number, decimalPoint);
  fuzz::Require(found == wanted, "a text taken for a number, or the other way round");
  fuzz::Require(std::bit_cast<std::uint64_t>(number) == std::bit_cast<std::uint64_t>(expected),
                "a number read wrongly");
  return 0;
}
