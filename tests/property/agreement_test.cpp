#include "property/agreement.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "support/scratchdirectory.h"

namespace {

// How many problems: a minute's worth by default, fewer in builds that are slow.
// The environment variable TQBINNING_AGREEMENT_PROBLEMS says another number.
std::uint64_t NumberOfProblems() {
  const char* text = std::getenv("TQBINNING_AGREEMENT_PROBLEMS");
  return text != nullptr ? std::stoull(text) : AGREEMENT_PROBLEMS;
}

// Two implementations written by different people, compared over whole runs: every
// status, every stored result, every number to the last bit.
TEST(Agreement, LibraryAndReferenceAgreeOnGeneratedProblems) {
  const std::uint64_t problems = NumberOfProblems();
  const support::ScratchDirectory directory;
  property::AgreementCheck check(directory.Path());
  for (std::uint64_t seed = 1; seed <= problems; ++seed) {
    const std::string report = check.Check(seed);
    ASSERT_TRUE(report.empty()) << report;
  }
  EXPECT_TRUE(directory.IsEmpty()) << "column files were left behind";
  std::cout << check.CountsText();

  // A generator that no longer meets the hard cases would agree for no good reason.
  if (problems >= 4000) {
    EXPECT_EQ("", check.MissingText()) << "never met in " << problems << " problems";
  }
}

}  // namespace
