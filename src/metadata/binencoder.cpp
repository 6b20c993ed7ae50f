#include "tqbinning/binencoder.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "common/cloneof.h"
#include "common/lineend.h"
#include "common/missing.h"
#include "metadata/datatype.h"
#include "tqbinning/display.h"

using TQBinning::CloneOf;
using TQBinning::IsMissing;
using TQBinning::LineEnd;

namespace {

constexpr double kNoCode = -1.0;

std::size_t Capacity(int n) { return static_cast<std::size_t>(std::max(n, 0)); }

void SetLabel(std::vector<std::string>& labels, std::size_t numberOfCategories, int code,
              const std::string& label) {
  if (labels.size() < numberOfCategories) labels.resize(numberOfCategories);
  if (code < 0 || static_cast<std::size_t>(code) >= numberOfCategories) return;
  labels[static_cast<std::size_t>(code)] = label;
}

// Eight to a line, each followed by a blank.
template <typename Item>
void DisplayItems(std::ostream& os, const std::vector<Item>& items) {
  constexpr std::size_t kPerLine = 8;
  for (std::size_t i = 0; i < items.size(); ++i) {
    os << items[i] << ' ';
    if ((i + 1) % kPerLine == 0 && i + 1 < items.size()) os << LineEnd;
  }
  os << LineEnd;
}

void DisplayDefinition(std::ostream& os, const IBINUserMissing* userMissing) {
  if (userMissing == nullptr) return;
  os << "\t\tUser-missing values for this encoder:\n\t\t";
  userMissing->Display(os);
}

}  // namespace

IBINEncoder::~IBINEncoder() = default;

BINCatNumEncoder::BINCatNumEncoder(int n) : fLastCode(-1) { fValues.reserve(Capacity(n)); }

BINCatNumEncoder::BINCatNumEncoder(const std::vector<double>& values) : fLastCode(-1) {
  for (const double value : values) Encode(value);
}

BINCatNumEncoder::BINCatNumEncoder(const BINCatNumEncoder& other)
    : fCodes(other.fCodes),
      fValues(other.fValues),
      fValueLabels(other.fValueLabels),
      fLastCode(other.fLastCode),
      fUserMissing(CloneOf(other.fUserMissing)) {}

BINCatNumEncoder& BINCatNumEncoder::operator=(const BINCatNumEncoder& other) {
  BINCatNumEncoder copy(other);
  fCodes.swap(copy.fCodes);
  fValues.swap(copy.fValues);
  fValueLabels.swap(copy.fValueLabels);
  fLastCode = copy.fLastCode;
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINCatNumEncoder::~BINCatNumEncoder() = default;

bool BINCatNumEncoder::IsUserMissing(double value) const {
  const BINNumericUserMissing* const definition = TQBinning::AsNumeric(fUserMissing.get());
  return definition != nullptr && definition->Contains(value);
}

double BINCatNumEncoder::Encode(double value) {
  if (IsMissing(value) || IsUserMissing(value)) return kNoCode;
  const auto [entry, isNew] = fCodes.try_emplace(value, fLastCode + 1);
  if (isNew) {
    fValues.push_back(value);
    ++fLastCode;
  }
  return entry->second;
}

double BINCatNumEncoder::EncodeConst(double value) const {
  if (IsUserMissing(value)) return kNoCode;
  const auto entry = fCodes.find(value);
  return entry == fCodes.end() ? kNoCode : entry->second;
}

double BINCatNumEncoder::Decode(int code) const {
  if (code < 0 || code >= GetNumberOfCategories()) return TQMV::gMissingValue;
  return fValues[static_cast<std::size_t>(code)];
}

int BINCatNumEncoder::GetEncoderType() const { return IBINVariable::kNumericCategorical; }
int BINCatNumEncoder::GetNumberOfCategories() const { return static_cast<int>(fCodes.size()); }

void BINCatNumEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  fValueLabels = labels;
}

void BINCatNumEncoder::SetValueLabel(int code, const std::string& label) {
  SetLabel(fValueLabels, fCodes.size(), code, label);
}

const std::vector<std::string>* BINCatNumEncoder::GetValueLabels() const { return &fValueLabels; }

bool BINCatNumEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!TQBinning::Accepts(TQBinning::kNumericData, userMissing)) return false;
  TQBinning::TakeOver(fUserMissing, userMissing);
  return true;
}

IBINUserMissing* BINCatNumEncoder::GetUserMissingInfo() const { return fUserMissing.get(); }
BINCatNumEncoder* BINCatNumEncoder::Clone() const { return new BINCatNumEncoder(*this); }

std::ostream& BINCatNumEncoder::Display(std::ostream& os) const {
  os << "\tBINCatNumEncoder: "
     << "Last code = " << fLastCode << LineEnd;
  if (!fValues.empty()) {
    os << "\t\tNumeric values of categories: ";
    DisplayItems(os, fValues);
  }
  DisplayDefinition(os, fUserMissing.get());
  if (!fValueLabels.empty()) {
    os << "\t\tValue Labels:\n";
    DisplayItems(os, fValueLabels);
  }
  return os;
}

BINStringEncoder::BINStringEncoder(int n) : fLastCode(-1) { fLinks.reserve(Capacity(n)); }

BINStringEncoder::BINStringEncoder(const std::vector<std::string>& values) : fLastCode(-1) {
  for (const std::string& value : values) Encode(value);
}

