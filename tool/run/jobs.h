#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>

#include "base/privatedirectory.h"
#include "run/binningoptions.h"
#include "run/columns.h"
#include "run/libraryrun.h"
#include "run/progressline.h"
#include "run/recordfeed.h"

namespace TQTool {

// What is to be binned; the references are borrowed.
struct BinningTask {
  const BinningOptions& options;
  const Columns& columns;
  BINVarList& list;  // of the columns
  RecordFeed& feed;
  const PrivateDirectory& directory;
  std::string inputName;
};

// The share of memory that several jobs may take when nothing else is asked for: a quarter of
// what the machine has, in bytes.
std::size_t MemoryForJobs();

// Lets the library bin all pairs of columns: in one run that takes the cases as they are read or,
// when several jobs are asked for, in as many threads, each of which takes a share of the
// attributes from memory.  Cases that do not fit there go through one run, too.
// What comes of a pair is the same in either way, as long as no percentiles are asked for: these
// may depend on the attribute before.  Throws as RunLibrary does.
std::vector<LibraryResult> RunJobs(const BinningTask& task, ProgressLine& progress);

}  // namespace TQTool
