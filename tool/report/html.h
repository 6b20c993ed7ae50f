#pragma once

#include <string>
#include <string_view>

namespace TQTool {

// Text as it stands in HTML, between tags or in a quoted attribute: no character of it
// can begin a tag or end the attribute, control characters are escapes.
std::string Escaped(std::string_view text);

// A name from data within a line: escaped, and kept apart, so that letters written from
// right to left, and characters that turn the direction, do not disorder what follows.
std::string Isolated(std::string_view name);

// A number's text for reading: commas between thousands, a true minus sign.
std::string Grouped(std::string number);

// The same of a number with so many digits behind the point.
std::string Fixed(double number, int digits);

// One entry of a list of names with values, both HTML.
std::string Fact(const std::string& name, const std::string& value);

}  // namespace TQTool
