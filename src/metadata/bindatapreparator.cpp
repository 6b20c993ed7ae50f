// The preparator belongs to the metadata, from which it derives every rule of the
// pass, although it writes through the data cache and the column files.
#include "tqbinning/bindatapreparator.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <memory>
#include <ostream>
#include <utility>

#include "common/categorycode.h"
#include "common/lineend.h"
#include "common/missing.h"
#include "common/processorclock.h"
#include "common/raise.h"
#include "common/require.h"
#include "metadata/datatype.h"
#include "tqbinning/bincancelinfo.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binprogressreporter.h"
#include "tqbinning/binvarlist.h"
#include "tqcommon/tqcommon.h"

using namespace TQBinning;

namespace {

constexpr int kCacheCapacity = 10000;  // cases per row before a transfer

std::size_t At(int i) { return static_cast<std::size_t>(i); }

// Reports the number of processed records every so many iterator steps.
class CaseProgress {
 public:
  CaseProgress(ProgressListener* listener, int interval)
      : fListener(listener), fInterval(interval), fCountdown(interval) {}

  // An interval of 0 never comes down to 0 from above, so nothing is reported.
  void Step(unsigned int processedRecords) {
    if (fListener == nullptr || fCountdown <= 0 || --fCountdown > 0) return;
    fReporter.SetValues(processedRecords, fClock.ElapsedSeconds());
    fListener->Report(&fReporter);
    fCountdown = fInterval;
  }

 private:
  ProgressListener* fListener;
  int fInterval;
  int fCountdown;
  BINProgressReporter fReporter;
  ProcessorClock fClock;
};

std::string WithSeparator(std::string directory) {
  if (!directory.empty() && directory.back() != '\\' && directory.back() != '/') directory += '/';
  return directory;
}

// Hands out names that no file has: the directory and a hexadecimal counter.
class NameFinder {
 public:
  explicit NameFinder(const std::string& directory)
      : fPrefix(WithSeparator(directory)), fCounter(static_cast<unsigned long>(std::clock())) {}

  // The next free name; `cancelled` is set when cancellation was seen on the way.
  std::string Next(BINCancelInfo& cancelInfo, bool& cancelled) {
    for (int refusals = 0;; ++fCounter) {
      std::string name = Candidate();
      if (!IsTaken(name, refusals)) {
        ++fCounter;
        return name;
      }
      cancelled = cancelInfo.IsCancel() || cancelled;
    }
  }

 private:
  // A directory that refuses so many names in a row refuses them all.  The search
  // then ends, and the first append tells that the directory cannot be used.
  static constexpr int kMostRefusals = 100000;

  std::string Candidate() const {
    char digits[2 * sizeof fCounter + 1];
    std::snprintf(digits, sizeof digits, "%lx", fCounter);
    return fPrefix + digits;
  }

  static bool IsTaken(const std::string& name, int& refusals) {
    if (std::FILE* const file = std::fopen(name.c_str(), "r")) {
      std::fclose(file);
      return true;
    }
    return errno == EACCES && ++refusals < kMostRefusals;
  }

  std::string fPrefix;
  unsigned long fCounter;
};

// Appends values to a file; false when they did not all arrive there.
bool AppendToFile(const std::string& name, const double* values, std::size_t count) {
  std::FILE* const file = std::fopen(name.c_str(), "ab+");
  if (file == nullptr) return false;
  std::setvbuf(file, nullptr, _IONBF, 0);  // all in one piece: a buffer would split it in two
  const bool written = std::fwrite(values, sizeof(double), count, file) == count;
  const bool closed = std::fclose(file) == 0;  // some disks fail only here
  return written && closed;
}

// Whether a target value, truncated towards zero, is -1, the code of a missing one.
bool IsMissingTarget(double value) { return IsMissing(value) || (value > -2.0 && value <= -1.0); }

// An attribute's test is exact, unlike the target's.
bool IsMissingCategory(double value) { return IsMissing(value) || value == -1.0; }

bool HasRoundEncoder(const IBINVariable& variable) {
  const IBINEncoder* const encoder = variable.GetEncoder();
  return encoder != nullptr && encoder->GetEncoderType() == IBINVariable::kWeightLevel;
}

template <typename Number>
void DisplayNumbers(std::ostream& os, const char* label, const std::vector<Number>& numbers) {
  os << label;
  for (const Number number : numbers) os << static_cast<int>(number) << ' ';
  os << LineEnd;
}

}  // namespace

