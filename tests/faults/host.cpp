// A host of the library for fault injection: bins the same few columns by both methods
// and prints what came of it once both are done.  Returns 1, and names the status on
// standard error, when the library reported an error.
//
// usage: faults_host DIRECTORY

#include <cstdio>
#include <exception>
#include <memory>
#include <sstream>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "tqbinning/tqbinning.h"
#include "tqcommon/tqcommon.h"

namespace {

constexpr int kRows = 22000;  // the library writes its files in blocks of 10000

// Rows of category, weight and two values, worked out from their numbers.
class Rows : public TQCommon::RecordIterator {
 public:
  Rows(bool hasTarget) : fFirst(hasTarget ? 1 : 0), fRecord(3 + fFirst) {}
  bool HasMore() override { return fRow < kRows; }
  const TQCommon::Record* Next() override {
    const int row = fRow++;
    if (fFirst == 1) fRecord[0] = row % 7 < row / 4000 ? 1 : 0;
    fRecord[fFirst] = 1 + row % 2;
    fRecord[fFirst + 1] = row / 4000 + row % 3;
    fRecord[fFirst + 2] = row * 0.25;
    return &fRecord;
  }

 private:
  int fFirst;
  TQCommon::Record fRecord;
  int fRow = 0;
};

BINVarList MakeList(bool hasTarget) {
  BINVarList list;
  if (hasTarget) {
    list.AddCatVar("target", "", 2, IBINVariable::kNumericCategorical, IBINVariable::kTarget);
  }
  list.AddWeightVar("weight", "", IBINVariable::kRoundToClosest);
  list.AddContVar("few", "", IBINVariable::kAttribute);
  list.AddContVar("many", "", IBINVariable::kAttribute);
  return list;
}

int Fail(const TQBinning::TQStatus& status) {
  std::fprintf(stderr, "host: status %ld\n", static_cast<long>(status.GetErrorCode()));
  return 1;
}

// Whether every value that was handed over is in the library's files: what it writes last
// it does not look after.
//
// By the system's own calls: the standard library's iterator ends the program when it
// lacks memory.
bool HasWholeFiles(const char* directory) {
  const std::unique_ptr<DIR, int (*)(DIR*)> files(opendir(directory), closedir);
  if (files == nullptr) return false;
  while (const dirent* const file = readdir(files.get())) {
    struct stat status = {};
    if (fstatat(dirfd(files.get()), file->d_name, &status, 0) != 0) return false;
    if (S_ISREG(status.st_mode) && status.st_size != kRows * sizeof(double)) return false;
  }
  return true;
}

// Bins, and shows the results; the exit code.
template <class Factory, class Settings, class Create, class Bin>
int Run(const char* directory, bool hasTarget, Create create, Bin bin, std::ostream& shown) {
  Settings settings;
  settings.SetNumberOfBins(20);
  settings.SetTempDirName(directory);
  BINVarList list = MakeList(hasTarget);
  Factory factory;
  const auto algorithm = create(factory, settings, list);
  if (algorithm == nullptr) return Fail(factory.GetStatus());
  Rows rows(hasTarget);
  const TQBinning::TQStatus status = bin(*algorithm, rows);
  if (!status.IsOK()) return Fail(status);
  if (!HasWholeFiles(directory)) {
    std::fputs("host: values were lost on their way to the disk\n", stderr);
    return 1;
  }
  algorithm->GetBinningResults().Display(shown);
  if (shown.good()) return 0;
  std::fputs("host: no memory to show the results\n", stderr);
  return 1;
}

int RunBoth(const char* directory, std::ostream& shown) {
  const int supervised = Run<BINFactory, BINSettings>(
      directory, true,
      [](BINFactory& factory, BINSettings& settings, BINVarList& list) {
        settings.SetNumDistinctValueThreshold(100);
        return std::unique_ptr<IBINAlgorithm>(factory.CreateBINAlgorithm(settings, list));
      },
      [](IBINAlgorithm& algorithm, Rows& rows) {
        return algorithm.CreateBins(rows, nullptr, nullptr);
      },
      shown);
  if (supervised != 0) return supervised;
  return Run<EFBINFactory, EFBINSettings>(
      directory, false,
      [](EFBINFactory& factory, EFBINSettings& settings, BINVarList& list) {
        return std::unique_ptr<IEFBINAlgorithm>(factory.CreateEFBINAlgorithm(settings, list));
      },
      [](IEFBINAlgorithm& algorithm, Rows& rows) { return algorithm.CreateBins(rows, nullptr); },
      shown);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    std::ostringstream shown;
    const int result = RunBoth(argv[1], shown);
    if (result == 0) std::fputs(shown.str().c_str(), stdout);
    return result;
  } catch (const std::exception& error) {  // the host's own: the library throws none
    std::fprintf(stderr, "host: %s\n", error.what());
    return 1;
  }
}
