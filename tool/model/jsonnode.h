#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/jsontext.h"

namespace TQTool {

// A value of a JSON document together with its place, so that whoever expects
// something else of it can say where: every accessor throws ToolError (kInput),
// "FILE: attributes[2].cuts[0]: ...", when the value is not what it returns.
class JsonNode {
 public:
  // The whole document; `name` is how messages call its file.  Borrows `value`.
  JsonNode(const Json& value, const std::string& name) : fValue(&value), fFile(&name) {}

  // A member of this object, which must be there; whether it is there.
  JsonNode At(const std::string& key) const;
  bool Has(const std::string& key) const;
  // The items of this list.
  std::vector<JsonNode> Items() const;
  // Refuses members of this object other than these, with the nearest name.
  void AllowOnly(const std::vector<std::string>& keys) const;

  bool IsNull() const { return fValue->is_null(); }
  std::string Text() const;
  bool Flag() const;
  // A number as data hold them: not one of the two doubles farthest from zero, which mean
  // missing and without bound, and never negative zero.
  double Number() const;
  double NumberOr(double whenNull) const;  // the same, or null
  std::uint64_t WholeNumber() const;       // from 0, exactly representable
  std::vector<double> Numbers() const;     // a list of numbers
  std::vector<std::string> Texts() const;  // a list of texts

  // Throws ToolError (kInput) about this value.
  [[noreturn]] void Fail(const std::string& message) const;

 private:
  JsonNode(const Json& value, const JsonNode& parent, const std::string& place)
      : fValue(&value), fFile(parent.fFile), fPlace(place) {}

  // Says what was found instead of what was expected.
  [[noreturn]] void FailAsNot(const char* expected) const;

  const Json* fValue;
  const std::string* fFile;
  std::string fPlace;  // empty for the document
};

}  // namespace TQTool
