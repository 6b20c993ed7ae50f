#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace TQTool {

// Text from outside, made safe to show: control characters become escapes such
// as \n or \x1b, so that data can never steer a terminal or break a line.
std::string Printable(std::string_view text);

// The same in single quotes, cut after 40 characters: for use in messages.
std::string Quoted(std::string_view text);

// Text without the blanks and tabs around it.
inline std::string_view TrimBlanks(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Whether a text is UTF-8.
bool IsUtf8(std::string_view text);

// Throws ToolError (kUsage) when what an option was given is not.
void RequireUtf8(const char* option, std::string_view text);

// The number of characters (code points) of UTF-8 text.
std::size_t CountCharacters(std::string_view text);

}  // namespace TQTool
