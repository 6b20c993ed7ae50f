#include "base/plaintext.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>
#include <unistr.h>

#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxQuotedCharacters = 40;

// Every byte of a UTF-8 character but its first one looks like 10xxxxxx.
bool IsCharacterStart(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

bool IsControl(char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }

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
  return u8_check(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()) == nullptr;
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
