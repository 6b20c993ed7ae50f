// Writes the data sets that bench_workload, and programs it is compared with, run
// over: the four standard workloads, or one of a chosen shape.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "bench/support/columnfiles.h"
#include "bench/support/workload.h"

namespace {

using bench::Columns;
using bench::Shape;
using bench::ShapedWorkload;
using bench::Workload;

struct Options {
  std::string directory;
  std::vector<std::string> names;
  std::size_t rows = 0;  // 0: as many as the workload is known for
  bool noCsv = false;
  std::string shape;
  ShapedWorkload shaped;
};

std::vector<std::string> StandardNames() {
  std::vector<std::string> names;
  for (const Workload& workload : bench::StandardWorkloads()) names.push_back(workload.name);
  return names;
}

void Write(const Columns& columns, const std::string& name, const Options& options) {
  const std::string directory = options.directory + "/" + name;
  bench::WriteDataSet(columns, directory, !options.noCsv);
  std::printf("%s: %zu rows, %zu attributes, %d classes\n", directory.c_str(), columns.Rows(),
              columns.attributes.size(), columns.classes);
}

void WriteStandard(const Options& options) {
  for (Workload workload : bench::StandardWorkloads()) {
    const auto& names = options.names;
    if (!names.empty() && std::find(names.begin(), names.end(), workload.name) == names.end()) {
      continue;
    }
    if (options.rows > 0) workload.rows = options.rows;
    Write(bench::MakeColumns(workload), workload.name, options);
  }
}

// "distinct:50" is the shape that has a number in its name.
void WriteShaped(const Options& options) {
  ShapedWorkload shaped = options.shaped;
  const std::size_t colon = options.shape.find(':');
  const std::optional<Shape> shape = bench::ShapeOf(options.shape.substr(0, colon));
  if (!shape.has_value()) throw std::invalid_argument("no such shape: " + options.shape);
  shaped.shape = *shape;
  if (colon != std::string::npos) shaped.distinct = std::stoi(options.shape.substr(colon + 1));
  if ((shaped.shape == Shape::kDistinct) != (shaped.distinct > 0)) {
    throw std::invalid_argument("a number of values, as in distinct:50, goes with distinct alone");
  }
  shaped.rows = options.rows > 0 ? options.rows : 1000000;
  std::string name = options.names.empty() ? options.shape : options.names.front();
  Write(bench::MakeColumns(shaped), name, options);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Writes seeded data sets: DIR/NAME/x0.f64 ..., y.f64, w.f64 and data.csv.");
  app.add_option("DIR", options.directory, "directory to write into")->required();
  CLI::Option* const names = app.add_option(
      "NAME", options.names, "W1, W2, W3, W4 (default: all), or the name for a shaped data set");
  app.add_option("--rows", options.rows, "instead of the usual number")->check(CLI::PositiveNumber);
  app.add_flag("--no-csv", options.noCsv, "column files only");
  CLI::Option* const shape =
      app.add_option("--shape", options.shape,
                     "shuffled, presorted, reversed, organ-pipe, all-equal, sawtooth or "
                     "distinct:K instead of a standard workload");
  app.add_option("--columns", options.shaped.attributes, "attributes of a shaped data set")
      ->check(CLI::Range(1, 100000))
      ->needs(shape);
  app.add_option("--classes", options.shaped.classes, "classes of a shaped data set")
      ->check(CLI::Range(1, 256))
      ->needs(shape);
  app.add_flag("--weighted", options.shaped.isWeighted, "whole weights 1 to 5")->needs(shape);
  try {
    app.parse(argc, argv);
    if (options.shape.empty()) {
      for (const std::string& name : options.names) {
        if (const std::string complaint = CLI::IsMember(StandardNames())(name);
            !complaint.empty()) {
          throw CLI::ValidationError(names->get_name(), complaint);
        }
      }
      WriteStandard(options);
    } else {
      WriteShaped(options);
    }
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "generate_workloads: %s\n", error.what());
    return 1;
  }
  return 0;
}
