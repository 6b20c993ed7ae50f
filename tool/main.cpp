// tqbin: bins the numeric columns of a table and works with the bins.  A host of the
// binning library like any other: what each command does stands here, in the words of
// the folders beside this file.

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "apply/apply.h"
#include "base/notes.h"
#include "base/plaintext.h"
#include "base/privatedirectory.h"
#include "base/signals.h"
#include "base/toolerror.h"
#include "cli/commandline.h"
#include "export/export.h"
#include "input/opensource.h"
#include "model/modelcheck.h"
#include "model/modelreader.h"
#include "output/modelprinter.h"
#include "output/outputfile.h"
#include "report/report.h"
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
  std::fprintf(stderr, "tqbin: %s\n", message);  // there may be no memory to make a line of it
  return exitCode;
}

// The last resort: without memory, a library that needs some to clear up cannot go on.
[[noreturn]] void EndAtOnce() {
  PrivateDirectory::RemoveFromSignalHandler();
  constexpr std::string_view kMessage =
      "tqbin: ended while clearing up after an error; is there too little memory?\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kMessage.data(), kMessage.size());
  _exit(kLibraryFailure);
}

// A column that ended in an error has no bins, whatever the others have.
int ExitCodeOf(const Model& model, bool isStrict) {
  int exitCode = kDone;
  for (const BinnedAttribute& attribute : model.attributes) {
    if (attribute.status.IsError()) return kLibraryFailure;
    if (isStrict && !attribute.status.IsOK()) exitCode = kDoneWithWarnings;
  }
  return exitCode;
}

void WriteText(const std::string& path, const std::string& text) {
  OutputFile output(path);
  output.Write(text);
  output.Finish();
}

int BinData(const BinningOptions& options) {
  const Model model = RunBinning(options);
  WriteText(options.output.path, PrintModel(model, options.output));
  return ExitCodeOf(model, options.isStrict);
}

int Apply(const ApplyOptions& options) {
  const Model model = LoadModel(options.model);
  const std::unique_ptr<Source> data = OpenSource(options.input);
  OutputFile output(options.output);
  ApplyModel(model, *data, options,
             [&output](std::string_view text) { return output.Write(text); });
  output.Finish();
  return kDone;
}

int Show(const ModelOptions& options) {
  WriteText(options.output.path, PrintModel(LoadModel(options.model), options.output));
  return kDone;
}

int Check(const ModelOptions& options) {
  const Model model = LoadModel(options.model);
  const std::vector<std::string> doubts = FindDoubts(model);
  for (const std::string& doubt : doubts) PrintNote(doubt);
  const std::size_t columns = model.CountColumns();
  WriteText(
      options.output.path,
      fmt::format("{}: good: bins of {} column{}, {} remark{}\n", Printable(options.model), columns,
                  columns == 1 ? "" : "s", doubts.size(), doubts.size() == 1 ? "" : "s"));
  return options.isStrict && !doubts.empty() ? kDoneWithWarnings : kDone;
}

int Export(const ExportOptions& options) {
  WriteText(options.output, ExportModel(LoadModel(options.model), options));
  return kDone;
}

int WritePage(const ModelOptions& options) {
  WriteText(options.output.path, WriteReport(LoadModel(options.model)));
  return kDone;
}

int Run(int argc, const char* const* argv) {
  const Commands commands = {BinData, Apply, Show, Check, Export, WritePage};
  std::string answer;
  const std::function<int()> action = ParseCommandLine(argc, argv, commands, &answer);
  if (action != nullptr) return action();
  WriteText("", answer);
  return kDone;
}

}  // namespace

int main(int argc, char** argv) {
  std::set_terminate(EndAtOnce);
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
