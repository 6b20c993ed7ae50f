#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reference/reference.h"

// Files of problems with their answers.  docs/conformance.md tells the format.
namespace conformance {

struct Case {
  std::string name;
  std::uint64_t seed = 0;  // of the generator that made the problem
  reference::Problem problem;
  reference::Outcome expected;
};

// The text of a file that holds the cases.
std::string WriteCases(const std::vector<Case>& cases);

// The cases of such a text.  Throws std::exception for anything else.
std::vector<Case> ReadCases(const std::string& text);

}  // namespace conformance
