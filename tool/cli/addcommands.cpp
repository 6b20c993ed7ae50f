#include "cli/addcommands.h"

namespace TQTool {

void AddOutputOption(CLI::App& command, std::string& output) {
  command
      .add_option("-o,--output", output,
                  "file to write, complete or not at all (default: -, standard output)")
      ->type_name("FILE");
}

}  // namespace TQTool
