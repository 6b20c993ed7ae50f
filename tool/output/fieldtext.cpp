#include "output/fieldtext.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

#include "input/numbertext.h"

namespace TQTool {
namespace {

bool NeedsQuotes(std::string_view field, char delimiter) {
  if (field.empty()) return false;
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  if (isBlank(field.front()) || isBlank(field.back())) return true;
  return std::any_of(field.begin(), field.end(), [delimiter](char c) {
    return c == delimiter || c == '"' || c == '\n' || c == '\r';
  });
}

bool LooksLikeFormula(std::string_view field) {
  constexpr std::string_view kBeginnings = "=+-@\t\r";
  if (field.empty() || kBeginnings.find(field.front()) == std::string_view::npos) return false;
  double number = 0.0;
  return ReadNumber(field, &number) != NumberText::kNumber;
}

// Whether a text needs no escape in JSON.
bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; });
}

}  // namespace

void AppendField(std::string_view field, char delimiter, bool isSpreadsheetSafe, std::string& row) {
  const bool isDefused = isSpreadsheetSafe && LooksLikeFormula(field);
  if (!isDefused && !NeedsQuotes(field, delimiter)) {
    row += field;
    return;
  }
  row += isDefused ? "\"'" : "\"";
  for (const char c : field) {
    if (c == '"') row += '"';
    row += c;
  }
  row += '"';
}

void AppendJsonString(std::string_view text, std::string& row) {
  if (!IsPlain(text)) {
    row += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return;
  }
  row += '"';
  row += text;
  row += '"';
}

void AppendNumber(double number, std::string& row) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
  row.append(text.data(), end.ptr);
}

}  // namespace TQTool
