#include "conformance/casefile.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

namespace conformance {
namespace {

using nlohmann::json;
using reference::Call;
using reference::Outcome;
using reference::PairResult;
using reference::Problem;
using reference::Status;
using reference::Variable;

constexpr const char* kFormat = "tqbinning-conformance-1";
constexpr double kMissing = std::numeric_limits<double>::lowest();

// -------------------------------------------------------------------- numbers

// A whole number as it is, anything else as the text of a hexadecimal float, so that
// no reader can round it.
std::string NumberText(double value) {
  if (std::isnan(value)) return "\"nan\"";
  if (std::isinf(value)) return value > 0.0 ? "\"inf\"" : "\"-inf\"";
  const bool isNegativeZero = value == 0.0 && std::signbit(value);
  if (std::fabs(value) < 0x1p31 && value == std::floor(value) && !isNegativeZero) {
    return std::to_string(static_cast<long>(value));
  }
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "\"%a\"", value);
  return buffer.data();
}

// The same where the missing value can stand.
std::string ValueText(double value) {
  return value == kMissing ? "\"missing\"" : NumberText(value);
}

double ReadNumber(const json& value) {
  if (value.is_number_integer()) return static_cast<double>(value.get<long>());
  const auto text = value.get<std::string>();
  if (text == "missing") return kMissing;
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') throw std::runtime_error("no number: " + text);
  return number;
}

std::vector<double> ReadNumbers(const json& values) {
  std::vector<double> numbers;
  for (const json& value : values) numbers.push_back(ReadNumber(value));
  return numbers;
}

// ---------------------------------------------------------------- small writing

template <typename Element, typename Text>
std::string List(const std::vector<Element>& elements, Text text) {
  std::string list;
  for (const Element& element : elements) list += (list.empty() ? "" : ", ") + text(element);
  return "[" + list + "]";
}

// One element a line.
template <typename Element, typename Text>
std::string Lines(const std::vector<Element>& elements, const std::string& indent, Text text) {
  std::string lines;
  for (const Element& element : elements) {
    lines += (lines.empty() ? "\n" : ",\n") + indent + "  " + text(element);
  }
  return lines.empty() ? "[]" : "[" + lines + "\n" + indent + "]";
}

std::string IntText(int value) { return std::to_string(value); }
std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// -------------------------------------------------------------------- problems

std::string VariableText(const Variable& variable) {
  std::string text;
  switch (variable.kind) {
    case Variable::Kind::kContinuous: text = "{\"kind\": \"continuous\""; break;
    case Variable::Kind::kCategorical:
      text = std::string("{\"kind\": \"categorical\", \"role\": ") +
             (variable.role == reference::kRoleTarget ? "\"target\"" : "\"attribute\"") +
             ", \"categories\": " + std::to_string(variable.categories) +
             ", \"level\": " + std::to_string(variable.level);
      break;
    case Variable::Kind::kWeight:
      text = "{\"kind\": \"weight\", \"rounding\": " + std::to_string(variable.rounding);
      break;
  }
  if (!variable.missingValues.empty()) {
    text += ", \"missing_values\": " + List(variable.missingValues, ValueText);
  }
  if (variable.missingInterval) {
    text += ", \"missing_interval\": [" + NumberText(variable.missingInterval->first) + ", " +
            NumberText(variable.missingInterval->second) + "]";
  }
  return text + "}";
}

Variable ReadVariable(const json& object) {
  Variable variable;
  const auto kind = object.at("kind").get<std::string>();
  if (kind == "categorical") {
    variable.kind = Variable::Kind::kCategorical;
    variable.role =
        object.at("role") == "target" ? reference::kRoleTarget : reference::kRoleAttribute;
    variable.categories = object.at("categories").get<int>();
    variable.level = object.at("level").get<int>();
  } else if (kind == "weight") {
    variable.kind = Variable::Kind::kWeight;
    variable.role = reference::kRoleWeight;
    variable.rounding = object.at("rounding").get<int>();
  } else if (kind != "continuous") {
    throw std::runtime_error("no kind of variable: " + kind);
  }
  if (object.contains("missing_values")) {
    variable.missingValues = ReadNumbers(object.at("missing_values"));
  }
  if (object.contains("missing_interval")) {
    const std::vector<double> ends = ReadNumbers(object.at("missing_interval"));
    variable.missingInterval = {ends.at(0), ends.at(1)};
  }
  return variable;
}

std::string CallText(const Call& call) {
  std::string text;
  if (call.attributes) text += "\"attributes\": " + List(*call.attributes, IntText);
  if (call.targets) {
    text +=
        (text.empty() ? "" : ", ") + std::string("\"targets\": ") + List(*call.targets, IntText);
  }
  return "{" + text + "}";
}

Call ReadCall(const json& object) {
  Call call;
  if (object.contains("attributes")) call.attributes = object["attributes"].get<std::vector<int>>();
  if (object.contains("targets")) call.targets = object["targets"].get<std::vector<int>>();
  return call;
}

std::string SettingsText(const Problem& problem) {
  std::string text = "{\"bins\": " + std::to_string(problem.numberOfBins);
  if (problem.supervised) {
    text += ", \"distinct_threshold\": " + std::to_string(problem.distinctThreshold) +
            ", \"small_bin_threshold\": " + NumberText(problem.smallBinThreshold);
  }
  return text + ", \"right_closed\": " + (problem.rightClosed ? "true" : "false") + "}";
}

Problem ReadProblem(const json& object) {
  Problem problem;
  problem.ties = reference::Ties::kByWeight;
  problem.supervised = object.at("family") == "supervised";
  for (const json& variable : object.at("variables")) {
    problem.variables.push_back(ReadVariable(variable));
  }
  const json& settings = object.at("settings");
  problem.numberOfBins = settings.at("bins").get<int>();
  problem.rightClosed = settings.at("right_closed").get<bool>();
  if (problem.supervised) {
    problem.distinctThreshold = settings.at("distinct_threshold").get<int>();
    problem.smallBinThreshold = ReadNumber(settings.at("small_bin_threshold"));
  }
  for (const json& record : object.at("records")) problem.records.push_back(ReadNumbers(record));
  for (const json& call : object.at("calls")) problem.calls.push_back(ReadCall(call));
  return problem;
}

// --------------------------------------------------------------------- answers

std::string SeverityText(const Status& status) {
  return status.IsOk() ? "\"ok\"" : status.IsWarning() ? "\"warning\"" : "\"error\"";
}

// The library puts nothing into the scale slots, and so has nothing to write there.
std::string StatusText(const Status& status) {
  std::string text =
      "{\"code\": " + std::to_string(status.code) + ", \"severity\": " + SeverityText(status);
  const std::vector<long> data(std::begin(status.discrete), std::end(status.discrete));
  if (data != std::vector<long>{0, 0, 0}) {
    text += ", \"data\": " + List(data, [](long datum) { return std::to_string(datum); });
  }
  return text + "}";
}

Status ReadStatus(const json& object) {
  static const std::map<std::string, short> severities = {{"ok", 0}, {"warning", 1}, {"error", -1}};
  Status status;
  status.code = object.at("code").get<long>();
  status.severity = severities.at(object.at("severity").get<std::string>());
  if (object.contains("data")) {
    for (std::size_t i = 0; i < 3; ++i) status.discrete[i] = object["data"].at(i).get<long>();
  }
  return status;
}

std::vector<std::vector<double>> RowsOf(const PairResult& result) {
  std::vector<std::vector<double>> rows;
  const std::size_t width = result.cellCounts.size() / (result.cuts.size() + 1);
  for (std::size_t i = 0; width > 0 && i < result.cellCounts.size(); i += width) {
    const auto start = result.cellCounts.begin() + static_cast<std::ptrdiff_t>(i);
    rows.emplace_back(start, start + static_cast<std::ptrdiff_t>(width));
  }
  return rows;
}

std::string ResultText(const PairResult& result, bool supervised, const std::string& indent) {
  const auto row = [](const std::vector<double>& counts) { return List(counts, NumberText); };
  const std::string next = ",\n" + indent + " ";
  std::string text = "{\"attribute\": " + std::to_string(result.attribute);
  if (supervised) text += ", \"target\": " + std::to_string(result.target);
  text += ", \"status\": " + StatusText(result.status);
  text += next + "\"cuts\": " + List(result.cuts, NumberText);
  text += next + "\"cell_counts\": " +
          (supervised ? List(RowsOf(result), row) : List(result.cellCounts, NumberText));
  text += next + "\"distinct_values\": " + std::to_string(result.nDistinct);
  text += ", \"total_weight\": " + NumberText(result.totalWeight);
  text += ", \"total_weight_with_missing\": " + NumberText(result.totalWeightWithMissing);
  text += next + "\"minimum\": " + ValueText(result.minimum);
  text += ", \"maximum\": " + ValueText(result.maximum);
  if (supervised) text += ", \"model_entropy\": " + ValueText(result.modelEntropy);
  return text + "}";
}

PairResult ReadResult(const json& object, bool supervised) {
  PairResult result;
  result.attribute = object.at("attribute").get<int>();
  result.status = ReadStatus(object.at("status"));
  result.cuts = ReadNumbers(object.at("cuts"));
  result.nDistinct = object.at("distinct_values").get<unsigned>();
  result.totalWeight = ReadNumber(object.at("total_weight"));
  result.totalWeightWithMissing = ReadNumber(object.at("total_weight_with_missing"));
  result.minimum = ReadNumber(object.at("minimum"));
  result.maximum = ReadNumber(object.at("maximum"));
  if (!supervised) {
    result.cellCounts = ReadNumbers(object.at("cell_counts"));
    return result;
  }
  result.target = object.at("target").get<int>();
  result.modelEntropy = ReadNumber(object.at("model_entropy"));
  for (const json& row : object.at("cell_counts")) {
    const std::vector<double> counts = ReadNumbers(row);
    result.cellCounts.insert(result.cellCounts.end(), counts.begin(), counts.end());
  }
  return result;
}

std::string CaseText(const Case& c) {
  const std::string indent = "      ";
  const auto record = [](const std::vector<double>& values) { return List(values, ValueText); };
  const auto result = [&](const PairResult& r) {
    return ResultText(r, c.problem.supervised, indent + "    ");
  };
  std::string text = "{\n" + indent + "\"name\": " + Quoted(c.name);
  text += ",\n" + indent + "\"seed\": " + std::to_string(c.seed);
  text += ",\n" + indent + "\"family\": ";
  text += c.problem.supervised ? "\"supervised\"" : "\"equal frequency\"";
  text += ",\n" + indent + "\"variables\": " + Lines(c.problem.variables, indent, VariableText);
  text += ",\n" + indent + "\"settings\": " + SettingsText(c.problem);
  text += ",\n" + indent + "\"records\": " + Lines(c.problem.records, indent, record);
  text += ",\n" + indent + "\"calls\": " + List(c.problem.calls, CallText);
  text += ",\n" + indent + "\"expected\": {\n" + indent + "  \"calls\": ";
  text += Lines(c.expected.callStatuses, indent + "  ", StatusText);
  text += ",\n" + indent + "  \"final\": " + StatusText(c.expected.finalStatus);
  text += ",\n" + indent + "  \"results\": " + Lines(c.expected.results, indent + "  ", result);
  return text + "\n" + indent + "}\n    }";
}

Case ReadCase(const json& object) {
  Case c;
  c.name = object.at("name").get<std::string>();
  c.seed = object.at("seed").get<std::uint64_t>();
  c.problem = ReadProblem(object);
  const json& expected = object.at("expected");
  for (const json& status : expected.at("calls")) {
    c.expected.callStatuses.push_back(ReadStatus(status));
  }
  c.expected.finalStatus = ReadStatus(expected.at("final"));
  for (const json& result : expected.at("results")) {
    c.expected.results.push_back(ReadResult(result, c.problem.supervised));
  }
  return c;
}

}  // namespace

std::string WriteCases(const std::vector<Case>& cases) {
  return "{\n  \"format\": " + Quoted(kFormat) + ",\n  \"cases\": " + Lines(cases, "  ", CaseText) +
         "\n}\n";
}

std::vector<Case> ReadCases(const std::string& text) {
  const json document = json::parse(text);
  if (document.at("format") != kFormat) throw std::runtime_error("another format");
  std::vector<Case> cases;
  for (const json& object : document.at("cases")) cases.push_back(ReadCase(object));
  return cases;
}

}  // namespace conformance
