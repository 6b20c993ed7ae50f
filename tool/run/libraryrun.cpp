#include "run/libraryrun.h"

#include <cstddef>
#include <memory>

#include <fmt/format.h>

#include "base/privatedirectory.h"
#include "base/signals.h"
#include "base/statuswords.h"
#include "base/toolerror.h"
#include "run/categoryorder.h"
#include "run/resultcollector.h"

namespace TQTool {
namespace {

using TQBinning::TQStatus;

[[noreturn]] void ThrowStatus(const TQStatus& status, const std::string& inputName) {
  switch (status.GetErrorCode()) {
    case TQBinning::kNoCases:
      throw ToolError(kInput, fmt::format("{}: {}", inputName, Describe(status)));
    case TQBinning::kCannotAppend: throw ToolError(kFileSystem, Describe(status));
    default: throw ToolError(kLibraryFailure, Describe(status));
  }
}

void ThrowIfError(const TQStatus& status, const LibraryWork& work) {
  if (status.IsError()) ThrowStatus(status, work.inputName);
}

// The settings that both methods have.
template <class Settings>
void SetCommon(const LibraryWork& work, Settings& settings) {
  settings.SetCancelPointer(&work.query);
  settings.SetProgressListener(&work.progress);
  settings.SetNSkippedCasesReports(work.casesPerReport);
  settings.SetRightBorderClosed(work.options.settings.isRightClosed);
  settings.SetTempDirName(work.directory);
}

// What is known once `status` is what CreateBins returned and the files still exist.
LibraryResult BeginResult(const LibraryWork& work, const TQStatus& status) {
  work.feed.RethrowError();
  ThrowIfCancelled();
  ThrowIfError(status, work);
  return {status, {}, {}, work.list.Size(), FileSizesIn(work.directory)};
}

LibraryResult RunSupervised(const LibraryWork& work) {
  const Settings& asked = work.options.settings;
  BINSettings settings;
  SetCommon(work, settings);
  settings.SetNumDistinctValueThreshold(asked.prebinThreshold);
  settings.SetNumberOfBins(asked.prebinBins);
  settings.SetSmallBinDetectionThreshold(asked.minBinFactor);

  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  LibraryResult result =
      BeginResult(work, algorithm->CreateBins(work.cases, &work.attributes, &work.targets));

  std::vector<BINAttributeTargetResults> all;  // in the order of the pairs
  ThrowIfError(algorithm->GetBinningResults().GetAllCutPoints(all), work);
  for (const BINAttributeTargetResults& one : all) {
    const int target = one.GetTargetIndex();
    result.attributes.push_back(CollectResult(
        one, work.list, CategoryOrder(CategoriesOf(work.list, target)), asked.prebinThreshold));
    result.attributes.back().target = static_cast<std::size_t>(target);
  }
  return result;
}

LibraryResult RunEqualFrequency(const LibraryWork& work) {
  EFBINSettings settings;
  SetCommon(work, settings);
  settings.SetNumberOfBins(work.options.settings.bins);

  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, work.list));
  ThrowIfCancelled();
  if (algorithm == nullptr) ThrowStatus(factory.GetStatus(), work.inputName);
  LibraryResult result = BeginResult(work, algorithm->CreateBins(work.cases, nullptr));

  std::vector<BINAttributeResults> all;
  ThrowIfError(algorithm->GetBinningResults().GetAllCutPoints(all), work);
  for (const BINAttributeResults& one : all) {
    result.attributes.push_back(CollectResult(one, work.list));
  }
  return result;
}

}  // namespace

LibraryResult RunLibrary(const LibraryWork& work) {
  return work.options.method == Method::kSupervised ? RunSupervised(work) : RunEqualFrequency(work);
}

}  // namespace TQTool
