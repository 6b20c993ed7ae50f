#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/inputoptions.h"
#include "model/model.h"
#include "output/outputoptions.h"
#include "output/progresskind.h"

namespace TQTool {

// Columns that are to go together.
struct AttributeTarget {
  std::string attribute;
  std::string target;

  bool operator==(const AttributeTarget&) const = default;
};

// What a user declares missing, by column.
using UserMissing = std::map<std::string, MissingRule, std::less<>>;

// What the command line asks for, checked as far as it can be without the input.
struct BinningOptions {
  Method method = Method::kSupervised;
  InputOptions input;
  std::vector<std::string> targets;     // none for equal frequency
  std::vector<std::string> attributes;  // as given: names, or lists of names; empty for all
  std::vector<AttributeTarget> pairs;   // instead of all attributes against all targets
  UserMissing userMissing;
  Settings settings;
  bool isStrict = false;      // a column that was not cut as asked makes the exit code 1
  bool hasTimestamp = false;  // the model says when it was made
  std::string tempDir;        // empty for the default
  // How many threads bin; 0 for as many as there are processors.
  std::size_t jobs = 1;
  std::optional<std::size_t> memoryForJobs;  // in bytes; none for the usual share
  OutputOptions output;
  ProgressKind progress = ProgressKind::kAuto;

  // What is declared missing in a column.
  MissingRule MissingRuleOf(std::string_view column) const {
    const auto declared = userMissing.find(column);
    return declared == userMissing.end() ? MissingRule{} : declared->second;
  }
};

}  // namespace TQTool
