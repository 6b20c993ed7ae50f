#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "property/problemgenerator.h"
#include "reference/reference.h"

// The library against the plain second implementation, over generated problems.
namespace property {

// Where the library and the reference disagree on a problem; empty when nowhere.
std::string Disagreement(const reference::Problem& problem, const std::string& directory);

// Whether the reference's own answer to a supervised problem changes with the order of
// equal values, which no implementation promises.  Such a problem proves nothing.
bool DependsOnTies(const reference::Problem& problem);

// Checks problems one by one and keeps count of what they exercised.
class AgreementCheck {
 public:
  explicit AgreementCheck(std::string directory) : fDirectory(std::move(directory)) {}

  // Empty, or a report: seed, difference, and the problem shrunk.
  std::string Check(std::uint64_t seed);

  const std::map<Kind, long>& KindCounts() const { return fKinds; }
  const std::map<std::string, long>& Counts() const { return fCounts; }
  std::string CountsText() const;
  // The required observations that never came, and the kinds; empty when all did.
  std::string MissingText() const;

 private:
  std::string fDirectory;
  std::map<Kind, long> fKinds;
  std::map<std::string, long> fCounts;
};

}  // namespace property
