// The command line and the file of options: lines up to an empty one are arguments, what
// follows is the file that --config names.  Nothing is run; what is taken must be what the
// library takes, and all else is refused with a message.

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "cli/commandline.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "fuzz/toolmessage.h"
#include "support/scratchdirectory.h"

namespace {

using fuzz::Require;

constexpr const char* kConfig = "--config";

// The lines of a text up to an empty one, and in `*rest` what follows that.
std::vector<std::string> CutArguments(const std::string& text, std::string* rest) {
  std::vector<std::string> arguments;
  std::size_t begin = 0;
  while (begin < text.size() && text[begin] != '\n') {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    // What the system hands over ends at a zero byte.
    arguments.emplace_back(text.substr(begin, end - begin).c_str());
    begin = end + 1;
  }
  *rest = begin < text.size() ? text.substr(begin + 1) : "";
  return arguments;
}

// Lets every --config name the file, and so no other that there may be.
void NameConfig(const std::string& path, std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!arguments[i].starts_with(kConfig)) continue;
    const bool isAlone = arguments[i] == kConfig;
    if (!isAlone) arguments[i] = std::string(kConfig) + "=" + path;
    if (isAlone && i + 1 < arguments.size()) arguments[i + 1] = path;
  }
}

void CheckInput(const TQTool::InputOptions& input) {
  Require(!input.inputs.empty(), "no input");
  Require(std::count(input.inputs.begin(), input.inputs.end(), "") == 0, "an input without a name");
  Require(input.maxRecordBytes > 0 && input.maxColumns > 0 && input.maxDecompressedBytes > 0,
          "a limit that nothing meets");
}

int CheckBinning(const TQTool::BinningOptions& options) {
  CheckInput(options.input);
  const TQTool::Settings& settings = options.settings;
  BINSettings supervised;
  EFBINSettings equalFrequency;
  if (options.method == TQTool::Method::kSupervised) {
    Require(!options.targets.empty() || !options.pairs.empty(), "no target");
    Require(supervised.SetNumberOfBins(settings.prebinBins) &&
                supervised.SetNumDistinctValueThreshold(settings.prebinThreshold) &&
                supervised.SetSmallBinDetectionThreshold(settings.minBinFactor),
            "settings that the library refuses");
  } else {
    Require(equalFrequency.SetNumberOfBins(settings.bins), "bins that the library refuses");
  }
  for (const auto& [column, rule] : options.userMissing) {
    const auto& range = rule.range;
    Require(!range.has_value() || range->lower <= range->upper, "a range that is empty");
  }
  return 0;
}

int CheckApply(const TQTool::ApplyOptions& options) {
  CheckInput(options.input);
  Require(options.notNumber != TQTool::OddValue::kBin, "a bin for what is no number");
  return 0;
}

int CheckModelOptions(const TQTool::ModelOptions& options) {
  Require(!options.model.empty(), "a model without a name");
  return 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::ScratchDirectory directory;
  static const std::string path = directory.File("run.toml");
  std::string config;
  std::vector<std::string> arguments = CutArguments(fuzz::Bytes(data, size).Rest(), &config);
  NameConfig(path, arguments);
  std::ofstream(path, std::ios::binary) << config;

  std::vector<const char*> argv = {"tqbin"};
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  const TQTool::Commands commands = {
      CheckBinning,
      CheckApply,
      CheckModelOptions,
      CheckModelOptions,
      [](const TQTool::ExportOptions& options) { return options.model.empty() ? 1 : 0; },
      CheckModelOptions};
  std::string answer;
  try {
    const auto action =
        TQTool::ParseCommandLine(static_cast<int>(argv.size()), argv.data(), commands, &answer);
    Require((action == nullptr) != answer.empty(), "neither an action nor an answer, or both");
    if (action != nullptr) Require(action() == 0, "an action without a model");
  } catch (const TQTool::ToolError& error) {
    fuzz::RequireGoodMessage(error);
  }
  return 0;
}
