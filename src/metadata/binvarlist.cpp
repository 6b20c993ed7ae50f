#include "tqbinning/binvarlist.h"

#include <algorithm>
#include <limits>
#include <ostream>

#include "common/lineend.h"
#include "metadata/datatype.h"
#include "tqbinning/binencoder.h"

using TQBinning::LineEnd;

namespace {

bool IsTarget(const IBINVariable& variable) {
  return variable.GetVariableRole() == IBINVariable::kTarget;
}

bool IsAttribute(const IBINVariable& variable) {
  return variable.GetVariableRole() == IBINVariable::kAttribute;
}

// The numeric definition of a variable to which one can be added: its own, or a
// new one that the variable takes over.  Null when it holds a string definition.
BINNumericUserMissing* NumericDefinitionOf(IBINVariable& variable,
                                           std::unique_ptr<BINNumericUserMissing>& fresh) {
  IBINUserMissing* const own = variable.GetUserMissingInfo();
  if (own == nullptr) {
    fresh = std::make_unique<BINNumericUserMissing>();
    return fresh.get();
  }
  return TQBinning::Accepts(TQBinning::kNumericData, own) ? static_cast<BINNumericUserMissing*>(own)
                                                          : nullptr;
}

// Gives a new definition to its variable.  One that the variable refuses (a string
// encoder refuses a numeric one) is deleted, and nothing is reported.
template <typename Definition>
void HandOver(std::unique_ptr<Definition> fresh, IBINVariable& variable) {
  if (fresh && variable.SetUserMissingInfo(fresh.get())) (void)fresh.release();
}

bool HaveEqualDefinitions(const IBINVariable& a, const IBINVariable& b) {
  const IBINUserMissing* const definition = a.GetUserMissingInfo();
  if (definition == nullptr) return b.GetUserMissingInfo() == nullptr;
  return definition->IsEqualTo(b.GetUserMissingInfo());
}

// Whether a categorical variable has met no category beyond its declaration.
bool KeepsItsDeclaration(const IBINVariable& variable) {
  const IBINEncoder* const encoder = variable.GetEncoder();
  return encoder != nullptr && variable.GetNumberOfCategories() == encoder->GetNumberOfCategories();
}

bool DescribeTheSame(const IBINVariable& a, const IBINVariable& b) {
  if (a.GetVariableName() != b.GetVariableName() || a.GetVariableLabel() != b.GetVariableLabel() ||
      a.GetVariableRole() != b.GetVariableRole() || a.GetMeasureLevel() != b.GetMeasureLevel()) {
    return false;
  }
  if (!IsAttribute(a) && !IsTarget(a)) return true;
  if (!HaveEqualDefinitions(a, b)) return false;
  if (a.GetMeasureLevel() == IBINVariable::kContinuous) return true;
  // The two counts need not agree with each other.
  return KeepsItsDeclaration(a) && KeepsItsDeclaration(b);
}

}  // namespace

BINVarList::BINVarList() : fNumContVars(0), fNumCatVars(0), fTargetIndex(-1), fWeightIndex(-1) {}

BINVarList::BINVarList(const BINVarList& other)
    : fNumContVars(other.fNumContVars),
      fNumCatVars(other.fNumCatVars),
      fTargetIndex(other.fTargetIndex),
      fWeightIndex(other.fWeightIndex) {
  fVariables.reserve(other.fVariables.size());
  for (const auto& variable : other.fVariables) fVariables.emplace_back(variable->Clone());
}

BINVarList& BINVarList::operator=(const BINVarList& other) {
  if (this == &other) return *this;  // hosts hold pointers to the variables
  BINVarList copy(other);
  fVariables.swap(copy.fVariables);
  fNumContVars = copy.fNumContVars;
  fNumCatVars = copy.fNumCatVars;
  fTargetIndex = copy.fTargetIndex;
  fWeightIndex = copy.fWeightIndex;
  return *this;
}

BINVarList::~BINVarList() = default;

int BINVarList::Size() const { return static_cast<int>(fVariables.size()); }
int BINVarList::GetNumContVar() const { return fNumContVars; }
int BINVarList::GetNumCatVar() const { return fNumCatVars; }
int BINVarList::GetTargetIndex() const { return fTargetIndex; }
int BINVarList::GetWeightIndex() const { return fWeightIndex; }

bool BINVarList::HasIndex(int index) const { return 0 <= index && index < Size(); }

IBINVariable* BINVarList::GetVarAt(int index) {
  return HasIndex(index) ? fVariables[static_cast<std::size_t>(index)].get() : nullptr;
}

const IBINVariable* BINVarList::GetVarAt(int index) const {
  return HasIndex(index) ? fVariables[static_cast<std::size_t>(index)].get() : nullptr;
}

IBINEncoder* BINVarList::GetEncoderAt(int index) {
  IBINVariable* const variable = GetVarAt(index);
  return variable == nullptr ? nullptr : variable->GetEncoder();
}

