#include "tqbinning/binusermissing.h"

#include <algorithm>
#include <ostream>

#include "common/lineend.h"
#include "metadata/datatype.h"

using TQBinning::LineEnd;

namespace {

// The values that a definition lists, one a line, if there are any.
template <typename Value>
void DisplayValues(std::ostream& os, const std::vector<Value>& values,
                   const std::vector<std::string>& labels) {
  if (values.empty()) return;
  os << "Discrete missing values:" << LineEnd;
  for (std::size_t i = 0; i < values.size(); ++i) {
    os << values[i] << ", label = " << labels[i] << LineEnd;
  }
}

template <typename Value>
bool Lists(const std::vector<Value>& values, const Value& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

IBINUserMissing::~IBINUserMissing() = default;

BINNumericUserMissing::BINNumericUserMissing() : fHasInterval(false) {}
BINNumericUserMissing::BINNumericUserMissing(const BINNumericUserMissing&) = default;
BINNumericUserMissing& BINNumericUserMissing::operator=(const BINNumericUserMissing&) = default;
BINNumericUserMissing::~BINNumericUserMissing() = default;

void BINNumericUserMissing::AddValue(double value, const std::string& label) {
  fDiscreteValues.push_back(value);
  fValueLabels.push_back(label);
}

void BINNumericUserMissing::SetInterval(const BINNumericInterval& interval) {
  fInterval = interval;
  fHasInterval = true;
}

const std::vector<double>& BINNumericUserMissing::GetDiscreteValues() const {
  return fDiscreteValues;
}

const std::vector<std::string>& BINNumericUserMissing::GetValueLabels() const {
  return fValueLabels;
}

const BINNumericInterval* BINNumericUserMissing::GetInterval() const {
  return fHasInterval ? &fInterval : nullptr;
}

bool BINNumericUserMissing::Contains(double value) const {
  return Lists(fDiscreteValues, value) || (fHasInterval && fInterval.Contains(value));
}

int BINNumericUserMissing::GetDataType() const { return TQBinning::kNumericData; }

int BINNumericUserMissing::GetNDiscreteValues() const {
  return static_cast<int>(fDiscreteValues.size());
}

bool BINNumericUserMissing::HasInterval() const { return fHasInterval; }

BINNumericUserMissing* BINNumericUserMissing::Clone() const {
  return new BINNumericUserMissing(*this);
}

bool BINNumericUserMissing::IsEqualTo(const IBINUserMissing* other) const {
  if (other == nullptr || other->GetDataType() != GetDataType()) return false;
  const auto& numeric = static_cast<const BINNumericUserMissing&>(*other);
  return fHasInterval == numeric.fHasInterval && fDiscreteValues == numeric.fDiscreteValues &&
         (!fHasInterval || fInterval == numeric.fInterval);
}

std::ostream& BINNumericUserMissing::Display(std::ostream& os) const {
  os << "Start of BINNumericUserMissing display" << LineEnd;
  DisplayValues(os, fDiscreteValues, fValueLabels);
  if (fHasInterval) {
    os << "Missing interval:" << LineEnd;
    fInterval.Display(os);
  }
  return os << "End of BINNumericUserMissing display" << LineEnd;
}

BINStringUserMissing::BINStringUserMissing() = default;
BINStringUserMissing::BINStringUserMissing(const BINStringUserMissing&) = default;
BINStringUserMissing& BINStringUserMissing::operator=(const BINStringUserMissing&) = default;
BINStringUserMissing::~BINStringUserMissing() = default;

void BINStringUserMissing::AddValue(const std::string& value, const std::string& label) {
  fDiscreteValues.push_back(value);
  fValueLabels.push_back(label);
}

const std::vector<std::string>& BINStringUserMissing::GetDiscreteValues() const {
  return fDiscreteValues;
}

const std::vector<std::string>& BINStringUserMissing::GetValueLabels() const {
  return fValueLabels;
}

bool BINStringUserMissing::Contains(const std::string& value) const {
  return Lists(fDiscreteValues, value);
}

int BINStringUserMissing::GetDataType() const { return TQBinning::kStringData; }

int BINStringUserMissing::GetNDiscreteValues() const {
  return static_cast<int>(fDiscreteValues.size());
}

bool BINStringUserMissing::HasInterval() const { return false; }

BINStringUserMissing* BINStringUserMissing::Clone() const {
  return new BINStringUserMissing(*this);
}

bool BINStringUserMissing::IsEqualTo(const IBINUserMissing* other) const {
  if (other == nullptr || other->GetDataType() != GetDataType()) return false;
  return fDiscreteValues == static_cast<const BINStringUserMissing&>(*other).fDiscreteValues;
}

std::ostream& BINStringUserMissing::Display(std::ostream& os) const {
  os << "Start of BINStringUserMissing display" << LineEnd;
  DisplayValues(os, fDiscreteValues, fValueLabels);
  return os << "End of BINStringUserMissing display" << LineEnd;
}
