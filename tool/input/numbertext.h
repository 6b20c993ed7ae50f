#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace TQTool {

// Text without the blanks and tabs around it.
inline std::string_view TrimBlanks(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

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

// The texts that stand for a missing value, compared exactly.
class MissingTokens {
 public:
  // Blanks around a token are dropped, as they are around a field.
  explicit MissingTokens(const std::vector<std::string>& tokens);

  // Whether the text (without blanks around it) is one of the tokens; a text without
  // data (null) always is.
  bool Contains(std::string_view text) const {
    if (text.empty()) return fHasEmpty || text.data() == nullptr;
    return fIsFirstByte[static_cast<unsigned char>(text.front())] && IsListed(text);
  }

  // What is taken when the user names none: the empty field and the usual marks
  // of spreadsheets, statistics programs and data bases.
  static const std::vector<std::string>& Default();

 private:
  bool IsListed(std::string_view text) const;

  std::vector<std::string> fTokens;
  std::array<bool, 256> fIsFirstByte;  // most fields are told apart by their first byte
  bool fHasEmpty;
};

}  // namespace TQTool
