#include "reference/reference.h"

#include <algorithm>

#include "reference/columns.h"
#include "reference/words.h"

namespace reference {
namespace {

// What both families of binning do alike: one pass over the records, a standing
// status, results that only grow.
class Driver {
 public:
  explicit Driver(const Problem& problem)
      : fProblem(problem),
        fVariableCount(static_cast<int>(problem.variables.size())),
        fTarget(FindRole(problem.variables, kRoleTarget)),
        fWeight(FindRole(problem.variables, kRoleWeight)) {}

  virtual ~Driver() = default;

  Outcome Run() {
    for (const Call& call : fProblem.calls) {
      fOutcome.callStatuses.push_back(CreateBins(call));
    }
    fOutcome.finalStatus = fStanding;
    return fOutcome;
  }

 protected:
  virtual Status CreateBins(const Call& call) = 0;

  // The pass runs once; if it failed, so does every later call.
  Status Prepare() {
    if (fProblem.records.empty()) return Error(kNoCase);
    if (!fPrepared) fPrepared = reference::Prepare(fProblem);
    return fPrepared->status;
  }

  const Column& ColumnOf(int variable) const { return fPrepared->columns.at(Position(variable)); }

  const Column* WeightColumn() const { return fWeight >= 0 ? &ColumnOf(fWeight) : nullptr; }

  bool IsVariable(int index) const { return index >= 0 && index < fVariableCount; }

  static bool AnyOk(const std::vector<Status>& statuses) {
    return std::any_of(statuses.begin(), statuses.end(),
                       [](const Status& status) { return status.IsOk(); });
  }

  static void Summarise(const Extract& extract, PairResult& result) {
    result.nDistinct = extract.nDistinct;
    result.totalWeight = extract.validWeight;
    result.totalWeightWithMissing = extract.allWeight;
    result.minimum = extract.minimum;
    result.maximum = extract.maximum;
  }

  // The answer to a call whose binning ended with `status`.
  Status Conclude(const Status& status) const {
    return fStanding.IsOk() ? status : Warning(kSomeNotOk);
  }

  void Remember(const Status& status) {
    if (!status.IsOk()) fStanding = status;
  }

  const Problem& fProblem;
  const int fVariableCount;
  const int fTarget;
  const int fWeight;
  std::optional<Prepared> fPrepared;
  Status fStanding;
  Outcome fOutcome;
};

class SupervisedDriver final : public Driver {
 public:
  using Driver::Driver;

 private:
  Status CreateBins(const Call& call) override {
    if (fProblem.numberOfBins < 1) return Error(kBadNumberOfBins);
    std::vector<Status> checks;
    if (call.attributes || call.targets) {
      checks = Check(call);
      if (!AnyOk(checks)) return Error(kNoValidPair);
    }
    const Status prepared = Prepare();
    if (prepared.IsError()) return prepared;
    return Conclude(call.attributes ? BinPairs(call, checks) : BinAll());
  }

  // One status per pair; none when the lists do not go together.
  std::vector<Status> Check(const Call& call) const {
    std::vector<Status> statuses;
    if (!call.attributes) return statuses;
    const std::vector<int>& attributes = *call.attributes;
    if (call.targets && call.targets->size() != attributes.size()) {
      return statuses;
    }
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      statuses.push_back(call.targets ? CheckPair(attributes[i], (*call.targets)[i])
                                      : CheckAttribute(attributes[i]));
    }
    return statuses;
  }

  Status CheckPair(int attribute, int target) const {
    if (!IsVariable(attribute) || !IsVariable(target)) return Error(kBadIndex);
    if (!HasCategories(fProblem.variables[Position(target)])) {
      return Error(kTargetNotCategorical);
    }
    if (target == attribute || target == fWeight || attribute == fWeight) {
      return Error(kIndexHasOtherUse);
    }
    return Status();
  }

  Status CheckAttribute(int attribute) const {
    if (!IsVariable(attribute)) return Error(kBadAttribute);
    if (attribute == fWeight || attribute == fTarget) {
      return Error(kIndexHasOtherUse);
    }
    return Status();
  }

  Status BinPairs(const Call& call, const std::vector<Status>& checks) {
    Status status;
    for (std::size_t i = 0; i < checks.size(); ++i) {
      const int attribute = (*call.attributes)[i];
      const int target = call.targets ? (*call.targets)[i] : fTarget;
      if (checks[i].IsOk()) {
        status = RunPair(attribute, target);
      } else {
        PairResult rejected;
        rejected.status = checks[i];
        rejected.attribute = attribute;
        rejected.target = target;
        Store(rejected);
      }
    }
    return status;
  }

  Status BinAll() {
    if (!IsUsableTarget(fTarget)) return Error(kBadTarget);
    Status status;
    for (int attribute = 0; attribute < fVariableCount; ++attribute) {
      if (attribute == fTarget || attribute == fWeight) continue;
      status = RunPair(attribute, fTarget);
    }
    return status;
  }

  bool IsUsableTarget(int target) const { return target >= 0 && ColumnOf(target).usable; }

  Status RunPair(int attribute, int target) {
    PairResult result;
    result.attribute = attribute;
    result.target = target;
    result.modelEntropy = fProblem.missing;
    if (IsUsableTarget(target)) {
      BinPair(result);
    } else {
      result.status = Error(kBadTarget);
    }
    Store(result);
    Remember(result.status);
    return result.status;
  }

