#include "cli/commandtable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TQTool {
namespace {

using testing::ElementsAre;

TEST(CommandTable, TellsNamesValuesAndArgumentsOfACommand) {
  CLI::App app("whole", "tool");
  CLI::App* const command = app.add_subcommand("cut", "Cuts.");
  command->alias("c");
  std::string file;
  std::string form;
  bool isLoud = false;
  command->add_option("FILE", file, "input")->type_name("");
  command->add_option("-f,--form", form, "form")->type_name("round|square");
  command->add_flag("--loud", isLoud, "louder");

  const CommandTable table = TableOf(app);
  ASSERT_EQ(1u, table.commands.size());
  const CommandEntry& entry = table.commands[0];
  EXPECT_THAT(entry.names, ElementsAre("cut", "c"));
  ASSERT_EQ(1u, entry.arguments.size());
  EXPECT_THAT(entry.arguments[0].names, ElementsAre("FILE"));
  EXPECT_TRUE(entry.arguments[0].IsFile());
  ASSERT_EQ(3u, entry.options.size());  // the first is --help
  EXPECT_THAT(entry.options[1].names, ElementsAre("-f", "--form"));
  EXPECT_EQ("round|square", entry.options[1].value);
  EXPECT_THAT(entry.options[1].choices, ElementsAre("round", "square"));
  EXPECT_FALSE(entry.options[1].IsFile());
  EXPECT_THAT(entry.options[2].names, ElementsAre("--loud"));
  EXPECT_EQ("", entry.options[2].value);
}

}  // namespace
}  // namespace TQTool
