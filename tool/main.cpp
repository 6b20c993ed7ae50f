// tqbin: bins the numeric columns of a CSV file.  A host of the binning library like
// any other: it parses arguments, reads, calls the public headers and prints.

#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/signals.h"
#include "base/toolerror.h"
#include "cli/options.h"
#include "model/modelwriter.h"
#include "output/outputfile.h"
#include "output/tablewriter.h"
#include "run/binningrun.h"

namespace {

using namespace TQTool;

// A standard stream that was closed would be the number of the next file opened.
void OccupyStandardStreams() {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(file, F_GETFD) < 0) {
      [[maybe_unused]] const int opened = open("/dev/null", O_PATH);  // neither read nor written
    }
  }
}

int Report(int exitCode, const char* message) {
  const std::string line = std::string("tqbin: ") + message + "\n";
  std::fputs(line.c_str(), stderr);
  return exitCode;
}

// A column that ended in an error has no bins, whatever the others have.
int ExitCodeOf(const Model& model) {
  for (const BinnedAttribute& attribute : model.attributes) {
    if (attribute.status.IsError()) return kLibraryFailure;
  }
  return kDone;
}

int Run(int argc, const char* const* argv) {
  std::string text;
  const std::optional<Options> options = ParseOptions(argc, argv, &text);
  int exitCode = kDone;
  if (options.has_value()) {
    const Model model = RunBinning(*options);
    text = options->format == OutputFormat::kJson ? WriteModel(model) : WriteTable(model);
    exitCode = ExitCodeOf(model);
  }
  OutputFile output(options.has_value() ? options->output : "");
  output.Write(text);
  output.Finish();
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    OccupyStandardStreams();
    umask(S_IRWXG | S_IRWXO);  // what the run writes is nobody else's business
    InstallSignalHandlers();
    return Run(argc, argv);
  } catch (const ToolError& error) {
    return Report(error.GetExitCode(), error.what());
  } catch (const std::bad_alloc&) {
    return Report(kLibraryFailure, "out of memory; bin fewer columns at a time");
  } catch (const std::exception& error) {
    return Report(kLibraryFailure, error.what());
  }
}
