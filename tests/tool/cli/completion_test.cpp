#include "cli/completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::Not;

// A tool of one command, with one option.
CommandTable TableWith(const OptionEntry& option) {
  CommandTable table;
  table.tool.names = {"tqbin"};
  CommandEntry command;
  command.names = {"cut", "c"};
  command.description = "Cuts.";
  command.options = {option};
  table.commands = {command};
  return table;
}

OptionEntry OptionSaying(const std::string& description) {
  return {{"-x", "--extra"}, "TEXT", {}, description};
}

TEST(Completion, ListedValuesAreOfferedInEveryShell) {
  const CommandTable table = TableWith({{"--form"}, "round|square", {"round", "square"}, "form"});
  EXPECT_THAT(BashCompletion(table), HasSubstr("--form) compgen -W 'round square'"));
  EXPECT_THAT(ZshCompletion(table), HasSubstr("'*--form[form]:round|square:(round square)'"));
  EXPECT_THAT(FishCompletion(table), HasSubstr("-l form -x -a 'round square' -d 'form'"));
}

TEST(Completion, AnAliasIsCompletedLikeItsCommand) {
  const CommandTable table = TableWith(OptionSaying("more"));
  EXPECT_THAT(BashCompletion(table), HasSubstr("    cut | c)\n"));
  EXPECT_THAT(ZshCompletion(table), HasSubstr("        cut|c)\n"));
  EXPECT_THAT(FishCompletion(table), HasSubstr("__fish_seen_subcommand_from cut c'"));
}

TEST(Completion, AnExplanationCannotEndItsQuotes) {
  const CommandTable table = TableWith(OptionSaying("a table's [end]: \\n"));
  EXPECT_THAT(ZshCompletion(table),
              HasSubstr("{-x,--extra}'[a table'\\''s \\[end\\]\\: \\\\n]:TEXT: '"));
  EXPECT_THAT(FishCompletion(table), HasSubstr("-d 'a table\\'s [end]: \\\\n'"));
  EXPECT_THAT(BashCompletion(table), Not(HasSubstr("table's")));
}

}  // namespace
}  // namespace TQTool
