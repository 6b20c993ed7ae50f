#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace TQTool {

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
