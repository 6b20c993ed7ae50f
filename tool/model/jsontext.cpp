#include "model/jsontext.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr std::size_t kMaxDepth = 20;   // a model has seven levels
constexpr std::size_t kMaxKeys = 1000;  // a model's objects have twenty

// "NAME:LINE:COLUMN: " of a byte.
std::string PlaceOf(const std::string& text, std::size_t offset, const std::string& name) {
  const std::string_view before = std::string_view(text).substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 when there is none
  return fmt::format("{}:{}:{}: ", name, line, CountCharacters(before.substr(lineStart)) + 1);
}

// What the parser found and expected, without its words about where and its own number.
std::string Complaint(const std::string& what) {
  const std::size_t number = what.find("] ");
  const std::size_t place = what.find(": ");
  const std::size_t end = place == std::string::npos ? number : place;
  return Printable(end == std::string::npos ? what : what.substr(end + 2));
}

// Makes a document of what the parser meets.  The parser's own way with a call-back looks
// at all items of a list after each, which takes the longer the more there are.
class Builder final : public nlohmann::json_sax<Json> {
 public:
  // Both are borrowed.
  Builder(const std::string& text, const std::string& name) : fText(text), fName(name) {}

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(number_integer_t value) override { return Add(value); }
  bool number_unsigned(number_unsigned_t value) override { return Add(value); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return Add(value); }
  bool string(string_t& value) override { return Add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // no text has it
  bool start_object(std::size_t /*size*/) override { return Open(Json::object()); }
  bool start_array(std::size_t /*size*/) override { return Open(Json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(string_t& key) override {
    fKey = std::move(key);
    return true;
  }

  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& error) override {
    const std::size_t offset = std::min(fText.size(), position > 0 ? position - 1 : 0);
    throw ToolError(kInput,
                    fmt::format("{}not usable JSON: {}; correct it there, or write the file "
                                "anew",
                                PlaceOf(fText, offset, fName), Complaint(error.what())));
  }

  Json Take() { return std::move(fDocument); }

 private:
  bool Add(Json value) {
    Insert(std::move(value));
    return true;
  }

  bool Open(Json value) {
    if (fOpen.size() == kMaxDepth) {
      Fail(fmt::format("values nested more than {} deep; expected a file that tqbin wrote",
                       kMaxDepth));
    }
    fOpen.push_back(Insert(std::move(value)));
    return true;
  }

  bool Close() {
    fOpen.pop_back();
    return true;
  }

  // Puts a value into what is open; where it then stands.
  Json* Insert(Json value) {
    if (fOpen.empty()) return &(fDocument = std::move(value));
    Json& parent = *fOpen.back();
    if (parent.is_array()) return &parent.emplace_back(std::move(value));
    // Every key is looked for among those before it.
    if (parent.size() == kMaxKeys) {
      Fail(fmt::format("an object has more than {} keys; expected a file that tqbin wrote",
                       kMaxKeys));
    }
    const auto [member, isNew] = parent.emplace(fKey, std::move(value));
    if (isNew) return &*member;
    Fail(fmt::format("an object has the key {} twice; expected it once; remove one of the two",
                     Quoted(fKey)));
  }

  [[noreturn]] void Fail(const std::string& message) const {
    throw ToolError(kInput, fmt::format("{}: {}", fName, message));
  }

  const std::string& fText;
  const std::string& fName;
  Json fDocument;
  std::vector<Json*> fOpen;  // objects and lists that have not ended, the outermost first
  std::string fKey;          // of the member that comes next
};

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
  Builder builder(text, name);
  Json::sax_parse(text, &builder);
  return builder.Take();
}

std::string PrintJson(const Json& value) {
  std::string text;
  Print(value, 0, text);
  return text + "\n";
}

std::string PrintJsonLine(const Json& value) { return PrintScalar(value) + "\n"; }

}  // namespace TQTool
