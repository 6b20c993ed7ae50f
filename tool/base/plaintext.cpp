#include "base/plaintext.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxQuotedCharacters = 40;

// Every byte of a UTF-8 character but its first one looks like 10xxxxxx.
bool IsCharacterStart(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }

// Length of the character that begins like this; 0 for bytes that begin none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (first < 0xC2 || first > 0xF4) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // Longer than need be, half of a UTF-16 pair, and beyond the last character.
  const bool isOverlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool isNone = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
  return isOverlong || isNone ? 0 : length;
}

// Length of the longest prefix that holds at most `limit` characters.
std::size_t PrefixLength(std::string_view text, std::size_t limit) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsCharacterStart(text[i]) && ++characters > limit) return i;
  }
  return text.size();
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string result;
  for (const char byte : text) {
    if (byte == '\n') {
      result += "\\n";
    } else if (byte == '\r') {
      result += "\\r";
    } else if (byte == '\t') {
      result += "\\t";
    } else if (IsControl(byte)) {
      result += fmt::format("\\x{:02x}", static_cast<unsigned char>(byte));
    } else {
      result += byte;
    }
  }
  return result;
}

std::string Quoted(std::string_view text) {
  const std::size_t length = PrefixLength(text, kMaxQuotedCharacters);
  const char* const ending = length < text.size() ? "...'" : "'";
  return "'" + Printable(text.substr(0, length)) + ending;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void RequireUtf8(const char* option, std::string_view text) {
  if (IsUtf8(text)) return;
  throw ToolError(kUsage, fmt::format("{}: {} is not UTF-8; expected text in that encoding", option,
                                      Quoted(text)));
}

std::size_t CountCharacters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsCharacterStart));
}

}  // namespace TQTool
