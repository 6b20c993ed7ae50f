#include "tqbinning/binvariable.h"

#include <algorithm>
#include <ostream>

#include "common/cloneof.h"
#include "common/lineend.h"
#include "metadata/datatype.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/display.h"

using TQBinning::CloneOf;
using TQBinning::LineEnd;

namespace {

std::unique_ptr<IBINEncoder> MakeCategoryEncoder(IBINVariable::MeasureLevel level, int n) {
  if (level == IBINVariable::kNumericCategorical) return std::make_unique<BINCatNumEncoder>(n);
  return std::make_unique<BINStringEncoder>(n);
}

void DisplayNameAndLabel(std::ostream& os, const char* kind, const std::string& name,
                         const std::string& label) {
  os << kind << "name = " << name << ", label = " << label;
}

}  // namespace

IBINVariable::~IBINVariable() = default;

BINContVar::BINContVar(const std::string& name, const std::string& label, VariableRole role)
    : fName(name), fLabel(label), fRole(role) {}

BINContVar::BINContVar(const BINContVar& other)
    : fName(other.fName),
      fLabel(other.fLabel),
      fRole(other.fRole),
      fUserMissing(CloneOf(other.fUserMissing)) {}

BINContVar& BINContVar::operator=(const BINContVar& other) {
  BINContVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fRole = copy.fRole;
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINContVar::~BINContVar() = default;

IBINVariable::MeasureLevel BINContVar::GetMeasureLevel() const { return kContinuous; }
std::string BINContVar::GetVariableName() const { return fName; }
std::string BINContVar::GetVariableLabel() const { return fLabel; }
void BINContVar::SetVariableLabel(const std::string& label) { fLabel = label; }
int BINContVar::GetNumberOfCategories() const { return 0; }
IBINVariable::VariableRole BINContVar::GetVariableRole() const { return fRole; }
void BINContVar::SetVariableRole(VariableRole role) { fRole = role; }
int BINContVar::UpdateNumberOfCategories() { return 0; }

bool BINContVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!TQBinning::Accepts(TQBinning::kNumericData, userMissing)) return false;
  TQBinning::TakeOver(fUserMissing, userMissing);
  return true;
}

IBINUserMissing* BINContVar::GetUserMissingInfo() const { return fUserMissing.get(); }
BINContVar* BINContVar::Clone() const { return new BINContVar(*this); }
const IBINEncoder* BINContVar::GetEncoder() const { return nullptr; }
IBINEncoder* BINContVar::GetEncoder() { return nullptr; }
int BINContVar::GetVarStatus() { return 0; }

std::ostream& BINContVar::Display(std::ostream& os) const {
  DisplayNameAndLabel(os, "Continuous variable: ", fName, fLabel);
  os << ", role = ";
  return TQBinning::Display(os, fRole);
}

BINCatVar::BINCatVar(const std::string& name, const std::string& label, int numberOfCategories,
                     MeasureLevel level, VariableRole role)
    : fName(name),
      fLabel(label),
      fRole(role),
      fNumberOfCategories(numberOfCategories),
      fMeasureLevel(level),
      fEncoder(MakeCategoryEncoder(level, numberOfCategories)) {}

BINCatVar::BINCatVar(const BINCatVar& other)
    : fName(other.fName),
      fLabel(other.fLabel),
      fRole(other.fRole),
      fNumberOfCategories(other.fNumberOfCategories),
      fMeasureLevel(other.fMeasureLevel),
      fEncoder(CloneOf(other.fEncoder)) {}

BINCatVar& BINCatVar::operator=(const BINCatVar& other) {
  BINCatVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fRole = copy.fRole;
  fNumberOfCategories = copy.fNumberOfCategories;
  fMeasureLevel = copy.fMeasureLevel;
  fEncoder.swap(copy.fEncoder);
  return *this;
}

BINCatVar::~BINCatVar() = default;

