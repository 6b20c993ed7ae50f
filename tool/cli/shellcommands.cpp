#include <memory>

#include "cli/addcommands.h"
#include "cli/completion.h"
#include "cli/manualpage.h"

namespace TQTool {
namespace {

// Writes down what the parser knows.
using Writer = std::string (*)(const CommandTable&);

}  // namespace

void AddShellCommands(CLI::App& app, std::string& answer) {
  CLI::App* const completion =
      app.add_subcommand("completion", "Prints a script that teaches a shell to complete tqbin.");
  const auto writer = std::make_shared<Writer>(nullptr);
  AddChoice<Writer>(*completion, "SHELL", *writer,
                    {{"bash", BashCompletion}, {"fish", FishCompletion}, {"zsh", ZshCompletion}},
                    "the shell that is to read it")
      ->required();
  completion->callback([&app, &answer, writer] { answer = (*writer)(TableOf(app)); });

  CLI::App* const manual =
      app.add_subcommand("manual", "Prints the manual page: tqbin manual | man -l -");
  manual->callback([&app, &answer] { answer = ManualPage(TableOf(app)); });
}

}  // namespace TQTool
