#include "bench/support/toolrun.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

namespace bench {

namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

// "x0,x1,...": every column but these is left out.
std::string AttributeNames(int attributes) {
  std::string names;
  for (int i = 0; i < attributes; ++i) names += (i > 0 ? ",x" : "x") + std::to_string(i);
  return names;
}

std::vector<std::string> ArgumentsOf(const std::string& tool, const ToolRun& run,
                                     const std::string& directory) {
  const bool isSupervised = run.settings.task == Task::kSupervised;
  const std::string bins = std::to_string(run.settings.bins);
  std::vector<std::string> arguments = {tool, isSupervised ? "supervised" : "equal-frequency",
                                        run.file};
  const auto add = [&arguments](const std::string& option, const std::string& value) {
    arguments.push_back(option);
    arguments.push_back(value);
  };
  add("--attribute", AttributeNames(run.attributes));
  if (run.isWeighted) add("--weight", "w");
  if (!isSupervised) add("--bins", bins);
  if (isSupervised) add("--target", "y");
  if (isSupervised && run.settings.bins > 0) {
    add("--prebin-threshold", bins);
    add("--prebin-bins", bins);
  }
  add("--temp-dir", directory);
  add("--format", "json");
  return arguments;
}

// Starts the program with its standard output going to a file.
pid_t Start(const std::vector<std::string>& arguments, const std::string& output) {
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (const std::string& word : arguments) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = 0;
  const int failure = posix_spawn(&child, words[0], &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("cannot start " + arguments.front());
  return child;
}

std::string ComplaintAboutAttribute(const Json& attribute, double totalWeight) {
  if (attribute.at("status").at("severity") == "error") return "ended in an error";
  double sum = 0.0;
  for (const Json& bin : attribute.at("bins")) sum += bin.at("weight").get<double>();
  const bool addsUp = sum == attribute.at("weight").get<double>() &&
                      attribute.at("total_weight").get<double>() == totalWeight;
  if (!addsUp) return "has bins that do not add up";
  if (attribute.at("bins").size() != attribute.at("cuts").size() + 1)
    return "has bins without cuts";
  return {};
}

}  // namespace

ToolResult RunTool(const std::string& tool, const ToolRun& run, const std::string& directory) {
  const std::string output = directory + "/output.json";
  const std::vector<std::string> arguments = ArgumentsOf(tool, run, directory);
  ToolResult result;
  const auto start = Clock::now();
  const pid_t child = Start(arguments, output);
  int state = 0;
  rusage usage{};
  if (wait4(child, &state, 0, &usage) != child || !WIFEXITED(state) || WEXITSTATUS(state) != 0) {
    throw std::runtime_error(tool + " failed");
  }
  result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  result.peakBytes = static_cast<double>(usage.ru_maxrss) * 1024.0;
  std::ifstream file(output, std::ios::binary);
  result.json.assign(std::istreambuf_iterator<char>(file), {});
  return result;
}

std::string ComplaintAbout(const ToolResult& result, const ToolRun& run, std::size_t rows,
                           std::vector<std::size_t>* cutCounts) {
  const Json document = Json::parse(result.json);
  const Json& input = document.at("input");
  if (input.at("rows").get<std::size_t>() != rows) return "not every row was read";
  const double totalWeight = input.at("weight").get<double>();
  if (!run.isWeighted && totalWeight != static_cast<double>(rows)) return "rows were lost";
  const Json& attributes = document.at("attributes");
  if (attributes.size() != static_cast<std::size_t>(run.attributes)) {
    return "not every attribute was binned";
  }
  cutCounts->clear();
  for (const Json& attribute : attributes) {
    const std::string complaint = ComplaintAboutAttribute(attribute, totalWeight);
    if (!complaint.empty()) return attribute.at("name").get<std::string>() + " " + complaint;
    cutCounts->push_back(attribute.at("cuts").size());
  }
  return {};
}

}  // namespace bench