IBINVariable::MeasureLevel BINCatVar::GetMeasureLevel() const { return fMeasureLevel; }
std::string BINCatVar::GetVariableName() const { return fName; }
std::string BINCatVar::GetVariableLabel() const { return fLabel; }
void BINCatVar::SetVariableLabel(const std::string& label) { fLabel = label; }
int BINCatVar::GetNumberOfCategories() const { return fNumberOfCategories; }
IBINVariable::VariableRole BINCatVar::GetVariableRole() const { return fRole; }
void BINCatVar::SetVariableRole(VariableRole role) { fRole = role; }

int BINCatVar::UpdateNumberOfCategories() {
  fNumberOfCategories = std::max(fNumberOfCategories, fEncoder->GetNumberOfCategories());
  return fNumberOfCategories;
}

bool BINCatVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  return fEncoder->SetUserMissingInfo(userMissing);
}

IBINUserMissing* BINCatVar::GetUserMissingInfo() const { return fEncoder->GetUserMissingInfo(); }
BINCatVar* BINCatVar::Clone() const { return new BINCatVar(*this); }
const IBINEncoder* BINCatVar::GetEncoder() const { return fEncoder.get(); }
IBINEncoder* BINCatVar::GetEncoder() { return fEncoder.get(); }

int BINCatVar::GetVarStatus() {
  const int categories = UpdateNumberOfCategories();
  if (categories < 1) return 2;
  return categories == 1 ? 1 : 0;
}

std::ostream& BINCatVar::Display(std::ostream& os) const {
  DisplayNameAndLabel(os, "Categorical variable: ", fName, fLabel);
  os << ", role = ";
  TQBinning::Display(os, fRole);
  os << "\tMeasurement Level = ";
  TQBinning::Display(os, fMeasureLevel);
  os << "\tNumber of Categories = " << fNumberOfCategories << LineEnd;
  return fEncoder->Display(os);
}

BINWeightVar::BINWeightVar(const std::string& name, const std::string& label,
                           BINWRoundingOption option)
    : fName(name), fLabel(label), fEncoder(std::make_unique<BINRoundEncoder>(option)) {}

BINWeightVar::BINWeightVar(const BINWeightVar& other)
    : fName(other.fName),
      fLabel(other.fLabel),
      fEncoder(CloneOf(other.fEncoder)),
      fUserMissing(CloneOf(other.fUserMissing)) {
  fEncoder->SetUserMissingInfo(fUserMissing.get());  // not the original's, which is not ours
}

BINWeightVar& BINWeightVar::operator=(const BINWeightVar& other) {
  BINWeightVar copy(other);
  fName.swap(copy.fName);
  fLabel.swap(copy.fLabel);
  fEncoder.swap(copy.fEncoder);
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINWeightVar::~BINWeightVar() = default;

IBINVariable::MeasureLevel BINWeightVar::GetMeasureLevel() const { return kWeightLevel; }
std::string BINWeightVar::GetVariableName() const { return fName; }
std::string BINWeightVar::GetVariableLabel() const { return fLabel; }
void BINWeightVar::SetVariableLabel(const std::string& label) { fLabel = label; }
int BINWeightVar::GetNumberOfCategories() const { return 0; }
IBINVariable::VariableRole BINWeightVar::GetVariableRole() const { return kFrequencyWeight; }
void BINWeightVar::SetVariableRole(VariableRole) {}
int BINWeightVar::UpdateNumberOfCategories() { return 0; }

bool BINWeightVar::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!fEncoder->SetUserMissingInfo(userMissing)) return false;
  TQBinning::TakeOver(fUserMissing, userMissing);
  return true;
}

IBINUserMissing* BINWeightVar::GetUserMissingInfo() const { return fUserMissing.get(); }
BINWeightVar* BINWeightVar::Clone() const { return new BINWeightVar(*this); }
const IBINEncoder* BINWeightVar::GetEncoder() const { return fEncoder.get(); }
IBINEncoder* BINWeightVar::GetEncoder() { return fEncoder.get(); }
int BINWeightVar::GetVarStatus() { return 0; }

std::ostream& BINWeightVar::Display(std::ostream& os) const {
  DisplayNameAndLabel(os, "Frequency weight variable: ", fName, fLabel);
  os << LineEnd;
  if (fUserMissing) fUserMissing->Display(os);
  return fEncoder->Display(os);
}