BINDataPreparator::BINDataPreparator(BINVarList& varList, BINCancelInfo& cancelInfo,
                                     std::string tempDirectory, ProgressListener* listener,
                                     int progressInterval)
    : fTempDirectory(std::move(tempDirectory)),
      fListener(listener),
      fProgressInterval(progressInterval),
      fTargetIndex(-1),
      fWeightOriginalIndex(-1),
      fWeightNewIndex(-1),
      fVarList(varList),
      fTwoToThe64(18446744073709551616.0),
      fDropCase(false),
      fOrigRecSize(varList.Size()),
      fProcRecSize(0),
      fInputRecSize(varList.GetNumAttributeVars()),
      fCancelInfo(cancelInfo),
      fWeightEncoder(nullptr),
      fCacheCapacity(kCacheCapacity),
      fKeptCases(0),
      fHasWeight(varList.GetWeightIndex() >= 0 ? 1 : 0),
      fHasTarget(varList.GetTargetIndex() >= 0 ? 1 : 0) {
  fProcRecSize = fHasTarget + fInputRecSize + fHasWeight;
  // A list that SetUpTempFiles will refuse may have more variables than columns.
  const std::size_t columns = At(std::max(fOrigRecSize, fProcRecSize));
  fLargestCodes.assign(columns, 0);
  fPossibleInputs.assign(columns, true);
  for (int k = 0; k < fOrigRecSize; ++k) AddVariable(k);
}

void BINDataPreparator::AddVariable(int k) {
  const IBINVariable& variable = *fVarList.GetVarAt(k);
  fUserMissing.push_back(variable.GetUserMissingInfo());
  fMeasureLevels.push_back(variable.GetMeasureLevel());
  fRoles.push_back(variable.GetVariableRole());

  int column = -1;
  switch (fRoles.back()) {
    case IBINVariable::kTarget:
      column = 0;
      fTargetIndex = k;
      break;
    case IBINVariable::kFrequencyWeight:
      if (!HasRoundEncoder(variable)) break;  // a role given to another kind of variable
      column = fHasTarget;
      fWeightOriginalIndex = k;
      fWeightNewIndex = 1;
      fWeightEncoder = static_cast<BINRoundEncoder*>(fVarList.GetEncoderAt(k));
      break;
    case IBINVariable::kAttribute:
      column = fHasWeight + fHasTarget + static_cast<int>(fInputIndices.size());
      fInputIndices.push_back(k);
      break;
    default: break;
  }
  fVariableIndex.push_back(column);
}

BINDataPreparator::~BINDataPreparator() { RemoveTempFiles(); }

void BINDataPreparator::RemoveTempFiles() {
  for (const std::string& name : fFileNames) std::remove(name.c_str());
  fFileNames.clear();
}

TQStatus BINDataPreparator::SetUpTempFiles() {
  TQ_REQUIRE(fOrigRecSize <= fProcRecSize);  // what follows writes a column per variable
  if (!fCache.Resize(fProcRecSize, fCacheCapacity)) {
    fCacheCapacity /= 2;
    if (!fCache.Resize(fProcRecSize, fCacheCapacity)) return Error(kResourceFailure);
  }
  fCache.Flush();
  return NameTempFiles();
}

TQStatus BINDataPreparator::NameTempFiles() {
  RemoveTempFiles();
  fFileNames.resize(At(fProcRecSize));
  NameFinder finder(fTempDirectory);
  for (int i = 0; i < fOrigRecSize; ++i) {
    bool cancelled = false;
    std::string name = finder.Next(fCancelInfo, cancelled);
    if (cancelled) return Error(kCancelled);
    fFileNames[At(i)] = std::move(name);
  }
  return TQStatus();
}

