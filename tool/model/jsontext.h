#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace TQTool {

using Json = nlohmann::ordered_json;

// Parses a JSON text.  Throws ToolError (kInput), naming `name`, line and column, for
// anything but one JSON value, for values nested beyond all measure, and for a key that
// an object has twice.
Json ParseJson(const std::string& text, const std::string& name);

// Prints a JSON value, made to be read and edited: two blanks a level, lists of plain
// values on a line of their own, doubles as the shortest text that reads back the same.
// Bytes that are no UTF-8 come out as U+FFFD.
std::string PrintJson(const Json& value);

// The same in one line.
std::string PrintJsonLine(const Json& value);

}  // namespace TQTool
