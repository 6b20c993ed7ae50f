#pragma once

#include <string>
#include <string_view>

namespace TQTool {

// Appends a field of a CSV or TSV row, quoted when it holds the delimiter, a quote, a
// line end, or blanks at its ends.  Spreadsheet-safe: a text that a spreadsheet would
// take for a formula (it begins with = + - @, a tab or a carriage return and is no
// number) gets an apostrophe in front.
void AppendField(std::string_view field, char delimiter, bool isSpreadsheetSafe, std::string& row);

// Appends a JSON string.  Bytes that are no UTF-8 come out as U+FFFD.
void AppendJsonString(std::string_view text, std::string& row);

// Appends a number as the shortest text that reads back the same.
void AppendNumber(double number, std::string& row);

}  // namespace TQTool
