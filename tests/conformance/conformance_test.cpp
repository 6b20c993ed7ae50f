#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "conformance/casefile.h"
#include "property/libraryrun.h"
#include "property/outcomes.h"
#include "property/problemwords.h"
#include "support/scratchdirectory.h"

namespace {

using conformance::Case;
using reference::Outcome;

std::vector<std::filesystem::path> CaseFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(CONFORMANCE_CASES)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

std::string ContentsOf(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// Logarithms may differ in their last bits from one mathematics library, or one kind of
// processor, to another.  An entropy that is that close is made equal.
void ForgiveLogarithms(const Outcome& expected, Outcome& actual) {
  for (std::size_t i = 0; i < std::min(expected.results.size(), actual.results.size()); ++i) {
    const double wanted = expected.results[i].modelEntropy;
    double& entropy = actual.results[i].modelEntropy;
    if (std::fabs(entropy - wanted) <= 1e-13 * std::max(1.0, std::fabs(wanted))) entropy = wanted;
  }
}

// The kept answers, made once and looked at by people, against the library of today.
TEST(Conformance, TheLibraryGivesTheKeptAnswers) {
  const support::ScratchDirectory directory;
  std::set<std::string> names;
  for (const std::filesystem::path& file : CaseFiles()) {
    for (const Case& c : conformance::ReadCases(ContentsOf(file))) {
      SCOPED_TRACE(file.filename().string() + ": " + c.name);
      EXPECT_TRUE(names.insert(c.name).second) << "two cases of one name";
      property::LibraryOutcome run = property::RunLibrary(c.problem, directory.Path());
      ForgiveLogarithms(c.expected, run.outcome);
      EXPECT_EQ("", run.complaint);
      EXPECT_EQ("", property::Difference(c.expected, run.outcome));
    }
  }
  EXPECT_EQ(200u, names.size());
}

TEST(Conformance, TheFilesStaySmallEnoughToRead) {
  std::uintmax_t size = 0;
  for (const std::filesystem::path& file : CaseFiles()) size += std::filesystem::file_size(file);
  EXPECT_GT(size, 0u);
  EXPECT_LT(size, 1024u * 1024u);
}

// Writing what was read gives the same text: nothing is lost on the way.
TEST(CaseFile, WritingWhatWasReadGivesTheSameText) {
  for (const std::filesystem::path& file : CaseFiles()) {
    const std::string text = ContentsOf(file);
    EXPECT_TRUE(text == conformance::WriteCases(conformance::ReadCases(text))) << file;
  }
}

TEST(CaseFile, NumbersThatNoDecimalHoldsSurvive) {
  Case c;
  const std::vector<double> numbers = {0.1,
                                       -0.0,
                                       5e-324,
                                       1e300,
                                       0x1p31,
                                       -2147483647.0,
                                       property::kNaN,
                                       -property::kInfinity,
                                       property::kMissing};
  c.problem.variables.assign(numbers.size(), property::Continuous());
  c.problem.records = {numbers};
  const std::vector<Case> read = conformance::ReadCases(conformance::WriteCases({c}));
  ASSERT_EQ(1u, read.size());
  ASSERT_EQ(numbers.size(), read[0].problem.records.at(0).size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_TRUE(property::SameNumber(numbers[i], read[0].problem.records[0][i])) << numbers[i];
  }
  EXPECT_TRUE(std::signbit(read[0].problem.records[0][1]));
}

TEST(CaseFile, AnotherFormatIsRefused) {
  EXPECT_THROW(conformance::ReadCases(R"({"format": "something", "cases": []})"), std::exception);
  EXPECT_THROW(conformance::ReadCases("["), std::exception);
}

}  // namespace
