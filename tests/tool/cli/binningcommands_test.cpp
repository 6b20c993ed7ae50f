#include "cli/commandline.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "input/missingtokens.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::optional<BinningOptions> Parse(std::vector<std::string> arguments, std::string* answer) {
  arguments.insert(arguments.begin(), "tqbin");
  std::vector<const char*> argv;
  for (const std::string& argument : arguments) argv.push_back(argument.c_str());
  std::optional<BinningOptions> options;
  Commands commands;
  commands.bin = [&options](const BinningOptions& given) {
    options = given;
    return 0;
  };
  const auto action =
      ParseCommandLine(static_cast<int>(argv.size()), argv.data(), commands, answer);
  if (action != nullptr) action();
  return options;
}

// The options of a supervised run on f.csv with further arguments.
BinningOptions Supervised(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"supervised", "f.csv", "--target", "t"});
  std::string answer;
  return Parse(arguments, &answer).value();
}

std::string ErrorOfArguments(const std::vector<std::string>& arguments) {
  return ErrorOf([&arguments] {
    std::string answer;
    Parse(arguments, &answer);
  });
}

std::string ErrorOfSupervised(const std::vector<std::string>& arguments) {
  return ErrorOf([&arguments] { Supervised(arguments); });
}

TEST(Options, DefaultsOfASupervisedRun) {
  const BinningOptions options = Supervised({});
  EXPECT_EQ(Method::kSupervised, options.method);
  EXPECT_THAT(options.input.inputs, ElementsAre("f.csv"));
  EXPECT_THAT(options.targets, ElementsAre("t"));
  EXPECT_THAT(options.attributes, ElementsAre());
  EXPECT_EQ("", options.settings.weight);
  EXPECT_EQ("closest", options.settings.weightRounding);
  EXPECT_EQ(MissingTokens::Default(), options.settings.missingTokens);
  EXPECT_EQ(std::nullopt, options.input.delimiter);
  EXPECT_EQ(0, options.settings.prebinThreshold);
  EXPECT_EQ(1000, options.settings.prebinBins);
  EXPECT_EQ(0.0, options.settings.minBinFactor);
  EXPECT_TRUE(options.settings.isRightClosed);
  EXPECT_EQ("", options.tempDir);
  EXPECT_EQ(OutputFormat::kTable, options.output.format);
}

TEST(Options, AliasesNameTheMethods) {
  std::string answer;
  EXPECT_EQ(Method::kSupervised, Parse({"mdlp", "-", "-t", "x"}, &answer)->method);
  const std::optional<BinningOptions> options = Parse({"ef", "f", "-b", "5"}, &answer);
  EXPECT_EQ(Method::kEqualFrequency, options->method);
  EXPECT_EQ(5, options->settings.bins);
}

TEST(Options, EveryOptionArrives) {
  const BinningOptions options = Supervised({"-a",
                                             "x,y",
                                             "--attribute=z",
                                             "-w",
                                             "n",
                                             "--weight-rounding",
                                             "down",
                                             "--closed",
                                             "left",
                                             "--prebin-threshold",
                                             "50",
                                             "--prebin-bins",
                                             "20",
                                             "--min-bin-factor",
                                             "0.25",
                                             "--delimiter",
                                             ";",
                                             "--temp-dir",
                                             "/d",
                                             "--format",
                                             "json"});
  EXPECT_THAT(options.attributes, ElementsAre("x,y", "z"));
  EXPECT_EQ("n", options.settings.weight);
  EXPECT_EQ("down", options.settings.weightRounding);
  EXPECT_FALSE(options.settings.isRightClosed);
  EXPECT_EQ(50, options.settings.prebinThreshold);
  EXPECT_EQ(20, options.settings.prebinBins);
  EXPECT_EQ(0.25, options.settings.minBinFactor);
  EXPECT_EQ(';', options.input.delimiter);
  EXPECT_EQ("/d", options.tempDir);
  EXPECT_EQ(OutputFormat::kJson, options.output.format);
}

TEST(Options, RepeatedOptionsDoNotSwallowTheFile) {
  std::string answer;
  const auto options = Parse({"mdlp", "-t", "x", "-a", "y", "--missing-token", "z", "f"}, &answer);
  EXPECT_THAT(options->input.inputs, ElementsAre("f"));
}

