#include "cli/helpformatter.h"

#include <sstream>
#include <utility>

namespace TQTool {
namespace {

// One entry of the help: what is explained in a column of its own, the explanation
// beside it, in lines of at most kHelpWidth characters.
std::string HelpEntry(const std::string& what, const std::string& explanation) {
  constexpr std::size_t kIndent = 26;
  constexpr std::size_t kHelpWidth = 79;
  std::string text = "  " + what;
  std::size_t width = text.size();
  if (width + 2 > kIndent) {
    text += '\n';
    width = 0;
  }
  text.append(kIndent - width, ' ');
  width = kIndent;
  std::istringstream words(explanation);
  for (std::string word; words >> word;) {
    if (width + 1 + word.size() > kHelpWidth) {
      text += '\n' + std::string(kIndent, ' ');
      width = kIndent;
    }
    if (width > kIndent) text += ' ';
    width += word.size() + (width > kIndent ? 1 : 0);
    text += word;
  }
  return text + "\n";
}

}  // namespace

const char* const kExamples = R"(Examples:
  tqbin supervised iris.csv --target species
      Cut every numeric column where it separates the species best.
  tqbin equal-frequency diamonds.csv --bins 10 --attribute price,carat
      Cut two columns into ten bins of about equal frequency.
  zcat survey.csv.gz | tqbin supervised - --target vote --weight n --format json
      Read standard input, count a row as often as its weight says, write JSON.
  tqbin supervised loans.csv --target paid --user-missing age=999,..-1
      Take an age of 999, or -1 and less, for missing.
  tqbin supervised iris.csv --target species --format json -o model.json
  tqbin apply model.json new.csv
      Keep the bins in a model file, then put new rows into them.
)";

const char* const kHelpFooter =
    R"(A bin is shown as an interval: (2, 5] holds what is above 2 and at most 5.
Results go to standard output, everything else to standard error.
Exit codes: 0 done, 1 done with warnings and --strict, 2 usage, 3 input, 4 file
system, 5 library error or out of memory, 128 + signal when cancelled (130
Ctrl-C, 143 SIGTERM).)";

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode mode) const {
  return std::string(kExamples) + "\n" + CLI::Formatter::make_help(app, std::move(name), mode);
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
  const std::string what = option->get_name(isPositional, true);
  return HelpEntry(what + " " + option->get_type_name(), option->get_description());
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
  return HelpEntry(command->get_display_name(true), command->get_description());
}

}  // namespace TQTool
