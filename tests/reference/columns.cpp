#include "reference/columns.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

#include "reference/words.h"

namespace reference {

bool NumberLess(double a, double b) {
  if (std::isnan(a)) return false;
  if (std::isnan(b)) return true;
  return a < b;
}

namespace {

int LevelOf(const Variable& variable) {
  switch (variable.kind) {
    case Variable::Kind::kContinuous: return kLevelContinuous;
    case Variable::Kind::kWeight: return kLevelWeight;
    case Variable::Kind::kCategorical: break;
  }
  return variable.level;
}

int RoleOf(const Variable& variable) {
  if (variable.kind == Variable::Kind::kWeight) return kRoleWeight;
  return variable.role;
}

int CategoriesOf(const Variable& variable) {
  return variable.kind == Variable::Kind::kCategorical ? variable.categories : 0;
}

bool IsUserMissing(const Variable& variable, double value) {
  for (const double missing : variable.missingValues) {
    if (missing == value) return true;
  }
  return variable.missingInterval && variable.missingInterval->first <= value &&
         value <= variable.missingInterval->second;
}

int CountCategorical(const std::vector<Variable>& variables) {
  int count = 0;
  for (const Variable& variable : variables) {
    if (variable.kind == Variable::Kind::kCategorical) ++count;
  }
  return count;
}

}  // namespace

bool HasCategories(const Variable& variable) {
  const int level = LevelOf(variable);
  return level == kLevelNumericCategorical || level == kLevelStringCategorical;
}

int FindRole(const std::vector<Variable>& variables, int role) {
  for (std::size_t k = 0; k < variables.size(); ++k) {
    if (RoleOf(variables[k]) == role) return static_cast<int>(k);
  }
  return -1;
}

Status CheckVariables(const std::vector<Variable>& variables) {
  int firstEmpty = -1;
  int firstSingle = -1;
  for (std::size_t k = 0; k < variables.size(); ++k) {
    if (variables[k].kind != Variable::Kind::kCategorical) continue;
    const int index = static_cast<int>(k);
    const int categories = variables[k].categories;
    if (categories < 1 && firstEmpty < 0) firstEmpty = index;
    if (categories == 1 && firstSingle < 0) firstSingle = index;
  }
  const bool hasAttribute = FindRole(variables, kRoleAttribute) >= 0;
  if (hasAttribute && firstEmpty < 0 && firstSingle < 0) return Status();
  return WithDatum(Error(kBadVariableList), 1, firstEmpty >= 0 ? firstEmpty : firstSingle);
}

double EncodeWeight(const Variable& weight, double value, double missing) {
  if (value == missing) return missing;
  if (IsUserMissing(weight, value)) return missing;
  double rounded = value;
  if (weight.rounding == kRoundDown) rounded = std::floor(value);
  if (weight.rounding == kRoundClosest) rounded = std::floor(value + 0.5);
  if (rounded > 0.0 || std::isnan(rounded)) return rounded;
  return missing;
}

namespace {

// Prepares records one by one, into `fPrepared`.
class Pass {
 public:
  explicit Pass(const Problem& problem)
      : fProblem(problem),
        fTarget(FindRole(problem.variables, kRoleTarget)),
        fWeight(FindRole(problem.variables, kRoleWeight)) {
    fPrepared.columns.resize(problem.variables.size());
  }

  Prepared Run() {
    for (const std::vector<double>& record : fProblem.records) {
      const Status status = Process(record);
      if (status.IsError()) {
        fPrepared.status = status;
        return fPrepared;
      }
    }
    if (fPrepared.keptCases == 0) {
      fPrepared.status = Error(kNoCase);
      return fPrepared;
    }
    DiscardColumnsWithUndeclaredCodes();
    return fPrepared;
  }

 private:
  // Only an error matters to the caller: warnings of a record are not kept.
  Status Process(const std::vector<double>& record) {
    std::vector<double> out(fProblem.variables.size(), 0.0);
    if (fWeight >= 0) {
      const std::size_t k = Position(fWeight);
      out[k] = EncodeWeight(fProblem.variables[k], record.at(k), fProblem.missing);
      if (out[k] == fProblem.missing) return Status();  // dropped
    }
    if (fTarget >= 0) {
      const Status status = PrepareTarget(record, out);
      if (status.IsError()) return status;
    }
    for (std::size_t k = 0; k < out.size(); ++k) {
      if (RoleOf(fProblem.variables[k]) != kRoleAttribute) continue;
      out[k] = PrepareAttribute(k, record.at(k));
    }
    Keep(out);
    return Status();
  }