TEST(Options, TabIsADelimiter) {
  EXPECT_EQ('\t', Supervised({"--delimiter", "tab"}).input.delimiter);
  EXPECT_EQ('\t', Supervised({"--delimiter", "\\t"}).input.delimiter);
  EXPECT_EQ('\t', Supervised({"--delimiter", "\t"}).input.delimiter);
  for (const char* const delimiter : {"", "ab", "\"", "\n", "\r"}) {
    EXPECT_THAT(ErrorOfSupervised({std::string("--delimiter=") + delimiter}),
                StartsWith("2: --delimiter: "));
  }
}

TEST(Options, MissingTokensReplaceTheDefaultAndMayBeEmpty) {
  EXPECT_THAT(Supervised({"--missing-token=-9", "--missing-token", "x"}).settings.missingTokens,
              ElementsAre("-9", "x"));
  EXPECT_THAT(Supervised({"--missing-token", ""}).settings.missingTokens, ElementsAre(""));
}

TEST(Options, UserMissingValuesAddUpPerColumn) {
  const BinningOptions options = Supervised(
      {"--user-missing", "a=9, 99", "--user-missing", "b=c=-1", "--user-missing", "a=90..95,7"});
  ASSERT_EQ(2U, options.userMissing.size());
  EXPECT_THAT(options.userMissing.at("a").numbers, ElementsAre(9.0, 99.0, 7.0));
  EXPECT_EQ((ClosedRange{90.0, 95.0}), options.userMissing.at("a").range);
  EXPECT_THAT(options.userMissing.at("b=c").numbers, ElementsAre(-1.0));
  EXPECT_EQ(std::nullopt, options.userMissing.at("b=c").range);
}

TEST(Options, UserMissingRangesMayBeOpen) {
  const BinningOptions options =
      Supervised({"--user-missing", "a=..0", "--user-missing", "b=1.5.."});
  EXPECT_EQ((ClosedRange{-INFINITY, 0.0}), options.userMissing.at("a").range);
  EXPECT_EQ((ClosedRange{1.5, INFINITY}), options.userMissing.at("b").range);
}

TEST(Options, UserMissingValuesOfTheTargetAreTexts) {
  const BinningOptions options = Supervised({"--user-missing", "t=don't know,1..2"});
  EXPECT_THAT(options.userMissing.at("t").texts, ElementsAre("don't know", "1..2"));
  EXPECT_THAT(options.userMissing.at("t").numbers, ElementsAre());
}

TEST(Options, BadUserMissingValuesAreRefused) {
  for (const char* const text : {"a", "=9", "a=", "a=x", "a=9,", "a=..", "a=5..1", "a=1..x",
                                 "a=1..2,3..4", "a=inf", "a=0x10"}) {
    EXPECT_THAT(ErrorOfSupervised({"--user-missing", text}), StartsWith("2: --user-missing: "))
        << text;
  }
  EXPECT_THAT(ErrorOfSupervised({"--user-missing", "a=1..2", "--user-missing", "a=3.."}),
              HasSubstr("more than one range"));
}

TEST(Options, BadValuesAreRefused) {
  const std::vector<std::vector<std::string>> all = {
      {"--closed", "middle"},        {"--weight-rounding", "up", "-w", "x"},
      {"--format", "xml"},           {"--prebin-threshold", "-1"},
      {"--prebin-threshold", "1.5"}, {"--prebin-bins", "1", "--prebin-threshold", "5"},
      {"--min-bin-factor", "1.1"},   {"--min-bin-factor", "-0.1"},
      {"--min-bin-factor", "nan"},   {"--min-bin-factor", "x"}};
  for (const std::vector<std::string>& arguments : all) {
    EXPECT_THAT(ErrorOfSupervised(arguments), StartsWith("2: --" + arguments[0].substr(2)))
        << arguments[0];
  }
  for (const char* const bins : {"1", "0", "-3", "x", "1000001", "99999999999"}) {
    EXPECT_THAT(ErrorOfArguments({"ef", "f", std::string("--bins=") + bins}),
                StartsWith("2: --bins: "))
        << bins;
  }
}

TEST(Options, OptionsWithoutEffectAreRefused) {
  EXPECT_EQ("2: --prebin-bins requires --prebin-threshold; see tqbin supervised --help",
            ErrorOfSupervised({"--prebin-bins", "5"}));
  EXPECT_EQ("2: --weight-rounding requires --weight; see tqbin supervised --help",
            ErrorOfSupervised({"--weight-rounding", "down"}));
  EXPECT_THAT(ErrorOfArguments({"ef", "f", "-b", "2", "--target", "t"}),
              StartsWith("2: '--target' was not expected"));
}