BINStringEncoder::BINStringEncoder(const BINStringEncoder& other)
    : fCodes(other.fCodes),
      fValueLabels(other.fValueLabels),
      fLastCode(other.fLastCode),
      fUserMissing(CloneOf(other.fUserMissing)) {
  CreateLinks();
}

BINStringEncoder& BINStringEncoder::operator=(const BINStringEncoder& other) {
  BINStringEncoder copy(other);
  fCodes.swap(copy.fCodes);
  fValueLabels.swap(copy.fValueLabels);
  fLastCode = copy.fLastCode;
  fUserMissing.swap(copy.fUserMissing);
  CreateLinks();
  return *this;
}

BINStringEncoder::~BINStringEncoder() = default;

bool BINStringEncoder::IsUserMissing(const std::string& value) const {
  const BINStringUserMissing* const definition = TQBinning::AsString(fUserMissing.get());
  return definition != nullptr && definition->Contains(value);
}

double BINStringEncoder::Encode(const std::string& value) {
  if (IsUserMissing(value)) return kNoCode;
  const auto [entry, isNew] = fCodes.try_emplace(value, fLastCode + 1);
  if (isNew) {
    fLinks.push_back(&entry->first);
    ++fLastCode;
  }
  return entry->second;
}

double BINStringEncoder::EncodeConst(const std::string& value) const {
  if (IsUserMissing(value)) return kNoCode;
  const auto entry = fCodes.find(value);
  return entry == fCodes.end() ? kNoCode : entry->second;
}

std::string BINStringEncoder::Decode(int code) const {
  if (code < 0 || code > fLastCode) return std::string();
  return *fLinks[static_cast<std::size_t>(code)];
}

void BINStringEncoder::CreateLinks() {
  fLinks.clear();
  fLinks.reserve(fCodes.size());
  fLinks.resize(static_cast<std::size_t>(fLastCode) + 1, nullptr);
  for (const auto& [value, code] : fCodes) fLinks[static_cast<std::size_t>(code)] = &value;
}

int BINStringEncoder::GetEncoderType() const { return IBINVariable::kStringCategorical; }
int BINStringEncoder::GetNumberOfCategories() const { return fLastCode + 1; }

void BINStringEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  fValueLabels = labels;
}

void BINStringEncoder::SetValueLabel(int code, const std::string& label) {
  SetLabel(fValueLabels, fCodes.size(), code, label);
}

const std::vector<std::string>* BINStringEncoder::GetValueLabels() const { return &fValueLabels; }

bool BINStringEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!TQBinning::Accepts(TQBinning::kStringData, userMissing)) return false;
  TQBinning::TakeOver(fUserMissing, userMissing);
  return true;
}

IBINUserMissing* BINStringEncoder::GetUserMissingInfo() const { return fUserMissing.get(); }
BINStringEncoder* BINStringEncoder::Clone() const { return new BINStringEncoder(*this); }

std::ostream& BINStringEncoder::Display(std::ostream& os) const {
  os << "\tBINStringEncoder object:  "
     << "Last code = " << fLastCode << LineEnd;
  for (std::size_t code = 0; code < fLinks.size(); ++code) {
    os << "\t\t" << code << "\t\t";
    if (fLinks[code] == nullptr) {
      os << "ERROR\n";
    } else {
      os << *fLinks[code] << LineEnd;
    }
  }
  DisplayDefinition(os, fUserMissing.get());
  return os;
}

BINRoundEncoder::BINRoundEncoder() : BINRoundEncoder(IBINVariable::kRoundToClosest) {}

BINRoundEncoder::BINRoundEncoder(IBINVariable::BINWRoundingOption option)
    : fOption(option), fUserMissing(nullptr) {}

BINRoundEncoder::BINRoundEncoder(const BINRoundEncoder&) = default;
BINRoundEncoder& BINRoundEncoder::operator=(const BINRoundEncoder&) = default;
BINRoundEncoder::~BINRoundEncoder() = default;

double BINRoundEncoder::Encode(double weight) const {
  if (IsMissing(weight)) return TQMV::gMissingValue;
  const BINNumericUserMissing* const definition = TQBinning::AsNumeric(fUserMissing);
  if (definition != nullptr && definition->Contains(weight)) return TQMV::gMissingValue;
  if (fOption == IBINVariable::kTruncate) {
    weight = std::floor(weight);
  } else if (fOption == IBINVariable::kRoundToClosest) {
    weight = std::floor(weight + 0.5);
  }
  return weight <= 0.0 ? TQMV::gMissingValue : weight;  // a NaN is not <= 0 and stays
}

int BINRoundEncoder::GetEncoderType() const { return IBINVariable::kWeightLevel; }
int BINRoundEncoder::GetNumberOfCategories() const { return 0; }
void BINRoundEncoder::SetValueLabels(const std::vector<std::string>&) {}
void BINRoundEncoder::SetValueLabel(int, const std::string&) {}
const std::vector<std::string>* BINRoundEncoder::GetValueLabels() const { return nullptr; }

bool BINRoundEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!TQBinning::Accepts(TQBinning::kNumericData, userMissing)) return false;
  fUserMissing = userMissing;
  return true;
}

IBINUserMissing* BINRoundEncoder::GetUserMissingInfo() const { return fUserMissing; }
BINRoundEncoder* BINRoundEncoder::Clone() const { return new BINRoundEncoder(*this); }

std::ostream& BINRoundEncoder::Display(std::ostream& os) const {
  os << "\tBINRoundEncoder: option = ";
  TQBinning::Display(os, fOption);
  DisplayDefinition(os, fUserMissing);
  return os;
}
