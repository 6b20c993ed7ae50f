#include "report/html.h"

#include <cstddef>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"

namespace TQTool {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kMinus = "\u2212";

}  // namespace

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : Printable(text)) {
    switch (c) {
      case '&': result += "&amp;"; break;
      case '<': result += "&lt;"; break;
      case '>': result += "&gt;"; break;
      case '"': result += "&quot;"; break;
      case '\'': result += "&#39;"; break;
      default: result += c;
    }
  }
  return result;
}

std::string Isolated(std::string_view name) { return "<bdi>" + Escaped(name) + "</bdi>"; }

std::string Grouped(std::string number) {
  const std::size_t first = number.find_first_of(kDigits);
  if (first == std::string::npos) return number;
  std::size_t end = number.find_first_not_of(kDigits, first);
  if (end == std::string::npos) end = number.size();
  while (end > first + 3) number.insert(end -= 3, 1, ',');
  if (number[0] == '-') number.replace(0, 1, kMinus);
  return number;
}

std::string Fixed(double number, int digits) {
  std::string text = fmt::format("{:.{}f}", number, digits);
  const bool isZero = text.find_first_of("123456789") == std::string::npos;
  if (isZero && text[0] == '-') text.erase(0, 1);
  return Grouped(std::move(text));
}

std::string Fact(const std::string& name, const std::string& value) {
  return fmt::format("<div><dt>{}</dt><dd>{}</dd></div>", name, value);
}

}  // namespace TQTool