const IBINEncoder* BINVarList::GetEncoderAt(int index) const {
  const IBINVariable* const variable = GetVarAt(index);
  return variable == nullptr ? nullptr : variable->GetEncoder();
}

IBINVariable::VariableRole BINVarList::GetVariableRole(int index) const {
  const IBINVariable* const variable = GetVarAt(index);
  return variable == nullptr ? IBINVariable::kUndefinedRole : variable->GetVariableRole();
}

bool BINVarList::SetVariableRole(int index, IBINVariable::VariableRole role) {
  IBINVariable* const variable = GetVarAt(index);
  if (variable == nullptr) return false;
  if (role == IBINVariable::kTarget) {
    if (fTargetIndex < 0) fTargetIndex = index;
  } else if (IsTarget(*variable)) {
    fTargetIndex = -1;
  }
  variable->SetVariableRole(role);
  return true;
}

int BINVarList::GetNumAttributeVars() const {
  return static_cast<int>(std::count_if(fVariables.begin(), fVariables.end(),
                                        [](const auto& v) { return IsAttribute(*v); }));
}

int BINVarList::GetNTargetCats() const {
  const auto target = std::find_if(fVariables.begin(), fVariables.end(),
                                   [](const auto& v) { return IsTarget(*v); });
  return target == fVariables.end() ? 0 : (*target)->GetNumberOfCategories();
}