TQStatus BINDataPreparator::TransferData() {
  TQStatus status;
  for (int i = 0; i < fOrigRecSize && status.IsOK(); ++i) {
    if (!AppendToFile(fFileNames[At(i)], fCache.GetRowPtr(i), fCache.GetRowSize(i))) {
      status = Error(kCannotAppend);
    }
  }
  fCache.Flush();
  return status;
}

TQStatus BINDataPreparator::ProcessRecord(const TQCommon::Record& in, TQCommon::Record& out) {
  for (int column = 0; column < fProcRecSize; ++column) out[column] = 0.0;
  return ProcessCase(in, [&out](int column, double value) { out[column] = value; });
}

// Hands every value of the processed record to `put(column, value)`, each once; a
// column that is not usable, or belongs to no variable, is left out.
template <typename Put>
TQStatus BINDataPreparator::ProcessCase(const TQCommon::Record& in, Put put) {
  const double missing = TQMV::gMissingValue;
  if (fWeightNewIndex > 0) {
    const double weight = fWeightEncoder->Encode(in[fWeightOriginalIndex]);
    if (weight == missing) {
      fDropCase = true;
      return TQStatus();
    }
    put(fHasTarget, weight);
  }

  TQStatus status;
  if (fTargetIndex >= 0) status = ProcessTarget(in[fTargetIndex], put);
  if (status.IsError()) return status;

  int column = fHasTarget + fHasWeight;
  for (const int k : fInputIndices) {
    const double value = in[k];
    if (fMeasureLevels[At(k)] == IBINVariable::kContinuous) {
      // A categorical variable declared continuous may hold a definition of strings.
      const BINNumericUserMissing* const userMissing = AsNumeric(fUserMissing[At(k)]);
      const bool isUserMissing = userMissing != nullptr && userMissing->Contains(value);
      put(column, isUserMissing ? missing : value);
    } else if (IsMissingCategory(value)) {
      put(column, missing);
    } else if (fPossibleInputs[At(column)]) {
      if (IsCategoryCode(value)) {
        put(column, value);
        fLargestCodes[At(column)] = std::max<int>(fLargestCodes[At(column)], CategoryCode(value));
      } else {
        fPossibleInputs[At(column)] = false;
        status = WithDatum(Warning(kCodeOutOfRange), column);  // replaces an earlier one
      }
    }
    ++column;
  }
  return status;
}

template <typename Put>
TQStatus BINDataPreparator::ProcessTarget(double value, Put put) {
  if (IsMissingTarget(value)) {
    put(0, TQMV::gMissingValue);
    return TQStatus();
  }
  if (!fPossibleInputs[0]) return TQStatus();
  if (!IsCategoryCode(value)) {
    fPossibleInputs[0] = false;
    // With another categorical variable in the list the run can do without this one.
    const bool isWarning = fVarList.GetNumCatVar() >= 2;
    return WithDatum(TQStatus(kCodeOutOfRange, isWarning), fTargetIndex);
  }
  put(0, value);
  fLargestCodes[0] = std::max<int>(fLargestCodes[0], CategoryCode(value));
  return TQStatus();
}

TQStatus BINDataPreparator::ProcessSource(TQCommon::RecordIterator& source) {
  TQStatus status = SetUpTempFiles();
  if (!status.IsOK()) {
    fStatus = status;
    return status;
  }
  status = ReadCases(source);
  if (status.IsError()) return status;

  if (fKeptCases == 0) {
    fStatus = Error(kNoCases);
  } else if (fCancelInfo.IsCancel()) {
    fStatus = Error(kCancelled);
  } else {
    InvalidateUndeclaredColumns();
  }
  return fStatus;
}

