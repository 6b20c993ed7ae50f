#include "property/agreement.h"

#include "property/libraryrun.h"
#include "property/observations.h"
#include "property/outcomes.h"
#include "property/problemtext.h"
#include "property/shrink.h"

namespace property {

using reference::Outcome;
using reference::Problem;

std::string Disagreement(const Problem& problem, const std::string& directory) {
  const LibraryOutcome library = RunLibrary(problem, directory);
  return library.complaint + Difference(reference::Run(problem), library.outcome);
}

bool DependsOnTies(const Problem& problem) {
  if (!problem.supervised) return false;
  Problem other = problem;
  other.ties = reference::Ties::kByCase;
  return !Difference(reference::Run(problem), reference::Run(other)).empty();
}

std::string AgreementCheck::Check(std::uint64_t seed) {
  const GeneratedProblem generated = Generate(seed);
  const Outcome expected = reference::Run(generated.problem);
  const LibraryOutcome library = RunLibrary(generated.problem, fDirectory);
  ++fKinds[generated.kind];
  for (const std::string& name : Observe(generated.problem, expected)) ++fCounts[name];

  const std::string difference = library.complaint + Difference(expected, library.outcome);
  if (difference.empty()) return "";
  std::string report =
      "seed " + std::to_string(seed) + " (" + NameOf(generated.kind) + ")\n" + difference;
  if (DependsOnTies(generated.problem)) report += "(the generator's fault: depends on ties)\n";
  const Problem small = Shrink(generated.problem, [this](const Problem& problem) {
    return !Disagreement(problem, fDirectory).empty() && !DependsOnTies(problem);
  });
  return report + "shrunk: const Problem problem = " + TextOf(small) + ";\n" +
         Disagreement(small, fDirectory);
}

std::string AgreementCheck::CountsText() const {
  std::string text;
  for (const auto& [kind, count] : fKinds) {
    text += std::string("kind ") + NameOf(kind) + ": " + std::to_string(count) + "\n";
  }
  for (const auto& [name, count] : fCounts) text += name + ": " + std::to_string(count) + "\n";
  return text;
}

std::string AgreementCheck::MissingText() const {
  std::string text;
  for (const Kind kind : AllKinds()) {
    if (!fKinds.contains(kind)) text += std::string("kind ") + NameOf(kind) + "\n";
  }
  for (const std::string& name : RequiredObservations()) {
    if (!fCounts.contains(name)) text += name + "\n";
  }
  return text;
}

}  // namespace property