int BINVarList::UpdateNumbersOfCategories() {
  long sum = 0;  // declared numbers are not limited: their sum may not fit an int
  for (const auto& variable : fVariables) sum += variable->UpdateNumberOfCategories();
  return static_cast<int>(
      std::clamp<long>(sum, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int BINVarList::FindVariable(const std::string& name) const {
  const auto found = std::find_if(fVariables.begin(), fVariables.end(),
                                  [&name](const auto& v) { return v->GetVariableName() == name; });
  return found == fVariables.end() ? -1 : static_cast<int>(found - fVariables.begin());
}

bool BINVarList::IsFreeName(const std::string& name) const {
  return !name.empty() && FindVariable(name) < 0;
}

int BINVarList::Append(std::unique_ptr<IBINVariable> variable) {
  fVariables.push_back(std::move(variable));
  return Size() - 1;
}

int BINVarList::AppendCatVar(std::unique_ptr<IBINVariable> variable) {
  const bool isTarget = IsTarget(*variable);
  const int index = Append(std::move(variable));
  ++fNumCatVars;
  if (isTarget) fTargetIndex = index;
  return index;
}

int BINVarList::AddContVar(const std::string& name, const std::string& label,
                           IBINVariable::VariableRole role) {
  if (!IsFreeName(name) || role == IBINVariable::kTarget) return -1;
  const int index = Append(std::make_unique<BINContVar>(name, label, role));
  ++fNumContVars;
  return index;
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                          IBINVariable::MeasureLevel level, IBINVariable::VariableRole role) {
  if (!IsFreeName(name)) return -1;
  return AppendCatVar(std::make_unique<BINCatVar>(name, label, numberOfCategories, level, role));
}

namespace {

// A categorical variable whose encoder has met the values; null for fewer than two.
template <typename Encoder, typename Value>
std::unique_ptr<IBINVariable> MakeCatVar(const std::string& name, const std::string& label,
                                         const std::vector<Value>& values,
                                         IBINVariable::MeasureLevel level,
                                         IBINVariable::VariableRole role) {
  if (values.size() < 2) return nullptr;
  auto variable =
      std::make_unique<BINCatVar>(name, label, static_cast<int>(values.size()), level, role);
  auto& encoder = static_cast<Encoder&>(*variable->GetEncoder());
  for (const Value& value : values) encoder.Encode(value);
  return variable;
}

}  // namespace

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<double>& values, IBINVariable::VariableRole role) {
  if (!IsFreeName(name)) return -1;
  auto variable =
      MakeCatVar<BINCatNumEncoder>(name, label, values, IBINVariable::kNumericCategorical, role);
  return variable ? AppendCatVar(std::move(variable)) : -1;
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<std::string>& values, IBINVariable::VariableRole role) {
  if (!IsFreeName(name)) return -1;
  auto variable =
      MakeCatVar<BINStringEncoder>(name, label, values, IBINVariable::kStringCategorical, role);
  return variable ? AppendCatVar(std::move(variable)) : -1;
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<double>& values,
                          const std::vector<std::string>& valueLabels,
                          IBINVariable::VariableRole role) {
  const int index = AddCatVar(name, label, values, role);
  if (index >= 0) GetEncoderAt(index)->SetValueLabels(valueLabels);
  return index;
}

int BINVarList::AddCatVar(const std::string& name, const std::string& label,
                          const std::vector<std::string>& values,
                          const std::vector<std::string>& valueLabels,
                          IBINVariable::VariableRole role) {
  const int index = AddCatVar(name, label, values, role);
  if (index >= 0) GetEncoderAt(index)->SetValueLabels(valueLabels);
  return index;
}

int BINVarList::AddWeightVar(const std::string& name, const std::string& label,
                             IBINVariable::BINWRoundingOption option) {
  if (fWeightIndex != -1) return -1;
  fWeightIndex = Append(std::make_unique<BINWeightVar>(name, label, option));
  return fWeightIndex;
}

bool BINVarList::RemoveVar(int index) {
  const IBINVariable* const variable = GetVarAt(index);
  if (variable == nullptr) return false;
  const bool isContinuous = variable->GetMeasureLevel() == IBINVariable::kContinuous;
  const bool isTarget = IsTarget(*variable);
  const bool isWeight = index == fWeightIndex;
  fVariables.erase(fVariables.begin() + index);

  if (isContinuous) {
    --fNumContVars;
  } else if (!isWeight) {
    --fNumCatVars;
  }
  if (isTarget) {
    fTargetIndex = -1;
  } else if (index < fTargetIndex) {
    --fTargetIndex;
  }
  if (isWeight) {
    fWeightIndex = -1;
  } else if (index < fWeightIndex) {
    --fWeightIndex;
  }
  return true;
}

// By value, as hosts call it.  NOLINTNEXTLINE(performance-unnecessary-value-param)
bool BINVarList::RemoveVar(std::string name) { return RemoveVar(FindVariable(name)); }

bool BINVarList::SetMissingInterval(int index, double left, double right) {
  IBINVariable* const variable = GetVarAt(index);
  if (variable == nullptr || variable->GetMeasureLevel() == IBINVariable::kStringCategorical) {
    return false;
  }
  std::unique_ptr<BINNumericUserMissing> fresh;
  BINNumericUserMissing* const definition = NumericDefinitionOf(*variable, fresh);
  if (definition == nullptr || definition->HasInterval()) return false;
  definition->SetInterval(BINNumericInterval(left, right));
  HandOver(std::move(fresh), *variable);
  return true;
}

bool BINVarList::AddDiscreteUserMissing(int index, double value, const std::string& label) {
  IBINVariable* const variable = GetVarAt(index);
  if (variable == nullptr || variable->GetMeasureLevel() == IBINVariable::kStringCategorical) {
    return false;
  }
  std::unique_ptr<BINNumericUserMissing> fresh;
  BINNumericUserMissing* const definition = NumericDefinitionOf(*variable, fresh);
  if (definition == nullptr) return false;
  definition->AddValue(value, label);
  HandOver(std::move(fresh), *variable);
  return true;
}

bool BINVarList::AddDiscreteUserMissing(int index, const std::string& value,
                                        const std::string& label) {
  IBINVariable* const variable = GetVarAt(index);
  if (variable == nullptr || variable->GetMeasureLevel() != IBINVariable::kStringCategorical) {
    return false;
  }
  if (auto* const own = static_cast<BINStringUserMissing*>(variable->GetUserMissingInfo())) {
    own->AddValue(value, label);
    return true;
  }
  auto fresh = std::make_unique<BINStringUserMissing>();
  fresh->AddValue(value, label);
  HandOver(std::move(fresh), *variable);
  return true;
}

bool BINVarList::IsValidList(std::vector<int>& oneCategoryVars, std::vector<int>& emptyVars) const {
  oneCategoryVars.clear();
  emptyVars.clear();
  for (int i = 0; i < Size(); ++i) {
    const int status = fVariables[static_cast<std::size_t>(i)]->GetVarStatus();
    if (status == 1) oneCategoryVars.push_back(i);
    if (status == 2) emptyVars.push_back(i);
  }
  return oneCategoryVars.empty() && emptyVars.empty() && GetNumAttributeVars() > 0;
}

bool BINVarList::CanMergeWith(const BINVarList& other, int& index) const {
  if (Size() != other.Size()) {
    index = std::min(Size(), other.Size());
    return false;
  }
  if (fTargetIndex != other.fTargetIndex) {
    index = std::min(fTargetIndex, other.fTargetIndex);
    return false;
  }
  for (int i = 0; i < Size(); ++i) {
    if (!DescribeTheSame(*GetVarAt(i), *other.GetVarAt(i))) {
      index = i;
      return false;
    }
  }
  return true;
}

void BINVarList::GetVarNames(std::vector<std::string>& names, std::string& targetName) const {
  names.clear();
  for (const auto& variable : fVariables) {
    if (IsAttribute(*variable)) names.push_back(variable->GetVariableName());
    if (IsTarget(*variable)) targetName = variable->GetVariableName();
  }
}

std::ostream& BINVarList::Display(std::ostream& os) const {
  // The backspace and the spelling are part of the text that hosts know.
  os << "\bINegin display of BINVarList object.\n";
  os << "Total variables: " << Size() << LineEnd;
  os << "Number of Continuous Variables = " << fNumContVars << LineEnd;
  os << "Number of Categorical Variables  = " << fNumCatVars << LineEnd;
  os << "Target Index  = " << fTargetIndex << LineEnd;
  for (int i = 0; i < Size(); ++i) {
    os << "Variable " << i << LineEnd;
    GetVarAt(i)->Display(os);
  }
  return os << "End of display for BINVarList object.\n" << std::flush;
}
