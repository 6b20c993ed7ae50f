// Whole problems: the library against the plain reference, every status and every number
// to the last bit.  The generator of the agreement tests makes problems that are hard on
// purpose; here the fuzzer finds its own.

#include <climits>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "property/agreement.h"
#include "property/problemtext.h"
#include "property/problemwords.h"
#include "reference/reference.h"
#include "support/scratchdirectory.h"

namespace {

using fuzz::Bytes;
using reference::Problem;
using reference::Variable;

constexpr std::size_t kMostRows = 64;

// Equal values have no order of their own in a supervised run, so there sums of weights
// must not depend on one: they are exact, or no two values of a column are equal.
enum class Weights { kRounded, kEighths, kOdd, kAny, kCount };

class Maker {
 public:
  explicit Maker(Bytes& bytes) : fBytes(bytes) {}

  Problem Make() {
    const std::uint8_t flags = fBytes.Byte();
    fProblem.supervised = flags % 4 != 0;
    fProblem.rightClosed = flags / 4 % 2 == 0;
    fProblem.ties = reference::Ties::kByWeight;
    fWeights = static_cast<Weights>(fBytes.Below(static_cast<std::size_t>(Weights::kCount)));
    fProblem.numberOfBins = MakeNumberOfBins();
    if (fBytes.Flag()) fProblem.distinctThreshold = static_cast<int>(fBytes.Below(16));
    fProblem.smallBinThreshold = fBytes.Pick(std::vector<double>{0.0, 0.0, 0.1, 0.25, 0.5, 1.0});
    MakeVariables();
    MakeCalls();
    while (!fBytes.IsUsedUp() && fProblem.records.size() < kMostRows) MakeRecord();
    return std::move(fProblem);
  }

 private:
  int MakeNumberOfBins() {
    const std::uint8_t byte = fBytes.Byte();
    if (byte < 4) return -1;  // not set
    return byte < 250 ? 2 + byte % 16 : 1000;
  }

  bool NeedsDistinctValues() const { return fProblem.supervised && fWeights == Weights::kAny; }

  void MakeVariables() {
    const std::size_t count = 1 + fBytes.Below(6);
    bool hasTarget = false;
    bool hasWeight = false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint8_t kind = fBytes.Byte();
      const bool isTarget = kind % 8 >= 4 && kind % 8 < 6 && !hasTarget;
      const bool isCategory = kind % 8 == 6 && !NeedsDistinctValues();  // an attribute too
      if (isTarget || isCategory) {
        fProblem.variables.push_back(MakeCategorical(isTarget));
        hasTarget = hasTarget || isTarget;
      } else if (kind % 8 == 7 && !hasWeight) {
        fProblem.variables.push_back(MakeWeight());
        hasWeight = true;
      } else {
        fProblem.variables.push_back(MakeContinuous());
      }
    }
  }

  Variable MakeContinuous() {
    std::vector<double> values = fBytes.Numbers(fBytes.Flag() ? 2 : 0);
    property::Interval interval;
    if (fBytes.Below(8) == 1) {
      const double left = fBytes.Number();
      interval.emplace(left, fBytes.Number());
    }
    return property::Continuous(std::move(values), interval);
  }

  Variable MakeCategorical(bool isTarget) {
    const std::uint8_t byte = fBytes.Byte();
    const int categories = byte < 240 ? byte % 6 + 1 : byte - 250;  // some make no sense
    const int level =
        fBytes.Flag() ? reference::kLevelStringCategorical : reference::kLevelNumericCategorical;
    return isTarget ? property::Target(categories, level)
                    : property::Categorical(categories, level);
  }

  Variable MakeWeight() {
    const bool isRounded = fWeights == Weights::kRounded;
    return property::Weight(isRounded ? (fBytes.Flag() ? 0 : 1) : 2);
  }

  void MakeCalls() {
    const std::size_t count = 1 + fBytes.Below(3);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint8_t kind = fBytes.Byte();
      if (kind % 4 == 1) {
        fProblem.calls.push_back(property::Attributes(MakeIndexes()));
      } else if (kind % 4 == 2 && fProblem.supervised) {
        std::vector<int> attributes = MakeIndexes();
        fProblem.calls.push_back(property::Pairs(std::move(attributes), MakeIndexes()));
      } else if (kind % 16 == 3 && fProblem.supervised) {
        fProblem.calls.push_back(property::TargetsOnly(MakeIndexes()));
      } else {
        fProblem.calls.push_back(property::All());
      }
    }
  }

  std::vector<int> MakeIndexes() {
    std::vector<int> indexes;
    const std::size_t count = fBytes.Below(5);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint8_t byte = fBytes.Byte();
      const auto size = static_cast<int>(fProblem.variables.size());
      indexes.push_back(byte < 250 ? byte % size
                                   : std::vector{-1, size, INT_MAX, INT_MIN}[byte % 4]);
    }
    return indexes;
  }

  void MakeRecord() {
    std::vector<double> record;
    for (const Variable& variable : fProblem.variables) {
      switch (variable.kind) {
        case Variable::Kind::kContinuous: record.push_back(MakeValue()); break;
        case Variable::Kind::kCategorical: record.push_back(MakeCode()); break;
        case Variable::Kind::kWeight: record.push_back(MakeOneWeight()); break;
      }
    }
    fProblem.records.push_back(std::move(record));
  }

  double MakeValue() {
    if (!NeedsDistinctValues()) return fBytes.Number();
    const double row = static_cast<double>(fProblem.records.size());
    return fBytes.Flag() ? row : -row;  // distinct, in any order
  }

  double MakeCode() {
    const std::uint8_t byte = fBytes.Byte();
    if (byte < 240) return byte % 4;
    return byte < 250 ? property::kMissing : fBytes.Number();
  }

  double MakeOneWeight() {
    if (fWeights == Weights::kAny) return fBytes.Number();
    const std::uint8_t byte = fBytes.Byte();
    const auto number = static_cast<std::int8_t>(byte);
    if (byte == 128) return property::kMissing;
    switch (fWeights) {
      case Weights::kRounded: return number / 4.0;
      case Weights::kEighths: return number / 8.0;
      default: break;
    }
    if (byte % 16 == 5) return property::kNaN;
    return byte % 16 == 6 ? property::kInfinity : byte % 4;
  }

  Bytes& fBytes;
  Weights fWeights = Weights::kRounded;
  Problem fProblem;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const support::ScratchDirectory directory;
  Bytes bytes(data, size);
  const Problem problem = Maker(bytes).Make();
  const std::string difference = property::Disagreement(problem, directory.Path());
  if (!difference.empty() && !property::DependsOnTies(problem)) {
    fuzz::Require(false, difference + "const Problem problem = " + property::TextOf(problem) + ";");
  }
  fuzz::Require(directory.IsEmpty(), "column files that were left behind");
  return 0;
}