TEST(Options, TargetsAndPairsMayBeRepeated) {
  EXPECT_THAT(Supervised({"-t", "u", "--target", "v"}).targets, ElementsAre("t", "u", "v"));
  std::string answer;
  const BinningOptions options =
      Parse({"mdlp", "f", "--pair", "a:t", "--pair", "b:c: u ", "--user-missing", "u=none,9"},
            &answer)
          .value();
  EXPECT_THAT(options.targets, ElementsAre());
  EXPECT_THAT(options.pairs, ElementsAre(AttributeTarget{"a", "t"}, AttributeTarget{"b:c", "u"}));
  EXPECT_THAT(options.userMissing.at("u").texts, ElementsAre("none", "9"));
}

TEST(Options, PairsThatCannotBeMeantAreRefused) {
  for (const char* const pair : {"a", "a:", ":t", " : "}) {
    EXPECT_THAT(ErrorOfArguments({"mdlp", "f", "--pair", pair}),
                StartsWith("2: --pair: '" + std::string(pair) + "' does not name two columns"));
  }
  EXPECT_THAT(ErrorOfSupervised({"--pair", "a:t"}), StartsWith("2: --pair stands instead of"));
  EXPECT_THAT(ErrorOfArguments({"mdlp", "f", "--pair", "a:t", "-a", "b"}),
              StartsWith("2: --pair stands instead of"));
}

TEST(Options, ScaledWeightsAreNotRoundedUnlessAskedFor) {
  EXPECT_EQ("", Supervised({"-w", "w"}).settings.weightScale);
  const BinningOptions options = Supervised({"-w", "w", "--weight-scale", "mean"});
  EXPECT_EQ("mean", options.settings.weightScale);
  EXPECT_EQ("none", options.settings.weightRounding);
  EXPECT_EQ("down", Supervised({"-w", "w", "--weight-scale", "2.5", "--weight-rounding", "down"})
                        .settings.weightRounding);
  for (const char* const scale : {"", "0", "-1", "inf", "nan", "Mean"}) {
    EXPECT_THAT(ErrorOfSupervised({"-w", "w", "--weight-scale", scale}),
                HasSubstr("is neither mean nor a number above 0"));
  }
}

TEST(Options, WhatIsMissingIsNamed) {
  EXPECT_THAT(ErrorOfArguments({}), StartsWith("2: no command is named;"));
  EXPECT_THAT(ErrorOfArguments({"mdlp", "f"}), StartsWith("2: --target is required"));
  EXPECT_THAT(ErrorOfArguments({"mdlp", "-t", "x"}), StartsWith("2: FILE is required"));
  EXPECT_THAT(ErrorOfArguments({"ef", "f"}), StartsWith("2: --bins is required"));
  EXPECT_THAT(ErrorOfArguments({"mdlp", "", "-t", "x"}), StartsWith("2: FILE is empty"));
}

TEST(Options, MistypedNamesComeWithASuggestion) {
  EXPECT_THAT(ErrorOfArguments({"supervisd", "f"}), HasSubstr("did you mean supervised?"));
  EXPECT_THAT(ErrorOfSupervised({"--atribute", "x"}), HasSubstr("did you mean --attribute?"));
}

TEST(Options, HelpAndVersionAreAnswers) {
  std::string answer;
  EXPECT_FALSE(Parse({"--help"}, &answer).has_value());
  EXPECT_THAT(answer, StartsWith("Examples:\n  tqbin supervised"));
  EXPECT_FALSE(Parse({"ef", "-h"}, &answer).has_value());
  EXPECT_THAT(answer, HasSubstr("--bins N"));
  EXPECT_FALSE(Parse({"--version"}, &answer).has_value());
  EXPECT_THAT(answer, testing::MatchesRegex("tqbin [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Options, HelpFitsATerminal) {
  for (const char* const method : {"supervised", "equal-frequency"}) {
    std::string answer;
    Parse({method, "--help"}, &answer);
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(line.size(), 80U) << line;
      EXPECT_FALSE(line.ends_with(' ')) << line;
    }
  }
}

TEST(CommandLine, WhatWasGivenCannotSteerATerminal) {
  EXPECT_THAT(ErrorOfSupervised({"--prebin-threshold", "1\x1b[2J"}),
              StartsWith("2: --prebin-threshold: Value 1\\x1b[2J not in range"));
}

}  // namespace
}  // namespace TQTool
