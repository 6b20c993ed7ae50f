#include "input/missingtokens.h"

#include <algorithm>

#include "base/plaintext.h"

namespace TQTool {

MissingTokens::MissingTokens(const std::vector<std::string>& tokens)
    : fIsFirstByte{}, fHasEmpty(false) {
  for (const std::string& token : tokens) {
    const std::string_view text = TrimBlanks(token);
    if (text.empty()) {
      fHasEmpty = true;
    } else {
      fTokens.emplace_back(text);
      fIsFirstByte[static_cast<unsigned char>(text.front())] = true;
    }
  }
}

const std::vector<std::string>& MissingTokens::Default() {
  static const std::vector<std::string> tokens = {"",     "NA",   "N/A", "NaN", "nan",
                                                  "NULL", "null", "?",   "."};
  return tokens;
}

bool MissingTokens::IsListed(std::string_view text) const {
  return std::find(fTokens.begin(), fTokens.end(), text) != fTokens.end();
}

}  // namespace TQTool
