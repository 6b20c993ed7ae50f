#pragma once

#include <string>

#include "output/outputoptions.h"

namespace TQTool {

// What the command line asks of a model file.
struct ModelOptions {
  std::string model;      // path, or "-" for standard input
  bool isStrict = false;  // warnings make the exit code 1
  OutputOptions output;
};

}  // namespace TQTool