  void BinPair(PairResult& result) {
    fTuples.resize(fPrepared->keptCases);  // once; zeros to begin with
    const Column& target = ColumnOf(result.target);
    const Extract extract =
        ReadAttribute(ColumnOf(result.attribute), &target, WeightColumn(), fProblem, &fTuples);
    Summarise(extract, result);
    const int categories = target.largestCode + 1;
    if (extract.valid == 0) {
      result.status = Warning(kNoValidCase);
    } else {
      BinTuples(extract, categories, result);
    }
    if (extract.nDistinct == 1) {
      result.status = WithDatum(Warning(kOneDistinctValue), 0, result.attribute);
    }
    if (categories == 1) {
      result.status = WithDatum(Warning(kOneTargetClass), 0, result.target);
    }
  }

  void BinTuples(const Extract& extract, int categories, PairResult& result) {
    const std::span<const Tuple> valid(fTuples.data(), extract.valid);
    MdlpOptions options;
    options.categories = Position(categories);
    options.rightClosed = fProblem.rightClosed;
    options.smallBinThreshold = fProblem.smallBinThreshold;
    options.totalWeight = extract.validWeight;
    options.missing = fProblem.missing;

    MdlpResult mdlp;
    if (HasTooManyValues(extract.nDistinct)) {
      // All tuples, also those that earlier attributes left: see the header.
      const Percentiles percentiles =
          PercentileCuts(fTuples, fProblem.numberOfBins, fProblem.rightClosed, false,
                         extract.validWeight, fProblem.missing);
      if (!percentiles.computed) return;
      mdlp = MdlpOverPercentiles(valid, percentiles.cuts, options);
    } else {
      mdlp = MdlpOverValues(valid, options);
    }
    result.status = mdlp.status;
    result.cuts = mdlp.cuts;
    result.cellCounts = mdlp.cellCounts;
    result.modelEntropy = mdlp.modelEntropy;
  }

  // Zero stands for no threshold, and so does a negative one, which is larger
  // than any count once it is taken as unsigned.
  bool HasTooManyValues(unsigned nDistinct) const {
    const auto threshold = static_cast<unsigned>(fProblem.distinctThreshold);
    return threshold != 0 && nDistinct > threshold;
  }

  void Store(const PairResult& result) {
    if (result.attribute < 0 || result.target < 0) return;
    if (result.attribute == result.target) return;
    fOutcome.results.push_back(result);
  }

  std::vector<Tuple> fTuples;
};

class EqualFrequencyDriver final : public Driver {
 public:
  using Driver::Driver;

 private:
  Status CreateBins(const Call& call) override {
    if (fProblem.numberOfBins < 1) return Error(kBadNumberOfBins);
    std::vector<Status> checks;
    if (call.attributes) {
      for (const int attribute : *call.attributes) {
        checks.push_back(Check(attribute));
      }
      if (!AnyOk(checks)) return Error(kBadAttribute);
    }
    const Status prepared = Prepare();
    if (prepared.IsError()) return prepared;
    return Conclude(call.attributes ? BinListed(*call.attributes, checks) : BinAll());
  }

  Status Check(int attribute) const {
    if (!IsVariable(attribute)) return Error(kBadAttribute);
    if (attribute == fWeight) return Error(kIndexHasOtherUse);
    return Status();
  }

  Status BinListed(const std::vector<int>& attributes, const std::vector<Status>& checks) {
    Status status;
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      if (checks[i].IsOk()) {
        status = RunAttribute(attributes[i]);
      } else {
        PairResult rejected;
        rejected.status = checks[i];
        rejected.attribute = attributes[i];
        Store(rejected);
      }
    }
    return status;
  }

  Status BinAll() {
    Status status;
    for (int attribute = 0; attribute < fVariableCount; ++attribute) {
      if (attribute != fWeight) status = RunAttribute(attribute);
    }
    return status;
  }

  Status RunAttribute(int attribute) {
    PairResult result;
    result.attribute = attribute;
    BinAttribute(result);
    Store(result);
    Remember(result.status);
    return result.status;
  }

  void BinAttribute(PairResult& result) {
    // A list with a target has tuples for supervised binning only: its cases
    // are counted, but there is nothing to bin.
    const bool hasTarget = fTarget >= 0;
    if (!hasTarget) fTuples.resize(fPrepared->keptCases);
    const Extract extract =
        ReadAttribute(ColumnOf(result.attribute), hasTarget ? &ColumnOf(fTarget) : nullptr,
                      WeightColumn(), fProblem, hasTarget ? nullptr : &fTuples);
    Summarise(extract, result);
    if (extract.valid == 0) {
      result.status = Warning(kNoValidCase);
      return;
    }
    // All tuples, also those that earlier attributes left: see the header.
    const Percentiles percentiles =
        PercentileCuts(fTuples, fProblem.numberOfBins, fProblem.rightClosed, true,
                       extract.validWeight, fProblem.missing);
    result.cuts = percentiles.cuts;
    result.cellCounts = percentiles.frequencies;
    if (result.cuts.empty()) {
      result.status = WithDatum(Warning(kNoPercentile), 0, result.attribute);
    }
    if (result.nDistinct == 1) {
      result.status = WithDatum(Warning(kOneDistinctValue), 0, result.attribute);
    }
  }

  void Store(const PairResult& result) {
    if (result.attribute >= 0) fOutcome.results.push_back(result);
  }

  std::vector<Tuple> fTuples;  // stays empty when the list has a target
};

}  // namespace

Outcome Run(const Problem& problem) {
  const Status rejection = CheckVariables(problem.variables);
  if (rejection.IsError()) {
    Outcome outcome;
    outcome.finalStatus = rejection;
    return outcome;
  }
  if (problem.supervised) return SupervisedDriver(problem).Run();
  return EqualFrequencyDriver(problem).Run();
}

}  // namespace reference
