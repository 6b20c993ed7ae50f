#include "model/jsontext.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr int kMaxDepth = 20;  // a model has five levels

// "NAME:LINE:COLUMN: " of a byte.
std::string PlaceOf(const std::string& text, std::size_t offset, const std::string& name) {
  const std::string_view before = std::string_view(text).substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 when there is none
  return fmt::format("{}:{}:{}: ", name, line, CountCharacters(before.substr(lineStart)) + 1);
}

// Watches what the parser meets.
class Watcher {
 public:
  explicit Watcher(const std::string& name) : fName(name) {}

  // The parser's call-back: `value` is the key, or what has just been read.
  bool operator()(int depth, Json::parse_event_t event, const Json& value) {
    if (depth > kMaxDepth) {
      throw ToolError(kInput, fmt::format("{}: values nested more than {} deep; expected a file "
                                          "that tqbin wrote",
                                          fName, kMaxDepth));
    }
    if (event == Json::parse_event_t::object_start) fKeys.emplace_back();
    if (event == Json::parse_event_t::object_end) fKeys.pop_back();
    if (event == Json::parse_event_t::key && !fKeys.back().insert(value).second) {
      throw ToolError(kInput, fmt::format("{}: an object has the key {} twice; expected it once; "
                                          "remove one of the two",
                                          fName, Quoted(value.get<std::string>())));
    }
    return true;
  }

 private:
  const std::string& fName;
  std::vector<std::set<std::string>> fKeys;  // of the objects that are open
};

// What the parser found and expected, without the words about where.
std::string Complaint(const std::string& what) {
  const std::size_t colon = what.find(": ");
  return Printable(colon == std::string::npos ? what : what.substr(colon + 2));
}

std::string PrintNumber(double number) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
  return std::string(text.data(), end.ptr);
}

// A value, in one piece.
std::string PrintScalar(const Json& value) {
  if (value.is_number_float()) return PrintNumber(value.get<double>());
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool IsPlainList(const Json& value) {
  return value.is_array() && std::none_of(value.begin(), value.end(),
                                          [](const Json& item) { return item.is_structured(); });
}

std::string PrintPlainList(const Json& list) {
  std::string text = "[";
  for (std::size_t i = 0; i < list.size(); ++i) {
    text += (i == 0 ? "" : ", ") + PrintScalar(list[i]);
  }
  return text + "]";
}

void Print(const Json& value, int level, std::string& text) {
  if (!value.is_structured()) {
    text += PrintScalar(value);
  } else if (value.empty() || IsPlainList(value)) {
    text += value.is_object() ? "{}" : PrintPlainList(value);
  } else {
    const std::string indent(static_cast<std::size_t>(2 * level + 2), ' ');
    text += value.is_object() ? "{\n" : "[\n";
    for (auto item = value.begin(); item != value.end(); ++item) {
      if (item != value.begin()) text += ",\n";
      text += indent;
      if (value.is_object()) text += PrintScalar(Json(item.key())) + ": ";
      Print(*item, level + 1, text);
    }
    text += "\n" + indent.substr(2) + (value.is_object() ? "}" : "]");
  }
}

}  // namespace

Json ParseJson(const std::string& text, const std::string& name) {
  try {
    return Json::parse(text, Watcher(name));
  } catch (const Json::parse_error& error) {
    const std::size_t offset = std::min(text.size(), error.byte > 0 ? error.byte - 1 : 0);
    throw ToolError(kInput, fmt::format("{}not JSON: {}; correct it there, or write the file anew",
                                        PlaceOf(text, offset, name), Complaint(error.what())));
  } catch (const Json::exception& error) {  // a number beyond the doubles has no place
    throw ToolError(kInput, fmt::format("{}: not usable JSON: {}; correct it, or write the file "
                                        "anew",
                                        name, Complaint(error.what())));
  }
}

bool IsUtf8(const std::string& text) { return Json::parse(PrintScalar(text)) == text; }

std::string PrintJson(const Json& value) {
  std::string text;
  Print(value, 0, text);
  return text + "\n";
}

std::string PrintJsonLine(const Json& value) { return PrintScalar(value) + "\n"; }

}  // namespace TQTool