  // A target is missing when its whole part is -1; an attribute only when it is
  // -1 itself.
  Status PrepareTarget(const std::vector<double>& record, std::vector<double>& out) {
    const std::size_t k = Position(fTarget);
    const double value = record.at(k);
    const std::optional<int> code = Truncate(value);
    if (value == fProblem.missing || code == -1) {
      out[k] = fProblem.missing;
      return Status();
    }
    Column& column = fPrepared.columns[k];
    if (!column.usable) return Status();
    if (!IsCode(code)) {
      column.usable = false;
      const bool others = CountCategorical(fProblem.variables) >= 2;
      return WithDatum(others ? Warning(kBadCode) : Error(kBadCode), 0, fTarget);
    }
    column.largestCode = std::max(column.largestCode, *code);
    out[k] = value;
    return Status();
  }

  double PrepareAttribute(std::size_t k, double value) {
    const Variable& variable = fProblem.variables[k];
    if (LevelOf(variable) == kLevelContinuous) {
      const bool isMissing =
          variable.kind == Variable::Kind::kContinuous && IsUserMissing(variable, value);
      return isMissing ? fProblem.missing : value;
    }
    if (value == fProblem.missing || value == -1.0) return fProblem.missing;
    Column& column = fPrepared.columns[k];
    const std::optional<int> code = Truncate(value);
    if (!IsCode(code)) column.usable = false;
    if (!column.usable) return 0.0;
    column.largestCode = std::max(column.largestCode, *code);
    return value;
  }

  void Keep(const std::vector<double>& out) {
    for (std::size_t k = 0; k < out.size(); ++k) {
      Column& column = fPrepared.columns[k];
      if (column.usable) column.values.push_back(out[k]);
    }
    ++fPrepared.keptCases;
  }

  void DiscardColumnsWithUndeclaredCodes() {
    for (std::size_t k = 0; k < fPrepared.columns.size(); ++k) {
      const Variable& variable = fProblem.variables[k];
      Column& column = fPrepared.columns[k];
      if (HasCategories(variable) && column.largestCode >= CategoriesOf(variable)) {
        column.usable = false;
      }
    }
  }

  const Problem& fProblem;
  const int fTarget;
  const int fWeight;
  Prepared fPrepared;
};

}  // namespace

Prepared Prepare(const Problem& problem) { return Pass(problem).Run(); }

namespace {

// Hands out the values of a column and, once they are used up, zeros.
class Reader {
 public:
  explicit Reader(const std::vector<double>& values) : fValues(&values) {}

  bool HasMore() const { return fNext < fValues->size(); }
  double Next() { return HasMore() ? (*fValues)[fNext++] : 0.0; }

 private:
  const std::vector<double>* fValues;
  std::size_t fNext = 0;
};

unsigned CountDistinct(std::span<const Tuple> tuples) {
  if (tuples.empty()) return 0;
  unsigned count = 1;
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    if (tuples[i - 1].value != tuples[i].value) ++count;
  }
  return count;
}

void SortByValue(std::span<Tuple> tuples, Ties ties) {
  if (ties == Ties::kByWeight) {
    std::stable_sort(tuples.begin(), tuples.end(),
                     [](const Tuple& a, const Tuple& b) { return NumberLess(a.weight, b.weight); });
  }
  std::stable_sort(tuples.begin(), tuples.end(),
                   [](const Tuple& a, const Tuple& b) { return NumberLess(a.value, b.value); });
}

}  // namespace

Extract ReadAttribute(const Column& attribute, const Column* target, const Column* weight,
                      const Problem& problem, std::vector<Tuple>* tuples) {
  const double missing = problem.missing;
  Reader values(attribute.values);
  std::optional<Reader> targets;
  std::optional<Reader> weights;
  if (target != nullptr) targets.emplace(target->values);
  if (weight != nullptr) weights.emplace(weight->values);
  const Reader& leader = targets ? *targets : weights ? *weights : values;

  Extract extract;
  while (leader.HasMore()) {
    const double code = targets ? targets->Next() : 0.0;
    const double caseWeight = weights ? weights->Next() : 1.0;
    const double value = values.Next();
    if (weights && caseWeight == missing) continue;
    extract.allWeight += caseWeight;
    if (targets && code == missing) continue;
    if (value == missing) continue;
    extract.validWeight += caseWeight;
    if (tuples != nullptr) {
      tuples->at(extract.valid) = Tuple{value, caseWeight, Truncate(code).value_or(0)};
    }
    ++extract.valid;
  }

  const std::size_t stored = tuples != nullptr ? extract.valid : 0;
  extract.minimum = missing;
  extract.maximum = missing;
  if (stored == 0) return extract;
  const std::span<Tuple> front(tuples->data(), stored);
  SortByValue(front, problem.ties);
  extract.nDistinct = CountDistinct(front);
  extract.minimum = front.front().value;
  extract.maximum = front.back().value;
  return extract;
}

}  // namespace reference
