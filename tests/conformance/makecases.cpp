// Writes the conformance cases anew: conformance_make DIRECTORY.  Answers come from the
// reference implementation; a problem on which the library disagrees is refused.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "conformance/casefile.h"
#include "property/agreement.h"
#include "property/observations.h"
#include "property/problemgenerator.h"
#include "support/scratchdirectory.h"

namespace {

using conformance::Case;
using property::Kind;

constexpr std::size_t kCases = 200;
constexpr std::size_t kMostRecords = 48;  // to be read by people
constexpr std::uint64_t kSeedsForRareThings = 20000;
constexpr int kOfEachThing = 3;
constexpr const char* kTooLong = "more cases than one block";  // to be shown here

// The file that a kind of problems goes to.
std::string FileOf(Kind kind) {
  switch (kind) {
    case Kind::kTies:
    case Kind::kEqualEntropies:
    case Kind::kPreBinned:
    case Kind::kMerged:
    case Kind::kManyRecords: return "supervised";
    case Kind::kSeveralTargets:
    case Kind::kIndexLists:
    case Kind::kOddCodes:
    case Kind::kLists: return "lists";
    case Kind::kWeights:
    case Kind::kFractionalWeights:
    case Kind::kArbitraryWeights:
    case Kind::kHugeWeights: return "weights";
    case Kind::kOddValues: return "values";
    case Kind::kEqualFrequency:
    case Kind::kExactTargets:
    case Kind::kStaleTails:
    case Kind::kEqualFrequencyWeights:
    case Kind::kEqualFrequencyLists: return "equal-frequency";
  }
  return "";
}

class Selection {
 public:
  // Everything that problems can show a few times over, then as many of each kind as
  // make up the number.
  void Fill() {
    for (std::uint64_t seed = 1; seed <= kSeedsForRareThings && fCount < kCases; ++seed) {
      Consider(seed, [this](Kind, const std::vector<std::string>& names) {
        bool isRare = false;
        for (const std::string& name : names) isRare = isRare || fSeen[name] < kOfEachThing;
        return isRare;
      });
    }
    for (int quota = 1; fCount < kCases; ++quota) {
      for (std::uint64_t seed = 1; seed <= kSeedsForRareThings && fCount < kCases; ++seed) {
        Consider(seed, [this, quota](Kind kind, const std::vector<std::string>&) {
          return fOfKind[kind] < quota;
        });
      }
    }
  }

  // Throws when the cases do not show something often enough.
  void CheckRareThings() {
    for (const std::string& name : property::RequiredObservations()) {
      if (name != kTooLong && fSeen[name] < kOfEachThing) {
        throw std::runtime_error("shown too seldom: " + name);
      }
    }
  }

  const std::map<std::string, std::vector<Case>>& Files() const { return fFiles; }

 private:
  template <typename Wanted>
  void Consider(std::uint64_t seed, Wanted wanted) {
    if (fTaken.contains(seed)) return;
    const auto [kind, problem] = property::Generate(seed);
    if (problem.records.size() > kMostRecords) return;
    for (const auto& variable : problem.variables) {
      if (variable.categories > 20) return;  // hundreds of columns of counts
    }
    const reference::Outcome expected = reference::Run(problem);
    const std::vector<std::string> names = property::Observe(problem, expected);
    if (!wanted(kind, names)) return;
    const std::string disagreement = property::Disagreement(problem, fDirectory.Path());
    if (!disagreement.empty()) {
      throw std::runtime_error("seed " + std::to_string(seed) + ": " + disagreement);
    }
    fTaken.insert(seed);
    ++fCount;
    ++fOfKind[kind];
    for (const std::string& name : names) ++fSeen[name];
    fFiles[FileOf(kind)].push_back(
        {std::string(NameOf(kind)) + " " + std::to_string(fOfKind[kind]), seed, problem, expected});
  }

  support::ScratchDirectory fDirectory;
  std::set<std::uint64_t> fTaken;
  std::size_t fCount = 0;
  std::map<Kind, int> fOfKind;
  std::map<std::string, int> fSeen;
  std::map<std::string, std::vector<Case>> fFiles;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: conformance_make DIRECTORY\n", stderr);
    return 2;
  }
  try {
    Selection selection;
    selection.Fill();
    selection.CheckRareThings();
    for (const auto& [name, cases] : selection.Files()) {
      std::ofstream file(std::string(argv[1]) + "/" + name + ".json");
      file << conformance::WriteCases(cases);
      if (!file.flush()) throw std::runtime_error("cannot write " + name);
      std::printf("%s: %zu cases\n", name.c_str(), cases.size());
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "conformance_make: %s\n", error.what());
    return 1;
  }
}
