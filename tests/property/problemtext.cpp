#include "property/problemtext.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

namespace property {
namespace {

using reference::Call;
using reference::Problem;
using reference::Variable;

constexpr double kMissing = std::numeric_limits<double>::lowest();

std::string ListText(const std::vector<int>& values) {
  std::string text = "{";
  for (const int value : values) {
    if (text.size() > 1) text += ", ";
    // The most negative integer cannot be written as a literal.
    text += value == std::numeric_limits<int>::min() ? "INT_MIN" : std::to_string(value);
  }
  return text + "}";
}

// Arguments, those at the end left out as far as they are what goes without saying.
std::string Arguments(std::vector<std::string> arguments,
                      const std::vector<std::string>& defaults) {
  while (arguments.size() > 0 && defaults[arguments.size() - 1] == arguments.back()) {
    arguments.pop_back();
  }
  std::string text = "(";
  for (const std::string& argument : arguments) text += (text.size() > 1 ? ", " : "") + argument;
  return text + ")";
}

std::string ElementText(const Variable& variable) {
  const std::string values = TextOf(variable.missingValues);
  std::string interval = "{}";
  if (variable.missingInterval) {
    interval = "{{" + TextOf(variable.missingInterval->first) + ", " +
               TextOf(variable.missingInterval->second) + "}}";
  }
  switch (variable.kind) {
    case Variable::Kind::kContinuous:
      return "Continuous" + Arguments({values, interval}, {"{}", "{}"});
    case Variable::Kind::kCategorical:
      return (variable.role == reference::kRoleTarget ? "Target" : "Categorical") +
             Arguments(
                 {std::to_string(variable.categories), std::to_string(variable.level), values},
                 {"", "2", "{}"});
    case Variable::Kind::kWeight:
      return "Weight" +
             Arguments({std::to_string(variable.rounding), values, interval}, {"", "{}", "{}"});
  }
  return "";
}

std::string ElementText(const Call& call) {
  if (call.attributes && call.targets) {
    return "Pairs(" + ListText(*call.attributes) + ", " + ListText(*call.targets) + ")";
  }
  if (call.attributes) return "Attributes(" + ListText(*call.attributes) + ")";
  return call.targets ? "TargetsOnly(" + ListText(*call.targets) + ")" : "All()";
}

std::string ElementText(const std::vector<double>& record) { return TextOf(record); }

template <typename Element>
std::string Lines(const std::vector<Element>& elements) {
  std::string text = "{";
  for (const Element& element : elements) text += "\n        " + ElementText(element) + ",";
  return text + "}";
}

}  // namespace

std::string TextOf(double value) {
  if (std::isnan(value)) return "kNaN";
  if (std::isinf(value)) return value > 0.0 ? "kInfinity" : "-kInfinity";
  if (value == kMissing) return "kMissing";
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  std::string text(buffer, end);
  // An integer literal too large for its type, or a negative zero, needs a point.
  const bool looksWhole = text.find_first_of(".e") == std::string::npos;
  if (looksWhole && (text == "-0" || text.size() > 9)) text += ".0";
  return text;
}

std::string TextOf(const std::vector<double>& values) {
  std::string text = "{";
  for (const double value : values) {
    if (text.size() > 1) text += ", ";
    text += TextOf(value);
  }
  return text + "}";
}

std::string TextOf(const reference::Status& status) {
  std::string text = status.IsOk() ? "OK" : status.IsWarning() ? "warning" : "error";
  text += " " + std::to_string(status.code) + " {";
  for (int i = 0; i < 3; ++i) {
    text += (i > 0 ? ", " : "") + std::to_string(status.discrete[i]);
    if (status.scale[i] != 0.0) text += "/" + TextOf(status.scale[i]);
  }
  return text + "}";
}

std::string TextOf(const Problem& problem) {
  std::string text = "{\n    .variables = " + Lines(problem.variables);
  text += ",\n    .records = " + Lines(problem.records);
  text += std::string(",\n    .supervised = ") + (problem.supervised ? "true" : "false");
  text += ",\n    .numberOfBins = " + std::to_string(problem.numberOfBins);
  text += ",\n    .distinctThreshold = " + std::to_string(problem.distinctThreshold);
  text += ",\n    .smallBinThreshold = " + TextOf(problem.smallBinThreshold);
  text += std::string(",\n    .rightClosed = ") + (problem.rightClosed ? "true" : "false");
  text += ",\n    .ties = Ties::kByWeight";
  return text + ",\n    .calls = " + Lines(problem.calls) + "}";
}

}  // namespace property
