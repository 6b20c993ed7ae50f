#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

#include "model/model.h"
#include "run/binningoptions.h"
#include "run/recordfeed.h"

namespace TQTool {

// What one run of the library works with; the references are borrowed.
struct LibraryWork {
  const BinningOptions& options;
  const std::string& inputName;
  const RecordFeed& feed;  // where the cases come from, to be asked for its error
  TQQueryCancel& query;
  ProgressListener& progress;
  int casesPerReport;  // 0 for no report before the first column is binned
  BINVarList& list;
  TQCommon::RecordIterator& cases;
  std::string directory;  // of this run alone
  // For supervised binning the variables of the pairs, attribute by attribute; equal
  // frequency takes all of the list.
  std::vector<int> attributes = {};
  std::vector<int> targets = {};
};

struct LibraryResult {
  TQBinning::TQStatus status;
  std::vector<std::size_t> pairs;           // what was binned: indices into the columns' pairs
  std::vector<BinnedAttribute> attributes;  // what came of these
  int numVariables = 0;
  std::vector<std::uintmax_t> fileSizes;  // of the temporary files, one for each variable
};

// Lets the library bin the cases.  Throws ToolError for an error of the feed, a signal or an
// error of the library.
LibraryResult RunLibrary(const LibraryWork& work);

}  // namespace TQTool