// Cases are written straight into the cache's rows: a value is touched once.
TQStatus BINDataPreparator::ReadCases(TQCommon::RecordIterator& source) {
  CaseProgress progress(fListener, fProgressInterval);
  std::vector<double*> rows;
  rows.reserve(At(fProcRecSize));
  for (int column = 0; column < fProcRecSize; ++column) rows.push_back(fCache.GetRowPtr(column));
  unsigned int cached = 0;  // cases in the cache
  const auto put = [&](int column, double value) { rows[At(column)][cached] = value; };
  std::vector<bool> isGrowing = fPossibleInputs;  // columns that are still written

  unsigned int processedRecords = 0;
  while (source.HasMore() && !fCancelInfo.IsCancel()) {
    if (const TQCommon::Record* const in = source.Next()) {
      ++processedRecords;
      fDropCase = false;
      TQStatus status = ProcessCase(*in, put);
      if (status.IsError()) return status;
      if (status.IsWarning()) StopLostColumns(cached, isGrowing);
      if (!fDropCase) {
        ++cached;
        if (cached == static_cast<unsigned int>(fCacheCapacity)) {
          status = TransferBlock(std::exchange(cached, 0U));
          if (status.IsError()) return status;
        }
        ++fKeptCases;
      }
    }
    progress.Step(processedRecords);
  }
  (void)TransferBlock(cached);  // the final one; its status decides nothing
  return TQStatus();
}

// Leaves a column that has become unusable with the cases that it has.
void BINDataPreparator::StopLostColumns(unsigned int cases, std::vector<bool>& isGrowing) {
  for (int i = 0; i < fOrigRecSize; ++i) {
    if (!isGrowing[At(i)] || fPossibleInputs[At(i)]) continue;
    isGrowing[At(i)] = false;
    fCache.SetRowSize(i, cases);
  }
}

TQStatus BINDataPreparator::TransferBlock(unsigned int cases) {
  for (int i = 0; i < fOrigRecSize; ++i) {
    if (fPossibleInputs[At(i)]) fCache.SetRowSize(i, cases);
  }
  return TransferData();
}

// A column with a code beyond its variable's declaration cannot be relied upon.
void BINDataPreparator::InvalidateUndeclaredColumns() {
  for (int k = 0; k < fOrigRecSize; ++k) {
    const int column = fVariableIndex[At(k)];
    const bool isCategorical = fMeasureLevels[At(k)] == IBINVariable::kNumericCategorical ||
                               fMeasureLevels[At(k)] == IBINVariable::kStringCategorical;
    if (column < 0 || !isCategorical) continue;
    if (fLargestCodes[At(column)] >= fVarList.GetVarAt(k)->GetNumberOfCategories()) {
      fPossibleInputs[At(column)] = false;
    }
  }
}

TQStatus BINDataPreparator::IsValidTarget(int column, bool& isValid) {
  if (column < 0 || column >= fOrigRecSize) return Error(kInvalidIndex);
  isValid = fPossibleInputs[At(column)];
  return TQStatus();
}

TQStatus BINDataPreparator::GetStatus() const { return fStatus; }
BINVarList& BINDataPreparator::GetVarList() const { return fVarList; }
const std::vector<std::string>& BINDataPreparator::GetFileNames() const { return fFileNames; }
unsigned long BINDataPreparator::GetNumberOfKeptCases() const { return fKeptCases; }
const std::vector<int>& BINDataPreparator::GetVariableIndex() const { return fVariableIndex; }

int BINDataPreparator::GetLargestCode(int column) const { return fLargestCodes[At(column)]; }

void BINDataPreparator::KeepFailure(const TQStatus& status) { fStatus = status; }

std::ostream& BINDataPreparator::Display(std::ostream& os) const {
  os << "BINDataPreparator object: " << LineEnd;
  os << "\tPossible inputs used? ";
  os << "\tOriginal record size = " << fProcRecSize << LineEnd;   // the same number twice,
  os << "\tProcessed record size = " << fProcRecSize << LineEnd;  // as hosts know it
  os << "\tInput-only record size = " << fInputRecSize << LineEnd;
  os << "\tFrequency weight original and new indices: " << fWeightOriginalIndex << "   "
     << fWeightNewIndex << LineEnd;
  DisplayNumbers(os, "\tVariable index: ", fVariableIndex);
  DisplayNumbers(os, "\tIndices of input variables in the variable list: ", fInputIndices);
  DisplayNumbers(os, "\tVariable measurement levels: ", fMeasureLevels);
  DisplayNumbers(os, "\tVariable roles: ", fRoles);
  if (fStatus.IsOK()) {
    os << "\tStatus is OK.\n";
  } else {
    os << "\tStatus has error code " << fStatus.GetErrorCode() << LineEnd;
  }
  return fVarList.Display(os);
}
