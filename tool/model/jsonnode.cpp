#include "model/jsonnode.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "base/nearestname.h"
#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {

JsonNode JsonNode::At(const std::string& key) const {
  if (!fValue->is_object()) FailAsNot("an object");
  const auto found = fValue->find(key);
  if (found == fValue->end()) {
    Fail(fmt::format("there is no {}; expected one; is part of the file missing?", Quoted(key)));
  }
  return JsonNode(*found, *this, fPlace.empty() ? key : fPlace + "." + key);
}

bool JsonNode::Has(const std::string& key) const {
  if (!fValue->is_object()) FailAsNot("an object");
  return fValue->contains(key);
}

std::vector<JsonNode> JsonNode::Items() const {
  if (!fValue->is_array()) FailAsNot("a list");
  std::vector<JsonNode> items;
  for (std::size_t i = 0; i < fValue->size(); ++i) {
    items.push_back(JsonNode((*fValue)[i], *this, fmt::format("{}[{}]", fPlace, i)));
  }
  return items;
}

void JsonNode::AllowOnly(const std::vector<std::string>& keys) const {
  if (!fValue->is_object()) FailAsNot("an object");
  for (const auto& item : fValue->items()) {
    if (std::find(keys.begin(), keys.end(), item.key()) != keys.end()) continue;
    const std::string* const nearest = NearestName(item.key(), keys);
    Fail(fmt::format("the key {} is not known here; {}", Quoted(item.key()),
                     nearest == nullptr ? "remove it" : fmt::format("did you mean {}?", *nearest)));
  }
}

std::string JsonNode::Text() const {
  if (!fValue->is_string()) FailAsNot("a text in double quotes");
  return fValue->get<std::string>();
}

bool JsonNode::Flag() const {
  if (!fValue->is_boolean()) FailAsNot("true or false");
  return fValue->get<bool>();
}

double JsonNode::Number() const {
  if (!fValue->is_number()) FailAsNot("a number");
  const double number = fValue->get<double>();
  if (std::abs(number) >= std::numeric_limits<double>::max()) {
    FailAsNot("a number between the two doubles farthest from zero");
  }
  return number + 0.0;  // turns -0.0 into 0.0 and nothing else
}

double JsonNode::NumberOr(double whenNull) const { return IsNull() ? whenNull : Number(); }

std::uint64_t JsonNode::WholeNumber() const {
  if (!fValue->is_number_unsigned()) FailAsNot("a whole number from 0");
  return fValue->get<std::uint64_t>();
}

std::vector<double> JsonNode::Numbers() const {
  std::vector<double> numbers;
  for (const JsonNode& item : Items()) numbers.push_back(item.Number());
  return numbers;
}

std::vector<std::string> JsonNode::Texts() const {
  std::vector<std::string> texts;
  for (const JsonNode& item : Items()) texts.push_back(item.Text());
  return texts;
}

void JsonNode::Fail(const std::string& message) const {
  const std::string place = fPlace.empty() ? "" : Printable(fPlace) + ": ";
  throw ToolError(kInput, fmt::format("{}: {}{}", *fFile, place, message));
}

void JsonNode::FailAsNot(const char* expected) const {
  const std::string found = fValue->is_structured() ? fValue->type_name() : PrintJson(*fValue);
  Fail(fmt::format("{} where {} is expected; correct the file",
                   Quoted(found.substr(0, found.find('\n'))), expected));
}

}  // namespace TQTool
