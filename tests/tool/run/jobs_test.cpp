#include "run/jobs.h"

#include <fstream>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/modelwriter.h"
#include "run/binningrun.h"
#include "support/scratchdirectory.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

using testing::HasSubstr;
using testing::Not;

// A weighted file of 3,000 rows, with missing values, to be binned.
struct WeightedRun {
  support::ScratchDirectory directory;
  BinningOptions options;

  WeightedRun() {
    std::ofstream file(directory.File("rows.csv"));
    file << "t,w,a,b,c\n";
    for (int i = 0; i < 3000; ++i) {
      file << (i % 5 < 2 ? 'x' : 'y') << ',' << i % 3 << ',' << i % 1000 << ',' << i * 7 % 11
           << ',';
      if (i % 4 != 0) file << i % 5;
      file << '\n';
    }
    options.input.inputs = {directory.File("rows.csv")};
    options.input.isVerbose = true;
    options.targets = {"t"};
    options.settings.weight = "w";
    options.settings.weightRounding = "closest";
    options.settings.missingTokens = MissingTokens::Default();
    options.tempDir = directory.Path();
  }

  // The model file of a run, and what was said on the way.
  std::string Model(std::size_t jobs, std::optional<std::size_t> memory = std::nullopt) {
    options.jobs = jobs;
    options.memoryForJobs = memory;
    testing::internal::CaptureStderr();
    std::string text = WriteModel(RunBinning(options));
    notes = testing::internal::GetCapturedStderr();
    EXPECT_EQ(1U, directory.CountFiles()) << "only the input is left";
    return text;
  }

  std::string notes;
};

TEST(RunJobs, GiveWhatOneJobGives) {
  WeightedRun run;
  const std::string one = run.Model(1);
  EXPECT_THAT(one, HasSubstr("\"c\""));
  EXPECT_EQ(one, run.Model(2));
  EXPECT_EQ(one, run.Model(3));
  EXPECT_EQ(one, run.Model(0));
  EXPECT_THAT(run.notes, Not(HasSubstr("do not fit")));
}

TEST(RunJobs, GoOnWithOneWhereMemoryEnds) {
  WeightedRun run;
  const std::string one = run.Model(1);
  // 8 bytes for each of five values and 64 for each of two jobs.
  for (const std::size_t rows : {0U, 1U, 1000U, 2999U}) {
    EXPECT_EQ(one, run.Model(2, rows * 168)) << rows;
    EXPECT_THAT(run.notes, HasSubstr("more than " + std::to_string(rows) +
                                     " rows do not fit into the memory for 2 jobs"));
  }
}

TEST(RunJobs, ErrorsBehindTheHeldRowsArrive) {
  WeightedRun run;
  std::ofstream(run.directory.File("rows.csv"), std::ios::app) << "x,1,oops,1,1\n";
  for (const std::size_t memory : {1000U * 168U, 9000U * 168U}) {
    run.options.jobs = 2;
    run.options.memoryForJobs = memory;
    EXPECT_THAT(ErrorOf([&run] { RunBinning(run.options); }), HasSubstr("rows.csv:3002:5: 'oops'"));
  }
}

TEST(MemoryForJobs, IsAShareOfTheMachines) { EXPECT_GT(MemoryForJobs(), std::size_t{1} << 20); }

}  // namespace
}  // namespace TQTool
